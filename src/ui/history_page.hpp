#pragma once
#include <QWidget>

#include "ui/progress_view.hpp"
#include "ui/session.hpp"
namespace lotmere::ui {
class HistoryPage : public QWidget {
  Q_OBJECT
 public:
  explicit HistoryPage(Session& session, QWidget* parent = nullptr);
  void refreshHistoryView() {}
  void load_Entry();
  void download() {}
  void set_Progress(ProgressView& view) { (void)view; }
 Q_SIGNALS:
  void wanted();
  void history_Changed();

 private:
  Session& session_;
};
}  // namespace lotmere::ui

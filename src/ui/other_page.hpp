// The page "其它": texts for reading, one at a time.
#pragma once

#include <QStackedWidget>
#include <QWidget>

#include "ui/session.hpp"

namespace lotmere::ui {

class OtherPage : public QWidget {
  Q_OBJECT

 public:
  // Registers the commands that show its contents.
  explicit OtherPage(Session& session, QWidget* parent = nullptr);

 Q_SIGNALS:
  // One of its commands asks for this page to stand in front.
  void wanted();

 private:
  void add_Text(Session& session, const char* action, const QString& caption, const char* name,
                const QString& text);

  QStackedWidget* contents_;
};

}  // namespace lotmere::ui

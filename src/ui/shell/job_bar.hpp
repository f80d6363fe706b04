// A bar in the page with a stop button beside it, there only while a job runs.
#pragma once

#include <QFrame>
#include <QProgressBar>
#include <QPushButton>

#include "ui/shell/progress_view.hpp"
#include "ui/shell/window_desk.hpp"

namespace lotmere::ui {

class JobBar : public QFrame, public ProgressView {
  Q_OBJECT

 public:
  // `bar_name` names the bar for tests and tools.
  JobBar(WindowDesk& desk, const char* bar_name, QWidget* parent = nullptr);

  void begin(std::int64_t maximum, bool can_stop) override;
  void advance(std::int64_t value) override;
  void end() override;

 private:
  QProgressBar* bar_;
  QPushButton* stop_;
  std::int64_t maximum_ = 0;
  int depth_ = 0;
};

}  // namespace lotmere::ui

// A part of a page that takes no input while its work runs, also when the work serves the window.
#pragma once

#include <QApplication>
#include <QPointer>
#include <QWidget>

namespace lotmere::ui {

// Disables the part, and gives it the focus back that it had.
class PauseScope {
 public:
  explicit PauseScope(QWidget& part) : part_(&part) {
    QWidget* focus = QApplication::focusWidget();
    if (focus != nullptr && part.isAncestorOf(focus)) focus_ = focus;
    part.setEnabled(false);
  }
  PauseScope(const PauseScope&) = delete;
  PauseScope& operator=(const PauseScope&) = delete;
  ~PauseScope() {
    if (part_ != nullptr) part_->setEnabled(true);
    if (focus_ != nullptr) focus_->setFocus();
  }

 private:
  QPointer<QWidget> part_;
  QPointer<QWidget> focus_;
};

}  // namespace lotmere::ui

// A pane that shows one of several views, of which its owner makes the first.
#pragma once

#include <QWidget>
#include <functional>

namespace lotmere::ui {

class FrontPane : public QWidget {
  Q_OBJECT

 public:
  using QWidget::QWidget;

  // Gives the pane its first view, which becomes its child; `open` shows there what is stored.
  virtual void setFirstView(QWidget* view, std::function<void()> open) = 0;
  // The pane comes to the front: what stood there is shown as the store stands.
  virtual void showCurrentView() = 0;
  // Back to the first view.
  virtual void showFirstView() = 0;
  // The draws changed: what hangs on them is made anew when it is next shown.
  virtual void markStale() = 0;
};

}  // namespace lotmere::ui

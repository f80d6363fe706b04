// What is seen before the main window.
#pragma once

#include <QWidget>

namespace lotmere::ui {

class Splash : public QWidget {
  Q_OBJECT

 public:
  Splash();
  // On the screen when it returns.
  void showNow();

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace lotmere::ui

// The bars of the count chart in space, turned with the mouse.
#pragma once

#include <QWidget>
#include <QtDataVisualization/Q3DBars>
#include <functional>
#include <vector>

#include "analysis/counts.hpp"

namespace lotmere::ui {

// Whether this screen can draw in space: there is one, and a context of OpenGL can be made. Tried once.
[[nodiscard]] bool hasOpenGl();

// Only to be made where hasOpenGl().
class CountBars3D : public QWidget {
  Q_OBJECT

 public:
  explicit CountBars3D(QWidget* parent = nullptr);

  void showRows(BallColour balls, const std::vector<CountRow>& rows, const QString& axis_title);

 Q_SIGNALS:
  void doubleClicked();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void lowerView();
  void applyColours();

  Q3DBars* graph_;
  QBar3DSeries* series_;
  BallColour balls_ = BallColour::red;
};

}  // namespace lotmere::ui

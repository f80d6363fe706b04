// The bars of the omission analysis: a group for each number, with its longest, average and running gap.
#pragma once

#include <QAbstractButton>
#include <QWidget>
#include <memory>
#include <vector>

#include "analysis/omission.hpp"
#include "analysis/omission_bars.hpp"

namespace lotmere::ui {

// One number: its bars, the ball above the running one, and the tips of all of these. A click anywhere, the
// space bar or Enter is a click of the button.
class OmissionGroup : public QAbstractButton {
  Q_OBJECT

 public:
  // `number` from 1 on.
  explicit OmissionGroup(int number, QWidget* parent = nullptr);

  [[nodiscard]] int number() const { return number_; }
  void showFigures(std::shared_ptr<const Omission> omission);
  // Where the group's own box lies in the widget, which has some room around it.
  void setBox(const QRectF& box);

  // The bars as they are painted, in the widget.
  [[nodiscard]] OmissionBars bars() const;
  // The tip of the bar at that place, or that of the group.
  [[nodiscard]] QString tipAt(const QPointF& place) const;

 Q_SIGNALS:
  // A key asks for another number: so many further, to the left below 0.
  void stepWanted(int step);

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] double ballSize() const;
  void paintBars(QPainter& painter, const OmissionBars& bars);
  void paintTop(QPainter& painter, const OmissionBars& bars);

  int number_;
  std::shared_ptr<const Omission> omission_;
  QRectF box_;
};

// The frame with all groups. Arrow keys, Home and End go from number to number.
class OmissionChart : public QWidget {
  Q_OBJECT

 public:
  explicit OmissionChart(QWidget* parent = nullptr);

  void showOmission(std::shared_ptr<const Omission> omission);
  // No groups: there is no history.
  void clear() { showOmission(nullptr); }
  // What is shown; none at first and after clear().
  [[nodiscard]] const Omission* omission() const { return omission_.get(); }

 Q_SIGNALS:
  void numberClicked(int number);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void placeGroups();
  void focusNumber(int number);

  std::shared_ptr<const Omission> omission_;
  std::vector<OmissionGroup*> groups_;  // of number n at place n - 1
};

}  // namespace lotmere::ui

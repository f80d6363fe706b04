// The bars of the count chart on a plane: a bar for each number, its count above it.
#pragma once

#include <QtCharts/QBarCategoryAxis>
#include <QtCharts/QBarSeries>
#include <QtCharts/QBarSet>
#include <QtCharts/QChartView>
#include <QtCharts/QValueAxis>
#include <vector>

#include "analysis/counts.hpp"

namespace lotmere::ui {

// The grid of an axis of counts from 0 on: lines `step` apart, the last one above the highest bar and its
// label.
struct CountGrid {
  int step = 1;  // 1, 2 or 5, or these with zeros
  int lines = 1;
};
[[nodiscard]] CountGrid gridFor(const std::vector<CountRow>& rows);

class CountBars : public QChartView {
  Q_OBJECT

 public:
  explicit CountBars(QWidget* parent = nullptr);

  void showRows(BallColour balls, const std::vector<CountRow>& rows, const QString& axis_title);
  // "红球:05　12 次"
  [[nodiscard]] QString tipOf(int bar) const;

 Q_SIGNALS:
  void doubleClicked();

 protected:
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  // Small enough that neighbours don't touch.
  [[nodiscard]] int labelPixels() const;
  void applyLook();

  std::vector<CountRow> rows_;
  BallColour balls_ = BallColour::red;
  QBarSeries* series_;
  QBarCategoryAxis* numbers_;
  QValueAxis* counts_;
};

}  // namespace lotmere::ui

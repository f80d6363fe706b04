// Dividing the reds into the four intervals.
#pragma once

#include <QButtonGroup>
#include <QLabel>
#include <QWidget>
#include <array>

#include "catalogue/catalogue.hpp"
#include "ui/conditions/condition_clicks.hpp"
#include "ui/widgets/number_grid.hpp"

namespace lotmere::ui {

class IntervalPage : public QWidget {
  Q_OBJECT

 public:
  IntervalPage(Session& session, ConditionClicks& clicks, QWidget* parent = nullptr);

  // Shows the intervals as they are set.
  void load();

 private:
  // From 0 on.
  void showInterval(int interval);
  void clear();

  Session& session_;
  ConditionClicks& clicks_;
  QButtonGroup intervals_;                          // intervalChoice
  NumberGrid* numbers_;                             // intervalNumber
  std::array<QLabel*, kIntervalCount> previews_{};  // intervalMembers
  int interval_ = 0;                                // shown
};

}  // namespace lotmere::ui

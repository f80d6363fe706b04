// Dividing the reds into the four intervals.
#pragma once

#include <QButtonGroup>
#include <QLabel>
#include <QWidget>
#include <array>

#include "conditions/catalogue.hpp"
#include "ui/condition_clicks.hpp"
#include "ui/number_grid.hpp"

namespace lotmere::ui {

class IntervalPage : public QWidget {
  Q_OBJECT

 public:
  IntervalPage(Session& session, ConditionClicks& clicks, QWidget* parent = nullptr);

  // Shows the intervals as they are stored.
  void load();

 private:
  [[nodiscard]] const std::string& current() const;
  void clear();

  Session& session_;
  ConditionClicks& clicks_;
  QButtonGroup intervals_;                          // Option_QujianDingyi
  NumberGrid* numbers_;                             // cmm_QujianHuafen
  std::array<QLabel*, kIntervalCount> previews_{};  // Label_4qj
};

}  // namespace lotmere::ui

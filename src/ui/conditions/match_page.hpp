// The page 历史数据过滤: a sentence with the range of past draws and the match value.
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QWidget>
#include <functional>
#include <vector>

#include "panels/own_pages.hpp"
#include "ui/conditions/condition_clicks.hpp"

namespace lotmere::ui {

class MatchPageView : public QWidget {
  Q_OBJECT

 public:
  MatchPageView(Session& session, ConditionClicks& clicks, QWidget* parent = nullptr);
  // The page comes to the front: a range that wasn't chosen by hand moves on to the last fifty draws.
  void open();
  void showSettings();

 private:
  // A click, and the page as it is set behind it.
  void change(const std::function<void(ConditionSet&)>& edit);

  Session& session_;
  ConditionClicks& clicks_;
  std::vector<PeriodNo> periods_;  // of the last draws when the page came to the front, newest first
  TipBox* used_;                   // matchSwitch
  QComboBox* range_[2]{};          // matchFirst, matchLast
  QComboBox* match_;               // matchValue
  QPushButton* latest_;            // latestPeriods
  QLabel* which_;                  // matchRange
};

}  // namespace lotmere::ui

// The page 历史数据过滤: a sentence with the range of past draws and the match value.
#pragma once

#include <QComboBox>
#include <QWidget>

#include "conditions/own_pages.hpp"
#include "ui/condition_clicks.hpp"

namespace lotmere::ui {

class MatchPageView : public QWidget {
  Q_OBJECT

 public:
  MatchPageView(Session& session, ConditionClicks& clicks, QWidget* parent = nullptr);
  // Shows the page; every load sets the range to the last fifty draws.
  void load_LiShi();

 private:
  Session& session_;
  TipBox* used_;           // Check_Historyguolu
  QComboBox* range_[2]{};  // Combo_HistoryGuoLu
  QComboBox* match_;       // Combo_PiPei
};

}  // namespace lotmere::ui

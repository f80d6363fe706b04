// The page 缩水设置: the type of the cover shrink, the smart optimisation in front of it, and the search
// for fewer tickets.
#pragma once

#include <QButtonGroup>
#include <QComboBox>
#include <QLabel>
#include <QWidget>

#include "ui/conditions/condition_clicks.hpp"

namespace lotmere::ui {

class ShrinkPageView : public QWidget {
  Q_OBJECT

 public:
  ShrinkPageView(Session& session, ConditionClicks& clicks, QWidget* parent = nullptr);
  // Shows the page as it is set.
  void load();

 private:
  Session& session_;
  QButtonGroup types_;  // shrinkType
  QCheckBox* smart_;    // smartSwitch
  QCheckBox* fewer_;    // fewerTickets
  QComboBox* effort_;   // fewerEffort
  QLabel* hint_;
};

}  // namespace lotmere::ui

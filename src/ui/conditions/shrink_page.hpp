// The page 缩水设置: the type of the cover shrink and the smart optimisation in front of it.
#pragma once

#include <QButtonGroup>
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
  QButtonGroup types_;  // Option_ShuoSuiLeiXing
  QCheckBox* smart_;    // Check_auto
  QLabel* hint_;
};

}  // namespace lotmere::ui

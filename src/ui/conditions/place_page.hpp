// The page 定位过滤: the numbers allowed at each of the seven places, and how many places may be wrong.
#pragma once

#include <QButtonGroup>
#include <QWidget>
#include <array>

#include "panels/own_pages.hpp"
#include "ui/conditions/condition_clicks.hpp"

namespace lotmere::ui {

class PlacePageView : public QWidget {
  Q_OBJECT

 public:
  PlacePageView(Session& session, ConditionClicks& clicks, QWidget* parent = nullptr);
  // Shows the page as it is set.
  void load();

 private:
  Session& session_;
  std::array<PanelBox*, kPlaceCount> places_{};
  QButtonGroup tolerances_;  // placeTolerance
};

}  // namespace lotmere::ui

// The page 自定义过滤: ten groups of a user's own, their numbers and the counts allowed of each.
#pragma once

#include <QListView>
#include <QStringListModel>
#include <QTabBar>
#include <QWidget>

#include "panels/own_pages.hpp"
#include "ui/conditions/condition_clicks.hpp"
#include "ui/widgets/number_grid.hpp"

namespace lotmere::ui {

class GroupPageView : public QWidget {
  Q_OBJECT

 public:
  GroupPageView(Session& session, ConditionClicks& clicks, QWidget* parent = nullptr);
  // Shows the page as it is set.
  void load();
  // The group (1 to 10) that load() shows from then on.
  void choose(int group);

 private:
  void allow(const std::vector<int>& counts, bool allowed);
  [[nodiscard]] QWidget* makeEditor();
  void openGroup(int group);
  void showGroup(int group);
  void emptyGroups(bool all);

  Session& session_;
  ConditionClicks& clicks_;
  QTabBar* tabs_;        // groupTabs
  NumberGrid* numbers_;  // groupNumber
  PanelBox* counts_;     // groupCounts, groupSwitch
  QListView* all_;       // groupList
  QStringListModel lines_;
  int group_ = 1;  // shown
};

}  // namespace lotmere::ui

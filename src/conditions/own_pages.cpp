#include "conditions/own_pages.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "conditions/condition_store.hpp"
#include "core/periods.hpp"
#include "core/text.hpp"

namespace lotmere {
namespace {

constexpr std::string_view kNoNumbers = "无号码，可把鼠标移动到左边的按钮来设置。。。";

std::string division_Numbers(Store& store, const std::string& name) {
  const std::string numbers = spaced_Numbers(read_AttributeColumn(store, AttributeTable::third, name));
  return numbers.empty() ? fmt::format(" {} ", kNoNumbers) : std::string(trim(numbers));
}

RedTable group_Members(Store& store, const Condition& group) {
  return read_AttributeColumn(store, AttributeTable::first, group.name);
}

bool is_Empty(const RedTable& members) {
  return std::all_of(members.begin(), members.end(), [](int member) { return member == 0; });
}

}  // namespace

GroupPage group_Page(Store& store, int group) {
  const Condition& condition = conditionOfUsage(usage_OfGroup(group));
  GroupPage page{group_Members(store, condition), page_Panel(store, condition)};
  if (is_Empty(page.members)) {
    page.panel.items.clear();
    page.panel.ticked = page.panel.enabled = false;
  }
  return page;
}

void click_GroupNumber(Store& store, int group, int number) {
  const Condition& condition = conditionOfUsage(usage_OfGroup(group));
  StoreChange change(store);
  toggle_Attribute(store, condition.name, number);
  if (is_Empty(group_Members(store, condition))) {
    for (int k = 0; k < cell_Count(condition); ++k) set_Cell(store, condition.first + k, false);
    set_Usage(store, condition.usage, false);
  }
  change.commit();
}

void empty_Groups(Store& store) {
  StoreChange change(store);
  for (int group = 1; group <= kGroupCount; ++group) set_Group(store, group, {});
  change.commit();
}

PlacePage load_DingWei(Store& store) {
  PlacePage page;
  for (int place = 1; place <= kPlaceCount; ++place) {
    ConditionPanel panel = page_Panel(store, conditionOfUsage(usage_OfPlace(place)));
    panel.enabled = panel.ticked || std::any_of(panel.items.begin(), panel.items.end(),
                                                [](const PanelItem& item) { return item.selected; });
    page.places[place - 1] = std::move(panel);
  }
  page.tolerances =
      stored_Option(store, kToleranceCell, 0, kPlaceCount, [](int k) { return to_QuanJiao(k); });
  return page;
}

MatchPage load_LiShi(Store& store) {
  MatchPage page{load_HistoryMatch(store), newestPeriods(store, kMatchPeriods), {}};
  for (int k = 1; k <= kRedsPerTicket; ++k)
    page.matches.push_back({std::to_string(k), k, k == page.settings.match});
  if (!page.settings.chosen) {
    if (page.periods.empty()) return page;
    const HistoryMatch stored = page.settings;
    page.settings.first = page.periods.back();
    page.settings.last = page.periods.front();
    if (page.settings != stored) save_HistoryMatch(store, page.settings);
  }
  // A range may lie among older draws, or name periods without one: what is stored is shown all the same.
  for (const PeriodNo end : {page.settings.first, page.settings.last})
    if (std::ranges::find(page.periods, end) == page.periods.end()) page.periods.push_back(end);
  std::ranges::sort(page.periods, std::ranges::greater());
  return page;
}

void choose_MatchEnd(Store& store, PeriodNo HistoryMatch::*end, PeriodNo period) {
  HistoryMatch settings = load_HistoryMatch(store);
  settings.*end = period;
  settings.chosen = true;
  save_HistoryMatch(store, settings);
}

void follow_LatestDraws(Store& store) { set_HistoryMatch(store, &HistoryMatch::chosen, false); }

std::array<std::string, kIntervalCount> interval_Previews(Store& store) {
  std::array<std::string, kIntervalCount> previews;
  for (int i = 0; i < kIntervalCount; ++i) {
    const std::string& name = conditionOfUsage(usage_OfInterval(i + 1)).name;
    const std::string numbers = spaced_Numbers(read_AttributeColumn(store, AttributeTable::first, name));
    previews[i] = fmt::format(" {}：　{}", name, numbers.empty() ? kNoNumbers : std::string_view(numbers));
  }
  return previews;
}

void clear_Intervals(Store& store, Desk& desk) {
  StoreChange change(store);
  for (int i = 1; i <= kIntervalCount; ++i) {
    set_Column(store, AttributeTable::first, conditionOfUsage(usage_OfInterval(i)).name, {});
    set_Usage(store, usage_OfInterval(i), false);
  }
  change.commit();
  desk.tell("请注意，重新划分区间后需要重新设置“区间过滤”的过滤条件。");
}

std::string division_Caption(int division) {
  const auto& intervals = factory_CustomIntervals();
  const auto first = std::find_if(intervals.begin(), intervals.end(), [&](const CustomInterval& interval) {
    return interval.division == division;
  });
  return first->name.substr(0, first->name.size() - 1);  // without the 1 of the first interval
}

std::vector<DivisionPanel> division_Panels(Store& store, int division) {
  std::vector<DivisionPanel> panels;
  for (const CustomInterval& interval : factory_CustomIntervals()) {
    if (interval.division != division) continue;
    const Condition* row = &conditionOfUsage(interval.usage);
    panels.push_back({load_Panel(store, *row, row->name), *row, division_Numbers(store, row->name)});
  }
  return panels;
}

}  // namespace lotmere

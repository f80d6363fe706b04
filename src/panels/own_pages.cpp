#include "panels/own_pages.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "base/text.hpp"
#include "conditions/condition_store.hpp"
#include "store/periods.hpp"

namespace lotmere {
namespace {

constexpr std::string_view kNoNumbers = "无号码，可把鼠标移动到左边的按钮来设置。。。";

std::string divisionNumbers(Store& store, const std::string& name) {
  const std::string numbers = spacedNumbers(readAttributeColumn(store, AttributeTable::third, name));
  return numbers.empty() ? fmt::format(" {} ", kNoNumbers) : std::string(trim(numbers));
}

RedTable groupMembers(Store& store, const Condition& group) {
  return readAttributeColumn(store, AttributeTable::first, group.name);
}

bool isEmpty(const RedTable& members) {
  return std::all_of(members.begin(), members.end(), [](int member) { return member == 0; });
}

}  // namespace

GroupPage groupPage(Store& store, int group) {
  const Condition& condition = conditionOfUsage(usageOfGroup(group));
  GroupPage page{groupMembers(store, condition), pagePanel(store, condition)};
  if (isEmpty(page.members)) {
    page.panel.items.clear();
    page.panel.ticked = page.panel.enabled = false;
  }
  return page;
}

void clickGroupNumber(Store& store, int group, int number) {
  const Condition& condition = conditionOfUsage(usageOfGroup(group));
  StoreChange change(store);
  toggleAttribute(store, condition.name, number);
  if (isEmpty(groupMembers(store, condition))) {
    for (int k = 0; k < cellCount(condition); ++k) setCell(store, condition.first + k, false);
    setUsage(store, condition.usage, false);
  }
  change.commit();
}

void emptyGroups(Store& store) {
  StoreChange change(store);
  for (int group = 1; group <= kGroupCount; ++group) setGroup(store, group, {});
  change.commit();
}

PlacePage loadPlacePage(Store& store) {
  PlacePage page;
  for (int place = 1; place <= kPlaceCount; ++place) {
    ConditionPanel panel = pagePanel(store, conditionOfUsage(usageOfPlace(place)));
    panel.enabled = panel.ticked || std::any_of(panel.items.begin(), panel.items.end(),
                                                [](const PanelItem& item) { return item.selected; });
    page.places[place - 1] = std::move(panel);
  }
  page.tolerances = storedOption(store, kToleranceCell, 0, kPlaceCount, [](int k) { return toFullWidth(k); });
  return page;
}

MatchPage loadMatchPage(Store& store) {
  MatchPage page{loadHistoryMatch(store), newestPeriods(store, kMatchPeriods), {}};
  for (int k = 1; k <= kRedsPerTicket; ++k)
    page.matches.push_back({std::to_string(k), k, k == page.settings.match});
  if (!page.settings.chosen) {
    if (page.periods.empty()) return page;
    const HistoryMatch stored = page.settings;
    page.settings.first = page.periods.back();
    page.settings.last = page.periods.front();
    if (page.settings != stored) saveHistoryMatch(store, page.settings);
  }
  // A range may lie among older draws, or name periods without one: what is stored is shown all the same.
  for (const PeriodNo end : {page.settings.first, page.settings.last})
    if (std::ranges::find(page.periods, end) == page.periods.end()) page.periods.push_back(end);
  std::ranges::sort(page.periods, std::ranges::greater());
  return page;
}

void chooseMatchEnd(Store& store, PeriodNo HistoryMatch::*end, PeriodNo period) {
  HistoryMatch settings = loadHistoryMatch(store);
  settings.*end = period;
  settings.chosen = true;
  saveHistoryMatch(store, settings);
}

void followLatestDraws(Store& store) { setHistoryMatch(store, &HistoryMatch::chosen, false); }

void switchHistoryMatch(Store& store, bool on) {
  StoreChange change(store);
  if (on) static_cast<void>(loadMatchPage(store));
  setHistoryMatch(store, &HistoryMatch::used, on);
  change.commit();
}

std::array<std::string, kIntervalCount> intervalPreviews(Store& store) {
  std::array<std::string, kIntervalCount> previews;
  for (int i = 0; i < kIntervalCount; ++i) {
    const std::string& name = conditionOfUsage(usageOfInterval(i + 1)).name;
    const std::string numbers = spacedNumbers(readAttributeColumn(store, AttributeTable::first, name));
    previews[i] = fmt::format(" {}：　{}", name, numbers.empty() ? kNoNumbers : std::string_view(numbers));
  }
  return previews;
}

void clearIntervals(Store& store, Desk& desk) {
  StoreChange change(store);
  for (int i = 1; i <= kIntervalCount; ++i) {
    setColumn(store, AttributeTable::first, conditionOfUsage(usageOfInterval(i)).name, {});
    setUsage(store, usageOfInterval(i), false);
  }
  change.commit();
  desk.tell("请注意，重新划分区间后需要重新设置“区间过滤”的过滤条件。");
}

std::string divisionCaption(int division) {
  const auto& intervals = factoryCustomIntervals();
  const auto first = std::find_if(intervals.begin(), intervals.end(), [&](const CustomInterval& interval) {
    return interval.division == division;
  });
  return first->name.substr(0, first->name.size() - 1);  // without the 1 of the first interval
}

std::vector<DivisionPanel> divisionPanels(Store& store, int division) {
  std::vector<DivisionPanel> panels;
  for (const CustomInterval& interval : factoryCustomIntervals()) {
    if (interval.division != division) continue;
    const Condition* row = &conditionOfUsage(interval.usage);
    panels.push_back({loadPanel(store, *row, row->name), *row, divisionNumbers(store, row->name)});
  }
  return panels;
}

}  // namespace lotmere

#include "panels/own_pages.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "base/text.hpp"

namespace lotmere {
namespace {

constexpr std::string_view kNoNumbers = "无号码，可把鼠标移动到左边的按钮来设置。。。";

std::string divisionNumbers(const ConditionSet& set, const std::string& name) {
  const std::string numbers = spacedNumbers(set.column(AttributeTable::third, name));
  return numbers.empty() ? fmt::format(" {} ", kNoNumbers) : std::string(trim(numbers));
}

// A number of a column of `号码特性` joins it or leaves it. What the column holds then.
Members toggleMember(ConditionSet& set, const std::string& column, int number) {
  const bool member = holds(set.column(AttributeTable::first, column), number);
  set.setMember(AttributeTable::first, column, number, !member);
  return set.column(AttributeTable::first, column);
}

}  // namespace

GroupPage groupPage(const ConditionSet& set, int group) {
  const Condition& condition = conditionOfUsage(usageOfGroup(group));
  const Members members = set.column(AttributeTable::first, condition.name);
  GroupPage page{tableOf(members), pagePanel(set, condition)};
  if (members == 0) {
    page.panel.items.clear();
    page.panel.ticked = page.panel.enabled = false;
  }
  return page;
}

void clickGroupNumber(ConditionSet& set, int group, int number) {
  const Condition& condition = conditionOfUsage(usageOfGroup(group));
  if (toggleMember(set, condition.name, number) != 0) return;
  for (int k = 0; k < cellCount(condition); ++k) set.allow(condition.first + k, false);
  set.use(condition.usage, false);
}

void emptyGroups(ConditionSet& set) {
  for (int group = 1; group <= kGroupCount; ++group) setGroup(set, group, {});
}

PlacePage placePage(const ConditionSet& set) {
  PlacePage page;
  for (int place = 1; place <= kPlaceCount; ++place) {
    ConditionPanel panel = pagePanel(set, conditionOfUsage(usageOfPlace(place)));
    panel.enabled = panel.ticked || std::ranges::any_of(panel.items, &PanelItem::selected);
    page.places[place - 1] = std::move(panel);
  }
  page.tolerances = chosenOption(set, kToleranceCell, 0, kPlaceCount, [](int k) { return toFullWidth(k); });
  return page;
}

MatchPage matchPage(const ConditionSet& set, std::vector<PeriodNo> latest) {
  MatchPage page{set.match, std::move(latest), {}};
  for (int k = 1; k <= kRedsPerTicket; ++k)
    page.matches.push_back({std::to_string(k), k, k == page.settings.match});
  if (!page.settings.chosen && page.periods.empty()) return page;
  // A range may lie among older draws, or name periods without one: what is set is shown all the same.
  for (const PeriodNo end : {page.settings.first, page.settings.last})
    if (std::ranges::find(page.periods, end) == page.periods.end()) page.periods.push_back(end);
  std::ranges::sort(page.periods, std::ranges::greater());
  return page;
}

void followDraws(ConditionSet& set, std::span<const PeriodNo> latest) {
  if (set.match.chosen || latest.empty()) return;
  set.match.first = latest.back();
  set.match.last = latest.front();
}

void chooseMatchEnd(ConditionSet& set, PeriodNo HistoryMatch::*end, PeriodNo period) {
  set.match.*end = period;
  set.match.chosen = true;
}

void switchHistoryMatch(ConditionSet& set, bool on, std::span<const PeriodNo> latest) {
  if (on) followDraws(set, latest);
  set.match.used = on;
}

void clickIntervalNumber(ConditionSet& set, int interval, int number) {
  toggleMember(set, conditionOfUsage(usageOfInterval(interval)).name, number);
}

std::array<std::string, kIntervalCount> intervalPreviews(const ConditionSet& set) {
  std::array<std::string, kIntervalCount> previews;
  for (int i = 0; i < kIntervalCount; ++i) {
    const std::string& name = conditionOfUsage(usageOfInterval(i + 1)).name;
    const std::string numbers = spacedNumbers(set.column(AttributeTable::first, name));
    previews[i] = fmt::format(" {}：　{}", name, numbers.empty() ? kNoNumbers : std::string_view(numbers));
  }
  return previews;
}

void clearIntervals(ConditionSet& set) {
  for (int i = 1; i <= kIntervalCount; ++i) {
    const Condition& interval = conditionOfUsage(usageOfInterval(i));
    set.setColumn(AttributeTable::first, interval.name, 0);
    set.use(interval.usage, false);
  }
}

std::string divisionCaption(int division) {
  const auto& intervals = factoryCustomIntervals();
  const auto first = std::find_if(intervals.begin(), intervals.end(), [&](const CustomInterval& interval) {
    return interval.division == division;
  });
  return first->name.substr(0, first->name.size() - 1);  // without the 1 of the first interval
}

std::vector<DivisionPanel> divisionPanels(const ConditionSet& set, int division) {
  std::vector<DivisionPanel> panels;
  for (const CustomInterval& interval : factoryCustomIntervals()) {
    if (interval.division != division) continue;
    const Condition* row = &conditionOfUsage(interval.usage);
    panels.push_back({makePanel(set, *row, row->name), *row, divisionNumbers(set, row->name)});
  }
  return panels;
}

}  // namespace lotmere

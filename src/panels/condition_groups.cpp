#include "panels/condition_groups.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "base/text.hpp"
#include "conditions/own_sets.hpp"
#include "conditions/values.hpp"
#include "panels/pages.hpp"

namespace lotmere {
namespace {

constexpr std::string_view kPlacesStep = "号码定位";
constexpr std::string_view kTurnsStep = "组合（具体）";
constexpr std::size_t kShownTexts = 3;  // shapes and the like that a row tells

enum Place { values, counts, intervals, relatives, shapes, turns, own, divisions, reduction, place_count };

Place placeOf(const Condition& condition) {
  const auto* members = std::get_if<MembersIn>(&condition.figure);
  if (condition.kind == CellKind::setting) return reduction;
  if (condition.kind == CellKind::combination) return turns;
  if (condition.kind == CellKind::position) return own;
  if (condition.kind == CellKind::shape) return shapes;
  if (looksBack(condition)) return relatives;
  if (isCustomInterval(condition)) return divisions;
  if (members != nullptr && condition.usage >= usageOfInterval(1) && condition.usage < usageOfGroup(1))
    return intervals;
  if (members != nullptr && condition.usage >= usageOfGroup(1) && condition.usage < usageOfPlace(1))
    return own;
  return condition.kind == CellKind::count ? counts : values;
}

int tabOf(const Condition& condition) {
  const auto pages = conditionPages();
  for (std::size_t i = 0; i < pages.size(); ++i)
    if (std::ranges::find(pages[i].conditions, &condition) != pages[i].conditions.end())
      return static_cast<int>(i) + 1;
  return 0;
}

int tabOf(PageKind kind) {
  const auto pages = conditionPages();
  return static_cast<int>(std::ranges::find(pages, kind, &ConditionPage::kind) - pages.begin()) + 1;
}

std::string_view stepOf(const Condition& condition) {
  if (condition.kind == CellKind::position) return kPlacesStep;
  if (condition.kind == CellKind::combination) return kTurnsStep;
  return condition.name;
}

std::vector<ConditionGroup> makeGroups() {
  std::vector<ConditionGroup> groups(place_count);
  groups[values].caption = "数值";
  groups[counts].caption = "个数";
  groups[intervals].caption = "区间";
  groups[relatives].caption = "与历史有关";
  groups[shapes].caption = "组合形式";
  groups[turns] = {"组合（具体）", false, {}};
  groups[own].caption = "自定义";
  groups[divisions] = {"自定义区间", false, {}};
  groups[reduction].caption = "缩水";
  for (const Condition& condition : allConditions())
    groups[placeOf(condition)].rows.push_back(
        {RowKind::condition, &condition, condition.name, tabOf(condition), stepOf(condition)});
  groups[relatives].rows.push_back(
      {RowKind::match, nullptr, kHistoryMatchName, tabOf(PageKind::history_match), kHistoryMatchName});
  auto& last = groups[reduction].rows;
  last.insert(last.begin(), {RowKind::shrink, nullptr, "保Ｎ型缩水", tabOf(PageKind::shrink), ""});
  return groups;
}

// The first of the texts between semicolons.
std::string firstTexts(const std::string& text) {
  std::size_t end = 0;
  for (std::size_t i = 0; i < kShownTexts && end != std::string::npos; ++i) end = text.find(';', end + 1);
  std::string first = end == std::string::npos ? text : text.substr(0, end) + " …";
  std::ranges::replace(first, ';', ' ');
  return first;
}

std::string numbersOf(const ConditionSet& set, const Condition& condition) {
  const auto* members = std::get_if<MembersIn>(&condition.figure);
  std::string text;
  for (int n = 1; members != nullptr && n <= kRedCount; ++n)
    if (holds(set.column(members->table, members->column), n))
      text += (text.empty() ? "" : " ") + formatBall(n);
  return text;
}

}  // namespace

std::span<const ConditionGroup> conditionGroups() {
  static const auto groups = makeGroups();
  return groups;
}

bool isTicked(const ConditionSet& set, const ConditionRow& row) {
  switch (row.kind) {
    case RowKind::match:
      return set.match.used;
    case RowKind::shrink:
      return true;
    case RowKind::condition:
      break;
  }
  return set.isTicked(row.condition->usage);
}

std::string valueText(const ConditionSet& set, const ConditionRow& row) {
  if (row.kind == RowKind::match)
    return fmt::format("{}～{}，{} 个以上相同", set.match.first, set.match.last, set.match.match);
  if (row.kind == RowKind::shrink) return shrinkCaption(set.cells.value(kShrinkTypeCell));
  const Condition& condition = *row.condition;
  std::string value = currentValue(set, condition);
  switch (condition.kind) {
    case CellKind::shape:
    case CellKind::run_shape:
    case CellKind::sum_family:
      return firstTexts(value);
    case CellKind::position:
      return value;
    default:
      break;
  }
  std::string plain = plainDigits(value);
  if (placeOf(condition) != own && placeOf(condition) != divisions) return plain;
  const std::string numbers = numbersOf(set, condition);
  return numbers.empty() ? "" : fmt::format("{}：{}", numbers, plain);
}

}  // namespace lotmere

#include "pipeline/metric.hpp"

#include <algorithm>

#include "base/overload.hpp"

namespace lotmere {
namespace {

Metric sumMetric(const RedTable& table) { return {Metric::Kind::table_sum, table}; }

// The numbers that stand in a column, or those that don't.
Metric memberCount(const ConditionSet& set, const MembersIn& rule) {
  RedTable members = tableOf(set.column(rule.table, rule.column));
  if (!rule.inside)
    for (int n = 1; n <= kRedCount; ++n) members[n] = members[n] == 0;
  return sumMetric(members);
}

// How often each number came up in the newest draws; a draw counts a number once.
RedTable heatOf(std::span<const PastDraw> before, int draws) {
  RedTable heat{};
  for (const PastDraw& draw : before.last(std::min(before.size(), static_cast<std::size_t>(draws)))) {
    const RedTable drawn = markReds(draw.numbers.reds);
    for (int n = 1; n <= kRedCount; ++n) heat[n] = static_cast<std::int16_t>(heat[n] + drawn[n]);
  }
  return heat;
}

RedTable drawnIn(std::span<const PastDraw> before, int draws) {
  RedTable marks = heatOf(before, draws);
  for (std::int16_t& mark : marks) mark = mark > 0;
  return marks;
}

}  // namespace

std::optional<Metric> prepareMetric(const ConditionSet& set, const Condition& condition,
                                    std::span<const PastDraw> before) {
  using Answer = std::optional<Metric>;
  return std::visit(
      Overload{
          [](std::monostate) -> Answer { return std::nullopt; },
          [](NumberValue value) -> Answer { return sumMetric(numberTable(value)); },
          [](int (*function)(const Reds&)) -> Answer {
            return Metric{Metric::Kind::function, {}, function};
          },
          [&](const MembersIn& rule) -> Answer { return memberCount(set, rule); },
          [&](const Family* family) -> Answer {
            return Metric{Metric::Kind::shape, {}, nullptr, groupTable(set, *family, family->groups), family};
          },
          [&](const AgainstPrevious& rule) -> Answer {
            return sumMetric(before.empty() ? RedTable{} : rule.mark(before.back().numbers.reds));
          },
          [&](const DrawnIn& rule) -> Answer { return sumMetric(drawnIn(before, rule.draws)); },
          [&](const HeatOver& rule) -> Answer { return sumMetric(heatOf(before, rule.draws)); }},
      condition.figure);
}

int metricValue(const Metric& metric, const Reds& reds) {
  return withFigure(metric, [&](auto figure) { return figure(metric, reds); });
}

Verdicts verdictsOf(const ConditionSet& set, const Condition& condition) {
  const ValueArray cells = set.cellRange(condition.first, condition.last);
  Verdicts verdicts{};
  for (ConditionId id = condition.first; id <= condition.last; ++id) {
    const auto k = static_cast<std::size_t>(id - condition.first);
    if (k < cells.size()) verdicts[k] = cells[k] >= 1;
  }
  return verdicts;
}

}  // namespace lotmere

#include "advice/number_groups.hpp"

#include <bit>

#include "pipeline/metric.hpp"

namespace lotmere {
namespace {

bool countsNumbers(const Condition& condition) {
  if (const auto* sum = std::get_if<NumberValue>(&condition.figure))
    return *sum == NumberValue::is_odd || *sum == NumberValue::is_even;
  return std::holds_alternative<MembersIn>(condition.figure) || looksBack(condition);
}

}  // namespace

std::optional<NumberGroups> numberGroups(const ConditionSet& set, const DrawTable& draws,
                                         const Condition& condition, PeriodNo next_period) {
  NumberGroups groups;
  groups.fill(-1);
  if (condition.family != nullptr) {
    const Family& family = *condition.family;
    const bool turn = condition.kind == CellKind::combination;
    const GroupTable table = groupTable(set, family, turn ? family.draw_groups : family.groups);
    for (int n = 1; n <= kRedCount; ++n)
      if (table.word[n] != 0) groups[n] = std::countr_zero(table.word[n]) / kGroupBits;
    return groups;
  }
  if (!countsNumbers(condition)) return std::nullopt;
  const auto metric = prepareMetric(set, condition, draws.before(next_period));
  if (!metric || metric->kind != Metric::Kind::table_sum) return std::nullopt;
  for (int n = 1; n <= kRedCount; ++n)
    if (metric->table[n] > 0) groups[n] = 0;
  return groups;
}

}  // namespace lotmere

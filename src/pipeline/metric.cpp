#include "pipeline/metric.hpp"

#include <algorithm>

#include "conditions/condition_store.hpp"
#include "history/draw_columns.hpp"

namespace lotmere {
namespace {

constexpr UsageId kLookingBack[] = {7, 8, 263, 264, 265, 266, 301, 302};

Metric sum_Metric(const RedTable& table) { return {Metric::Kind::table_sum, table, {}, nullptr}; }

Metric figure(Metric::Kind kind) { return {kind, {}, {}, nullptr}; }

// The members of a column of `号码特性`, or the numbers that don't belong to it.
Metric member_Count(Store& store, AttributeTable table, std::string_view column, bool inverse = false) {
  RedTable members = read_AttributeColumn(store, table, column);
  if (inverse)
    for (int n = 1; n <= kRedCount; ++n) members[n] = members[n] == 0;
  return sum_Metric(members);
}

// A relation to the reds of the draw before the period.
Metric to_PreviousDraw(std::span<const StoredDraw> before, RedTable (*mark)(const Reds&)) {
  return sum_Metric(before.empty() ? RedTable{} : mark(before.front().numbers.reds));
}

std::span<const StoredDraw> newest(std::span<const StoredDraw> before, std::size_t count) {
  return before.first(std::min(count, before.size()));
}

Metric shape_Metric(Store& store, const Family& family) {
  return {Metric::Kind::shape, {}, load_GroupTable(store, family, family.groups), &family};
}

}  // namespace

bool looks_Back(const Condition& condition) {
  return std::find(std::begin(kLookingBack), std::end(kLookingBack), condition.usage) !=
         std::end(kLookingBack);
}

std::optional<Metric> prepare_Metric(Store& store, const Condition& condition, PeriodNo period) {
  if (!looks_Back(condition)) return prepare_Metric(store, condition, std::span<const StoredDraw>{});
  return prepare_Metric(store, condition, drawsBefore(store, period, kDrawsLookedBack));
}

std::optional<Metric> prepare_Metric(Store& store, const Condition& condition,
                                     std::span<const StoredDraw> before) {
  if (condition.kind == CellKind::shape) return shape_Metric(store, *condition.family);
  switch (condition.usage) {
    case 1:
      return sum_Metric(number_Table(NumberValue::number));
    case 2:
      return sum_Metric(number_Table(NumberValue::odd));
    case 3:
      return sum_Metric(number_Table(NumberValue::even));
    case 4:
      return figure(Metric::Kind::span);
    case 5:
      return figure(Metric::Kind::largest_gap);
    case 6:
      return figure(Metric::Kind::run_shape);
    case 7:
      return to_PreviousDraw(before, mark_Reds);
    case 8:
      return to_PreviousDraw(before, mark_Neighbours);
    case 9:
      return figure(Metric::Kind::ac);
    case 10:
      return sum_Metric(number_Table(NumberValue::is_odd));
    case 11:
      return sum_Metric(number_Table(NumberValue::is_even));
    case 12:
      return member_Count(store, AttributeTable::first, "大数");
    case 13:
      return member_Count(store, AttributeTable::first, "大数", true);
    case 14:
      return member_Count(store, AttributeTable::first, "高尾码");
    case 15:
      return member_Count(store, AttributeTable::first, "高尾码", true);
    case 62:
      return sum_Metric(number_Table(NumberValue::tail));
    case 63:
      return sum_Metric(number_Table(NumberValue::digit_root));
    case 64:
      return sum_Metric(number_Table(NumberValue::big));
    case 65:
      return sum_Metric(number_Table(NumberValue::small));
    case 263:
      return to_PreviousDraw(before, mark_Tails);
    case 264:
      return to_PreviousDraw(before, mark_DigitRoots);
    case 265:
      return sum_Metric(mark_Drawn(newest(before, 3)));
    case 301:
      return sum_Metric(count_Heat(newest(before, 5)));
    case 302:
      return sum_Metric(count_Heat(newest(before, 10)));
    default:
      break;
  }
  if (condition.kind != CellKind::count) return std::nullopt;
  // Intervals, custom groups and custom intervals: the column has the condition's name.
  return member_Count(store, condition.usage < 30 ? AttributeTable::first : AttributeTable::third,
                      condition.name);
}

int metric_Value(const Metric& metric, const Reds& reds) {
  return with_Figure(metric, [&](auto figure) { return figure(metric, reds); });
}

Verdicts load_Verdicts(Store& store, const Condition& condition) {
  const ValueArray cells = load_ConditionRange(store, condition.first, condition.last);
  Verdicts verdicts{};
  for (ConditionId id = condition.first; id <= condition.last; ++id) {
    const auto k = static_cast<std::size_t>(id - condition.first);
    if (k < cells.size()) verdicts[k] = cells[k] >= 1;
  }
  return verdicts;
}

}  // namespace lotmere

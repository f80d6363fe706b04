#include "pipeline/metric.hpp"

#include "conditions/condition_store.hpp"
#include "core/periods.hpp"
#include "history/draw_columns.hpp"

namespace lotmere {
namespace {

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
Metric to_PreviousDraw(Store& store, PeriodNo period, RedTable (*mark)(const Reds&)) {
  const auto draws = drawsBefore(store, period, 1);
  return sum_Metric(draws.empty() ? RedTable{} : mark(draws.front().numbers.reds));
}

Metric shape_Metric(Store& store, const Family& family) {
  return {Metric::Kind::shape, {}, load_GroupTable(store, family, family.groups), &family};
}

}  // namespace

std::optional<Metric> prepare_Metric(Store& store, const Condition& condition, PeriodNo period) {
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
      return to_PreviousDraw(store, period, mark_Reds);
    case 8:
      return to_PreviousDraw(store, period, mark_Neighbours);
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
      return to_PreviousDraw(store, period, mark_Tails);
    case 264:
      return to_PreviousDraw(store, period, mark_DigitRoots);
    case 265:
      return sum_Metric(mark_Drawn(drawsBefore(store, period, 3)));
    case 301:
      return sum_Metric(count_Heat(drawsBefore(store, period, 5)));
    case 302:
      return sum_Metric(count_Heat(drawsBefore(store, period, 10)));
    default:
      break;
  }
  if (condition.kind != CellKind::count) return std::nullopt;
  // Intervals, custom groups and custom intervals: the column has the condition's name.
  return member_Count(store, condition.usage < 30 ? AttributeTable::first : AttributeTable::third,
                      condition.name);
}

int metric_Value(const Metric& metric, const Reds& reds) {
  switch (metric.kind) {
    case Metric::Kind::table_sum:
      return sum_Of(metric.table, reds);
    case Metric::Kind::largest_gap:
      return calc_JianJuMax(reds);
    case Metric::Kind::span:
      return calc_KuaDu(reds);
    case Metric::Kind::run_shape:
      return calc_LianHaoMax(reds);
    case Metric::Kind::ac:
      return calc_AC(reds);
    case Metric::Kind::shape:
      return shape_Number(*metric.family, count_Groups(metric.groups, reds)).value_or(-1);
  }
  return -1;
}

}  // namespace lotmere

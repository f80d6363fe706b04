// The figure that a condition looks at, made ready for one period: tables are read once, a ticket then costs
// look-ups only.
#pragma once

#include <array>
#include <optional>
#include <span>

#include "conditions/catalogue.hpp"
#include "conditions/families.hpp"
#include "core/game.hpp"
#include "core/metrics.hpp"
#include "core/periods.hpp"
#include "core/store.hpp"

namespace lotmere {

struct Metric {
  enum class Kind { table_sum, largest_gap, span, run_shape, ac, shape };
  Kind kind = Kind::table_sum;
  RedTable table{};                // table_sum: the figure is the sum over the six reds
  GroupTable groups;               // shape
  const Family* family = nullptr;  // shape
};

// The figure of a condition with cells. Figures against earlier draws are made from the draws before
// `period`; without such a draw they are 0 for every ticket. Nothing for a condition whose cells don't stand
// for figures (sum families, positions, combinations).
[[nodiscard]] std::optional<Metric> prepare_Metric(Store& store, const Condition& condition, PeriodNo period);

// The same against draws that the caller holds: those before the period, newest first, kDrawsLookedBack of them
// or as many as there are. A condition that doesn't look back takes none.
[[nodiscard]] std::optional<Metric> prepare_Metric(Store& store, const Condition& condition,
                                                   std::span<const StoredDraw> before);

// Whether a condition judges six reds against the draws before their period.
[[nodiscard]] bool looks_Back(const Condition& condition);
inline constexpr int kDrawsLookedBack = 10;  // at most

// The figure of six reds; -1 for a shape that has no number.
[[nodiscard]] int metric_Value(const Metric& metric, const Reds& reds);

// Hands `use` a function (metric, six) that gives the figure as metric_Value does, with the kind of the figure
// known when it is compiled: for loops over very many sixes.
template <class Use>
decltype(auto) with_Figure(const Metric& metric, Use&& use) {
  switch (metric.kind) {
    case Metric::Kind::table_sum:
      return use([](const Metric& m, const Reds& reds) { return sum_Of(m.table, reds); });
    case Metric::Kind::largest_gap:
      return use([](const Metric&, const Reds& reds) { return calc_JianJuMax(reds); });
    case Metric::Kind::span:
      return use([](const Metric&, const Reds& reds) { return calc_KuaDu(reds); });
    case Metric::Kind::run_shape:
      return use([](const Metric&, const Reds& reds) { return calc_LianHaoMax(reds); });
    case Metric::Kind::ac:
      return use([](const Metric&, const Reds& reds) { return calc_AC(reds); });
    case Metric::Kind::shape:
      break;
  }
  return use([](const Metric& m, const Reds& reds) {
    return shape_Number(*m.family, count_Groups(m.groups, reds)).value_or(-1);
  });
}

// The verdict of a condition's cells for each figure from 0 on: at most 171 cells, and a figure beyond the last
// row of the range has none.
using Verdicts = std::array<bool, 256>;
[[nodiscard]] Verdicts load_Verdicts(Store& store, const Condition& condition);

// Whether the cells let a figure through; one below 0 has no cell.
[[nodiscard]] constexpr bool allows(const Verdicts& verdicts, int figure) {
  return figure >= 0 && verdicts[static_cast<std::size_t>(figure)];
}

}  // namespace lotmere

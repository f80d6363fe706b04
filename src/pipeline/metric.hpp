// The figure that a condition looks at, made ready: a six then costs look-ups only.
#pragma once

#include <array>
#include <optional>
#include <span>

#include "catalogue/catalogue.hpp"
#include "catalogue/families.hpp"
#include "conditions/condition_set.hpp"
#include "game/game.hpp"
#include "game/metrics.hpp"
#include "store/draw_table.hpp"

namespace lotmere {

struct Metric {
  enum class Kind { table_sum, function, shape };
  Kind kind = Kind::table_sum;
  RedTable table{};  // table_sum: the figure is the sum over the six reds
  int (*function)(const Reds&) = nullptr;
  GroupTable groups{};             // shape
  const Family* family = nullptr;  // shape
};

// The figure of a condition with cells. Figures against earlier draws are made from `before`, the draws
// before the period, ascending; they look at the newest kDrawsLookedBack at most, and without any they are 0
// for every six. Nothing for a condition whose cells don't stand for figures (sum families, places,
// combinations).
[[nodiscard]] std::optional<Metric> prepareMetric(const ConditionSet& set, const Condition& condition,
                                                  std::span<const PastDraw> before);

// The figure of six reds; -1 for a shape that has no number.
[[nodiscard]] int metricValue(const Metric& metric, const Reds& reds);

// Hands `use` a function (metric, six) that gives the figure as metricValue does, with the kind of the figure
// known when it is compiled: for loops over very many sixes.
template <class Use>
decltype(auto) withFigure(const Metric& metric, Use&& use) {
  switch (metric.kind) {
    case Metric::Kind::table_sum:
      return use([](const Metric& m, const Reds& reds) { return sumOf(m.table, reds); });
    case Metric::Kind::function:
      return use([](const Metric& m, const Reds& reds) { return m.function(reds); });
    case Metric::Kind::shape:
      break;
  }
  return use([](const Metric& m, const Reds& reds) {
    return shapeNumber(*m.family, countGroups(m.groups, reds)).value_or(-1);
  });
}

// The verdict of a condition's cells for each figure from 0 on: at most 171 cells, and a figure beyond the
// last row of the range has none.
using Verdicts = std::array<bool, 256>;
[[nodiscard]] Verdicts verdictsOf(const ConditionSet& set, const Condition& condition);

// Whether the cells let a figure through; one below 0 has no cell.
[[nodiscard]] constexpr bool allows(const Verdicts& verdicts, int figure) {
  return figure >= 0 && verdicts[static_cast<std::size_t>(figure)];
}

// A figure with the verdicts on it.
struct FigureTest {
  Metric metric;
  Verdicts verdicts{};

  [[nodiscard]] bool passes(const Reds& reds) const { return allows(verdicts, metricValue(metric, reds)); }
};

}  // namespace lotmere

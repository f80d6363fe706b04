// The figure that a condition looks at, made ready for one period: tables are read once, a ticket then costs
// look-ups only.
#pragma once

#include <optional>

#include "conditions/catalogue.hpp"
#include "conditions/families.hpp"
#include "core/game.hpp"
#include "core/metrics.hpp"
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

// The figure of six reds; -1 for a shape that has no number.
[[nodiscard]] int metric_Value(const Metric& metric, const Reds& reds);

}  // namespace lotmere

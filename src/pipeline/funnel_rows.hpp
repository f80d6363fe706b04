// The funnel of a run: what each condition took away, and what it would take away by itself.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "pipeline/thin.hpp"

namespace lotmere {

struct FunnelRow {
  std::string name;  // "总和值"
  std::int64_t before = 0;
  std::int64_t after = 0;
  std::int64_t alone = 0;  // tickets of the whole set that it would remove by itself

  friend bool operator==(const FunnelRow&, const FunnelRow&) = default;
};

// By step, how many of the tickets fail it, judged by itself; 0 of a step that doesn't run.
[[nodiscard]] std::vector<std::int64_t> countFailingAlone(const FilterPlan& plan,
                                                          std::span<const Balls> tickets);
// How many tickets the shrink type of the plan would keep of these, in this order.
[[nodiscard]] std::int64_t countCentres(const FilterPlan& plan, std::span<const Balls> tickets);

// A row for each step that is on, in the order of a run. With a tolerance over the whole set every step has
// the whole set in front of it, and a row of the tolerance behind them tells what all together leave.
[[nodiscard]] std::vector<FunnelRow> funnelRows(const FilterPlan& plan, const Funnel& funnel,
                                                std::span<const std::int64_t> alone);
// "全部条件容错值2", the name of that row.
[[nodiscard]] std::string toleranceRowName(const FilterPlan& plan);
// The row of the shrink, which comes last.
[[nodiscard]] FunnelRow shrinkRow(const FilterPlan& plan, std::int64_t before, std::int64_t after,
                                  std::int64_t alone);

}  // namespace lotmere

// The factory values of conditions and switches.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "core/game.hpp"

namespace lotmere {

// A run of rows of `过滤条件`. The cells at the offsets named by `allowed` (a number list such as "60-143")
// start at 1, the others at 0. A cell starts at 1 when its value belongs to the smallest set of most frequent
// values that holds at least 95 percent of all red sixes; figures against earlier draws are counted against a
// typical history, custom groups and intervals allow every count.
struct FactoryCells {
  ConditionId first;
  ConditionId last;
  std::string_view allowed;
};
[[nodiscard]] std::span<const FactoryCells> factory_Cells();

// A row of `过滤条件` with its factory value.
struct FactoryCell {
  ConditionId id;
  int value;
};
// Every row, ascending by id: selection, condition ranges, shrink type, tolerance, custom intervals.
[[nodiscard]] std::vector<FactoryCell> all_FactoryCells();

// A row of `过滤条件使用情况`.
struct FactoryUsage {
  UsageId id;
  bool on;
};
[[nodiscard]] std::vector<FactoryUsage> all_FactoryUsages();

}  // namespace lotmere

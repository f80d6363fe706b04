// The numbers marked as unlikely for the coming draw: advice beside the pad, which no pass reads.
#pragma once

#include <string>
#include <vector>

#include "game/game.hpp"
#include "store/store.hpp"

namespace lotmere {

// The marked numbers, ascending; blue ones as 1 to 16.
struct LowChanceNumbers {
  std::vector<int> reds;
  std::vector<int> blues;

  // Whether the number with this code (1 to 33, 101 to 116) is marked; false for any other code.
  [[nodiscard]] bool holds(int code) const;
};
// The marks as they stand in `概率表`.
[[nodiscard]] LowChanceNumbers lowChanceNumbers(Store& store);

// What a click on a marked number says; `period` is the one that the marks were made for.
[[nodiscard]] std::string lowChanceWarning(int code, PeriodNo period);

}  // namespace lotmere

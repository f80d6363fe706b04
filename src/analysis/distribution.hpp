// The distribution of the numbers: a row a draw, a column a number, a cell filled where the draw holds the
// number.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "base/desk.hpp"
#include "game/game.hpp"
#include "store/store.hpp"

namespace lotmere {

// The columns of `号码分布`: 0 `期号`, 1 to 33 the reds, 34 to 49 the blues.
inline constexpr int kDistributionColumns = 1 + kCodeCount;

// How many of the newest draws are shown.
enum class DistributionSpan : int { recent = 100, all = 10'000 };

// Empties `号码分布` and fills it with the draws up to `to`, in one change: a cell holds the number as two
// digits or is null. Returns the number of rows; 0 where no draw stands up to there, and the table is empty
// then.
std::int64_t buildHaoMaFenBu(Store& store, Desk& desk, PeriodNo to, DistributionSpan span);

struct DistributionRow {
  PeriodNo period = 0;
  std::array<bool, kCodeCount> drawn{};  // place i stands for column i + 1
};

// `号码分布` as it was built last, in the order of the periods.
[[nodiscard]] std::vector<DistributionRow> loadDistribution(Store& store);

}  // namespace lotmere

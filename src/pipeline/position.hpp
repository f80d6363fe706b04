// 号码定位 and 组合（具体）: the two filters that weigh several tests against each other.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "pipeline/filter_pass.hpp"

namespace lotmere {

// 号码定位: rejects a ticket that is wrong at more places than the tolerance. A place is used when its switch
// is 1; a number is wrong where the place's column of `号码特性` doesn't hold it. A tolerance as large as the
// number of used places can't reject anything, and a line says so.
std::int64_t filter_DingWei(PipelineRun& run);

// The turns of 组合（具体） for one run: whether each is in use, and the groups of the reference draw.
struct CombinationTurns {
  std::array<bool, kTurnCount> used{};
  std::optional<Reds> reference;
};
// Reads the turns against the draw `previous`; writes nothing.
[[nodiscard]] CombinationTurns load_Combinations(Store& store, PeriodNo previous);
// The same for a run: the draw's stored figures are computed anew first.
[[nodiscard]] CombinationTurns prepare_Combinations(Store& store, Desk& desk, PeriodNo previous);

// One turn: lowers the mark of every ticket whose reds fall into exactly the groups of the reference draw.
// Removes nothing. A turn that is not in use says so in a line.
std::int64_t filter_ZuHeJuTi(PipelineRun& run, const CombinationTurns& turns, int turn);

// The closing behind the last turn, after a stop as well: tickets with a mark below -1 go, the others get
// mark 1 and running numbers in the order of the old ones; a line tells how many stay.
void close_Combinations(PipelineRun& run);

}  // namespace lotmere

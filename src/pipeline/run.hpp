// The main job: the tickets of a period through all filters and the reduction.
#pragma once

#include <cstdint>
#include <optional>

#include "core/desk.hpp"
#include "core/game.hpp"
#include "core/store.hpp"
#include "pipeline/filter_pass.hpp"
#include "pipeline/order.hpp"
#include "pipeline/position.hpp"

namespace lotmere {

// Reads the tickets of a period with their marks at 0 and says how many there are. Nothing when the period
// has no tickets (for a period above 0 a line says so) and when the person stops it; the stored marks then
// stand as they were.
[[nodiscard]] std::optional<TicketSet> reset_Marks(Store& store, Desk& desk, PeriodNo period);

// Runs one step over the set, in memory; each pass reads its own switch, cells and tables from the store. A stop
// ends a series too.
void run_Step(PipelineRun& run, const PassStep& step, const CombinationTurns& turns);

// Runs every step of pass_Order() over the set. A stop ends the pass under way behind its current block and lets
// no further step run but the closing of the combinations.
void run_Passes(PipelineRun& run, const CombinationTurns& turns);

struct RunResult {
  bool ran = false;      // false: no tickets, or stopped while they were read
  bool stopped = false;  // before its end; also while the tickets were read, and all of them are left then
  std::int64_t tickets = 0;  // of the period at the end
};

// Filters and thins the tickets of a period: reads them once, runs the passes, writes back once. What stays
// is renumbered; what a filter rejects is deleted; a crash leaves the table as it was before. The course
// stands in the running text, and its last line says whether the run came to its end or was stopped; a stop that
// comes while the result is written back changes nothing any more.
RunResult run_Pipeline(Store& store, Desk& desk, PeriodNo period);

}  // namespace lotmere

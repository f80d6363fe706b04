// The main job: the tickets of a period through all filters and the reduction.
#pragma once

#include <cstdint>
#include <vector>

#include "base/desk.hpp"
#include "base/outcome.hpp"
#include "game/game.hpp"
#include "pipeline/funnel_rows.hpp"
#include "store/store.hpp"

namespace lotmere {

struct RunResult {
  // Refused without tickets. Stopped before its end: a stop while the tickets are read leaves all of them.
  Outcome outcome = Outcome::refused;
  std::int64_t tickets = 0;       // of the period at the end
  std::vector<FunnelRow> funnel;  // where it was asked for; without the shrink's row when stopped before it
};
enum class WithFunnel { no, yes };

// Filters and thins the tickets of a period: reads settings, draws and tickets once, walks the steps in
// memory, writes back once. What stays is renumbered; what a filter rejects is deleted; a crash leaves the
// table as it was before. The statistics of the draw before the period are computed anew in the same change,
// of a run without tickets too. The course stands in the running text, and its last line says whether the run
// came to its end or was stopped; a stop that comes while the result is written back changes nothing any
// more. Throws SQLite::Exception, with nothing written, when the store refuses.
RunResult runPipeline(Store& store, Desk& desk, PeriodNo period, WithFunnel with_funnel = WithFunnel::no);

}  // namespace lotmere

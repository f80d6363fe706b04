// The whole way in one go: a selection of any size expanded, filtered and thinned in memory, and only what is
// left stored.
#pragma once

#include <cstdint>
#include <vector>

#include "base/desk.hpp"
#include "base/outcome.hpp"
#include "game/game.hpp"
#include "pipeline/funnel_rows.hpp"
#include "store/store.hpp"
#include "tickets/selection.hpp"
#include "tickets/upkeep.hpp"

namespace lotmere {

struct GenerateLimits {
  std::int64_t stored = kMaxTickets;  // what may be left
  std::int64_t scored = 1'000'000;    // that 智能优化 may have in front of it
  std::int64_t searched =
      2 * kMaxTickets;  // and 精简缩水: an initialisation beside a full table makes as many
};

struct GenerateResult {
  Outcome outcome = Outcome::refused;
  std::int64_t expanded = 0;      // tickets in front of the filters
  std::int64_t left = 0;          // and behind them and the shrink, as far as they came
  std::vector<FunnelRow> funnel;  // of a refusal for too many tickets
};

// Does what an initialisation with this selection, however many tickets it makes, and a run behind it would
// do, with the lines of the run in the running text; only IDs differ, which go on without a gap behind the
// highest. Tickets of the period that are kept are filtered too, in front of the new ones. Refused, told in
// one line, where the selection makes no ticket, the user cancels, or one of the limits is passed. What is
// refused, stopped or fails (SQLite::Exception) changes nothing. The tickets stand as sixes until the
// conditions have left few enough: some 50 MB for all 17,721,088.
GenerateResult generateTickets(Store& store, Desk& desk, PeriodNo period, const NumberSelection& selection,
                               Existing existing = Existing::ask, const GenerateLimits& limits = {});

}  // namespace lotmere

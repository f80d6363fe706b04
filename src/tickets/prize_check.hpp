// The prize check: the tickets of a period held against its draw, tier by tier.
#pragma once

#include <cstdint>
#include <string>

#include "base/desk.hpp"
#include "base/outcome.hpp"
#include "game/game.hpp"
#include "game/prizes.hpp"
#include "store/store.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {

[[nodiscard]] Hits countHits(Balls ticket, Balls draw);

struct CheckResult {
  Outcome outcome = Outcome::refused;
  std::string refusal;       // why nothing was checked
  std::int64_t tickets = 0;  // that were checked
  PrizeTally tally{};
  int max_hit = 0;  // the most reds and blue together on any ticket
};

// "开奖核对结果如下——" and a line a tier, each followed by an empty line.
[[nodiscard]] std::string tallyText(const CheckResult& result);

// What the tickets cost and what the fixed prizes pay, in one line.
[[nodiscard]] std::string moneyText(const CheckResult& result);

// Writes `红球中` and `蓝球中` of every ticket of the period, whatever its marks, in one change, and appends
// the tally to the running text. Refuses when the draw isn't stored or the period has no tickets: no row
// changes then. Serves the desk and can't be stopped. Throws SQLite::Exception when the store refuses; what
// had been written is undone.
[[nodiscard]] CheckResult checkPrizes(Store& store, Desk& desk, PeriodNo period);

// The command "开奖核对": checks, tells a refusal, and tells the end when any number at all was hit.
CheckResult checkCommand(Store& store, Desk& desk, PeriodNo period);

}  // namespace lotmere

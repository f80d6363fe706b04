// Look-ups of periods and dates in the history. Periods are never computed from one another: the previous one
// always comes from the table, so that gaps and year changes need no rule.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "base/dates.hpp"
#include "base/desk.hpp"
#include "game/game.hpp"
#include "store/store.hpp"

namespace lotmere {

// The periods from one to another, both included.
struct PeriodRange {
  PeriodNo from = 0;
  PeriodNo to = 0;
};

// A period as a user types it on any face: the one that parsePeriod() reads. Nothing, told in one line, for
// any other text, an empty one as well.
[[nodiscard]] std::optional<PeriodNo> readPeriod(Desk& desk, std::string_view text);

// The newest and the oldest period; kDefaultPeriod with an empty history.
[[nodiscard]] PeriodNo latestPeriod(Store& store);
[[nodiscard]] PeriodNo firstPeriod(Store& store);

// How many draws a range of periods has.
[[nodiscard]] std::int64_t countDraws(Store& store, const PeriodRange& range);

// The n-th draw (n from 1) before a period, or the oldest one where fewer stand; kDefaultPeriod with none.
[[nodiscard]] PeriodNo periodsBack(Store& store, PeriodNo period, int n);

// The same with the period itself counted as the first.
[[nodiscard]] PeriodNo periodsUpTo(Store& store, PeriodNo period, int n);

// The date of the newest draw by date; kNoDrawDate, a day far in the future, with an empty history.
inline constexpr Date kNoDrawDate{std::chrono::December / 31 / 9999};
[[nodiscard]] Date latestDrawDate(Store& store);

// The day of the draw that comes next, which the date field of the entry proposes at first and after every
// change of the draws: the first draw day after the newest draw; with an empty history the first one from
// `today` on.
[[nodiscard]] Date upcomingDrawDate(Store& store, Date today);

// The period that prompts propose: the last one + 1; or the first one of the year of `entry_date` (the date
// field's value) once the newest draw lies in a later year than the newest period, and with an empty history.
[[nodiscard]] PeriodNo nextPeriod(Store& store, Date entry_date);

// The numbers of a draw as every reader of the history takes them: six reds, and the blue behind them, from
// column `first` of a row on. A row that was damaged or that another program wrote may hold anything; what
// isn't a number of the game counts as 0, the missing number.
[[nodiscard]] Reds readReds(const Query& row, int first);
[[nodiscard]] DrawNumbers readNumbers(const Query& row, int first);

// A draw of the history with its numbers alone.
struct StoredDraw {
  PeriodNo period = 0;
  DrawNumbers numbers;
};
// The newest `count` draws before a period, newest first.
[[nodiscard]] std::vector<StoredDraw> drawsBefore(Store& store, PeriodNo period, int count);
// The newest `count` periods, newest first.
[[nodiscard]] std::vector<PeriodNo> newestPeriods(Store& store, int count);
// One draw, if it is stored.
[[nodiscard]] std::optional<StoredDraw> findDraw(Store& store, PeriodNo period);

}  // namespace lotmere

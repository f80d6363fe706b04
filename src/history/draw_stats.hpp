// The statistics of the draws: some seventy figures and texts that every row of `历史记录` carries beside its
// seven numbers.
//
// "Before" always means the order of periods in the table, whatever the numbers, so that gaps and year
// changes need no rule. Each pass reads the draws it needs in one select, works in memory and writes in one
// change: a failure on the way leaves every row as it was. A range may name periods that don't exist; one
// without a stored draw changes nothing.
#pragma once

#include "base/desk.hpp"
#include "game/game.hpp"
#include "store/store.hpp"

namespace lotmere {

// Computes every derived column of the draws from one period to another, temperatures included. The draw
// before the first one comes from the table, so a range may start anywhere. The earliest draw of the history
// has none: a range of that draw alone computes it against six zeros, a longer range gives it temperatures
// only.
void computeDrawStatistics(Store& store, Desk& desk, PeriodNo from, PeriodNo to);

// The two temperatures alone.
void updateHeat(Store& store, Desk& desk, PeriodNo from, PeriodNo to);

// The counts `区间1` to `区间4` alone, after the intervals were divided anew; says so first. The text
// `四区间` stays.
void recountIntervals(Store& store, Desk& desk, PeriodNo from, PeriodNo to);

// Counts `区间1` to `区间4` of all draws anew where the mark says that they are due, and takes the mark away,
// in one change. True when it was due. The first is for somebody who has just divided the intervals and is
// told of the recount; the other for what changed them on the way (factory values, another user, a kill),
// with a passing message.
bool recountDivided(Store& store, Desk& desk);
bool recountDue(Store& store, Desk& desk);

// How often the reds of a stored draw came up in the `window` draws before it, or in as many as there are; 0
// for a period that isn't stored.
[[nodiscard]] int heatOf(Store& store, PeriodNo period, int window);

// How many reds of the newest draw up to a period stood in the three draws before that draw; 0 with fewer
// than three.
[[nodiscard]] int repeatsOfThree(Store& store, PeriodNo period);

}  // namespace lotmere

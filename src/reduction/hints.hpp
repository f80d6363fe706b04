// The low-probability hints: six reds and five blues marked as unlikely for a coming period.
#pragma once

#include "base/desk.hpp"
#include "game/game.hpp"
#include "store/store.hpp"
#include "tickets/low_chance.hpp"

namespace lotmere {

// Makes the marks for a period out of the draws before it: -1 in `概率表` at a marked number, 0 at every
// other; lowChanceNumbers() then gives them. The same draws and period give the same marks. Three turns of
// votes mark 2 + 2 + 2 reds and 2 + 2 + 1 blues: those with the most votes, the lowest among equals. With
// fewer than five draws before the period there are no votes, and the lowest numbers are marked; with draws
// whose numbers no guess can hit (0) a turn marks nothing. Takes a few milliseconds and can't be stopped. The
// table is written in one change at the end: a failure leaves the old marks.
void hintGaiLv(Store& store, PeriodNo period);

}  // namespace lotmere

// The mark that figures of the draws are due (`用户模式`.`区间待统计`): 1 for the interval counts, 2 where an
// upgrade has brought new figures, too. Every draw keeps how many of its reds lie in 区间1 to 区间4, so
// whatever changes these intervals makes the stored counts wrong until they are counted anew (`recountDue`,
// history/draw_stats.hpp). The mark outlives a kill; the next start or command counts.
#pragma once

#include "store/store.hpp"

namespace lotmere {

// From now on every write through this connection that changes the members of 区间1 to 区间4 leaves the mark,
// in the change of the write itself: a click, restored factory values, the profile of another user. A write
// of the values that stand there already leaves none. `Store` calls it when it opens.
void watchIntervals(SQLite::Database& db);

// Whether the counts are due; and whether new figures are, too.
[[nodiscard]] bool intervalCountsDue(Store& store);
[[nodiscard]] bool newFiguresDue(Store& store);
// Takes the mark away; for the recount, inside its change.
void clearIntervalMark(Store& store);

}  // namespace lotmere

// The floors and baselines: the same work done plainly.
#pragma once

#include <cstdint>
#include <vector>

#include "store/store.hpp"
#include "tickets/selection.hpp"
#include "tickets/ticket_set.hpp"
#include "world.hpp"

namespace lotmere::bench {

// A plain prepared insert of tickets into an empty table, one transaction.
void insertPlainly(Store& store, const TicketSet& tickets);

// One plain read of the columns that a run needs, and one plain write-back of what a run changed: the rows
// that are gone deleted and the others updated, each by its ID, one transaction. `after` is what the run
// left.
struct PlainRow {
  std::int64_t id, seq, mark, shrink, score;
};
[[nodiscard]] std::vector<PlainRow> readPlainly(Store& store, PeriodNo period);
void writePlainly(Store& store, const std::vector<PlainRow>& before, const std::vector<PlainRow>& after);

// Every figure pass that is on, walked over the rows of the store: each row read, judged, and its mark and
// number updated one by one, the rejected ones deleted behind the walk. Returns the number of passes that
// ran.
int walkPasses(Store& store, PeriodNo period);

// The literal shrink: every later ticket compared with every centre. Returns the places of the centres.
[[nodiscard]] std::vector<std::uint32_t> shrinkLiterally(const TicketSet& tickets, int shared);

// The counting selects behind the two temperatures of each of the last `rows` draws: 2 times 33 a row.
void countTemperatures(Store& store, int rows);

}  // namespace lotmere::bench

// The last step of a run: the cover shrink, with the smart optimisation in front of it.
#pragma once

#include <cstdint>
#include <string>

#include "base/desk.hpp"
#include "reduction/cover_search.hpp"
#include "store/store.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {

// The line of a shrink in the running text, behind what stands there: "[保六型]缩水正在进行中．．．", and in its
// place the result.
class ShrinkLine {
 public:
  ShrinkLine(RunningText& text, int type);
  void begins();
  void ends(std::int64_t tickets);

 private:
  RunningText& text_;
  std::string base_;
  std::string caption_;
};

// Keeps the tickets of a cover, in stored order, with the marks of centres; a cover that didn't pass its
// check is told. Returns their number.
std::int64_t keepCover(Desk& desk, TicketSet& tickets, int type, const SmallCover& cover);

// Thins the tickets so that any two that stay share fewer than `type` of their seven numbers, blue included:
// visited in the order of creation, a ticket stays (a centre, `缩水标记` = type, `序号` from 1) unless an
// earlier centre shares `type` or more. With an `effort` of 1 to 9 it searches for fewer centres that cover
// the same tickets, and every blue (searchCover). Type 7 and any value that names no type only count. Calls
// the smart optimisation first, whatever the type; `smart` says whether that one is switched on. On a stop
// the tickets not reached stay as they were; of the search the best cover stays, which has reached all.
// Returns the number of centres.
std::int64_t shrinkCover(Store& store, Desk& desk, TicketSet& tickets, int type, bool smart, int effort = 0);

}  // namespace lotmere

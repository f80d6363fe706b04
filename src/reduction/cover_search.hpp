// Fewer tickets for the promise of the cover shrink.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "base/course.hpp"
#include "catalogue/catalogue.hpp"
#include "reduction/cover_check.hpp"
#include "reduction/search_run.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {

struct SmallCover {
  std::vector<std::uint32_t> kept;  // places of the tickets that stay, ascending
  // What the check found behind the search; with a fault `kept` holds what the plain shrink keeps.
  CoverFault fault = CoverFault::none;
};

// The plain shrink: the places of the tickets that share fewer than `shared` numbers with every one kept
// before, in their order.
[[nodiscard]] std::vector<std::uint32_t> plainCover(std::span<const Balls> tickets, int shared);

// A cover as it may be used: what is to be `kept` (places of tickets) where the check finds nothing wrong
// with it, else what the plain shrink keeps.
[[nodiscard]] SmallCover checkedCover(std::span<const Balls> tickets, std::vector<std::uint32_t> kept,
                                      int shared);

// Searches for few of the tickets such that each of them shares `shared` (3 to 6) or more of its seven
// numbers with one that stays, and every blue among them stays in one. Never more than the plain shrink
// keeps and one more for each blue that it loses.
//
// The work is counted in steps, so the same tickets and effort (kLeastEffort to kMostEffort) give the same
// cover on every machine; with the factory effort it takes at most some fifteen seconds for 100,000 tickets,
// with each effort more 1.7 times as long. A stop by the course ends it with the best cover so far. `better`
// is told of each smaller one. Tickets with a red twice or a number outside its range are compared as they
// stand, behind the search over the others.
[[nodiscard]] SmallCover searchCover(std::span<const Balls> tickets, int shared, int effort, Course& course,
                                     const BetterCover& better = {});

}  // namespace lotmere

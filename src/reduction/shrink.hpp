// The last step of a run: the cover shrink, with the smart optimisation in front of it.
#pragma once

#include <cstdint>

#include "base/desk.hpp"
#include "store/store.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {

// Thins the tickets so that any two that stay share fewer than `type` of their seven numbers, blue included:
// visited in the order of creation, a ticket stays (a centre, `缩水标记` = type, `序号` from 1) unless an
// earlier centre shares `type` or more. Type 7 and any value that names no type only count. Calls the smart
// optimisation first, whatever the type; `smart` says whether that one is switched on. On a stop the tickets not reached stay as they were. Returns the
// number of centres.
std::int64_t shrinkCover(Store& store, Desk& desk, TicketSet& tickets, int type, bool smart);

}  // namespace lotmere

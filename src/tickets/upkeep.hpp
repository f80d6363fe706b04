// Small operations on the ticket table as a whole.
#pragma once

#include "base/desk.hpp"
#include "base/outcome.hpp"
#include "game/game.hpp"
#include "store/store.hpp"

namespace lotmere {

// What becomes of tickets that stand where new ones are to come: the user is asked, or said it ahead of time.
enum class Existing { ask, keep, replace };

// The period of the first ticket in the order of the grid (by period, then running number); 0 with no ticket.
[[nodiscard]] PeriodNo firstTicketPeriod(Store& store);

// Deletes all tickets and adds a line to the running text.
void clearTickets(Store& store, Desk& desk);

// Asks first; deletes all tickets and says so. False, with nothing changed, unless the user answers that they
// go.
Outcome clearAllTickets(Store& store, Desk& desk);

}  // namespace lotmere

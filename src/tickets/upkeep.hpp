// Small operations on the ticket table as a whole.
#pragma once

#include "core/desk.hpp"
#include "core/game.hpp"
#include "core/store.hpp"

namespace lotmere {

// The period of the first ticket in the order of the grid (by period, then running number); 0 with no ticket.
[[nodiscard]] PeriodNo first_TicketPeriod(Store& store);

// Deletes the tickets of a period, or all with period 0, and adds a line to the running text.
void clear_Tickets(Store& store, Desk& desk, PeriodNo period);

// Asks first; deletes all tickets and says so. False when the person says no.
bool clear_AllTickets(Store& store, Desk& desk);

}  // namespace lotmere

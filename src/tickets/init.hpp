// The first step of the work: the selection expanded into all tickets of a period.
#pragma once

#include <cstdint>
#include <optional>

#include "base/desk.hpp"
#include "base/outcome.hpp"
#include "game/game.hpp"
#include "store/store.hpp"
#include "tickets/selection.hpp"
#include "tickets/ticket_set.hpp"
#include "tickets/upkeep.hpp"

namespace lotmere {

// Calls `visit(six, blues)` for every red six of the selection that holds all its red Dan, in lexicographic
// order; `blues` are the picked blues ascending. `visit` returns false to end it.
template <class Visit>
void expandSelection(const NumberSelection& selection, Visit&& visit);

struct InitResult {
  Outcome outcome = Outcome::refused;
  std::int64_t rows = 0;  // rows of the period at the end
};

// What becomes of the tickets that the period has already: what `existing` says, and where it says nothing
// and there are some, what the user answers. Nothing when they cancel.
[[nodiscard]] std::optional<Existing> settleExisting(Store& store, Desk& desk, PeriodNo period,
                                                     Existing existing);

// Removes the tickets of other periods, and those of the period unless they are kept. Gives the highest ID
// that the period had: those of new tickets go on behind it, behind rows removed here too. For use inside a
// change.
std::int64_t makeRoom(Store& store, PeriodNo period, Existing settled);

// Expands the selection into `日志表` for a period, lexicographic by reds, then by blue. Rows of other
// periods are removed. Rows of the same period are asked about before anything is changed, unless `existing`
// says it: they are removed or kept (then the new `序号` start at 1 all the same, and IDs go on behind the
// highest), or the user cancels. A cancel, a period below 1 and a selection without a ticket change nothing,
// rows of other periods included. Everything is one change of the store: a crash leaves the tables as they
// were; a stop keeps the rows written so far and tells nothing.
InitResult initTickets(Store& store, Desk& desk, PeriodNo period, Existing existing = Existing::ask);

template <class Visit>
void expandSelection(const NumberSelection& selection, Visit&& visit) {
  std::vector<int> pool;
  std::uint64_t dan = 0;
  for (int n = 1; n <= kRedCount; ++n) {
    if (selection.red[n] != PickState::none) pool.push_back(n);
    if (selection.red[n] == PickState::dan) dan |= std::uint64_t{1} << n;
  }
  std::vector<int> blues;
  for (int n = 1; n <= kBlueCount; ++n)
    if (selection.blue[n] != PickState::none) blues.push_back(n);

  const int count = static_cast<int>(pool.size());
  if (count < kRedsPerTicket) return;
  std::array<int, kRedsPerTicket> place{0, 1, 2, 3, 4, 5};
  for (;;) {
    Reds six{};
    std::uint64_t mask = 0;
    for (int i = 0; i < kRedsPerTicket; ++i) {
      six[i] = pool[place[i]];
      mask |= std::uint64_t{1} << six[i];
    }
    if ((mask & dan) == dan && !visit(six, blues)) return;
    int i = kRedsPerTicket - 1;
    while (i >= 0 && place[i] == count - kRedsPerTicket + i) --i;
    if (i < 0) return;
    ++place[i];
    for (int j = i + 1; j < kRedsPerTicket; ++j) place[j] = place[j - 1] + 1;
  }
}

}  // namespace lotmere

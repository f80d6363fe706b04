// Tickets as compound bets: what a betting slip takes as one line and pays as many tickets.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "game/game.hpp"

namespace lotmere {

// Every six of the reds with each of the blues.
struct CompoundBet {
  // Ascending and different; six reds that stand for themselves alone may come in any order and repeat.
  std::vector<int> reds;
  std::vector<int> blues;  // ascending and different

  friend bool operator==(const CompoundBet&, const CompoundBet&) = default;
};

// The reds of a joined bet at most; a full one holds 924 sixes.
inline constexpr int kMostJoinedReds = 12;

// How many tickets a bet is: those that expandBet() gives.
[[nodiscard]] std::int64_t countTickets(const CompoundBet& bet);

// Calls `use` with each ticket of a bet of six or more reds: six by six in ascending order, blue by blue.
void expandBet(const CompoundBet& bet, const std::function<void(const DrawNumbers&)>& use);

// Called now and then with the number of tickets that are settled; true, and from then on always true, ends
// the work.
using TicketsSettled = std::function<bool(std::int64_t)>;

// Bets that together are exactly these tickets, each as often as it stands: first the blues of a six in one
// bet, then seven to twelve reds of which every six stands there with the same blues; the search is quick
// and near the fewest, no more. What doesn't join stays a bet of its own; a ticket with a number outside the
// game stays as it is. The bets stand in the order of their first tickets. The same tickets in the same
// order give the same bets. Ended early it gives some of them.
[[nodiscard]] std::vector<CompoundBet> joinTickets(std::span<const DrawNumbers> tickets,
                                                   const TicketsSettled& settled = {});

}  // namespace lotmere

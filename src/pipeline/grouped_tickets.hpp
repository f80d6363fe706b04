// All tickets of a selection with one entry for those that no condition tells apart.
#pragma once

#include <array>
#include <bit>
#include <cstdint>

#include "game/game.hpp"
#include "pipeline/plan.hpp"
#include "tickets/init.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {

// The seventh place of 号码定位 alone looks at the blue, and tells right ones from wrong ones: so a six needs
// two entries at most, whatever its blues, and all 17,721,088 tickets need two million.
class GroupedTickets {
 public:
  GroupedTickets(const NumberSelection& selection, const PlaceTest& places);

  // The tickets of the selection.
  [[nodiscard]] std::int64_t size() const { return sixes_ * std::popcount(blues_); }

  // Adds all entries to a set, behind those that it has, sixes in the order of an expansion.
  void addTo(TicketSet& tickets) const;

  // Calls visit(reds, blues, six) for every six among the entries of a set from a place on: its reds, a bit n
  // for each blue n that stands with them, and its number in the expansion, from 0. `before` is how many
  // entries the set had in front of these when they were added. `visit` returns false to end it.
  template <class Visit>
  void forEachSix(const TicketSet& tickets, std::size_t from, std::size_t before, Visit&& visit) const;

  // The running number of a ticket in the expansion, from 1.
  [[nodiscard]] std::int32_t numberOf(std::int64_t six, int blue) const {
    const std::int64_t first = six * std::popcount(blues_);
    return static_cast<std::int32_t>(first + std::popcount(blues_ & ((2U << blue) - 1)));
  }

 private:
  NumberSelection selection_;
  std::uint32_t blues_ = 0;
  std::array<std::uint32_t, 2> kinds_{};  // the right blues and the wrong ones, without a kind that is empty
  std::size_t kind_count_ = 0;
  std::int64_t sixes_ = 0;
};

template <class Visit>
void GroupedTickets::forEachSix(const TicketSet& tickets, std::size_t from, std::size_t before,
                                Visit&& visit) const {
  for (std::size_t row = from; row < tickets.size();) {
    const std::size_t six = (tickets.origin[row] - before) / kind_count_;
    const Balls reds = tickets.balls[row] & kRedBytes;
    std::uint32_t blues = 0;
    for (; row < tickets.size() && (tickets.origin[row] - before) / kind_count_ == six; ++row)
      blues |= kinds_.at((tickets.origin[row] - before) % kind_count_);
    if (!visit(reds, blues, static_cast<std::int64_t>(six))) return;
  }
}

}  // namespace lotmere

#include "pipeline/grouped_tickets.hpp"

#include <bit>

namespace lotmere {

GroupedTickets::GroupedTickets(const NumberSelection& selection, const PlaceTest& places)
    : selection_(selection) {
  std::array<std::uint32_t, 2> kinds{};
  for (int blue = 1; blue <= kBlueCount; ++blue)
    if (selection.blue[blue] != PickState::none)
      kinds[places.wrong[kPlaceCount - 1][blue] != 0] |= 1U << blue;
  for (const std::uint32_t kind : kinds)
    if (kind != 0) kinds_.at(kind_count_++) = kind;
  blues_ = kinds[0] | kinds[1];
  expandSelection(selection_, [&](const Reds&, const std::vector<int>&) {
    ++sixes_;
    return true;
  });
}

void GroupedTickets::addTo(TicketSet& tickets) const {
  std::array<Balls, 2> like{};  // what stands beside the reds
  for (std::size_t kind = 0; kind < kind_count_; ++kind)
    like[kind] = static_cast<Balls>(std::countr_zero(kinds_[kind])) << 48 |
                 static_cast<Balls>(std::popcount(kinds_[kind]) - 1) << 56;
  tickets.reserve(tickets.size() + static_cast<std::size_t>(sixes_) * kind_count_);
  expandSelection(selection_, [&](const Reds& six, const std::vector<int>&) {
    for (std::size_t kind = 0; kind < kind_count_; ++kind) tickets.add(packBalls(six, 0) | like[kind]);
    return true;
  });
}

}  // namespace lotmere

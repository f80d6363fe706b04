#include "reduction/cover_check.hpp"

#include <algorithm>
#include <functional>

#include "reduction/cover.hpp"

namespace lotmere {

CoverFault checkCover(std::span<const Balls> tickets, std::span<const std::uint32_t> kept, int shared) {
  if (!kept.empty() && kept.back() >= tickets.size()) return CoverFault::not_of_the_set;
  if (std::ranges::adjacent_find(kept, std::greater_equal{}) != kept.end()) return CoverFault::not_of_the_set;
  OverlapMarks marks(kCodeCount, shared, OverlapMarks::Repeats::yes);
  std::uint32_t blues = 0;
  for (const std::uint32_t place : kept) {
    marks.mark(allCodes(tickets[place]));
    blues |= 1U << blueOf(tickets[place]);
  }
  auto next = kept.begin();
  for (std::size_t place = 0; place < tickets.size(); ++place) {
    if (next != kept.end() && *next == place) {
      ++next;  // one that stays needs no other, whatever stands in it
      continue;
    }
    const Balls ticket = tickets[place];
    const CodeList list = allCodes(ticket);
    if (!(isRegular(ticket) ? marks.any(list) : marks.any(list, timesInTicket(list, ticket))))
      return CoverFault::ticket_uncovered;
    if (blueOf(ticket) != 0 && (blues >> blueOf(ticket) & 1) == 0) return CoverFault::blue_lost;
  }
  return CoverFault::none;
}

}  // namespace lotmere

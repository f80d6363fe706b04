#include "reduction/cover.hpp"

#include <algorithm>
#include <bit>

namespace lotmere {

int count_Shared(Balls centre, Balls ticket) {
  const std::uint64_t reds = red_Mask(centre);
  int shared = blue_Of(centre) != 0 && blue_Of(centre) == blue_Of(ticket);
  for (const int red : reds_Of(ticket)) shared += static_cast<int>(reds >> red & 1);
  return shared;
}

CodeList red_Codes(Balls ticket) {
  CodeList list;
  for (std::uint64_t mask = red_Mask(ticket) >> 1; mask != 0; mask &= mask - 1)
    list.add(std::countr_zero(mask));
  return list;
}

CodeList all_Codes(Balls ticket) {
  CodeList list = red_Codes(ticket);
  if (const int blue = blue_Of(ticket); blue != 0) list.add(kRedCount + blue - 1);
  return list;
}

bool Cover::is_CoveredLiterally(Balls ticket) const {
  return std::any_of(centres_.begin(), centres_.end(),
                     [&](Balls centre) { return count_Shared(centre, ticket) >= shared_; });
}

bool Cover::take(Balls ticket) {
  const CodeList list = all_Codes(ticket);
  const bool repeats = list.count < CodeList::kMost;
  if (repeats ? is_CoveredLiterally(ticket) : marks_.any(list)) return false;
  marks_.mark(list);
  centres_.push_back(ticket);
  return true;
}

}  // namespace lotmere

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

OverlapMarks::Times times_InTicket(const CodeList& list, Balls ticket) {
  OverlapMarks::Times times{};
  const Reds reds = reds_Of(ticket);
  for (int place = 0; place < list.count; ++place) {
    const int code = list.codes[place];
    times[place] = code < kRedCount ? static_cast<int>(std::ranges::count(reds, code + 1)) : 1;
  }
  return times;
}

bool Cover::take(Balls ticket) {
  const CodeList list = all_Codes(ticket);
  const bool covered =
      list.count == CodeList::kMost ? marks_.any(list) : marks_.any(list, times_InTicket(list, ticket));
  if (!covered) marks_.mark(list);
  return !covered;
}

}  // namespace lotmere

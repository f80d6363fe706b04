#include "reduction/cover.hpp"

#include <algorithm>
#include <bit>

namespace lotmere {

int countShared(Balls centre, Balls ticket) {
  const std::uint64_t reds = redMask(centre);
  int shared = blueOf(centre) != 0 && blueOf(centre) == blueOf(ticket);
  for (const int red : redsOf(ticket)) shared += static_cast<int>(reds >> red & 1);
  return shared;
}

CodeList redCodes(Balls ticket) {
  CodeList list;
  for (std::uint64_t mask = redMask(ticket) >> 1; mask != 0; mask &= mask - 1)
    list.add(std::countr_zero(mask));
  return list;
}

CodeList allCodes(Balls ticket) {
  CodeList list = redCodes(ticket);
  if (const int blue = blueOf(ticket); blue != 0) list.add(kRedCount + blue - 1);
  return list;
}

OverlapMarks::Times timesInTicket(const CodeList& list, Balls ticket) {
  OverlapMarks::Times times{};
  const Reds reds = redsOf(ticket);
  for (int place = 0; place < list.count; ++place) {
    const int code = list.codes[place];
    times[place] = code < kRedCount ? static_cast<int>(std::ranges::count(reds, code + 1)) : 1;
  }
  return times;
}

int SixCover::take(Balls reds, std::uint32_t blues) {
  const CodeList list = redCodes(reds);
  if (reds_.any(list)) return 0;
  const std::uint32_t open = blues & ~blues_.marked(list);
  if (open == 0) return 0;
  const int blue = std::countr_zero(open);
  keep((reds & kRedBytes) | static_cast<Balls>(blue) << 48);
  return blue;
}

void SixCover::keep(Balls ticket) {
  const CodeList list = redCodes(ticket);
  reds_.mark(list);
  if (blueOf(ticket) != 0) blues_.mark(list, 1U << blueOf(ticket));
}

bool Cover::take(Balls ticket) {
  const CodeList list = allCodes(ticket);
  const bool covered =
      list.count == CodeList::kMost ? marks_.any(list) : marks_.any(list, timesInTicket(list, ticket));
  if (!covered) marks_.mark(list);
  return !covered;
}

}  // namespace lotmere

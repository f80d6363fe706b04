#include "reduction/shrink.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "core/text.hpp"
#include "reduction/cover.hpp"
#include "reduction/smart.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kBlock = 2048;

// The loop proper. Kept tickets move down to the front; with a stop the tickets behind the last one visited
// move down too.
std::int64_t keep_Centres(Desk& desk, TicketSet& tickets, int type) {
  Job job(desk, static_cast<std::int64_t>(tickets.size()), Job::Stop::possible);
  Cover cover(type);
  std::size_t kept = 0;
  std::size_t row = 0;
  // A flag that is up already ends the work behind the first comparison, as a flag that goes up later ends it
  // behind the current block.
  const std::size_t limit = desk.stop_Requested() ? std::min<std::size_t>(2, tickets.size()) : tickets.size();
  for (; row < limit; ++row) {
    if (row % kBlock == 0 && row != 0 && job.advance(static_cast<std::int64_t>(row))) break;
    if (!cover.take(tickets.balls[row])) continue;
    tickets.move_Row(row, kept);
    tickets.shrink[kept] = static_cast<std::int8_t>(type);
    ++kept;
    tickets.seq[kept - 1] = static_cast<std::int32_t>(kept);
  }
  const auto centres = static_cast<std::int64_t>(kept);
  for (; row < tickets.size(); ++row) tickets.move_Row(row, kept++);
  tickets.truncate(kept);
  return centres;
}

}  // namespace

std::string shrink_Caption(int type) {
  constexpr std::array<const char*, 5> captions = {"保三型", "保四型", "保五型", "保六型", "保七型"};
  return captions[static_cast<std::size_t>(type - kSmallestShrink)];
}

std::int64_t shrink_Cover(Store& store, Desk& desk, TicketSet& tickets, int type) {
  // A value below the smallest type names none; taking it for a type would delete tickets that nobody asked
  // to delete.
  if (type < kSmallestShrink || type > kLargestShrink) type = kLargestShrink;
  optimise_Smart(store, desk, tickets, type);
  const std::string base = desk.running_Text().text();
  const auto tell = [&](const char* what, std::int64_t count) {
    desk.running_Text().set_Line(base,
                                 fmt::format("[{}]{}{} 注", shrink_Caption(type), what, to_QuanJiao(count)));
  };
  if (type == kLargestShrink) {
    tell("缩水后余：", static_cast<std::int64_t>(tickets.size()));
    return 0;
  }
  std::int64_t centres = 0;
  if (tickets.size() > 0) {
    desk.running_Text().set_Line(base, fmt::format("[{}]缩水正在进行中．．．", shrink_Caption(type)));
    centres = keep_Centres(desk, tickets, type);
  }
  tell("缩水后余：", centres);
  return centres;
}

}  // namespace lotmere

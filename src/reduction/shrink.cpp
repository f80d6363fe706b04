#include "reduction/shrink.hpp"

#include <fmt/format.h>

#include "base/text.hpp"
#include "catalogue/catalogue.hpp"
#include "reduction/cover.hpp"
#include "reduction/cover_search.hpp"
#include "reduction/smart.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kBlock = 2048;

void markCentre(TicketSet& tickets, std::size_t place, int type) {
  tickets.shrink[place] = static_cast<std::int8_t>(type);
  tickets.seq[place] = static_cast<std::int32_t>(place + 1);
}

// Moves the tickets from `row` on behind the first `kept` and ends the set there.
void closeGap(TicketSet& tickets, std::size_t kept, std::size_t row) {
  for (; row < tickets.size(); ++row) tickets.moveRow(row, kept++);
  tickets.truncate(kept);
}

// With the stop asked for beforehand the first ticket still becomes a centre, and one ticket is compared with
// it.
std::int64_t keepFirstCentre(TicketSet& tickets, int type) {
  markCentre(tickets, 0, type);
  const bool covered = tickets.size() > 1 && countShared(tickets.balls[0], tickets.balls[1]) >= type;
  closeGap(tickets, 1, covered ? 2 : 1);
  return 1;
}

// Whether imported tickets stand among them that repeat a red. Ends early when the user asks to stop.
OverlapMarks::Repeats findRepeats(const TicketSet& tickets, CourseLeg& job) {
  constexpr std::size_t block = 16 * kBlock;
  for (std::size_t row = 0; row < tickets.size(); ++row) {
    if (!isRegular(tickets.balls[row])) return OverlapMarks::Repeats::yes;
    if (row % block == 0 && row != 0 && job.advance(0)) break;
  }
  return OverlapMarks::Repeats::no;
}

// The loop proper. Kept tickets move down to the front; with a stop the tickets not reached move down behind
// them.
std::int64_t keepCentres(Desk& desk, TicketSet& tickets, int type) {
  CourseLeg job(desk.course(), static_cast<std::int64_t>(tickets.size()), Course::Stop::possible);
  const OverlapMarks::Repeats repeats = findRepeats(tickets, job);
  if (desk.course().stopRequested()) return keepFirstCentre(tickets, type);
  Cover cover(type, repeats);
  std::size_t kept = 0;
  std::size_t row = 0;
  for (; row < tickets.size(); ++row) {
    if (row % kBlock == 0 && row != 0 && job.advance(static_cast<std::int64_t>(row))) break;
    if (!cover.take(tickets.balls[row])) continue;
    tickets.moveRow(row, kept);
    markCentre(tickets, kept++, type);
  }
  const auto centres = static_cast<std::int64_t>(kept);
  closeGap(tickets, kept, row);
  return centres;
}

// Keeps as few centres as the search finds.
std::int64_t keepFewer(Desk& desk, TicketSet& tickets, int type, int effort) {
  const StatusScope status(desk);
  const auto show = [&](std::size_t size) {
    desk.showStatus(
        fmt::format("{}：目前最少 {} 注", kFewerName, toFullWidth(static_cast<std::int64_t>(size))));
  };
  return keepCover(desk, tickets, type, searchCover(tickets.balls, type, effort, desk.course(), show));
}

}  // namespace

std::int64_t keepCover(Desk& desk, TicketSet& tickets, int type, const SmallCover& cover) {
  if (cover.fault != CoverFault::none) {
    desk.showStatus({});
    desk.tell(fmt::format("{}的结果没有通过检查，已改用普通缩水的结果。", kFewerName), Tone::error);
  }
  std::size_t kept = 0;
  for (const std::uint32_t place : cover.kept) {
    tickets.moveRow(place, kept);
    markCentre(tickets, kept++, type);
  }
  tickets.truncate(kept);
  return static_cast<std::int64_t>(kept);
}

ShrinkLine::ShrinkLine(RunningText& text, int type)
    : text_(text), base_(text.text()), caption_(shrinkCaption(type)) {}

void ShrinkLine::begins() { text_.setLine(base_, fmt::format("[{}]缩水正在进行中．．．", caption_)); }

void ShrinkLine::ends(std::int64_t tickets) {
  text_.setLine(base_, fmt::format("[{}]缩水后余：{} 注", caption_, toFullWidth(tickets)));
}

std::int64_t shrinkCover(Store& store, Desk& desk, TicketSet& tickets, int type, bool smart, int effort) {
  // A value below the smallest type names none; taking it for a type would delete tickets that nobody asked
  // to delete.
  if (type < kSmallestShrink || type > kLargestShrink) type = kLargestShrink;
  optimiseSmart(store, desk, tickets, type, smart);
  ShrinkLine line(desk.runningText(), type);
  if (type == kLargestShrink) {
    line.ends(static_cast<std::int64_t>(tickets.size()));
    return 0;
  }
  std::int64_t centres = 0;
  if (tickets.size() > 0) {
    line.begins();
    centres = effort > 0 && !desk.course().stopRequested() ? keepFewer(desk, tickets, type, effort)
                                                           : keepCentres(desk, tickets, type);
  }
  line.ends(centres);
  return centres;
}

}  // namespace lotmere

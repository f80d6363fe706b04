#include "reduction/smart.hpp"

#include <algorithm>
#include <tuple>

#include "catalogue/catalogue.hpp"
#include "store/periods.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kBlock = 4096;

DrawMatrix loadDraws(Store& store, PeriodNo period) {
  DrawMatrix matrix{};
  const auto draws = drawsBefore(store, period, static_cast<int>(matrix.size()));
  // The draws end at the last row, whatever their number.
  std::size_t row = matrix.size() - draws.size();
  for (const StoredDraw& draw : draws) {
    std::copy(draw.numbers.reds.begin(), draw.numbers.reds.end(), matrix[row].begin());
    matrix[row].back() = draw.numbers.blue;
    ++row;
  }
  return matrix;
}

// Scores are small numbers, so a count of each tells which one the last ticket to clear has; among the
// tickets with that score the running number decides. A stop leaves scores as they were stored, and those may
// be anything: one outside shares a bin with the nearest one inside.
void clearLowerScores(TicketSet& tickets) {
  constexpr std::int32_t last_bin = 464;
  const auto bin_of = [&](std::size_t row) { return std::clamp(tickets.score[row], 0, last_bin); };
  std::array<std::size_t, last_bin + 1> counts{};
  for (std::size_t row = 0; row < tickets.size(); ++row) ++counts[bin_of(row)];
  std::size_t cleared = (tickets.size() * 3 + 4) / 5;
  std::int32_t edge_bin = 0;
  for (; cleared > counts[edge_bin]; ++edge_bin) cleared -= counts[edge_bin];

  std::vector<std::uint32_t> edge;
  for (std::size_t row = 0; row < tickets.size(); ++row) {
    if (bin_of(row) == edge_bin) edge.push_back(static_cast<std::uint32_t>(row));
    if (bin_of(row) < edge_bin) tickets.score[row] = 0;
  }
  const auto end = edge.begin() + static_cast<std::ptrdiff_t>(cleared);
  const auto before = [&](std::uint32_t x, std::uint32_t y) {
    return std::tie(tickets.score[x], tickets.seq[x], x) < std::tie(tickets.score[y], tickets.seq[y], y);
  };
  // Rows mostly come in the order of their running numbers.
  if (!std::is_sorted(edge.begin(), edge.end(), before))
    std::nth_element(edge.begin(), end, edge.end(), before);
  std::for_each(edge.begin(), end, [&](std::uint32_t row) { tickets.score[row] = 0; });
}

constexpr std::uint64_t kEachByte = 0x0101'0101'0101'0101;

// The sum of the bytes of a word, up to 255.
int sumBytes(std::uint64_t word) { return static_cast<int>(word * kEachByte >> 56); }

// 1 in each byte that is 0 in the word, 0 in the others.
std::uint64_t markZeroBytes(std::uint64_t word) {
  constexpr std::uint64_t low = 0x7F7F'7F7F'7F7F'7F7F;
  return ~(((word & low) + low) | word | low) >> 7;
}

}  // namespace

SmartScore::SmartScore(const DrawMatrix& draws) {
  const auto& newest = draws.front();
  for (int place = 0; place < kPlaces; ++place) {
    newest_word_ |= static_cast<Balls>(newest[place] & 0x7F) << (8 * place);
    for (std::size_t a = 0; a + 1 < draws.size(); ++a) {
      for (int b = 0; b < kPlaces; ++b) {
        const int number = draws[a][b] - draws[a + 1][b] + newest[place];
        if (number >= 0 && number <= kRedCount) ++agreeing_[place][number];
      }
    }
  }
}

// Two numbers of a ticket differ as those of the newest draw do when both lie equally far from them. A
// distance is never 0: the high bits keep a byte from borrowing from the next.
Balls SmartScore::distances(Balls ticket) const {
  constexpr Balls high = 0x8080'8080'8080'8080;
  return (ticket | high) - newest_word_;
}

int SmartScore::scoreReds(Balls ticket) const {
  constexpr Balls used = 0x00FF'FFFF'FFFF'FFFF;
  const Balls own = distances(ticket) & kRedBytes;
  std::uint64_t equal = 0;
  // Turned by one to three of the seven places, the six bytes meet all their pairs; the empty one meets none.
  for (int places = 1; places <= kPlaces / 2; ++places) {
    const Balls turned = (own >> (8 * places) | own << (8 * (kPlaces - places))) & used;
    equal += markZeroBytes((own ^ turned) | ~used);
  }
  // The comparison has one slot more than there are differences, and it always agrees.
  int score = 1 + sumBytes(equal);
  for (int place = 0; place < kRedsPerTicket; ++place)
    score += agreeing_[place][ticket >> (8 * place) & 0xFF];
  return score;
}

int SmartScore::scoreBlue(Balls ticket) const {
  constexpr int blue = kRedsPerTicket;
  const Balls own = distances(ticket);
  const Balls of_blue = (own >> (8 * blue) & 0xFF) * kEachByte;
  return agreeing_[blue][ticket >> (8 * blue) & 0xFF] + sumBytes(markZeroBytes((own ^ of_blue) | ~kRedBytes));
}

void optimiseSmart(Store& store, Desk& desk, TicketSet& tickets, int type, bool used) {
  const std::string base = desk.runningText().text();
  if (!used || type >= kLargestShrink) {
    desk.runningText().setLine(base, "[ 智能优化 ] <未使用这个条件>");
    return;
  }
  if (tickets.size() == 0) return;
  CourseLeg job(desk.course(), static_cast<std::int64_t>(tickets.size()), Course::Stop::possible);
  desk.runningText().setLine(base, "[ 智能优化 ]优化正在进行中．．．");
  const SmartScore smart(loadDraws(store, tickets.period));
  // Tickets with the same reds stand together and share what those add to the score.
  Balls reds = 0;
  int of_reds = smart.scoreReds(reds);
  for (std::size_t row = 0; row < tickets.size(); ++row) {
    if (row % kBlock == 0 && job.advance(static_cast<std::int64_t>(row))) break;
    const Balls ticket = tickets.balls[row];
    if ((ticket & kRedBytes) != reds) of_reds = smart.scoreReds(reds = ticket & kRedBytes);
    tickets.score[row] = of_reds + smart.scoreBlue(ticket);
  }
  clearLowerScores(tickets);
  if (!desk.course().stopRequested()) desk.runningText().setLine(base, "[ 智能优化 ] 完 成 ");
}

}  // namespace lotmere

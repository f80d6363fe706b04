#include "pipeline/past_draws.hpp"

#include <algorithm>
#include <bit>

#include "game/metrics.hpp"
#include "reduction/cover.hpp"
#include "store/periods.hpp"

namespace lotmere {
namespace {

constexpr int kToleratedHits = 2;

// How a ticket's sums are made, in the order of the cells; those that a draw keeps follow it.
constexpr std::array<NumberValue, kKeptSums> kSums = {
    NumberValue::tail, NumberValue::digit_root, NumberValue::big,   NumberValue::small,
    NumberValue::odd,  NumberValue::even,       NumberValue::number};

}  // namespace

SumFamilies::SumFamilies(const ValueArray& cells, std::span<const PastDraw> before) {
  for (std::size_t k = 0; k < kSums.size(); ++k) {
    if (cells[k] <= 0) continue;
    const RedTable& table = numberTable(kSums[k]);
    for (int n = 0; n <= kRedCount; ++n) words_[n] |= static_cast<Sums>(table[n]) << (8 * k);
    const auto compare = [&](std::size_t draw, int sum) {
      if (sum < 0 || sum > 0xFF) return;  // no ticket has such a sum
      sums_[draw] |= static_cast<Sums>(sum) << (8 * k);
      compared_[draw] |= Sums{0x80} << (8 * k);
    };
    if (!before.empty()) compare(0, sumOf(table, before.back().numbers.reds));
    if (before.size() > 1) compare(1, before[before.size() - 2].sums[k]);
  }
}

bool SumFamilies::keeps(const Reds& reds) const {
  constexpr Sums low = 0x7F7F'7F7F'7F7F'7F7F;
  Sums sums = 0;
  for (const int red : reds) sums += words_[red];
  Sums agreeing = 0;
  for (std::size_t draw = 0; draw < sums_.size(); ++draw) {
    const Sums differing = sums ^ sums_[draw];
    // The top bit of each byte that is 0.
    agreeing |= ~(((differing & low) + low) | differing) & compared_[draw];
  }
  return std::popcount(agreeing) <= kToleratedHits;
}

DrawMatch::DrawMatch(int match)
    : match_(match), marks_(kRedCount, std::clamp(match, 1, kRedsPerTicket), OverlapMarks::Repeats::yes) {}

void DrawMatch::add(Balls draw) {
  marks_.mark(redCodes(draw));
  is_empty_ = false;
}

bool DrawMatch::matches(Balls ticket) const {
  if (match_ > kRedsPerTicket) return false;
  if (match_ < 1) return !is_empty_;
  const CodeList reds = redCodes(ticket);
  return reds.count == kRedsPerTicket ? marks_.any(reds) : marks_.any(reds, timesInTicket(reds, ticket));
}

}  // namespace lotmere

#include "pipeline/past_draws.hpp"

#include <algorithm>

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
    Active& family = families_.emplace_back(Active{&numberTable(kSums[k])});
    if (!before.empty()) family.sums[0] = sumOf(*family.table, before.back().numbers.reds);
    if (before.size() > 1) family.sums[1] = before[before.size() - 2].sums[k];
  }
}

bool SumFamilies::keeps(const Reds& reds) const {
  int hits = 0;
  for (const Active& family : families_) {
    const int sum = sumOf(*family.table, reds);
    hits += sum == family.sums[0] || sum == family.sums[1];
  }
  return hits <= kToleratedHits;
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

#include "reduction/blue_by_blue.hpp"

#include <algorithm>
#include <numeric>

#include "reduction/weighted_search.hpp"

namespace lotmere {
namespace {

constexpr int kRounds = 3;

// Each six covers itself and those that share five reds with it.
CoverMatrix makeSixMatrix(const CoverTickets& tickets) {
  CoverMatrix matrix;
  const RedPlanes planes(tickets.masks());
  Bits itself, one_less;
  for (std::uint32_t six = 0; six < tickets.sixCount(); ++six) {
    planes.share(tickets.masks()[six], kRedsPerTicket, itself, one_less);
    matrix.near.add(six);
    forEachBit(one_less, [&](std::uint32_t other) { matrix.near.add(other); });
    matrix.near.endList();
    matrix.cost.push_back(1);
  }
  return matrix;
}

}  // namespace

BlueByBlue::BlueByBlue(const CoverTickets& tickets)
    : tickets_(tickets),
      matrix_(makeSixMatrix(tickets)),
      kept_(static_cast<std::size_t>(tickets.blueCount())),
      keepers_(tickets.sixCount()) {}

std::vector<std::uint32_t> BlueByBlue::neededOf(int blue) const {
  std::vector<std::uint32_t> needed;
  for (int other = 0; other < tickets_.blueCount(); ++other) {
    if (other == blue) continue;
    std::vector<std::uint8_t> covered(tickets_.sixCount());
    for (const std::uint32_t six : kept_[other])
      for (const std::uint32_t near : matrix_.near[six]) covered[near] = 1;
    for (const std::uint32_t six : kept_[blue])
      if (keepers_[six] == 1 && has(six, other) && !covered[six]) needed.push_back(six);
  }
  std::ranges::sort(needed);
  needed.erase(std::unique(needed.begin(), needed.end()), needed.end());
  return needed;
}

bool BlueByBlue::searchBlue(SearchRun& run, int blue, std::int64_t work, bool first_round) {
  std::vector<std::uint32_t>& kept = kept_[blue];
  WeightedSearch::Limits limits;
  if (!first_round) limits.pinned = neededOf(blue);
  for (const std::uint32_t six : kept) --keepers_[six];
  for (std::uint32_t six = 0; six < tickets_.sixCount(); ++six) {
    if (!has(six, blue)) limits.banned.push_back(six);
    if (!has(six, blue) || keepers_[six] != 0) limits.free.push_back(six);
  }
  WeightedSearch search(matrix_, ++seed_, limits);
  const bool covered = search.begin(run, kept);
  if (covered) {
    search.improve(run, run.done() + work, 1);
    kept = search.best();
    // A blue whose tickets are all covered by others keeps one all the same.
    for (std::uint32_t six = 0; kept.empty(); ++six)
      if (has(six, blue)) kept.push_back(six);
  }
  for (const std::uint32_t six : kept) ++keepers_[six];
  return covered;
}

void BlueByBlue::offer(BestCover& best) const {
  std::vector<std::uint32_t> cover;
  for (int blue = 0; blue < tickets_.blueCount(); ++blue)
    for (const std::uint32_t six : kept_[blue]) cover.push_back(tickets_.at(six, blue));
  best.offer(std::move(cover));
}

void BlueByBlue::run(SearchRun& run, std::int64_t until, BestCover& best) {
  const int blues = tickets_.blueCount();
  run.spend(static_cast<std::int64_t>(matrix_.near.entries()));
  for (int round = 0; round < kRounds; ++round) {
    const std::int64_t budget = (until - run.done()) / (round + 1 < kRounds ? 2 : 1);
    for (int blue = 0; blue < blues; ++blue) {
      if (round > 0 && (run.over() || best.isEnough())) return;
      if (!searchBlue(run, blue, budget / blues, round == 0)) return;
      if (round > 0) offer(best);
    }
    if (round == 0) offer(best);
  }
}

}  // namespace lotmere

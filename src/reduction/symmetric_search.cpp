#include "reduction/symmetric_search.hpp"

#include <algorithm>
#include <memory>

#include "reduction/weighted_search.hpp"

namespace lotmere {
namespace {

// The search with one symmetry, which goes on where it stopped.
struct Attempt {
  Attempt(const CoverTickets& tickets, const Symmetry& symmetry) : orbits(findOrbits(tickets, symmetry)) {}

  // Gives the tickets of its cover to `best`.
  void offer(BestCover& best) const {
    std::vector<std::uint32_t> cover;
    for (const std::uint32_t orbit : search->best())
      for (const std::uint32_t ticket : orbits.tickets[orbit]) cover.push_back(ticket);
    best.offer(std::move(cover));
  }

  Orbits orbits;
  CoverMatrix matrix;
  std::unique_ptr<WeightedSearch> search;
};
using Attempts = std::vector<std::unique_ptr<Attempt>>;

void improve(Attempt& attempt, SearchRun& run, std::int64_t work, BestCover& best) {
  const auto before = attempt.search->bestCost();
  attempt.search->improve(run, run.done() + work, static_cast<std::int64_t>(best.enough()),
                          [&](std::size_t size) { best.tell(size); });
  if (attempt.search->bestCost() < before) attempt.offer(best);
}

// The cheapest covers first, then those that were found with less work: what stays of the attempts is at
// most `count` of them with at most `most` entries together.
void keepBestOf(Attempts& attempts, std::size_t count, std::size_t most) {
  std::ranges::stable_sort(attempts, {}, [](const auto& attempt) { return attempt->search->bestCost(); });
  std::size_t entries = 0;
  std::size_t kept = 0;
  for (; kept < attempts.size() && kept < count; ++kept) {
    entries += attempts[kept]->matrix.near.entries();
    if (kept > 0 && entries > most) break;
  }
  attempts.resize(kept);
}

}  // namespace

std::size_t estimateEntries(const CoverTickets& tickets, int shared) {
  constexpr std::uint32_t samples = 64;
  const RedPlanes planes(tickets.masks());
  Bits enough, one_less;
  std::size_t entries = 0;
  for (std::uint32_t i = 0; i < samples; ++i) {
    const auto ticket = static_cast<std::uint32_t>(std::uint64_t{tickets.size()} * i / samples);
    planes.share(tickets.masks()[tickets.six(ticket)], shared, enough, one_less);
    forEachBit(enough,
               [&](std::uint32_t six) { entries += tickets.firstOf(six + 1) - tickets.firstOf(six); });
    forEachBit(one_less, [&](std::uint32_t six) {
      entries += tickets.at(six, tickets.blue(ticket)) != CoverTickets::kNone;
    });
  }
  return entries * tickets.size() / samples;
}

bool searchSymmetric(const CoverTickets& tickets, int shared, const std::vector<Symmetry>& symmetries,
                     std::size_t most, SearchRun& run, std::int64_t until, BestCover& best) {
  const std::size_t entries = estimateEntries(tickets, shared);
  const std::size_t degree = entries / std::max(tickets.size(), 1U);
  const std::int64_t budget = until - run.done();
  Attempts attempts;
  std::int64_t share = budget / 3 / static_cast<std::int64_t>(symmetries.size());
  for (const Symmetry& symmetry : symmetries) {
    if (run.over() || run.done() >= until || best.isEnough()) break;
    auto attempt = std::make_unique<Attempt>(tickets, symmetry);
    const std::size_t columns = attempt->orbits.tickets.count();
    const std::size_t expected = columns * std::min(degree, columns);
    if (expected > most) continue;
    auto matrix = makeMatrix(tickets, shared, attempt->orbits, expected, most, run);
    if (!matrix) continue;
    attempt->matrix = std::move(*matrix);
    attempt->search = std::make_unique<WeightedSearch>(attempt->matrix, attempts.size() + 1);
    if (!attempt->search->begin(run)) break;
    attempt->offer(best);
    improve(*attempt, run, share, best);
    attempts.push_back(std::move(attempt));
    std::size_t held = 0;
    for (const auto& other : attempts) held += other->matrix.near.entries();
    if (held > most) keepBestOf(attempts, attempts.size() - 1, most / 2);
  }
  if (attempts.empty()) return false;
  for (std::size_t count = 4; count > 0; count /= 2) {
    keepBestOf(attempts, count, most);
    // A third of what is left for each round but the last.
    const std::int64_t round = (until - run.done()) / (count > 1 ? 3 : 1);
    for (const auto& attempt : attempts)
      if (!run.over() && !best.isEnough())
        improve(*attempt, run, round / static_cast<std::int64_t>(attempts.size()), best);
  }
  return true;
}

}  // namespace lotmere

#include "reduction/symmetric_search.hpp"

#include <algorithm>
#include <bit>
#include <iterator>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

#include "reduction/weighted_search.hpp"

namespace lotmere {
namespace {

// The sets of tickets of one symmetry and what they cover, made when they are asked for.
class Group {
 public:
  Group(const CoverTickets& tickets, int shared, Symmetry symmetry)
      : tickets_(tickets), shared_(shared), symmetry_(std::move(symmetry)) {}

  // Nothing when the run ended before they were made.
  [[nodiscard]] const CoverMatrix* matrix(SearchRun& run) {
    if (!matrix_) {
      orbits_ = findOrbits(tickets_, symmetry_);
      matrix_ = makeMatrix(tickets_, shared_, orbits_, expected_, ~std::size_t{0}, run);
    }
    return matrix_ ? &*matrix_ : nullptr;
  }
  [[nodiscard]] const Orbits& orbits() const { return orbits_; }
  [[nodiscard]] std::size_t entries() const { return matrix_ ? matrix_->near.entries() : 0; }
  // About how many entries it has.
  [[nodiscard]] std::size_t expected() const { return expected_; }
  void estimate(std::size_t degree) {
    const std::size_t columns = findOrbits(tickets_, symmetry_).tickets.count();
    expected_ = columns * std::min(degree, columns);
  }
  void drop() {
    matrix_.reset();
    orbits_ = {};
  }

 private:
  const CoverTickets& tickets_;
  int shared_;
  Symmetry symmetry_;
  std::size_t expected_ = 0;
  Orbits orbits_;
  std::optional<CoverMatrix> matrix_;
};

// The search over them, which goes on where it stopped. One that finds nothing better for long begins again
// elsewhere: what it ends with depends on chance too.
class Attempt {
 public:
  // Begins with seeds from `seed` on.
  Attempt(std::shared_ptr<Group> group, std::uint64_t seed)
      : group_(std::move(group)),
        seed_(seed),
        patience_(static_cast<std::int64_t>(std::max(group_->expected(), kLeastEntries)) * kPatienceAnEntry) {
  }

  [[nodiscard]] const std::shared_ptr<Group>& group() const { return group_; }
  // Gives back the memory of its search; the next one begins anew.
  void rest() { search_.reset(); }
  // Of its best cover.
  [[nodiscard]] std::int64_t cost() const { return cost_; }

  void improve(SearchRun& run, std::int64_t work, BestCover& best) {
    const std::int64_t until = run.done() + work;
    while (run.done() < until && !run.over() && !best.isEnough()) {
      if (!search_ || run.done() - search_->bestAt() >= patience_) {
        const CoverMatrix* const matrix = group_->matrix(run);
        if (matrix == nullptr) return;
        search_ = std::make_unique<WeightedSearch>(*matrix, seed_++);
        if (!search_->begin(run)) return;
        take(best);
      }
      search_->improve(run, std::min(until, search_->bestAt() + patience_),
                       static_cast<std::int64_t>(best.enough()), [&](std::size_t size) { best.tell(size); });
      take(best);
    }
  }

 private:
  static constexpr std::size_t kLeastEntries = 20'000;
  static constexpr std::int64_t kPatienceAnEntry = 20'000;

  void take(BestCover& best) {
    if (search_->bestCost() >= cost_) return;
    cost_ = search_->bestCost();
    std::vector<std::uint32_t> cover;
    for (const std::uint32_t orbit : search_->best())
      for (const std::uint32_t ticket : group_->orbits().tickets[orbit]) cover.push_back(ticket);
    best.offer(std::move(cover));
  }

  std::shared_ptr<Group> group_;
  std::uint64_t seed_;
  std::int64_t patience_;
  std::unique_ptr<WeightedSearch> search_;
  std::int64_t cost_ = std::numeric_limits<std::int64_t>::max();
};
using Attempts = std::vector<std::unique_ptr<Attempt>>;

constexpr std::size_t kFinalists = 4;
constexpr std::uint64_t kOtherSeeds = 1000;

// Leaves the `count` attempts with the cheapest covers, the earlier ones of equals.
void keepBestOf(Attempts& attempts, std::size_t count) {
  std::ranges::stable_sort(attempts, {}, [](const auto& attempt) { return attempt->cost(); });
  if (attempts.size() > count) attempts.resize(count);
}

// Gives each attempt its share of work. Of the matrices only those stay that hold at most `most` entries
// together; the others are made again when they are needed.
void improveAll(const Attempts& attempts, std::size_t most, SearchRun& run, std::int64_t work,
                BestCover& best) {
  const std::int64_t share = work / static_cast<std::int64_t>(attempts.size());
  for (const auto& attempt : attempts) {
    if (run.over() || best.isEnough()) return;
    const auto wanted = [&] {
      std::size_t entries = attempt->group()->entries() == 0 ? attempt->group()->expected() : 0;
      for (const auto& other : attempts) entries += other->group()->entries();
      return entries;
    };
    for (const auto& other : attempts) {
      if (wanted() <= most) break;
      if (other->group() == attempt->group()) continue;
      for (const auto& same : attempts)
        if (same->group() == other->group()) same->rest();
      other->group()->drop();
    }
    attempt->improve(run, share, best);
  }
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
  const std::size_t degree = estimateEntries(tickets, shared) / std::max(tickets.size(), 1U);
  Attempts attempts;
  for (const Symmetry& symmetry : symmetries) {
    auto group = std::make_shared<Group>(tickets, shared, symmetry);
    group->estimate(degree);
    if (group->expected() <= most) attempts.push_back(std::make_unique<Attempt>(std::move(group), 1));
  }
  if (attempts.empty()) return false;
  improveAll(attempts, most, run, (until - run.done()) / 4, best);
  constexpr std::size_t rounds[] = {8, 4, 2, 1};
  for (std::size_t round = 0; round < std::size(rounds); ++round) {
    if (run.over() || best.isEnough()) break;
    keepBestOf(attempts, rounds[round]);
    if (rounds[round] == kFinalists)  // chance takes part too: they get company that begins elsewhere
      for (std::size_t i = 0, finalists = attempts.size(); i < finalists; ++i)
        attempts.push_back(std::make_unique<Attempt>(attempts[i]->group(), kOtherSeeds));
    improveAll(attempts, most, run,
               (until - run.done()) / static_cast<std::int64_t>(std::size(rounds) - round), best);
  }
  return true;
}

}  // namespace lotmere

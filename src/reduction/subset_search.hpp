// The search for large sets of tickets: a greedy start and the weighted local search over SubsetGains.
#pragma once

#include <cstdint>
#include <vector>

#include "reduction/cover_tickets.hpp"
#include "reduction/search_run.hpp"
#include "reduction/subset_gains.hpp"

namespace lotmere {

// The same steps as WeightedSearch, for sets whose lists of neighbours would take too much memory: which
// tickets a kept one covers is found anew by RedPlanes, and gains are asked for where they are needed. At
// most some thousand tickets are looked at to close one open row.
class SubsetSearch {
 public:
  // The tickets must outlive the search; `shared` is 3 to 6.
  SubsetSearch(const CoverTickets& tickets, int shared, std::uint64_t seed);

  // Begins anew with the ticket that covers most, and so on; ties fall at random. False when the run ended
  // before all were covered and every blue was kept.
  bool begin(SearchRun& run);
  // Begins anew with a cover.
  void begin(SearchRun& run, const std::vector<std::uint32_t>& cover);
  // Searches on until the run's work reaches `until`, the run is over, or `enough` tickets or fewer are kept.
  void improve(SearchRun& run, std::int64_t until, std::int64_t enough, const BetterCover& better = {});

  [[nodiscard]] const std::vector<std::uint32_t>& best() const { return best_; }
  [[nodiscard]] std::int64_t bestAt() const { return best_at_; }

 private:
  static constexpr std::uint32_t kNone = CoverTickets::kNone;

  struct Row {
    std::uint32_t count = 0;    // kept tickets that cover it
    std::uint32_t keepers = 0;  // and the exclusive or of their numbers
    std::int32_t weight = 1;
    std::uint32_t open_place = kNone;
  };

  void clear();
  template <class Visit>
  void forCovered(std::uint32_t ticket, Visit&& visit);
  void add(std::uint32_t ticket);
  void remove(std::uint32_t ticket);
  void openRow(std::uint32_t row);
  void closeRow(std::uint32_t row);
  [[nodiscard]] std::int32_t gainOf(std::uint32_t ticket) const;
  void collectFor(std::uint32_t row);
  [[nodiscard]] std::uint32_t cheapestLoss(std::uint32_t spared) const;
  [[nodiscard]] std::uint32_t bestForOpen();
  void keepBest(const SearchRun& run, const BetterCover& better);

  const CoverTickets& tickets_;
  int shared_;
  SearchRandom random_;
  RedPlanes planes_;
  SubsetGains gains_;
  Bits enough_;
  Bits one_less_;
  std::vector<Row> rows_;           // the tickets, then a row for each blue
  std::vector<std::int32_t> loss_;  // of each kept ticket: the weight that it alone covers
  std::vector<std::uint32_t> kept_place_;
  std::vector<std::uint32_t> kept_;
  std::vector<std::uint32_t> open_;
  std::vector<std::uint32_t> stamp_;
  std::vector<std::uint32_t> asked_;
  std::uint32_t step_ = 0;
  std::int64_t work_ = 0;
  std::vector<std::uint32_t> best_;
  std::int64_t best_at_ = 0;
};

}  // namespace lotmere

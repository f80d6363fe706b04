// The search for N = 6 over several blues, one blue at a time.
#pragma once

#include <cstdint>
#include <vector>

#include "reduction/best_cover.hpp"
#include "reduction/cover_matrix.hpp"
#include "reduction/cover_tickets.hpp"

namespace lotmere {

// With N = 6 a kept six covers its tickets of every blue, and those of its own blue that share five reds with
// it. So the tickets of one blue are a small problem of their own once it is known which sixes the other
// blues keep: those need no cover, and a six that another blue counts on stays. Each blue is searched in
// turn, the others fixed, again and again.
class BlueByBlue {
 public:
  explicit BlueByBlue(const CoverTickets& tickets);

  // `until` and the end as WeightedSearch::improve.
  void run(SearchRun& run, std::int64_t until, BestCover& best);

 private:
  // Searches the tickets of one blue; false when the run ended before it had a cover.
  bool searchBlue(SearchRun& run, int blue, std::int64_t work, bool first_round);
  // The sixes that only this blue keeps and that another blue needs.
  [[nodiscard]] std::vector<std::uint32_t> neededOf(int blue) const;
  [[nodiscard]] bool has(std::uint32_t six, int blue) const {
    return tickets_.at(six, blue) != CoverTickets::kNone;
  }
  void offer(BestCover& best) const;

  const CoverTickets& tickets_;
  CoverMatrix matrix_;                            // of the sixes
  std::vector<std::vector<std::uint32_t>> kept_;  // the sixes of each blue
  std::vector<std::uint32_t> keepers_;            // how many blues keep each six
  std::uint64_t seed_ = 0;
};

}  // namespace lotmere

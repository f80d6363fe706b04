// The votes against numbers: a seed whose fixed guess would have hit a recent draw votes, with its guess for
// the coming period, against a number.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "game/game.hpp"

namespace lotmere {

// A pseudo-random number of [0, 1) that depends on x alone: the same in every call, process and machine.
// Shifts and multiplications stir the bits of x, and the upper 32 make the fraction: few enough that its
// product with the factor of a guess (below 2^16) is exact.
[[nodiscard]] double rndFixed(std::int64_t x);

// The draws before the coming period, row 0 the newest. Rows that no draw filled are zeros, which no guess
// hits.
using RecentDraws = std::array<DrawNumbers, 10>;

// Give the history first, then period and seed base, then read: the first read counts. Votes depend on these
// three alone.
class VoteTally {
 public:
  std::int32_t target_period = 0;  // the coming period; below 1 nothing is counted
  std::int32_t seed_base = 0;      // the seeds are those from seed_base + 1 on
  // Whether the votes are current. A new period or seed base leaves it as it is; false counts anew at the
  // next read.
  bool ready = false;

  // Makes the votes out of date.
  void setDraws(const RecentDraws& history);
  [[nodiscard]] const std::optional<RecentDraws>& draws() const { return history_; }

  // The votes against red n. -1 for an n outside 1 to 100; 0 from 34 on, and for all while no history is
  // given.
  [[nodiscard]] int redVotes(int n);
  // The votes against blue n. -1 for an n outside 1 to 16.
  [[nodiscard]] int blueVotes(int n);

 private:
  void countVotes();

  std::optional<RecentDraws> history_;
  std::array<std::int32_t, 100> red_votes_{};  // by number - 1
  std::array<std::int32_t, kBlueCount> blue_votes_{};
};

}  // namespace lotmere

// All draws of the history as one value: what judges a ticket against earlier draws reads them from here.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "game/game.hpp"
#include "store/store.hpp"

namespace lotmere {

// The sums of a draw that are kept, in the order of the cells of 前2期和值相同组: tails, digit roots, big,
// small, odd, even, all.
inline constexpr int kKeptSums = 7;

struct PastDraw {
  PeriodNo period = 0;
  DrawNumbers numbers;                // a number outside the game is held as 0
  std::array<int, kKeptSums> sums{};  // as the row holds them
};

class DrawTable {
 public:
  DrawTable() = default;
  // The draws in any order, each period once.
  explicit DrawTable(std::vector<PastDraw> draws);

  // Ascending by period.
  [[nodiscard]] std::span<const PastDraw> all() const { return draws_; }
  // The draws before a period, ascending: the newest is the last.
  [[nodiscard]] std::span<const PastDraw> before(PeriodNo period) const;
  // The newest `count` of them, or as many as there are.
  [[nodiscard]] std::span<const PastDraw> before(PeriodNo period, std::size_t count) const;
  // Those of the periods first to last.
  [[nodiscard]] std::span<const PastDraw> range(PeriodNo first, PeriodNo last) const;

 private:
  std::vector<PastDraw> draws_;
};

// Reads the whole history. Throws SQLite::Exception when the store refuses.
[[nodiscard]] DrawTable loadDrawTable(Store& store);

}  // namespace lotmere

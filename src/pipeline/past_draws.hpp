// What the filters against whole draws compare six reds with: the sums of the two draws before, and the reds
// of a range of draws.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "conditions/condition_set.hpp"
#include "game/game.hpp"
#include "game/metrics.hpp"
#include "reduction/subsets.hpp"
#include "store/draw_table.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {

// 前2期和值相同组: how many sums six reds have in common with the two draws before, among the families
// switched on.
class SumFamilies {
 public:
  // `before` are the draws before the period, ascending; the newest two count. The sums of the newest are
  // worked out from its reds, as a run stores them before it looks; those of the one before are the kept
  // ones.
  SumFamilies(const ValueArray& cells, std::span<const PastDraw> before);

  // Whether six reds stay: at most two families agree, each with either draw.
  [[nodiscard]] bool keeps(const Reds& reds) const;

 private:
  // A byte of a word for each family: six reds have their sums in one word. A sum is at most 198.
  using Sums = std::uint64_t;
  std::array<Sums, kRedCount + 1> words_{};
  std::array<Sums, 2> sums_{};      // of the two draws,
  std::array<Sums, 2> compared_{};  // and the top bit of each byte that a ticket's is compared with
};

// Whether a ticket shares at least `match` reds with any of the draws. Once all subsets of that size of every
// draw are marked, a ticket of six different reds needs a look at its own at most twenty subsets.
class DrawMatch {
 public:
  explicit DrawMatch(int match);
  void add(Balls draw);

  [[nodiscard]] bool matches(Balls ticket) const;

 private:
  int match_;
  bool is_empty_ = true;
  OverlapMarks marks_;
};

}  // namespace lotmere

// What the filters against whole draws compare six reds with: the sums of the two draws before, and the reds of
// a range of draws.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "conditions/condition_store.hpp"
#include "core/game.hpp"
#include "core/store.hpp"
#include "reduction/subsets.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {

inline constexpr int kSumFamilies = 7;
// A draw with the seven sums that its row holds, in the order of the cells of 前2期和值相同组.
struct SummedDraw {
  PeriodNo period = 0;
  Reds reds{};  // a number outside the game is held as 0
  std::array<int, kSumFamilies> sums{};
};
// The newest `count` draws before a period, newest first.
[[nodiscard]] std::vector<SummedDraw> load_SummedDraws(Store& store, PeriodNo period, int count);

// 前2期和值相同组: how many sums six reds have in common with the two draws before, among the families switched on.
class SumFamilies {
 public:
  // The first two of `before` count, newest first. Those of the newest draw are worked out from its reds, as a
  // run stores them before it looks; those of the second are the stored ones.
  SumFamilies(const ValueArray& cells, std::span<const SummedDraw> before);

  // Whether six reds stay: at most two families agree, each with either draw.
  [[nodiscard]] bool keeps(const Reds& reds) const;

 private:
  struct Active {
    const RedTable* table;
    std::array<int, 2> sums{-1, -1};  // no ticket has a sum below 0
  };
  std::vector<Active> families_;
};

// The reds of the draws of a range, ascending by period.
[[nodiscard]] std::vector<Balls> load_DrawnReds(Store& store, PeriodNo first, PeriodNo last);

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

// How the figure of a condition is spread: over all red sixes, and over the newest draws.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "advice/strength.hpp"
#include "advice/success_count.hpp"
#include "catalogue/catalogue.hpp"
#include "conditions/condition_set.hpp"
#include "game/game.hpp"
#include "pipeline/metric.hpp"
#include "store/draw_table.hpp"

namespace lotmere {

// By what a list item of the condition passes on (panelItems()): a value, the number of a shape, a number of
// a place. Indices that no item has, and figures that no cell stands for, are counted nowhere.
struct ValueShares {
  std::vector<std::int64_t> sixes;  // of kAllRedSixes, which have this figure
  std::vector<int> draws;           // the newest draws that have it, each against the draws before it
  int draws_looked_at = 0;
  // What it was counted with, so that it is known whether it holds for other settings.
  Metric metric;
};

// With the groups and members of the set as they are; the cells and switches don't matter. The sixes are
// judged against the draws before `next_period`; `last` (from 1 on) of these draws are looked at. At a place
// of 号码定位 a six counts for its red at that place; a blue counts as a sixteenth of all. Nothing for a
// condition without cells, and for 前2期和值相同组, whose cells don't exclude each other.
[[nodiscard]] std::optional<ValueShares> valueShares(const ConditionSet& set, const DrawTable& draws,
                                                     const Condition& condition, PeriodNo next_period,
                                                     int last);

// Whether shares that were counted with the same draws and period hold for this set as well.
[[nodiscard]] bool holdsFor(const ValueShares& shares, const ConditionSet& set, const DrawTable& draws,
                            const Condition& condition, PeriodNo next_period);

// What the cells of the set let through of them; for a place its allowed numbers.
[[nodiscard]] Strength strengthOf(const ValueShares& shares, const ConditionSet& set,
                                  const Condition& condition);

// The figure of a stored draw, against the draws before it; nothing for a period that isn't stored and where
// valueShares() gives nothing.
[[nodiscard]] std::optional<int> figureOfDraw(const ConditionSet& set, const DrawTable& draws,
                                              const Condition& condition, PeriodNo period);

// What chance gives: the range in which 95 percent of all series of `strength.draws` independent draws end.
[[nodiscard]] CountRange chanceRange(const Strength& strength);
// "放行全部红球组合的 81.9%；最近 100 期中 83 期符合，按机会应有 74～89 期：与随机相当。" A condition that looks
// back says that its share is that of the coming draw.
[[nodiscard]] std::string strengthSentence(const Strength& strength, bool looks_back);
// "81.9%"; only all is 100, and only none is 0.
[[nodiscard]] std::string percentText(std::int64_t sixes);

}  // namespace lotmere

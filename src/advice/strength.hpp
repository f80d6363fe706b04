// How much a condition lets through: the measure of a condition by itself, whether it is switched on or not.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "catalogue/catalogue.hpp"
#include "conditions/condition_set.hpp"
#include "game/game.hpp"
#include "store/draw_table.hpp"

namespace lotmere {

struct Strength {
  std::int64_t sixes = 0;  // red sixes let through, of kAllRedSixes
  int passed = 0;          // draws let through
  int draws = 0;           // draws looked at

  friend bool operator==(const Strength&, const Strength&) = default;
};

// How many of the last draws are looked at where nobody says otherwise.
inline constexpr int kStrengthDraws = 100;

// What a condition lets through with its cells, groups and numbers as they stand. The sixes are judged
// against the draws before `next_period`; each of the last `last` (from 1 on) draws before it is judged as a
// ticket of its own period, against the draws before that.
//
// A turn of 组合（具体） lets through what doesn't fall into the groups of the draw before; the filter
// tolerates two such turns, of which this tells nothing. Nothing for the places of 号码定位, which are
// weighed together and look at the blue as well, and for 智能优化, which lets every ticket through.
[[nodiscard]] std::optional<Strength> conditionStrength(const ConditionSet& set, const DrawTable& draws,
                                                        const Condition& condition, PeriodNo next_period,
                                                        int last);

// The same for 历史数据过滤, which stands outside the catalogue.
[[nodiscard]] Strength matchStrength(const ConditionSet& set, const DrawTable& draws, PeriodNo next_period,
                                     int last);

[[nodiscard]] inline double sharePercent(const Strength& strength) {
  return 100.0 * static_cast<double>(strength.sixes) / static_cast<double>(kAllRedSixes);
}

// A line for a tip: "放行全部红球组合的 ６２.３％，最近 １００ 期中有 ９５ 期的开奖号码符合". The share has
// one decimal; one that would round to none or to all says "不到" or "超过".
[[nodiscard]] std::string strengthText(const Strength& strength);

}  // namespace lotmere

// The trend of the numbers: the distribution with what players write into it - how long each number has been
// away, a figure of each draw, and the sums at the foot.
#pragma once

#include <array>
#include <span>
#include <string_view>
#include <vector>

#include "game/game.hpp"
#include "store/draw_table.hpp"

namespace lotmere {

// One number over the draws of a trend.
struct TrendFoot {
  int hits = 0;
  // Draws without the number, spread over the stretches in front of, between and behind its hits.
  double average_gap = 0;
  int largest_gap = 0;  // the longest stretch without it, also one that began before the trend
  int longest_run = 0;  // draws in a row that hold it

  friend bool operator==(const TrendFoot&, const TrendFoot&) = default;
};

// A place for each number: 0 to 32 the reds 1 to 33, 33 to 48 the blues 1 to 16.
struct Trend {
  // A draw each, ascending by period: how many draws in a row, up to this one, came without the number,
  // counted from the first draw of the history; 0 where this one holds it.
  std::vector<std::array<int, kCodeCount>> gaps;
  std::vector<DrawNumbers> draws;  // the same draws
  std::array<TrendFoot, kCodeCount> foot{};
};

// Of the newest `count` draws up to period `to`, or as many as there are.
[[nodiscard]] Trend trendOf(const DrawTable& history, PeriodNo to, std::size_t count);

// A figure of a draw that can stand beside its numbers.
struct TrendStatistic {
  std::string_view name;
  int (*figure)(const DrawNumbers& numbers);
};
[[nodiscard]] std::span<const TrendStatistic> trendStatistics();

}  // namespace lotmere

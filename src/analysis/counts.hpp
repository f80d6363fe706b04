// How often each number came in a span of periods, and the lists to choose the span from.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/draw_range.hpp"
#include "base/desk.hpp"
#include "game/game.hpp"
#include "store/store.hpp"

namespace lotmere {

// One bar of the count chart.
struct CountRow {
  int number = 0;
  int count = 0;      // draws that hold the number
  std::string label;  // "红球:05"

  friend bool operator==(const CountRow&, const CountRow&) = default;
};

// A row for each red or blue, 1 first, counted over the draws from one period to another, both included.
// Neither needs to be stored; a `from` above `to` selects no draw and counts 0 everywhere.
[[nodiscard]] std::vector<CountRow> countRedDraws(Store& store, Desk& desk, PeriodNo from, PeriodNo to);
[[nodiscard]] std::vector<CountRow> countBlueDraws(Store& store, Desk& desk, PeriodNo from, PeriodNo to);

// Both lists of the chart hold the same periods, newest first.
struct ChartPeriods {
  std::vector<PeriodNo> periods;
  std::optional<std::size_t> from;  // the tenth newest; nothing chosen with ten draws or fewer
  std::optional<std::size_t> to;    // the newest

  // What a chosen place counts from or to: its period, 0 with nothing chosen.
  [[nodiscard]] PeriodNo period(std::optional<std::size_t> place) const {
    return place ? periods[*place] : 0;
  }
};
[[nodiscard]] ChartPeriods loadChartPeriods(Store& store);

}  // namespace lotmere

// The run as the game's rules tell it: every pass walks plain rows one by one, and every figure is worked out
// from the tables anew. Slow and short, to compare the real run with.
#pragma once

#include <string>
#include <vector>

#include "core/store.hpp"
#include "tickets/ticket_rows.hpp"

namespace lotmere::test {

// A draw before the tickets' period, newest first in lists; `sums` as the store holds them (tails, digit
// roots, big, small, odd, even, all).
struct PastDraw {
  PeriodNo period = 0;
  DrawNumbers numbers;
  std::array<int, 7> sums{};
};
[[nodiscard]] std::array<int, 7> true_Sums(const Reds& reds);

struct Outcome {
  std::vector<Row> rows;  // of the whole table
  std::string text;
  std::vector<std::string> tips;
};

// What a run over the table leaves behind. `stop_in` is the start line of the pass in which the person stops
// it.
[[nodiscard]] Outcome model_Run(Store& store, const std::vector<PastDraw>& before, PeriodNo period,
                                const std::string& stop_in = {});

// The warning of a condition that depends on earlier draws.
[[nodiscard]] std::string model_Warning(const std::string& name, PeriodNo period);

}  // namespace lotmere::test

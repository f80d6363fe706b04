// The run as the game's rules tell it: every pass walks plain rows one by one, and every figure is worked out
// from the tables anew; span, gap, runs and AC have a model of their own in core. Slow and short, to compare
// the real run with.
#pragma once

#include <string>
#include <vector>

#include "tickets/ticket_rows.hpp"

namespace lotmere::test {

inline constexpr PeriodNo kPeriod = 2026050;

struct Outcome {
  std::vector<Row> rows;  // of the whole table
  std::string text;
  std::vector<std::string> tips;
};

// What a run over kPeriod leaves behind. `stop_in` is the start line of the pass in which the user stops
// it.
[[nodiscard]] Outcome modelRun(Store& store, const std::string& stop_in = {});

}  // namespace lotmere::test

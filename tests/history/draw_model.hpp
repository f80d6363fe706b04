// The draw statistics told plainly: a select for every lookup, a loop for every figure. Slow, and independent
// of the tables and metrics of the program.
#pragma once

#include <map>
#include <string>

#include "core/game.hpp"
#include "core/store.hpp"

namespace lotmere::test {

// Column to text, for every derived column.
using ModelRow = std::map<std::string, std::string>;

// The figures of one stored draw. `has_previous` false: against six zeros.
[[nodiscard]] ModelRow model_Row(Store& store, PeriodNo period, bool has_previous);

}  // namespace lotmere::test

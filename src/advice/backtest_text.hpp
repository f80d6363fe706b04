// What a back-test tells, in the user's language.
#pragma once

#include <string>
#include <vector>

#include "advice/backtest.hpp"

namespace lotmere {

// A line of fields separated by tabs: "2026096", "符合" or "不符合", and the conditions that the draw fails,
// separated by commas.
[[nodiscard]] std::string verdictText(const DrawVerdict& draw);

// The figures of all draws together, a sentence a line: how many passed, how many fail at most one, two ...,
// which condition alone stopped a draw, what chance gives, and whether the one differs from the other.
[[nodiscard]] std::vector<std::string> backTestLines(const BackTest& test);

}  // namespace lotmere

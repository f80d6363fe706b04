// The omission figures in words. Counts, periods and the number are full-width; lines are parted by CR LF; a
// gap that isn't known is a "—".
#pragma once

#include <string>

#include "analysis/omission.hpp"

namespace lotmere {

// The message about one number; with three hits or fewer it only tells these.
[[nodiscard]] std::string omissionReport(const Omission& omission, int number);
// The same as the tip of the number's group: a shorter head, and no rule below it.
[[nodiscard]] std::string omissionTip(const Omission& omission, int number);

// The tips of the three bars.
[[nodiscard]] std::string largestTip(const Omission& omission, int number);
[[nodiscard]] std::string averageTip(const Omission& omission, int number);
[[nodiscard]] std::string runningTip(const Omission& omission, int number);

// A figure of the closed gaps in ASCII digits, for a list: gapText(figures, &ClosedGaps::average).
[[nodiscard]] std::string gapText(const OmissionFigures& figures, int ClosedGaps::*gap);

}  // namespace lotmere

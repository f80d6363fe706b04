// The omission figures in words. Counts, periods and the number are full-width; lines are parted by CR LF; a
// gap that isn't known is a "—".
#pragma once

#include <string>

#include "analysis/omission.hpp"

namespace lotmere {

// The message about one number; with three hits or fewer it only tells these.
[[nodiscard]] std::string omission_Report(const Omission& omission, int number);
// The same as the tip of the number's group: a shorter head, and no rule below it.
[[nodiscard]] std::string omission_Tip(const Omission& omission, int number);

// The tips of the three bars.
[[nodiscard]] std::string largest_Tip(const Omission& omission, int number);
[[nodiscard]] std::string average_Tip(const Omission& omission, int number);
[[nodiscard]] std::string running_Tip(const Omission& omission, int number);

// A figure of the closed gaps in ASCII digits, for a list: gap_Text(figures, &ClosedGaps::average).
[[nodiscard]] std::string gap_Text(const OmissionFigures& figures, int ClosedGaps::*gap);

}  // namespace lotmere

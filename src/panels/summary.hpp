// The settings as one text for reading.
#pragma once

#include <array>
#include <string>

#include "conditions/condition_set.hpp"

namespace lotmere {

// The ten custom groups, a line each: name, members and allowed counts, or that the
// group isn't in use.
[[nodiscard]] std::array<std::string, 10> groupLines(const ConditionSet& set);

// Selection, conditions, groups and shrink type, a line each, CR LF and an empty line between them
//. A condition that is off says so in place of its values. Behind these lines, which
// always stand, comes one for every other setting that is on, so that the text tells everything that a run
// will do.
[[nodiscard]] std::string summaryText(const ConditionSet& set);

}  // namespace lotmere

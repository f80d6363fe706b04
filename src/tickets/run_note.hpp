// What is said of tickets that a run has left: by what settings.
#pragma once

#include <string>
#include <vector>

#include "conditions/condition_set.hpp"
#include "store/store.hpp"

namespace lotmere {

// A line a period whose tickets are those of a run: the name of its set, if it had one, and which settings
// differ in `now`. Picked numbers don't
// count. Of one period, or of all for 0.
[[nodiscard]] std::vector<std::string> runNotes(Store& store, const ConditionSet& now, PeriodNo period = 0);

}  // namespace lotmere

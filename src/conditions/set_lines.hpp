// The lines of a set's text: one a condition or setting.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "conditions/condition_set.hpp"

namespace lotmere {

// A line: its name, what it says of a set, and what it makes of one; `read` is false for a value that breaks
// a rule, and may have changed the set by then.
struct SetLine {
  std::string name;
  std::function<std::string(const ConditionSet&)> write;
  std::function<bool(std::string_view, ConditionSet&)> read;
  bool picks = false;  // tells picked numbers
};

// In the order of the text; made once.
[[nodiscard]] const std::vector<SetLine>& setLines();

}  // namespace lotmere

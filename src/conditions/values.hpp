// The allowed values of a condition as texts: what stands, and what a user types.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/desk.hpp"
#include "catalogue/catalogue.hpp"
#include "conditions/condition_set.hpp"

namespace lotmere {

// The ticked cells of a range as a short text: runs "３～５", single values, joined by " 或 ", in full-width
// digits. Empty with none.
[[nodiscard]] std::string tickedValues(const ConditionSet& set, ConditionId first, ConditionId last);

// The current value of any condition: numbers as above, shapes and sum families joined by ";", the numbers
// allowed at a place. Empty for a switch alone.
[[nodiscard]] std::string currentValue(const ConditionSet& set, const Condition& condition);

// Cells as parseValues reads them: "60-140,150", "2,2,1,1;3,3". Empty for none.
[[nodiscard]] std::string formatValues(const Condition& condition, std::span<const int> cells);

// The cells that a text names, each of 0 to cellCount(condition) - 1: "60-140,150" for numbers, texts
// separated by ";" for shapes, run shapes and sum families. Nothing for any other text.
[[nodiscard]] std::optional<std::vector<int>> parseValues(const Condition& condition,
                                                          std::string_view values);

// Allows exactly the values of a text, as parseValues reads it, and switches the others off. Tells what is
// wrong with a text that names no value of the condition, and then changes nothing.
bool allowValues(ConditionSet& set, Desk& desk, const Condition& condition, std::string_view values);

}  // namespace lotmere

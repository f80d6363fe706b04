// Which red belongs to which group of a condition, so that a picture of the balls explains it.
#pragma once

#include <array>
#include <optional>

#include "catalogue/catalogue.hpp"
#include "conditions/condition_set.hpp"
#include "game/game.hpp"
#include "store/draw_table.hpp"

namespace lotmere {

// By red (index 0 unused) its group from 0 on, -1 for none; of a red in several groups the first. For a shape
// or a combination turn the groups of its family, for a count of numbers group 0 for those that are counted:
// those among the newest draws before `next_period` where the condition looks back. Nothing for any other
// condition.
using NumberGroups = std::array<int, kRedCount + 1>;
[[nodiscard]] std::optional<NumberGroups> numberGroups(const ConditionSet& set, const DrawTable& draws,
                                                       const Condition& condition, PeriodNo next_period);

}  // namespace lotmere

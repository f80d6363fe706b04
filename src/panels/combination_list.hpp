// The list of the concrete combinations (`List_jtzhsgl`): which groups of the 32 families a draw hit.
#pragma once

#include <array>

#include "base/desk.hpp"
#include "conditions/condition_set.hpp"
#include "game/game.hpp"
#include "panels/panel.hpp"
#include "store/store.hpp"

namespace lotmere {

// The items in the order of the combination turns: "尾数形式 ≠ [0,1,2,4,5,6]", selected when the turn is in
// use (its switch is above 0). Computes the draw's statistics first, so that its texts follow the groups as
// they are now. A period that isn't stored leaves the groups out.
[[nodiscard]] std::array<PanelItem, kTurnCount> combinationList(Store& store, Desk& desk,
                                                                const ConditionSet& set, PeriodNo period);

}  // namespace lotmere

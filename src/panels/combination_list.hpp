// The list of the concrete combinations: which groups of the 32 families a draw hit.
#pragma once

#include <array>
#include <string>

#include "base/desk.hpp"
#include "game/game.hpp"
#include "panels/panel.hpp"
#include "store/store.hpp"

namespace lotmere {

using CombinationTexts = std::array<std::string, kTurnCount>;
// The texts of a draw in the order of the combination turns: "尾数形式 ≠ [0,1,2,4,5,6]". Computes the draw's
// statistics first, so that they follow the groups as they are now. A period that isn't stored leaves the
// groups out.
[[nodiscard]] CombinationTexts combinationTexts(Store& store, Desk& desk, PeriodNo period);

// The items of the list, selected where the turn is in use (its switch is above 0).
[[nodiscard]] std::vector<PanelItem> combinationList(const ConditionSet& set, const CombinationTexts& texts);

}  // namespace lotmere

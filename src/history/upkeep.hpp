// Adding, replacing and deleting single draws of the history.
#pragma once

#include <string>
#include <string_view>

#include "base/dates.hpp"
#include "base/desk.hpp"
#include "base/outcome.hpp"
#include "game/game.hpp"
#include "store/store.hpp"

namespace lotmere {

enum class Recalc { yes, no };

// Stores one draw. A stored period gets the new date and numbers and keeps its place. The caller has checked
// the numbers (isDraw) and the period (1 or more). With `Recalc::yes` the row's statistics are computed too,
// in the same change; rows after it keep the figures they had. Without, a bulk job computes its range once at
// the end.
void saveDraw(Store& store, Desk& desk, PeriodNo period, Date date, const DrawNumbers& numbers,
              Recalc recalc);

// The same for a draw that a user entered, with its statistics. Where the period is stored with another date
// or other numbers, a question shows both first; refused, and nothing has changed, when they think better of
// it.
Outcome enterDraw(Store& store, Desk& desk, PeriodNo period, Date date, const DrawNumbers& numbers);

// A draw as questions show it, behind its period: "2008-10-12  01 04 16 22 26 31+04".
[[nodiscard]] std::string drawInWords(std::string_view date, const DrawNumbers& numbers);

// Removes one draw after a question that shows it, and tells so with `done`. `typed` is its number as the
// user typed it, the whole of it: any number that is stored will do, also one that is no period. False, and
// nothing has changed, when they think better of it or, told, when it isn't stored or no number. No other row
// changes: a hole stays a hole, and the next draw keeps the figures it had against the removed one until a
// range covers it again.
Outcome deleteDraw(Store& store, Desk& desk, std::string_view typed, std::string_view done = "删除完成！");

}  // namespace lotmere

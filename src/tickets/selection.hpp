// The numbers picked for expansion: the number pad's states, limits, questions and ticket count.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "base/desk.hpp"
#include "conditions/condition_set.hpp"
#include "game/game.hpp"
#include "tickets/low_chance.hpp"

namespace lotmere {

inline constexpr int kMaxRedDan = 5;
inline constexpr int kMaxBlueDan = 1;
inline constexpr std::int64_t kMaxTickets = 100'000;  // of one selection

// The state of every number; index 0 of each array is unused.
struct NumberSelection {
  std::array<PickState, kRedCount + 1> red{};
  std::array<PickState, kBlueCount + 1> blue{};

  friend bool operator==(const NumberSelection&, const NumberSelection&) = default;
};
[[nodiscard]] NumberSelection selectionOf(const ConditionSet& set);

// The ways to fill k places from n numbers of which d are fixed: 0 with too few numbers, 1 when every place
// is taken.
[[nodiscard]] std::int64_t waysToFill(int n, int k, int d);

struct ComboCounts {
  int red_tuo = 0;
  int red_dan = 0;
  int blue_tuo = 0;
  int blue_dan = 0;
  std::int64_t tickets = 0;
};
[[nodiscard]] ComboCounts countCombos(const NumberSelection& selection);
// The summary that stands beside the pad.
[[nodiscard]] std::string combosText(const ComboCounts& counts);

// True when at least one ticket can be made; otherwise, if asked to, tells that numbers are missing.
enum class Tell { no, yes };
[[nodiscard]] bool checkSelection(const NumberSelection& selection, Desk& desk, Tell tell);

// What a tab of the pad's strips turns a clicked number into, and what it says when it is chosen.
enum class PadTab : int { tuo = 1, dan = 2 };
[[nodiscard]] std::string padTabText(PadTab tab, bool blue);

// A click on the pad button of a number code (1 to 33, 101 to 116): picks it, takes it off, or asks before it
// moves between Tuo and Dan. A blue Dan stands alone: it clears the others, and they don't react while it
// stands. What would break a limit is told and undone. Returns whether the selection changed. A number among
// those marked for `hint_period` first tells its warning; the click then goes on as usual.
bool clickNumber(NumberSelection& selection, Desk& desk, int code, PadTab tab,
                 const LowChanceNumbers& marked = {}, PeriodNo hint_period = 0);
// False for a blue number that a lone blue Dan keeps locked.
[[nodiscard]] bool isEnabled(const NumberSelection& selection, int code);

// Makes a selection the one of the settings. Whatever stood there is gone.
void putSelection(ConditionSet& set, const NumberSelection& selection);
// The same for one that somebody typed: one beyond a limit is told and nothing changes.
bool replaceSelection(ConditionSet& set, Desk& desk, const NumberSelection& selection);

// Takes all numbers of a colour off; a lone blue Dan no longer locks the other blues then.
void clearReds(ConditionSet& set);
void clearBlues(ConditionSet& set);

// The numbers of a colour in a state, ascending; blue ones as 1 to 16.
[[nodiscard]] std::vector<int> pickedReds(const NumberSelection& selection, PickState state);
[[nodiscard]] std::vector<int> pickedBlues(const NumberSelection& selection, PickState state);

}  // namespace lotmere

// The way back for settings and picks: the last changes, kept in the store across starts.
#pragma once

#include <optional>
#include <string>

#include "conditions/condition_set.hpp"
#include "conditions/setting_change.hpp"
#include "store/store.hpp"

namespace lotmere {

inline constexpr int kMostSteps = 20;

// Keeps a change that has just been made: what was taken back before can't be made again from then on, and of
// more than twenty changes the oldest goes. Runs inside the caller's change. Throws SQLite::Exception.
void keepStep(Store& store, const SettingChange& change, const std::string& name);

// What the next undo and redo would change, for a menu; nothing where there is none.
struct NextSteps {
  std::optional<std::string> undo;
  std::optional<std::string> redo;
};
[[nodiscard]] NextSteps nextSteps(Store& store);

// A step made: its name and the settings as they are then.
struct StepMade {
  std::string name;
  ConditionSet set;
};
// Takes the last change back, or makes the one again that was taken back last, in one change of the store.
// Nothing where there is none. Throws SQLite::Exception with nothing changed when the store refuses.
std::optional<StepMade> undoSettings(Store& store);
std::optional<StepMade> redoSettings(Store& store);

}  // namespace lotmere

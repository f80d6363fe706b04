// The door between the settings as a value and the store.
#pragma once

#include <functional>
#include <string>

#include "conditions/condition_set.hpp"
#include "store/store.hpp"

namespace lotmere {

// Reads everything in one go. Throws SQLite::Exception when the store refuses.
[[nodiscard]] ConditionSet loadConditionSet(Store& store);

// The settings as "还原默认值" leaves them: the factory tables over what stands, the custom divisions as they
// were made, 历史数据过滤 off, and nothing picked. Writes nothing.
[[nodiscard]] ConditionSet loadFactorySet(Store& store);

// How a change is kept for an undo.
struct StepNote {
  bool kept = true;       // false for a change that the program makes by itself
  std::string name = {};  // what the undo calls it; else the names of the settings that differ
};

// The one writer of settings but for a login, which copies whole tables: writes what `after` holds otherwise
// than `before`, row by row by key, and the step back, in one change. Rows that the store lacks are passed
// over. Where 区间1 to 区间4 change, the counts of the draws are due from then on (store/interval_mark.hpp).
// Throws SQLite::Exception with nothing written when the store refuses.
void saveConditionSet(Store& store, const ConditionSet& before, const ConditionSet& after,
                      const StepNote& note = {});

// Loads the settings, lets `edit` change them and saves what it changed. Gives them as they are then.
ConditionSet changeSettings(Store& store, const std::function<void(ConditionSet&)>& edit,
                            const StepNote& note = {});

}  // namespace lotmere

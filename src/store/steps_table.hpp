// What a store keeps for its user beside the settings, as far as a login ends it.
#pragma once

#include <string>

#include "store/store.hpp"

namespace lotmere {

// Undo and redo of the tickets, and what set each run had. Throws SQLite::Exception.
void forgetTicketSteps(Store& store);
// Undo and redo of the settings, but for what this user changed. Throws SQLite::Exception.
void keepSettingStepsOf(Store& store, const std::string& user);
// The sets that the user kept under a name. Throws SQLite::Exception.
void forgetNamedSets(Store& store);

}  // namespace lotmere

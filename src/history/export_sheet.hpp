// The history as a file for spreadsheets.
#pragma once

#include <filesystem>

#include "base/desk.hpp"
#include "base/outcome.hpp"
#include "base/platform.hpp"
#include "store/store.hpp"

namespace lotmere {

// Writes all draws to a new .xlsx file at `target`, its one sheet named "sheet1": a row of column names, then
// the draws by period ascending. The columns are those of drawColumns() but the last three; numbers, texts
// and dates are of their kind, a field without a value is an empty cell, and the second column is twice as
// wide as the first. Where `target` ends in ".csv" the same fields stand in lines of UTF-8 (TableFile).
// Refused, told by the desk, where the history is empty, `target` leads to one of the program's own files
// (isOwnFile), or the machine refuses (as FileSystem::writeWhole does): an earlier file then stands as it
// was, behind a stop too. Throws SQLite::Exception when the store refuses.
Exported exportHistory(Store& store, Desk& desk, const std::filesystem::path& target,
                       FileSystem& files = realFiles());

}  // namespace lotmere

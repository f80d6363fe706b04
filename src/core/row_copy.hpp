// Copies between twin tables row by row: both are read in the same order and walked side by side until one
// ends. Keys don't match the rows; so twins hold the same rows in the same order.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "core/store.hpp"

namespace lotmere {

struct TwinTables {
  std::string source;
  std::string target;
  std::string key;   // the column both are ordered by
  int first_column;  // every column from this place on is copied
  int columns = 0;   // or only so many of them, where above 0
};

// The rows to copy, each with what the columns from the first one on hold.
using TwinValue = std::variant<std::int64_t, std::string>;
using TwinRows = std::vector<std::vector<TwinValue>>;

// Reads the rows in their order. Throws SQLite::Exception when the table is missing or can't be read.
[[nodiscard]] TwinRows read_Rows(SQLite::Database& source, const TwinTables& twins);
// Writes them side by side over the target's rows and returns how many were written. Runs inside the caller's
// change. Throws SQLite::Exception when the rows have fewer columns than the target.
int write_Rows(SQLite::Database& target, const TwinTables& twins, const TwinRows& rows);

// What belongs to a user, as twins of the same names: the four tables of a profile in the order of copying.
[[nodiscard]] const std::vector<TwinTables>& profile_Twins();

// The four factory tables over their working twins (`restoreTiaojian`), in one change.
void restoreTiaojian(Store& store);

}  // namespace lotmere

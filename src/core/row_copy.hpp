// Copies between twin tables row by row: both are read in the same order and walked side by side until one
// ends. Keys don't match the rows; so twins hold the same rows in the same order.
#pragma once

#include <string>
#include <vector>

#include "core/store.hpp"

namespace lotmere {

struct TwinTables {
  std::string
      source;  // table name, with the schema in front where another file is attached: "profile"."过滤条件"
  std::string target;
  std::string key;   // the column both are ordered by
  int first_column;  // every column from this place on is copied
  int columns = 0;   // or only so many of them, where above 0
};

// Copies and returns the number of rows written. Runs inside the caller's change. Throws SQLite::Exception
// when a table is missing or the source has fewer columns than the target.
int copy_Rows(Store& store, const TwinTables& twins);

// The four factory tables over their working twins (`restoreTiaojian`), in one change.
void restoreTiaojian(Store& store);

}  // namespace lotmere

// Copies between tables of the same name or of factory and working values: rows are matched by their key,
// columns by their name, so that either side may lack some or hold them in another order.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "store/store.hpp"

namespace lotmere {

struct KeyedTable {
  std::string_view name;
  std::string_view key;  // the column that tells its rows apart
};

// What belongs to a user: the four tables of a profile in the order of copying. Each has a factory twin, its
// name behind "默认".
[[nodiscard]] std::span<const KeyedTable> profileTables();
[[nodiscard]] std::string factoryTwin(const KeyedTable& table);

using CellValue = std::variant<std::monostate, std::int64_t, std::string>;  // nothing: NULL
struct TableRows {
  std::vector<std::string> columns;  // but for the key and `INDEX`
  std::map<std::int64_t, std::vector<CellValue>> rows;
};

// Reads the rows of a table by a key column. Throws SQLite::Exception when the table is missing or can't be
// read.
[[nodiscard]] TableRows readRows(SQLite::Database& source, std::string_view table, std::string_view key);

// Writes what `rows` holds over the fields that the target has too. A field that `rows` lacks takes the value
// that `fallback` has for it, or stays. Rows that hold all this already aren't written, and none is added.
// Runs inside the caller's change.
void writeRows(SQLite::Database& target, const KeyedTable& table, const TableRows& rows,
               const TableRows& fallback = {});

// The sets with names of one database in the place of those of the other; none where the source lacks the
// table, as older versions do. Runs inside the caller's change. Throws SQLite::Exception.
void copyNamedSets(SQLite::Database& source, SQLite::Database& target);

// The four factory tables over their working twins (`restoreFactoryRows`), in one change.
void restoreFactoryRows(Store& store);

}  // namespace lotmere

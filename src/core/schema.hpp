// The tables of the store: every table and column of the data model, and the first rows of a new store.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/game.hpp"

namespace SQLite {
class Database;
}

namespace lotmere {

// What `PRAGMA user_version` holds in a store of this program.
inline constexpr int kSchemaVersion = 3;

// A name as an SQL identifier, quotes doubled. Only names of the data model pass through here, never what a
// person typed.
[[nodiscard]] std::string sql_Name(std::string_view name);
// Quoted names joined by commas.
[[nodiscard]] std::string column_List(const std::vector<std::string>& names);

// A column of `历史记录`.
enum class DrawColumnType { whole, date, text };
struct DrawColumn {
  std::string name;
  DrawColumnType type;
};
// The 83 columns in their order: 0 `期号`, 1 `开奖日期`, 2 to 7 the reds, 8 `蓝球`, 32 to 63 the group texts,
// the last four the work columns. Grid, export and statistics dress and find them by this order.
[[nodiscard]] const std::vector<DrawColumn>& draw_Columns();
inline constexpr int kFirstPatternColumn = 32;
inline constexpr int kPatternColumnCount = 32;

// Creates every table in an empty database, or only those of a profile, without rows.
void create_Tables(SQLite::Database& db);
void create_UserTables(SQLite::Database& db);

// Creates every table in an empty database and fills it with the factory rows; the history starts empty. Runs
// inside the caller's transaction. Throws SQLite::Exception.
void create_Schema(SQLite::Database& db);

// The database of a profile: `过滤条件`, `过滤条件使用情况`, `号码特性`, `区间定义`, with their factory rows.
void create_Profile(SQLite::Database& db);

// Brings the tables of an older version (1 on) up to this one, step by step. Runs inside the caller's
// transaction. Throws SQLite::Exception for a version that this program doesn't know.
void upgrade_Schema(SQLite::Database& db);

}  // namespace lotmere

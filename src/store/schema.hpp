// The tables of the store: every table and column of the data model, and the first rows of a new store.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "game/game.hpp"

namespace SQLite {
class Database;
}

namespace lotmere {

// What `PRAGMA user_version` holds in a store of this program: the version of the tables themselves, or the
// highest that a row of the catalogue, a family, an attribute or a column of the draws names as the one that
// brought it.
[[nodiscard]] int schemaVersion();

// A name as an SQL identifier, quotes doubled. Only names of the data model pass through here, never what a
// user typed.
[[nodiscard]] std::string sqlName(std::string_view name);
// Quoted names joined by commas.
[[nodiscard]] std::string columnList(const std::vector<std::string>& names);

// Creates every table in an empty database, or only those of a profile, without rows.
void createTables(SQLite::Database& db);
void createUserTables(SQLite::Database& db);

// Creates every table in an empty database and fills it with the factory rows; the history starts empty. Runs
// inside the caller's transaction. Throws SQLite::Exception.
void createSchema(SQLite::Database& db);

// The database of a profile: `过滤条件`, `过滤条件使用情况`, `号码特性`, `区间定义` with their factory rows, and
// `命名方案`, empty.
void createProfile(SQLite::Database& db);

// Brings the tables of an older version (1 on) up to this one: tables, columns and rows that it lacks are
// added with their factory values, and nothing that stands there changes but what the new version reads
// otherwise. A new statistic leaves the mark that the statistics of the draws are due. Runs inside the
// caller's transaction. Throws SQLite::Exception for a version that this program doesn't know.
void upgradeSchema(SQLite::Database& db);

}  // namespace lotmere

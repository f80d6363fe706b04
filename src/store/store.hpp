// The open database: the one connection of the process (`MainConn`), its prepared statements and its
// transactions.
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <filesystem>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/platform.hpp"

namespace lotmere {

// A prepared statement borrowed from the store; it is reset when the borrower is done, so that no cursor
// stays open.
class Query {
 public:
  explicit Query(SQLite::Statement& statement) : statement_(statement) {}
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;
  ~Query();

  template <class... Values>
  Query& bind(const Values&... values) {
    int place = 0;
    (statement_.bind(++place, values), ...);
    return *this;
  }
  // Steps to the next row; false at the end.
  bool next() { return statement_.executeStep(); }
  // Runs a statement without rows and makes it ready for the next values; returns the number of changed rows.
  int run();
  [[nodiscard]] std::int64_t whole(int column) const { return statement_.getColumn(column).getInt64(); }
  [[nodiscard]] int number(int column) const { return statement_.getColumn(column).getInt(); }
  // A whole number of 1 to `last`; 0 where anything else stands: another number, a text, nothing.
  [[nodiscard]] int numberUpTo(int column, int last) const {
    const SQLite::Column field = statement_.getColumn(column);
    const std::int64_t value = field.isInteger() ? field.getInt64() : 0;
    return value >= 1 && value <= last ? static_cast<int>(value) : 0;
  }
  [[nodiscard]] std::string text(int column) const { return statement_.getColumn(column).getString(); }
  // A blob, or the bytes of anything else.
  [[nodiscard]] std::string bytes(int column) const {
    const SQLite::Column field = statement_.getColumn(column);
    const auto* data = static_cast<const char*>(field.getBlob());
    return data == nullptr ? std::string() : std::string(data, static_cast<std::size_t>(field.getBytes()));
  }
  SQLite::Statement& statement() { return statement_; }

 private:
  SQLite::Statement& statement_;
};

class Store {
 public:
  // Opens an existing store. Brings an older schema up to date in one transaction. Throws StoreFailure when
  // the file is missing, damaged or of a newer program.
  explicit Store(const std::filesystem::path& path);

  // Writes a new store with factory rows to `path`, whole or not at all, readable by its owner only.
  static void create(const std::filesystem::path& path, FileSystem& files = realFiles());

  [[nodiscard]] SQLite::Database& db() { return db_; }
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  // The statement of this text, prepared once. Nesting the same text is an error of the caller.
  [[nodiscard]] Query query(const std::string& sql);

  // The first column of the first row, or 0 without a row.
  template <class... Values>
  [[nodiscard]] std::int64_t value(const std::string& sql, const Values&... values) {
    Query rows = query(sql);
    rows.bind(values...);
    return rows.next() ? rows.whole(0) : 0;
  }

 private:
  std::filesystem::path path_;
  SQLite::Database db_;
  std::unordered_map<std::string, std::unique_ptr<SQLite::Statement>> statements_;
};

// A change that stands whole or not at all: rolled back unless committed. Nests: an inner one rolls back only
// its own part.
class StoreChange {
 public:
  explicit StoreChange(Store& store);
  StoreChange(const StoreChange&) = delete;
  StoreChange& operator=(const StoreChange&) = delete;
  ~StoreChange();
  void commit();

 private:
  SQLite::Database& db_;
  bool outermost_;
  bool done_ = false;
};

// The schema version that a database says it has.
[[nodiscard]] int storedVersion(SQLite::Database& db);
// Every table with the number of its rows, by name.
[[nodiscard]] std::vector<std::pair<std::string, std::int64_t>> tableSizes(Store& store);

// Settings that every connection of the program works with; a commit survives a power failure.
void setStorePragmas(SQLite::Database& db);

// What the engine finds a file to be: a whole store of a known schema; a file whose pages are broken, that
// lacks a table or column, or that was never a store; or the store of a newer program, which is nobody's to
// replace.
enum class StoreState { sound, damaged, newer };
// A profile and its template hold only the tables of a user.
enum class StoreKind { main, profile };
// Throws StoreFailure when the file can't be read at present (missing, locked, refused by the machine), and
// std::filesystem::filesystem_error when it is no file: that is no damage.
[[nodiscard]] StoreState checkStore(const std::filesystem::path& path, StoreKind kind = StoreKind::main);
[[nodiscard]] inline bool isSoundStore(const std::filesystem::path& path, StoreKind kind = StoreKind::main) {
  return checkStore(path, kind) == StoreState::sound;
}

// Whether a failure speaks of what stands in the file and not of the moment.
[[nodiscard]] bool isDamage(const SQLite::Exception& failure);

}  // namespace lotmere

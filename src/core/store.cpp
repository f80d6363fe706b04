#include "core/store.hpp"

#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <set>

#include "core/failure.hpp"
#include "core/interval_mark.hpp"
#include "core/schema.hpp"
#include "core/store_files.hpp"

namespace lotmere {
namespace {

constexpr int kBusyTimeoutMs = 2000;
constexpr int kHighestVersion = 255;  // above it no version stands but flipped bits

int schema_Version(SQLite::Database& db) { return db.execAndGet("PRAGMA user_version").getInt(); }

void bring_UpToDate(SQLite::Database& db) {
  if (schema_Version(db) == schemaVersion()) return;
  SQLite::Transaction change(db, SQLite::TransactionBehavior::IMMEDIATE);
  upgrade_Schema(db);
  change.commit();
}

// Every column of every table: its table, name, type and constraints. Its place doesn't count: an upgrade adds at the end.
std::set<std::string> all_Columns(SQLite::Database& db) {
  SQLite::Statement row(
      db,
      R"(SELECT t.name||'|'||c.name||'|'||c.type||'|'||c."notnull"||'|'||c.pk||'|'||ifnull(c.dflt_value,'')
                               FROM sqlite_master t, pragma_table_info(t.name) c WHERE t.type='table')");
  std::set<std::string> columns;
  while (row.executeStep()) columns.insert(row.getColumn(0).getString());
  return columns;
}

std::set<std::string> make_Columns(void (*create)(SQLite::Database&)) {
  SQLite::Database fresh(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
  create(fresh);
  return all_Columns(fresh);
}

// The same for every file of a kind, so made once in the life of the process.
const std::set<std::string>& expected_Columns(StoreKind kind) {
  if (kind == StoreKind::main) {
    static const auto main_columns = make_Columns(&create_Tables);
    return main_columns;
  }
  static const auto profile_columns = make_Columns(&create_UserTables);
  return profile_columns;
}

// A byte that changed in the middle of a table's definition leaves whole pages and a name that nothing finds.
bool has_Columns(SQLite::Database& db, StoreKind kind) {
  const auto columns = all_Columns(db);
  const auto& expected = expected_Columns(kind);
  return std::includes(columns.begin(), columns.end(), expected.begin(), expected.end());
}

// The header can name a format that the engine reads and doesn't write.
bool is_ReadOnlyFormat(SQLite::Database& db, const std::filesystem::path& path) {
  return sqlite3_db_readonly(db.getHandle(), "main") == 1 && ::access(path.c_str(), W_OK) == 0;
}

// The engine reads what is missing of the last page as zeros.
bool is_CutShort(SQLite::Database& db, const std::filesystem::path& path) {
  const auto pages = db.execAndGet("PRAGMA page_count").getInt64();
  const auto page_size = db.execAndGet("PRAGMA page_size").getInt64();
  return std::filesystem::file_size(path) < static_cast<std::uintmax_t>(pages * page_size);
}

}  // namespace

Query::~Query() {
  statement_.tryReset();
  try {
    statement_.clearBindings();
  } catch (const SQLite::Exception&) {
    // Bindings that can't be cleared are overwritten by the next borrower; a destructor has nobody to tell.
    return;
  }
}

int Query::run() {
  const int changed = statement_.exec();
  statement_.reset();
  return changed;
}

// One thread works with the connection, so the engine needs no lock around each of its calls.
Store::Store(const std::filesystem::path& path) try
    : path_(path), db_(path.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX, kBusyTimeoutMs) {
  set_StorePragmas(db_);
  bring_UpToDate(db_);
  watch_Intervals(db_);
} catch (const SQLite::Exception& failure) {
  throw StoreFailure(path, failure);
}

void Store::create(const std::filesystem::path& path, FileSystem& files) {
  write_Database(path, files, create_Schema);
}

Query Store::query(const std::string& sql) {
  auto& statement = statements_[sql];
  if (!statement) statement = std::make_unique<SQLite::Statement>(db_, sql);
  return Query(*statement);
}

StoreChange::StoreChange(Store& store)
    : db_(store.db()), outermost_(sqlite3_get_autocommit(store.db().getHandle()) != 0) {
  db_.exec(outermost_ ? "BEGIN IMMEDIATE" : "SAVEPOINT change");
}

StoreChange::~StoreChange() {
  if (done_) return;
  // The engine may have rolled back by itself (a full disk); a second roll-back is then refused, which is no
  // news.
  db_.tryExec(outermost_ ? "ROLLBACK" : "ROLLBACK TO change; RELEASE change");
}

void StoreChange::commit() {
  db_.exec(outermost_ ? "COMMIT" : "RELEASE change");
  done_ = true;
}

void set_StorePragmas(SQLite::Database& db) {
  // A roll-back journal keeps the store one file between commands; EXTRA also flushes the journal's removal,
  // so that a command that said "done" is done after a power failure.
  db.exec(
      "PRAGMA journal_mode = DELETE; PRAGMA synchronous = EXTRA; PRAGMA cache_size = -16000; PRAGMA "
      "temp_store = MEMORY");
}

StoreState check_Store(const std::filesystem::path& path, StoreKind kind) {
  require_PlainFile(path);
  try {
    SQLite::Database db(path.string(), SQLite::OPEN_READWRITE, kBusyTimeoutMs);
    const int version = schema_Version(db);
    if (version < 1 || version > kHighestVersion || is_ReadOnlyFormat(db, path) || is_CutShort(db, path) ||
        db.execAndGet("PRAGMA integrity_check(1)").getString() != "ok")
      return StoreState::damaged;
    if (version > schemaVersion()) return StoreState::newer;
    // An older version gets its last columns when it is opened.
    return version < schemaVersion() || has_Columns(db, kind) ? StoreState::sound : StoreState::damaged;
  } catch (const SQLite::Exception& failure) {
    if (is_Damage(failure)) return StoreState::damaged;
    throw StoreFailure(path, failure);
  }
}

bool is_Damage(const SQLite::Exception& failure) {
  switch (failure.getErrorCode()) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_ERROR:  // a format that the engine doesn't know; a table or column that isn't there
    case SQLITE_MISMATCH:
    case SQLITE_CONSTRAINT:
      return true;
    default:
      return false;
  }
}

}  // namespace lotmere

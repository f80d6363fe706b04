#include "store/store.hpp"

#include <sqlite3.h>

#include <algorithm>
#include <set>

#include "base/failure.hpp"
#include "base/platform.hpp"
#include "store/interval_mark.hpp"
#include "store/schema.hpp"
#include "store/store_files.hpp"

namespace lotmere {
namespace {

constexpr int kBusyTimeoutMs = 2000;
constexpr int kHighestVersion = 255;  // above it no version stands but flipped bits

void bringUpToDate(SQLite::Database& db) {
  if (storedVersion(db) == schemaVersion()) return;
  SQLite::Transaction change(db, SQLite::TransactionBehavior::IMMEDIATE);
  upgradeSchema(db);
  change.commit();
}

// Every column of every table: its table, name, type and constraints. Its place doesn't count: an upgrade
// adds at the end.
std::set<std::string> allColumns(SQLite::Database& db) {
  SQLite::Statement row(
      db,
      R"(SELECT t.name||'|'||c.name||'|'||c.type||'|'||c."notnull"||'|'||c.pk||'|'||ifnull(c.dflt_value,'')
                               FROM sqlite_master t, pragma_table_info(t.name) c WHERE t.type='table')");
  std::set<std::string> columns;
  while (row.executeStep()) columns.insert(row.getColumn(0).getString());
  return columns;
}

std::set<std::string> makeColumns(void (*create)(SQLite::Database&)) {
  SQLite::Database fresh(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
  create(fresh);
  return allColumns(fresh);
}

// The same for every file of a kind, so made once in the life of the process.
const std::set<std::string>& expectedColumns(StoreKind kind) {
  if (kind == StoreKind::main) {
    static const auto main_columns = makeColumns(&createTables);
    return main_columns;
  }
  static const auto profile_columns = makeColumns(&createUserTables);
  return profile_columns;
}

// A byte that changed in the middle of a table's definition leaves whole pages and a name that nothing finds.
bool hasColumns(SQLite::Database& db, StoreKind kind) {
  const auto columns = allColumns(db);
  const auto& expected = expectedColumns(kind);
  return std::includes(columns.begin(), columns.end(), expected.begin(), expected.end());
}

// The header can name a format that the engine reads and doesn't write.
bool isReadOnlyFormat(SQLite::Database& db, const std::filesystem::path& path) {
  return sqlite3_db_readonly(db.getHandle(), "main") == 1 && mayWrite(path);
}

// The engine reads what is missing of the last page as zeros.
bool isCutShort(SQLite::Database& db, const std::filesystem::path& path) {
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
  setStorePragmas(db_);
  bringUpToDate(db_);
  watchIntervals(db_);
} catch (const SQLite::Exception& failure) {
  throw StoreFailure(path, failure);
}

void Store::create(const std::filesystem::path& path, FileSystem& files) {
  writeDatabase(path, files, createSchema);
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

int storedVersion(SQLite::Database& db) { return db.execAndGet("PRAGMA user_version").getInt(); }

std::vector<std::pair<std::string, std::int64_t>> tableSizes(Store& store) {
  std::vector<std::pair<std::string, std::int64_t>> sizes;
  SQLite::Statement names(store.db(), "SELECT name FROM sqlite_master WHERE type='table' ORDER BY name");
  while (names.executeStep()) {
    const std::string name = names.getColumn(0).getString();
    sizes.emplace_back(name, store.db().execAndGet("SELECT count(*) FROM " + sqlName(name)).getInt64());
  }
  return sizes;
}

void setStorePragmas(SQLite::Database& db) {
  // A roll-back journal keeps the store one file between commands; EXTRA also flushes the journal's removal,
  // so that a command that said "done" is done after a power failure.
  db.exec(
      "PRAGMA journal_mode = DELETE; PRAGMA synchronous = EXTRA; PRAGMA cache_size = -16000; PRAGMA "
      "temp_store = MEMORY");
}

StoreState checkStore(const std::filesystem::path& path, StoreKind kind) {
  requirePlainFile(path);
  try {
    SQLite::Database db(path.string(), SQLite::OPEN_READWRITE, kBusyTimeoutMs);
    const int version = storedVersion(db);
    if (version < 1 || version > kHighestVersion || isReadOnlyFormat(db, path) || isCutShort(db, path) ||
        db.execAndGet("PRAGMA integrity_check(1)").getString() != "ok")
      return StoreState::damaged;
    if (version > schemaVersion()) return StoreState::newer;
    // An older version gets its last columns when it is opened.
    return version < schemaVersion() || hasColumns(db, kind) ? StoreState::sound : StoreState::damaged;
  } catch (const SQLite::Exception& failure) {
    if (isDamage(failure)) return StoreState::damaged;
    throw StoreFailure(path, failure);
  }
}

bool isDamage(const SQLite::Exception& failure) {
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

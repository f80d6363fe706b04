#include "core/store.hpp"

#include <sqlite3.h>

#include "core/schema.hpp"
#include "core/store_files.hpp"

namespace lotmere {
namespace {

constexpr int kBusyTimeoutMs = 2000;

int schema_Version(SQLite::Database& db) { return db.execAndGet("PRAGMA user_version").getInt(); }

void bring_UpToDate(SQLite::Database& db) {
  if (schema_Version(db) == kSchemaVersion) return;
  SQLite::Transaction change(db, SQLite::TransactionBehavior::IMMEDIATE);
  upgrade_Schema(db);
  change.commit();
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
Store::Store(const std::filesystem::path& path)
    : path_(path), db_(path.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX, kBusyTimeoutMs) {
  set_StorePragmas(db_);
  bring_UpToDate(db_);
}

void Store::create(const std::filesystem::path& path, FileSystem& files) {
  write_Database(path, files, [](SQLite::Database& db) {
    SQLite::Transaction change(db);
    create_Schema(db);
    change.commit();
  });
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

StoreState check_Store(const std::filesystem::path& path) {
  try {
    SQLite::Database db(path.string(), SQLite::OPEN_READWRITE, kBusyTimeoutMs);
    const int version = schema_Version(db);
    if (version < 1 || db.execAndGet("PRAGMA integrity_check(1)").getString() != "ok")
      return StoreState::damaged;
    return version > kSchemaVersion ? StoreState::newer : StoreState::sound;
  } catch (const SQLite::Exception& failure) {
    if (failure.getErrorCode() == SQLITE_CORRUPT || failure.getErrorCode() == SQLITE_NOTADB)
      return StoreState::damaged;
    throw;
  }
}

}  // namespace lotmere

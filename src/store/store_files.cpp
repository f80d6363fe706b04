#include "store/store_files.hpp"

#include <SQLiteCpp/Backup.h>
#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/format.h>
#include <sqlite3.h>

#include "base/failure.hpp"

namespace lotmere {
namespace {

namespace fs = std::filesystem;

fs::path withSuffix(fs::path path, const char* suffix) {
  path += suffix;
  return path;
}

// A file under construction beside its target: removed unless it was put in place.
class NewFile {
 public:
  NewFile(const fs::path& target, FileSystem& files)
      : target_(target), path_(withSuffix(target, ".new")), files_(files) {
    requirePlainFile(target_);
    requirePlainFile(journalOf(target_));
    clear();
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile() {
    std::error_code ignored;  // a left-over is overwritten by the next try
    fs::remove(path_, ignored);
    fs::remove(journalOf(path_), ignored);
  }

  [[nodiscard]] const fs::path& path() const { return path_; }

  void putInPlace() {
    fs::permissions(path_, fs::perms::owner_read | fs::perms::owner_write);
    files_.sync(path_);
    settleTarget();
    // The journal of the file that goes away must not be taken for one of the new file.
    files_.remove(journalOf(target_));
    files_.replace(path_, target_);
  }

 private:
  // An unfinished change of the old file is undone first: should the power fail between the two steps below,
  // the old file must be whole without its journal.
  void settleTarget() {
    if (!files_.exists(target_) || !files_.exists(journalOf(target_))) return;
    try {
      SQLite::Database(target_.string(), SQLite::OPEN_READWRITE, 2000).execAndGet("PRAGMA user_version");
    } catch (const SQLite::Exception& failure) {
      // A broken old file has nothing to lose.
      if (!isDamage(failure)) throw StoreFailure(target_, failure);
    }
  }
  static fs::path journalOf(const fs::path& path) { return withSuffix(path, "-journal"); }
  void clear() {
    files_.remove(path_);
    files_.remove(journalOf(path_));
  }

  fs::path target_;
  fs::path path_;
  FileSystem& files_;
};

// A file under construction needs no journal and no flush of its own: it is flushed whole before it takes its
// place, and a left-over means nothing.
void makeFile(const fs::path& path, FileSystem& files, const std::function<void(SQLite::Database&)>& fill) {
  NewFile file(path, files);
  workOn(path, [&] {
    SQLite::Database db(file.path().string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    db.exec("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF");
    fill(db);
  });
  file.putInPlace();
}

// A database to be read whole. An unfinished change is undone and flushed by the first look at it.
SQLite::Database openSource(const fs::path& path) {
  SQLite::Database source(path.string(), SQLite::OPEN_READWRITE, 2000);
  source.execAndGet("PRAGMA user_version");
  return source;
}

// The compaction proper, without a backup; throws on failure with the file as it was.
void compactInPlace(const fs::path& path, FileSystem& files) {
  NewFile file(path, files);
  workOn(path, [&] {
    SQLite::Database source = openSource(path);
    // The new file is written the way the old one is, which it needn't; the old one is only read from here
    // on.
    source.exec("PRAGMA synchronous = OFF");
    SQLite::Statement vacuum(source, "VACUUM INTO ?");
    vacuum.bind(1, file.path().string());
    vacuum.exec();
  });
  file.putInPlace();
}

}  // namespace

void writeDatabase(const fs::path& path, FileSystem& files,
                   const std::function<void(SQLite::Database&)>& fill) {
  makeFile(path, files, [&](SQLite::Database& db) {
    SQLite::Transaction change(db);
    fill(db);
    change.commit();
  });
}

bool copyDatabase(const fs::path& from, const fs::path& to, FileSystem& files, StoreKind kind) {
  if (!files.exists(from) || !isSoundStore(from, kind)) return false;
  makeFile(to, files, [&](SQLite::Database& target) {
    SQLite::Database source = workOn(from, [&] { return openSource(from); });
    SQLite::Backup copy(target, source);
    if (copy.executeStep(-1) != SQLITE_DONE)
      throw StoreFailure(from, SQLite::Exception("the database is busy and can't be copied", SQLITE_BUSY));
  });
  return true;
}

CompactResult compactMainDb(const fs::path& path, const fs::path& backup, bool refresh_backup,
                            FileSystem& files) {
  CompactResult result;
  result.existed = files.exists(path);
  if (!result.existed) return result;
  result.size_before = fs::file_size(path);
  result.size_after = result.size_before;
  if (refresh_backup) {
    try {
      result.backup_refreshed = copyDatabase(path, backup, files);
      if (!result.backup_refreshed) result.backup_failure = "数据文件已损坏。";
    } catch (const std::exception& failure) {
      result.backup_failure = failureText(failure);
    }
  }
  try {
    // A compaction of damaged pages can succeed and leave out what they held; so it isn't tried.
    if (checkStore(path) == StoreState::damaged) {
      result.restored = restoreFromBackup(path, backup, files);
      result.failure = result.restored ? "数据文件已损坏，已从备份恢复。" : "数据文件已损坏。";
      return result;
    }
    compactInPlace(path, files);
    result.compacted = true;
    result.size_after = fs::file_size(path);
  } catch (const std::exception& failure) {
    result.failure = failureText(failure);
  }
  return result;
}

std::string undoneText(const CompactResult& result) {
  std::string text;
  if (!result.backup_failure.empty()) text += "备份没有更新：" + result.backup_failure;
  if (!result.failure.empty()) text += (text.empty() ? "" : " ") + ("没有压缩：" + result.failure);
  return text;
}

fs::path keepCopy(const fs::path& path, const char* suffix, FileSystem& files) {
  fs::path aside = withSuffix(path, suffix);
  for (int i = 2; files.exists(aside); ++i) aside = withSuffix(path, (suffix + std::to_string(i)).c_str());
  try {
    fs::copy_file(path, aside);
    files.sync(aside);
  } catch (const fs::filesystem_error&) {
    fs::remove(aside);  // half a copy on a full disk, and another at the next try
    throw;
  }
  return aside;
}

fs::path keepDamaged(const fs::path& path, FileSystem& files) { return keepCopy(path, ".damaged", files); }

bool restoreFromBackup(const fs::path& path, const fs::path& backup, FileSystem& files) {
  return copyDatabase(backup, path, files);
}

}  // namespace lotmere

#include "core/store_files.hpp"

#include <SQLiteCpp/Backup.h>
#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/format.h>
#include <sqlite3.h>

#include "core/failure.hpp"

namespace lotmere {
namespace {

namespace fs = std::filesystem;

fs::path with_Suffix(fs::path path, const char* suffix) {
  path += suffix;
  return path;
}

// A file under construction beside its target: removed unless it was put in place.
class NewFile {
 public:
  NewFile(const fs::path& target, FileSystem& files)
      : target_(target), path_(with_Suffix(target, ".new")), files_(files) {
    require_PlainFile(target_);
    require_PlainFile(journal_Of(target_));
    clear();
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile() {
    std::error_code ignored;  // a left-over is overwritten by the next try
    fs::remove(path_, ignored);
    fs::remove(journal_Of(path_), ignored);
  }

  [[nodiscard]] const fs::path& path() const { return path_; }

  void put_InPlace() {
    fs::permissions(path_, fs::perms::owner_read | fs::perms::owner_write);
    files_.sync(path_);
    settle_Target();
    // The journal of the file that goes away must not be taken for one of the new file.
    files_.remove(journal_Of(target_));
    files_.replace(path_, target_);
  }

 private:
  // An unfinished change of the old file is undone first: should the power fail between the two steps below,
  // the old file must be whole without its journal.
  void settle_Target() {
    if (!files_.exists(target_) || !files_.exists(journal_Of(target_))) return;
    try {
      SQLite::Database(target_.string(), SQLite::OPEN_READWRITE, 2000).execAndGet("PRAGMA user_version");
    } catch (const SQLite::Exception& failure) {
      // A broken old file has nothing to lose.
      if (!is_Damage(failure)) throw StoreFailure(target_, failure);
    }
  }
  static fs::path journal_Of(const fs::path& path) { return with_Suffix(path, "-journal"); }
  void clear() {
    files_.remove(path_);
    files_.remove(journal_Of(path_));
  }

  fs::path target_;
  fs::path path_;
  FileSystem& files_;
};

// A file under construction needs no journal and no flush of its own: it is flushed whole before it takes its
// place, and a left-over means nothing.
void make_File(const fs::path& path, FileSystem& files, const std::function<void(SQLite::Database&)>& fill) {
  NewFile file(path, files);
  work_On(path, [&] {
    SQLite::Database db(file.path().string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    db.exec("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF");
    fill(db);
  });
  file.put_InPlace();
}

// A database to be read whole. An unfinished change is undone and flushed by the first look at it.
SQLite::Database open_Source(const fs::path& path) {
  SQLite::Database source(path.string(), SQLite::OPEN_READWRITE, 2000);
  source.execAndGet("PRAGMA user_version");
  return source;
}

// The compaction proper, without a backup; throws on failure with the file as it was.
void compact_InPlace(const fs::path& path, FileSystem& files) {
  NewFile file(path, files);
  work_On(path, [&] {
    SQLite::Database source = open_Source(path);
    // The new file is written the way the old one is, which it needn't; the old one is only read from here on.
    source.exec("PRAGMA synchronous = OFF");
    SQLite::Statement vacuum(source, "VACUUM INTO ?");
    vacuum.bind(1, file.path().string());
    vacuum.exec();
  });
  file.put_InPlace();
}

}  // namespace

void write_Database(const fs::path& path, FileSystem& files,
                    const std::function<void(SQLite::Database&)>& fill) {
  make_File(path, files, [&](SQLite::Database& db) {
    SQLite::Transaction change(db);
    fill(db);
    change.commit();
  });
}

bool copy_Database(const fs::path& from, const fs::path& to, FileSystem& files, StoreKind kind) {
  if (!files.exists(from) || !is_SoundStore(from, kind)) return false;
  make_File(to, files, [&](SQLite::Database& target) {
    SQLite::Database source = work_On(from, [&] { return open_Source(from); });
    SQLite::Backup copy(target, source);
    if (copy.executeStep(-1) != SQLITE_DONE)
      throw StoreFailure(from, SQLite::Exception("the database is busy and can't be copied", SQLITE_BUSY));
  });
  return true;
}

CompactResult compact_MainDb(const fs::path& path, const fs::path& backup, bool refresh_backup,
                             FileSystem& files) {
  CompactResult result;
  result.existed = files.exists(path);
  if (!result.existed) return result;
  result.size_before = fs::file_size(path);
  result.size_after = result.size_before;
  if (refresh_backup) {
    try {
      result.backup_refreshed = copy_Database(path, backup, files);
      if (!result.backup_refreshed) result.backup_failure = "数据文件已损坏。";
    } catch (const std::exception& failure) {
      result.backup_failure = failure_Text(failure);
    }
  }
  try {
    // A compaction of damaged pages can succeed and leave out what they held; so it isn't tried.
    if (check_Store(path) == StoreState::damaged) {
      result.restored = restore_FromBackup(path, backup, files);
      result.failure = result.restored ? "数据文件已损坏，已从备份恢复。" : "数据文件已损坏。";
      return result;
    }
    compact_InPlace(path, files);
    result.compacted = true;
    result.size_after = fs::file_size(path);
  } catch (const std::exception& failure) {
    result.failure = failure_Text(failure);
  }
  return result;
}

std::string undone_Text(const CompactResult& result) {
  std::string text;
  if (!result.backup_failure.empty()) text += "备份没有更新：" + result.backup_failure;
  if (!result.failure.empty()) text += (text.empty() ? "" : " ") + ("没有压缩：" + result.failure);
  return text;
}

fs::path keep_Copy(const fs::path& path, const char* suffix, FileSystem& files) {
  fs::path aside = with_Suffix(path, suffix);
  for (int i = 2; files.exists(aside); ++i) aside = with_Suffix(path, (suffix + std::to_string(i)).c_str());
  try {
    fs::copy_file(path, aside);
    files.sync(aside);
  } catch (const fs::filesystem_error&) {
    fs::remove(aside);  // half a copy on a full disk, and another at the next try
    throw;
  }
  return aside;
}

fs::path keep_Damaged(const fs::path& path, FileSystem& files) { return keep_Copy(path, ".damaged", files); }

bool restore_FromBackup(const fs::path& path, const fs::path& backup, FileSystem& files) {
  return copy_Database(backup, path, files);
}

}  // namespace lotmere

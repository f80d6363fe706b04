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
      if (!is_Damage(failure)) throw;
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

void vacuum_Into(const fs::path& from, const fs::path& to) {
  SQLite::Database source(from.string(), SQLite::OPEN_READWRITE, 2000);
  SQLite::Statement vacuum(source, "VACUUM INTO ?");
  vacuum.bind(1, to.string());
  vacuum.exec();
}

// The compaction proper, without a backup; throws on failure with the file as it was.
void compact_InPlace(const fs::path& path, FileSystem& files) {
  NewFile file(path, files);
  vacuum_Into(path, file.path());
  file.put_InPlace();
}

}  // namespace

void write_Database(const fs::path& path, FileSystem& files,
                    const std::function<void(SQLite::Database&)>& fill) {
  NewFile file(path, files);
  {
    SQLite::Database db(file.path().string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    fill(db);
  }
  file.put_InPlace();
}

bool copy_Database(const fs::path& from, const fs::path& to, FileSystem& files, StoreKind kind) {
  if (!files.exists(from) || !is_SoundStore(from, kind)) return false;
  write_Database(to, files, [&](SQLite::Database& target) {
    SQLite::Database source(from.string(), SQLite::OPEN_READWRITE, 2000);
    SQLite::Backup copy(target, source);
    if (copy.executeStep(-1) != SQLITE_DONE)
      throw SQLite::Exception("the database is busy and can't be copied");
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
    } catch (const std::exception& failure) {
      result.failure = failure_Text(failure);
    }
  }
  try {
    // A compaction of damaged pages can succeed and leave out what they held; so it isn't tried.
    if (check_Store(path) == StoreState::damaged) {
      result.failure = "数据文件已损坏。";
      result.restored = restore_FromBackup(path, backup, files);
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

CompactResult compact_Template(const fs::path& path, FileSystem& files) {
  CompactResult result;
  result.existed = files.exists(path);
  if (!result.existed) return result;
  try {
    compact_InPlace(path, files);
    result.compacted = true;
  } catch (const std::exception& failure) {
    result.failure = failure_Text(failure);
  }
  return result;
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

// Copying, compacting and restoring whole database files. Every new file is made by the engine beside its
// target, flushed, and put in its place in one step; a copy of a file that the engine calls damaged never
// takes the place of a good one.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "base/platform.hpp"
#include "store/store.hpp"

namespace lotmere {

// Makes a database file at `path`: `fill` writes it, in one transaction, as a new file beside `path`, which
// then takes its place. Throws what `fill` or the machine throws and leaves `path` as it was.
void writeDatabase(const std::filesystem::path& path, FileSystem& files,
                   const std::function<void(SQLite::Database&)>& fill);

// Copies the database `from` over `to`. False, with `to` as it was, when `from` isn't sound. Throws when the
// machine refuses (disk full); `to` then stands as it was too.
[[nodiscard]] bool copyDatabase(const std::filesystem::path& from, const std::filesystem::path& to,
                                FileSystem& files, StoreKind kind = StoreKind::main);

struct CompactResult {
  bool existed = false;           // false: there was no file, nothing was done
  bool backup_refreshed = false;  // the backup now equals the file as it was before compaction
  bool compacted = false;
  bool restored = false;           // the file was damaged and came back from the backup
  std::string backup_failure;      // why the backup isn't refreshed, empty when it is or needn't be
  std::string failure;             // what else went wrong, empty when nothing did
  std::uintmax_t size_before = 0;  // bytes
  std::uintmax_t size_after = 0;
};

// Compacts the store at `path`; with `refresh_backup` its copy goes to `backup` first. A failure of one step
// doesn't keep the others from being tried, and the store never ends worse than it was: a damaged one comes
// back from a sound backup.
CompactResult compactMainDb(const std::filesystem::path& path, const std::filesystem::path& backup,
                            bool refresh_backup, FileSystem& files = realFiles());

// What a compaction left undone, in one line for the user; empty when nothing.
[[nodiscard]] std::string undoneText(const CompactResult& result);

// Copies a file to the first free of the names "FILE" + suffix, "FILE" + suffix + "2", ... and returns that
// name. Throws when the machine refuses; half a copy is removed then.
std::filesystem::path keepCopy(const std::filesystem::path& path, const char* suffix, FileSystem& files);

// Copies a damaged file to the first free of the names "FILE.damaged", "FILE.damaged2", ...: what it still
// holds may matter to somebody who can read it. Returns that name. Throws when the machine refuses.
std::filesystem::path keepDamaged(const std::filesystem::path& path, FileSystem& files = realFiles());

// Puts the backup in the place of the store, a left-over journal of the old file removed first. False when
// the backup is missing or damaged itself; the store then stands as it was.
[[nodiscard]] bool restoreFromBackup(const std::filesystem::path& path, const std::filesystem::path& backup,
                                     FileSystem& files = realFiles());

}  // namespace lotmere

// Ways to break files and the machine, for the tests of the store's files.
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

#include "core/platform.hpp"
#include "support/test_store.hpp"

namespace lotmere::test {

namespace fs = std::filesystem;

// The real machine, but the step with the number `fail_at` (from 1) is refused; `before_step` is told of
// every step.
class FaultyFiles final : public FileSystem {
 public:
  explicit FaultyFiles(int fail_at = 0) : fail_at_(fail_at) {}
  std::function<void()> before_step;
  std::string steps;  // what was done, as "sync Lotmere.db.new "
  [[nodiscard]] bool failed() const { return step_ >= fail_at_; }

  bool exists(const fs::path& path) override { return real_Files().exists(path); }
  void remove(const fs::path& path) override { pass("remove", path), real_Files().remove(path); }
  void sync(const fs::path& path) override { pass("sync", path), real_Files().sync(path); }
  void replace(const fs::path& from, const fs::path& to) override {
    pass("replace", to), real_Files().replace(from, to);
  }
  void write_Whole(const fs::path& path, const std::string& bytes) override {
    pass("write", path), real_Files().write_Whole(path, bytes);
  }

 private:
  void pass(const char* step, const fs::path& path) {
    if (before_step) before_step();
    steps += step + (' ' + path.filename().string()) + ' ';
    if (++step_ == fail_at_)
      throw fs::filesystem_error("refused", path, std::make_error_code(std::errc::no_space_on_device));
  }
  int fail_at_;
  int step_ = 0;
};

// Runs `work` again and again, refusing its first step, its second, ..., until a run meets no refusal.
inline void refuse_EachStep(const std::function<void(FaultyFiles&)>& work) {
  for (int step = 1;; ++step) {
    SCOPED_TRACE("refused step " + std::to_string(step));
    FaultyFiles files(step);
    work(files);
    if (!files.failed()) return;
  }
}

inline fs::path with_Suffix(fs::path path, const char* suffix) { return path += suffix; }

// The bytes of a file, "missing" without one. Compare with ==, so that a failed test doesn't print them.
inline std::string bytes_Of(const fs::path& path) { return fs::exists(path) ? read_File(path) : "missing"; }

inline void write_File(const fs::path& path, const std::string& bytes) {
  real_Files().write_Whole(path, bytes);
}

inline void change_File(const fs::path& path, const std::string& sql) {
  SQLite::Database(path.string(), SQLite::OPEN_READWRITE).exec(sql);
}

// A store with so many tickets, by which the tests tell one from another.
inline void make_Store(const fs::path& path, int tickets) {
  Store::create(path);
  Store store(path);
  for (int i = 1; i <= tickets; ++i) put_Ticket(store, i, i, 2007001, {{1, 2, 3, 4, 5, 6}, 7});
}

// The tickets of a sound store, -1 for a file that is none.
inline int tickets_In(const fs::path& path) {
  if (!fs::exists(path) || !is_SoundStore(path)) return -1;
  SQLite::Database db(path.string());
  return db.execAndGet("SELECT count(*) FROM \"日志表\" WHERE \"期号\"=2007001").getInt();
}

struct Damage {
  const char* name;
  void (*inflict)(const fs::path&);
};

inline constexpr Damage kDamage[] = {
    {"cut short", [](const fs::path& path) { fs::resize_file(path, fs::file_size(path) / 2 + 100); }},
    {"emptied", [](const fs::path& path) { fs::resize_file(path, 0); }},
    {"not a database", [](const fs::path& path) { write_File(path, std::string(8192, 'x')); }},
    {"bytes turned over in the middle",
     [](const fs::path& path) {
       std::string bytes = read_File(path);
       for (std::size_t i = bytes.size() / 3; i < bytes.size() / 3 * 2; ++i)
         bytes[i] = static_cast<char>(~bytes[i]);
       write_File(path, bytes);
     }},
    {"a row lost inside a page",  // the engine's check finds it, a plain read doesn't
     [](const fs::path& path) {
       SQLite::Database db(path.string());
       const int page = db.execAndGet("SELECT rootpage FROM sqlite_master WHERE name='日志表'").getInt();
       const int page_size = db.execAndGet("PRAGMA page_size").getInt();
       std::string bytes = read_File(path);
       --bytes[std::size_t(page - 1) * page_size + 4];
       write_File(path, bytes);
     }},
};

// Leaves a store as a crash in the middle of a change would: pages half written, the journal that undoes them
// beside it. Without its journal the file has no ticket.
inline void crash_InChange(const fs::path& path) {
  const fs::path journal = with_Suffix(path, "-journal");
  SQLite::Database db(path.string(), SQLite::OPEN_READWRITE);
  // A cache of a few pages writes the first changes out while the others are still being made.
  db.exec(R"(PRAGMA synchronous = OFF; PRAGMA cache_size = 3; BEGIN; UPDATE "日志表" SET "期号"=1;
             UPDATE "号码特性" SET "大数"=7; UPDATE "号码特性2" SET "三波组0"=7; UPDATE "号码特性3" SET "六区间1"=7)");
  const std::string half = read_File(path);
  const std::string undo = read_File(journal);
  db.exec("ROLLBACK");
  write_File(path, half);
  ASSERT_EQ(tickets_In(path), 0) << "the crash has to reach the file";
  write_File(journal, undo);
}

}  // namespace lotmere::test

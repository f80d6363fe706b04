// Whole database files, and the folder they stand in, under damage, refusals and crashes.
#include "core/store_files.hpp"

#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>

#include "core/desk_script.hpp"
#include "core/failure.hpp"
#include "core/schema.hpp"
#include "support/faulty_files.hpp"
#include "support/test_store.hpp"

namespace lotmere::test {
namespace {

namespace fs = std::filesystem;

fs::path with_Suffix(fs::path path, const char* suffix) { return path += suffix; }

// The bytes of a file, "missing" without one. Compare with ==, so that a failed test doesn't print them.
std::string bytes_Of(const fs::path& path) { return fs::exists(path) ? read_File(path) : "missing"; }

void write_File(const fs::path& path, const std::string& text) { real_Files().write_Whole(path, text); }

// A store with so many tickets, by which the tests tell one from another.
void put_Store(const fs::path& path, int tickets) {
  Store::create(path);
  Store store(path);
  for (int i = 1; i <= tickets; ++i) put_Ticket(store, i, i, 2007001, {{1, 2, 3, 4, 5, 6}, 7});
}

// The tickets of a sound store, -1 for a file that is none.
int tickets_In(const fs::path& path) {
  if (!fs::exists(path) || !is_SoundStore(path)) return -1;
  return static_cast<int>(Store(path).value(R"(SELECT count(*) FROM "日志表" WHERE "期号"=2007001)"));
}

void cut_Short(const fs::path& path) { fs::resize_file(path, fs::file_size(path) / 2 + 100); }
void overwrite(const fs::path& path) { write_File(path, std::string(8192, 'x')); }

void lose_Ticket(const fs::path& path) { lose_Row(path, "日志表"); }

// One byte of the file's header: the number of a format, which the engine then refuses, or only reads.
void flip(const fs::path& path, std::size_t place) {
  std::string bytes = read_File(path);
  bytes.at(place) = static_cast<char>(~bytes.at(place));
  write_File(path, bytes);
}
void spoil_SchemaFormat(const fs::path& path) { flip(path, 47); }
void spoil_WriteFormat(const fs::path& path) { flip(path, 18); }
void spoil_Version(const fs::path& path) { flip(path, 61); }
void rename_Column(const fs::path& path) {
  Store(path).db().exec(R"(ALTER TABLE "过滤条件" RENAME COLUMN "Value" TO "value ")");
}
void become_Profile(const fs::path& path) { write_Database(path, real_Files(), create_Profile); }

// Leaves a store as a crash in the middle of a change would: pages half written, the journal that undoes them
// beside it. Without its journal the file has no ticket.
void crash_InChange(const fs::path& path) {
  SQLite::Database db(path.string(), SQLite::OPEN_READWRITE);
  // A cache of a few pages writes the first changes out while the others are still being made.
  db.exec(R"(PRAGMA synchronous = OFF; PRAGMA cache_size = 3; BEGIN; UPDATE "日志表" SET "期号"=1;
             UPDATE "号码特性" SET "大数"=7; UPDATE "号码特性2" SET "三波组0"=7; UPDATE "号码特性3" SET "六区间1"=7)");
  const std::string half = read_File(path);
  const std::string undo = read_File(with_Suffix(path, "-journal"));
  db.exec("ROLLBACK");
  write_File(path, half);
  ASSERT_EQ(tickets_In(path), 0) << "the crash has to reach the file";
  write_File(with_Suffix(path, "-journal"), undo);
}

enum class File { missing, good, damaged, newer, crashed, journal_only };
using enum File;

// A folder whose store holds three tickets and whose backup holds one.
struct Folder {
  TempHome temp;
  const Home& home = temp.home();
  const fs::path main = home.main_Db();
  const fs::path backup = home.backup_Db();
  ScriptedDesk desk;

  explicit Folder(File store = good, File copy = good) { put(main, store, 3), put(backup, copy, 1); }
  static void put(const fs::path& path, File state, int tickets) {
    if (state != missing) put_Store(path, tickets);
    if (state == damaged) cut_Short(path);
    if (state == newer) Store(path).db().exec("PRAGMA user_version = " + std::to_string(schemaVersion() + 1));
    if (state >= crashed) crash_InChange(path);
    if (state == journal_only) fs::remove(path);
  }
};

TEST(Home, IsTheProgramFolderWhereItIsMarkedAndHasOneHolder) {
  TempHome temp;
  EXPECT_EQ(find_Home(temp.path(), "/data", "/home/u").folder, "/data/Lotmere");
  EXPECT_EQ(find_Home(temp.path(), "relative", "/home/u").folder, "/home/u/.local/share/Lotmere");
  write_File(temp.path() / "portable", "");
  EXPECT_EQ(find_Home(temp.path(), "/data", "/home/u").folder, temp.path());
  EXPECT_FALSE(HomeLock::take(temp.home()) && HomeLock::take(temp.home())) << "the first still holds it";
}

TEST(OpenHome, InEveryCombinationOfStoreAndBackup) {
  constexpr int kRefused = -2;
  const struct {
    const char* name;
    File main, backup;
    int tickets, backup_tickets;  // afterwards
    std::size_t tips;
  } rows[] = {{"a new folder", missing, missing, 0, 0, 0},
              {"store lost", missing, good, 1, 1, 1},
              {"store lost, its journal left", journal_only, good, 1, 1, 1},
              {"store lost, backup damaged", missing, damaged, kRefused, 0, 0},
              {"no backup yet", good, missing, 3, 3, 0},
              {"backup damaged", good, damaged, 3, -1, 0},
              {"crashed in a change", crashed, good, 3, 1, 0},
              {"store of a newer program", newer, good, kRefused, 0, 0},
              {"store damaged", damaged, good, 1, 1, 1},
              {"both damaged", damaged, damaged, kRefused, 0, 0}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Folder folder(row.main, row.backup);
    const std::string main = bytes_Of(folder.main);
    const std::string backup = bytes_Of(folder.backup);
    EXPECT_EQ(open_Home(folder.home, folder.desk) != nullptr, row.tickets != kRefused);
    EXPECT_EQ(folder.desk.tips.size(), row.tips);
    EXPECT_EQ(folder.desk.told.size(), row.tickets == kRefused ? 1u : 0u);
    if (row.tickets == kRefused) {
      EXPECT_TRUE(bytes_Of(folder.main) == main && bytes_Of(folder.backup) == backup);
      continue;
    }
    EXPECT_EQ(tickets_In(folder.main), row.tickets);
    EXPECT_EQ(tickets_In(folder.backup), row.backup_tickets);
    const std::string aside = bytes_Of(with_Suffix(folder.main, ".damaged"));
    EXPECT_TRUE(aside == (row.main == damaged ? main : "missing"));
  }
}

TEST(StoreFiles, AFailureNamesItsFile) {
  Folder folder;
  SQLite::Database other(folder.main.string(), SQLite::OPEN_READWRITE);
  const std::pair<const char*, fs::path> copies[] = {
      {"Lotmere.db”（正被别的程序使用）", folder.backup},
      {"none/copy.db”（无法打开）", folder.home.folder / "none" / "copy.db"}};
  other.exec("BEGIN EXCLUSIVE");
  for (const auto& [said, target] : copies) {
    try {
      static_cast<void>(copy_Database(folder.main, target, real_Files()));
      ADD_FAILURE() << said;
    } catch (const SQLite::Exception& failure) {
      EXPECT_NE(failure_Text(failure).find(said), std::string::npos) << failure_Text(failure);
    }
    other.tryExec("ROLLBACK");
  }
}

// What can't be read is not therefore damaged: the work may throw or answer nothing, but both files stay.
TEST(StoreFiles, AStoreLockedByAnotherProgramIsNeitherReplacedNorCopied) {
  for (const bool after_check : {false, true}) {
    Folder folder;
    SQLite::Database other(folder.main.string(), SQLite::OPEN_READWRITE);
    FaultyFiles machine;
    machine.before_step = [&] { other.tryExec("BEGIN EXCLUSIVE"); };
    if (!after_check) {
      machine.before_step();
      EXPECT_THROW((void)open_Home(folder.home, folder.desk), SQLite::Exception);
      EXPECT_NE(compact_MainDb(folder.main, folder.backup, false).failure, "");
    }
    EXPECT_THROW((void)copy_Database(folder.main, folder.backup, machine), SQLite::Exception);
    other.tryExec("ROLLBACK");
    EXPECT_EQ(tickets_In(folder.main), 3);
    EXPECT_EQ(tickets_In(folder.backup), 1);
  }
}

TEST(StoreFiles, ARestoreOverAHalfWrittenStoreIsWholeWhereverItBreaksOff) {
  refuse_EachStep([](FaultyFiles& machine) {
    Folder folder(crashed);
    bool restored = false;
    try {
      restored = restore_FromBackup(folder.main, folder.backup, machine);
    } catch (const fs::filesystem_error&) {
      EXPECT_TRUE(machine.failed());
    }
    EXPECT_EQ(restored, !machine.failed());
    EXPECT_EQ(tickets_In(folder.main), restored ? 1 : 3) << "half-written pages without their journal";
    EXPECT_FALSE(fs::exists(with_Suffix(folder.main, ".new")));
  });
}

TEST(Compaction, RefreshesTheBackupAndShrinksTheFile) {
  Folder folder;
  Store(folder.main).db().exec("CREATE TABLE waste AS SELECT randomblob(99999); DROP TABLE waste");
  const auto size = fs::file_size(folder.main);
  FaultyFiles machine;
  EXPECT_EQ(compact_MainDb(folder.main, folder.backup, true, machine).failure, "");
  EXPECT_EQ(tickets_In(folder.main), 3);
  EXPECT_EQ(tickets_In(folder.backup), 3);
  EXPECT_LT(fs::file_size(folder.main), size);
  for (const std::string file : {"Lotmere.db", "Lotmere.backup.db"})
    EXPECT_LT(machine.steps.find("sync " + file + ".new "), machine.steps.find("replace " + file + " "));
}

TEST(Compaction, ADamagedStoreNeverCostsTheGoodBackup) {
  for (const auto damage : {cut_Short, overwrite, lose_Ticket, spoil_SchemaFormat, spoil_WriteFormat,
                            spoil_Version, rename_Column, become_Profile}) {
    Folder folder;
    damage(folder.main);
    const std::string bytes = bytes_Of(folder.main);
    const CompactResult result = compact_MainDb(folder.main, folder.backup, true);
    EXPECT_TRUE(result.restored && !result.backup_refreshed && !result.compacted);
    EXPECT_EQ(tickets_In(folder.main), 1);
    EXPECT_EQ(tickets_In(folder.backup), 1);
    write_File(folder.main, bytes);
    fs::remove(folder.backup);
    EXPECT_NE(compact_MainDb(folder.main, folder.backup, true).failure, "");
    EXPECT_TRUE(bytes_Of(folder.main) == bytes) << "without a backup what there is must stay";
  }
}

}  // namespace
}  // namespace lotmere::test

// Whole database files, and the folder they stand in, under damage, refusals and crashes.
#include "store/store_files.hpp"

#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>

#include "base/failure.hpp"
#include "store/schema.hpp"
#include "support/desk_script.hpp"
#include "support/faulty_files.hpp"
#include "support/test_store.hpp"

namespace lotmere::test {
namespace {

namespace fs = std::filesystem;

fs::path withSuffix(fs::path path, const char* suffix) { return path += suffix; }

// The bytes of a file, "missing" without one. Compare with ==, so that a failed test doesn't print them.
std::string bytesOf(const fs::path& path) { return fs::exists(path) ? readFile(path) : "missing"; }

void writeFile(const fs::path& path, const std::string& text) { realFiles().writeWhole(path, text); }

// A store with so many tickets, by which the tests tell one from another.
void putStore(const fs::path& path, int tickets) {
  Store::create(path);
  Store store(path);
  for (int i = 1; i <= tickets; ++i) putTicket(store, i, i, 2007001, {{1, 2, 3, 4, 5, 6}, 7});
}

// The tickets of a sound store, -1 for a file that is none.
int ticketsIn(const fs::path& path) {
  if (!fs::exists(path) || !isSoundStore(path)) return -1;
  return static_cast<int>(Store(path).value(R"(SELECT count(*) FROM "日志表" WHERE "期号"=2007001)"));
}

void cutShort(const fs::path& path) { fs::resize_file(path, fs::file_size(path) / 2 + 100); }
void overwrite(const fs::path& path) { writeFile(path, std::string(8192, 'x')); }

void loseTicket(const fs::path& path) { loseRow(path, "日志表"); }

// One byte of the file's header: the number of a format, which the engine then refuses, or only reads.
void flip(const fs::path& path, std::size_t place) {
  std::string bytes = readFile(path);
  bytes.at(place) = static_cast<char>(~bytes.at(place));
  writeFile(path, bytes);
}
void spoilSchemaFormat(const fs::path& path) { flip(path, 47); }
void spoilWriteFormat(const fs::path& path) { flip(path, 18); }
void spoilVersion(const fs::path& path) { flip(path, 61); }
void renameColumn(const fs::path& path) {
  Store(path).db().exec(R"(ALTER TABLE "过滤条件" RENAME COLUMN "Value" TO "value ")");
}
void becomeProfile(const fs::path& path) { writeDatabase(path, realFiles(), createProfile); }

// Leaves a store as a crash in the middle of a change would: pages half written, the journal that undoes them
// beside it. Without its journal the file has no ticket.
void crashInChange(const fs::path& path) {
  SQLite::Database db(path.string(), SQLite::OPEN_READWRITE);
  // A cache of a few pages writes the first changes out while the others are still being made.
  db.exec(R"(PRAGMA synchronous = OFF; PRAGMA cache_size = 3; BEGIN; UPDATE "日志表" SET "期号"=1;
             UPDATE "号码特性" SET "大数"=7; UPDATE "号码特性2" SET "三波组0"=7; UPDATE "号码特性3" SET
             "六区间1"=7)");
  const std::string half = readFile(path);
  const std::string undo = readFile(withSuffix(path, "-journal"));
  db.exec("ROLLBACK");
  writeFile(path, half);
  ASSERT_EQ(ticketsIn(path), 0) << "the crash has to reach the file";
  writeFile(withSuffix(path, "-journal"), undo);
}

enum class File { missing, good, damaged, newer, crashed, journal_only };
using enum File;

// A folder whose store holds three tickets and whose backup holds one.
struct Folder {
  TempHome temp;
  const Home& home = temp.home();
  const fs::path main = home.mainDb();
  const fs::path backup = home.backupDb();
  ScriptedDesk desk;

  explicit Folder(File store = good, File copy = good) { put(main, store, 3), put(backup, copy, 1); }
  static void put(const fs::path& path, File state, int tickets) {
    if (state != missing) putStore(path, tickets);
    if (state == damaged) cutShort(path);
    if (state == newer) Store(path).db().exec("PRAGMA user_version = " + std::to_string(schemaVersion() + 1));
    if (state >= crashed) crashInChange(path);
    if (state == journal_only) fs::remove(path);
  }
};

TEST(Home, IsTheProgramFolderWhereItIsMarkedAndHasOneHolder) {
  TempHome temp;
  EXPECT_EQ(findHome(temp.path(), "/data", "/home/u").folder, "/data/Lotmere");
  EXPECT_EQ(findHome(temp.path(), "relative", "/home/u").folder, "/home/u/.local/share/Lotmere");
  writeFile(temp.path() / "portable", "");
  EXPECT_EQ(findHome(temp.path(), "/data", "/home/u").folder, temp.path());
  EXPECT_FALSE(lockHome(temp.home()) && lockHome(temp.home())) << "the first still holds it";
}

TEST(OpenHome, InEveryCombinationOfStoreAndBackup) {
  constexpr int refused = -2;
  const struct {
    const char* name;
    File main, backup;
    int tickets, backup_tickets;  // afterwards
    std::size_t tips;
  } rows[] = {{"a new folder", missing, missing, 0, 0, 0},
              {"store lost", missing, good, 1, 1, 1},
              {"store lost, its journal left", journal_only, good, 1, 1, 1},
              {"store lost, backup damaged", missing, damaged, refused, 0, 0},
              {"no backup yet", good, missing, 3, 3, 0},
              {"backup damaged", good, damaged, 3, -1, 0},
              {"crashed in a change", crashed, good, 3, 1, 0},
              {"store of a newer program", newer, good, refused, 0, 0},
              {"store damaged", damaged, good, 1, 1, 1},
              {"both damaged", damaged, damaged, refused, 0, 0}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Folder folder(row.main, row.backup);
    const std::string main = bytesOf(folder.main);
    const std::string backup = bytesOf(folder.backup);
    EXPECT_EQ(openHome(folder.home, folder.desk) != nullptr, row.tickets != refused);
    EXPECT_EQ(folder.desk.tips.size(), row.tips);
    EXPECT_EQ(folder.desk.told.size(), row.tickets == refused ? 1u : 0u);
    if (row.tickets == refused) {
      EXPECT_TRUE(bytesOf(folder.main) == main && bytesOf(folder.backup) == backup);
      continue;
    }
    EXPECT_EQ(ticketsIn(folder.main), row.tickets);
    EXPECT_EQ(ticketsIn(folder.backup), row.backup_tickets);
    const std::string aside = bytesOf(withSuffix(folder.main, ".damaged"));
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
      static_cast<void>(copyDatabase(folder.main, target, realFiles()));
      ADD_FAILURE() << said;
    } catch (const SQLite::Exception& failure) {
      EXPECT_NE(failureText(failure).find(said), std::string::npos) << failureText(failure);
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
      EXPECT_THROW((void)openHome(folder.home, folder.desk), SQLite::Exception);
      EXPECT_NE(compactMainDb(folder.main, folder.backup, false).failure, "");
    }
    EXPECT_THROW((void)copyDatabase(folder.main, folder.backup, machine), SQLite::Exception);
    other.tryExec("ROLLBACK");
    EXPECT_EQ(ticketsIn(folder.main), 3);
    EXPECT_EQ(ticketsIn(folder.backup), 1);
  }
}

TEST(StoreFiles, ARestoreOverAHalfWrittenStoreIsWholeWhereverItBreaksOff) {
  refuseEachStep([](FaultyFiles& machine) {
    Folder folder(crashed);
    bool restored = false;
    try {
      restored = restoreFromBackup(folder.main, folder.backup, machine);
    } catch (const fs::filesystem_error&) {
      EXPECT_TRUE(machine.failed());
    }
    EXPECT_EQ(restored, !machine.failed());
    EXPECT_EQ(ticketsIn(folder.main), restored ? 1 : 3) << "half-written pages without their journal";
    EXPECT_FALSE(fs::exists(withSuffix(folder.main, ".new")));
  });
}

TEST(Compaction, RefreshesTheBackupAndShrinksTheFile) {
  Folder folder;
  Store(folder.main).db().exec("CREATE TABLE waste AS SELECT randomblob(99999); DROP TABLE waste");
  const auto size = fs::file_size(folder.main);
  FaultyFiles machine;
  EXPECT_EQ(compactMainDb(folder.main, folder.backup, true, machine).failure, "");
  EXPECT_EQ(ticketsIn(folder.main), 3);
  EXPECT_EQ(ticketsIn(folder.backup), 3);
  EXPECT_LT(fs::file_size(folder.main), size);
  for (const std::string file : {"Lotmere.db", "Lotmere.backup.db"})
    EXPECT_LT(machine.steps.find("sync " + file + ".new "), machine.steps.find("replace " + file + " "));
}

TEST(Compaction, ADamagedStoreNeverCostsTheGoodBackup) {
  for (const auto damage : {cutShort, overwrite, loseTicket, spoilSchemaFormat, spoilWriteFormat,
                            spoilVersion, renameColumn, becomeProfile}) {
    Folder folder;
    damage(folder.main);
    const std::string bytes = bytesOf(folder.main);
    const CompactResult result = compactMainDb(folder.main, folder.backup, true);
    EXPECT_TRUE(result.restored && !result.backup_refreshed && !result.compacted);
    EXPECT_EQ(ticketsIn(folder.main), 1);
    EXPECT_EQ(ticketsIn(folder.backup), 1);
    writeFile(folder.main, bytes);
    fs::remove(folder.backup);
    EXPECT_NE(compactMainDb(folder.main, folder.backup, true).failure, "");
    EXPECT_TRUE(bytesOf(folder.main) == bytes) << "without a backup what there is must stay";
  }
}

}  // namespace
}  // namespace lotmere::test

// Whole database files under damage, refusals and crashes. Stores are told apart by their tickets: the main
// one holds three, its backup one.
#include "core/store_files.hpp"

#include <gtest/gtest.h>

#include "core/schema.hpp"
#include "faults.hpp"

namespace lotmere {
namespace {

using namespace test;

struct Files {
  TempHome home;
  fs::path main = home.home().main_Db();
  fs::path backup = home.home().backup_Db();

  Files() {
    make_Store(main, 3);
    make_Store(backup, 1);
  }
};

TEST(StoreFiles, ARestoreOverAHalfWrittenStoreIsWholeWhereverItBreaksOff) {
  refuse_EachStep([](FaultyFiles& machine) {
    Files files;
    crash_InChange(files.main);
    bool restored = false;
    try {
      restored = restore_FromBackup(files.main, files.backup, machine);
    } catch (const fs::filesystem_error&) {
      EXPECT_TRUE(machine.failed());
    }
    EXPECT_EQ(restored, !machine.failed());
    EXPECT_EQ(tickets_In(files.main), restored ? 1 : 3)
        << "half-written pages stand without the journal that undoes them";
    EXPECT_EQ(tickets_In(files.backup), 1);
    EXPECT_FALSE(fs::exists(with_Suffix(files.main, ".new")));
  });
}

TEST(StoreFiles, ANewFileIsFlushedBeforeItTakesItsPlace) {
  Files files;
  FaultyFiles machine;
  ASSERT_TRUE(copy_Database(files.main, files.backup, machine));
  const std::size_t flushed = machine.steps.find("sync Lotmere.backup.db.new");
  ASSERT_NE(flushed, std::string::npos);
  EXPECT_NE(machine.steps.find("replace Lotmere.backup.db ", flushed), std::string::npos);
}

TEST(StoreFiles, ASourceThatIsLockedMeanwhileLeavesTheTarget) {
  Files files;
  SQLite::Database other(files.main.string(), SQLite::OPEN_READWRITE);
  bool locked = false;
  FaultyFiles machine;
  machine.before_step = [&] {
    if (!locked) other.exec("BEGIN EXCLUSIVE");
    locked = true;
  };
  try {
    EXPECT_FALSE(copy_Database(files.main, files.backup, machine));
  } catch (const std::exception&) {
    EXPECT_TRUE(locked);
  }
  EXPECT_EQ(tickets_In(files.backup), 1);
}

TEST(Compaction, RefreshesTheBackupAndShrinksTheFile) {
  Files files;
  change_File(files.main, "CREATE TABLE waste AS SELECT randomblob(99999); DROP TABLE waste");
  const auto size = fs::file_size(files.main);
  const CompactResult result = compact_MainDb(files.main, files.backup, true);
  EXPECT_TRUE(result.existed && result.backup_refreshed && result.compacted && !result.restored);
  EXPECT_EQ(result.failure, "");
  EXPECT_EQ(tickets_In(files.main), 3);
  EXPECT_EQ(tickets_In(files.backup), 3);
  EXPECT_EQ(fs::file_size(files.backup), size);
  EXPECT_LT(fs::file_size(files.main), size);
}

TEST(Compaction, OfAMissingFileDoesNothing) {
  Files files;
  fs::remove(files.main);
  const std::string bytes = bytes_Of(files.backup);
  const CompactResult result = compact_MainDb(files.main, files.backup, true);
  EXPECT_FALSE(result.existed || result.backup_refreshed || result.compacted || result.restored);
  EXPECT_FALSE(compact_Template(files.main).existed);
  EXPECT_FALSE(fs::exists(files.main));
  EXPECT_TRUE(bytes_Of(files.backup) == bytes);
}

TEST(Compaction, ADamagedStoreNeverCostsTheGoodBackup) {
  for (const Damage& damage : kDamage) {
    SCOPED_TRACE(damage.name);
    Files files;
    damage.inflict(files.main);
    ASSERT_EQ(tickets_In(files.main), -1);
    const std::string bytes = bytes_Of(files.main);
    const CompactResult result = compact_MainDb(files.main, files.backup, true);
    EXPECT_TRUE(result.restored && !result.backup_refreshed && !result.compacted);
    EXPECT_EQ(tickets_In(files.main), 1);
    EXPECT_EQ(tickets_In(files.backup), 1);

    write_File(files.main, bytes);
    fs::remove(files.backup);
    EXPECT_NE(compact_MainDb(files.main, files.backup, true).failure, "");
    EXPECT_TRUE(bytes_Of(files.main) == bytes) << "without a backup what there is must stay";
    EXPECT_FALSE(fs::exists(files.backup));
  }
}

TEST(Compaction, ARefusedStepIsReportedAndCostsNothing) {
  for (const bool damaged : {false, true}) {
    refuse_EachStep([damaged](FaultyFiles& machine) {
      Files files;
      if (damaged) kDamage[0].inflict(files.main);
      CompactResult result;
      EXPECT_NO_THROW(result = compact_MainDb(files.main, files.backup, true, machine));
      EXPECT_EQ(result.failure.empty(), !machine.failed() && !damaged);
      EXPECT_EQ(tickets_In(files.main), damaged ? (result.restored ? 1 : -1) : 3);
      EXPECT_EQ(tickets_In(files.backup), result.backup_refreshed ? 3 : 1);
    });
  }
}

TEST(Compaction, TheTemplateStaysWholeWhereverItBreaksOff) {
  refuse_EachStep([](FaultyFiles& machine) {
    TempHome home;
    const fs::path path = home.path() / "TJmode.tjmod";
    write_Database(path, real_Files(), [](SQLite::Database& db) {
      SQLite::Transaction change(db);
      create_ProfileTables(db);
      db.exec("CREATE TABLE waste AS SELECT randomblob(99999); DROP TABLE waste");
      change.commit();
    });
    const std::string bytes = bytes_Of(path);
    const CompactResult result = compact_Template(path, machine);
    EXPECT_EQ(result.compacted, !machine.failed());
    EXPECT_EQ(result.compacted, result.failure.empty());
    EXPECT_TRUE(result.compacted ? fs::file_size(path) < bytes.size() : bytes_Of(path) == bytes);
    EXPECT_EQ(SQLite::Database(path.string()).execAndGet("SELECT count(*) FROM \"号码特性\"").getInt(),
              kRedCount);
  });
}

TEST(WholeFile, AFailedWriteLeavesNothingBehind) {
  TempHome home;
  const fs::path taken = home.path() / "folder";
  fs::create_directories(taken / "inside");
  EXPECT_THROW(real_Files().write_Whole(taken, "text"), fs::filesystem_error);
  EXPECT_THROW(real_Files().write_Whole(home.path() / "missing" / "file", "text"), fs::filesystem_error);
  EXPECT_FALSE(fs::exists(with_Suffix(taken, ".new")));
}

}  // namespace
}  // namespace lotmere

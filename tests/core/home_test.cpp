#include "core/home.hpp"

#include <gtest/gtest.h>

#include "core/desk_script.hpp"
#include "core/schema.hpp"
#include "core/store_files.hpp"
#include "faults.hpp"

namespace lotmere {
namespace {

using namespace test;

TEST(HomeLock, KeepsASecondHolderOutUntilTheFirstLetsGo) {
  TempHome temp;
  const Home home{temp.path() / "not" / "there" / "yet"};
  auto first = HomeLock::take(home);
  ASSERT_TRUE(first);
  EXPECT_FALSE(HomeLock::take(home));
  EXPECT_FALSE(HomeLock::take(home)) << "a refused try must not let the holder's lock go";
  first.reset();
  EXPECT_TRUE(HomeLock::take(home));
}

TEST(FindHome, PrefersTheProgramFolderWhereItIsMarked) {
  TempHome temp;
  const fs::path& program = temp.path();
  struct Row {
    const char* name;
    const char* marker;
    const char* data_home;
    fs::path folder;
  };
  const Row rows[] = {
      {"no variable", "other", "", "/home/u/.local/share/Lotmere"},
      {"XDG_DATA_HOME", "other", "/data", "/data/Lotmere"},
      {"a relative XDG_DATA_HOME says nothing", "other", "data", "/home/u/.local/share/Lotmere"},
      {"marker", "portable", "/data", program},
      {"store beside the program", "Lotmere.db", "/data", program},
      {"a backup alone marks nothing", "Lotmere.backup.db", "/data", "/data/Lotmere"},
  };
  for (const Row& row : rows) {
    write_File(program / row.marker, "");
    EXPECT_EQ(find_Home(program, row.data_home, "/home/u").folder, row.folder) << row.name;
    fs::remove(program / row.marker);
  }
}

enum class File { missing, good, damaged };

void put_File(const fs::path& path, File state, int tickets) {
  if (state == File::missing) return;
  make_Store(path, tickets);
  if (state == File::damaged) kDamage[0].inflict(path);
}

// The main store holds three tickets, the backup one.
TEST(OpenHome, InEveryCombinationOfStoreAndBackup) {
  using enum File;
  constexpr int kRefused = -2;
  struct Row {
    const char* name;
    File main, backup;
    int tickets, backup_tickets;  // afterwards
    std::size_t tips;
  };
  const Row rows[] = {
      {"a new folder", missing, missing, 0, 0, 0},
      {"store lost", missing, good, 1, 1, 1},
      {"store lost, backup damaged", missing, damaged, kRefused, 0, 0},
      {"no backup yet", good, missing, 3, 3, 0},
      {"both good", good, good, 3, 1, 0},
      {"backup damaged", good, damaged, 3, -1, 0},
      {"store damaged, no backup", damaged, missing, kRefused, 0, 0},
      {"store damaged", damaged, good, 1, 1, 1},
      {"both damaged", damaged, damaged, kRefused, 0, 0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    TempHome temp;
    const Home& home = temp.home();
    put_File(home.main_Db(), row.main, 3);
    put_File(home.backup_Db(), row.backup, 1);
    const std::string main = bytes_Of(home.main_Db());
    const std::string backup = bytes_Of(home.backup_Db());
    ScriptedDesk desk;
    EXPECT_EQ(open_Home(home, desk) != nullptr, row.tickets != kRefused);
    EXPECT_EQ(desk.tips.size(), row.tips);
    EXPECT_EQ(desk.told.size(), row.tickets == kRefused ? 1u : 0u);
    if (row.tickets == kRefused) {
      EXPECT_TRUE(bytes_Of(home.main_Db()) == main && bytes_Of(home.backup_Db()) == backup);
      continue;
    }
    EXPECT_EQ(tickets_In(home.main_Db()), row.tickets);
    EXPECT_EQ(tickets_In(home.backup_Db()), row.backup_tickets);
    EXPECT_TRUE(bytes_Of(with_Suffix(home.main_Db(), ".damaged")) ==
                (row.main == damaged ? main : "missing"));
  }
}

TEST(OpenHome, AJournalIsPlayedBackIntoItsOwnStoreOnly) {
  for (const bool lost : {false, true}) {
    TempHome temp;
    const Home& home = temp.home();
    make_Store(home.main_Db(), 3);
    make_Store(home.backup_Db(), 1);
    crash_InChange(home.main_Db());
    if (lost) fs::remove(home.main_Db());
    ASSERT_TRUE(fs::exists(with_Suffix(home.main_Db(), "-journal")));
    ScriptedDesk desk;
    ASSERT_TRUE(open_Home(home, desk));
    EXPECT_EQ(tickets_In(home.main_Db()), lost ? 1 : 3);
    EXPECT_EQ(desk.tips.size(), lost ? 1u : 0u);
  }
}

TEST(OpenHome, ARefusedStepLosesNothingAndTheNextStartMends) {
  for (const File before : {File::missing, File::damaged}) {
    refuse_EachStep([before](FaultyFiles& machine) {
      TempHome temp;
      const Home& home = temp.home();
      put_File(home.main_Db(), before, 3);
      if (before == File::damaged) make_Store(home.backup_Db(), 1);
      ScriptedDesk desk;
      try {
        EXPECT_TRUE(open_Home(home, desk, machine));
      } catch (const fs::filesystem_error&) {
        EXPECT_TRUE(machine.failed());
      }
      ASSERT_TRUE(open_Home(home, desk));
      EXPECT_EQ(tickets_In(home.main_Db()), before == File::damaged ? 1 : 0);
      EXPECT_EQ(tickets_In(home.backup_Db()), before == File::damaged ? 1 : 0);
    });
  }
}

// What can't be read is not therefore damaged: the work may throw or answer nothing, but the store stays.
TEST(UnreadableStore, IsNotReplacedByItsBackup) {
  struct Row {
    const char* name;
    bool newer;
    bool compact;
  };
  const Row rows[] = {{"opened, of a newer program", true, false},
                      {"opened, locked by another program", false, false},
                      {"compacted, locked by another program", false, true}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    TempHome temp;
    const Home& home = temp.home();
    make_Store(home.main_Db(), 3);
    make_Store(home.backup_Db(), 1);
    if (row.newer) change_File(home.main_Db(), "PRAGMA user_version = " + std::to_string(kSchemaVersion + 1));
    const std::string main = bytes_Of(home.main_Db());
    SQLite::Database other(home.main_Db().string(), SQLite::OPEN_READWRITE);
    if (!row.newer) other.exec("BEGIN EXCLUSIVE");
    ScriptedDesk desk;
    try {
      if (row.compact)
        EXPECT_FALSE(compact_MainDb(home.main_Db(), home.backup_Db(), false).restored);
      else
        EXPECT_FALSE(open_Home(home, desk));
    } catch (const SQLite::Exception&) {
      EXPECT_TRUE(desk.tips.empty());
    }
    EXPECT_TRUE(bytes_Of(home.main_Db()) == main);
  }
}

}  // namespace
}  // namespace lotmere

// Everything in one file: saved, carried to another home, refused, and cut off at every step.
#include "start/transfer.hpp"

#include <gtest/gtest.h>

#include "store/archive.hpp"
#include "store/schema.hpp"
#include "store/store_files.hpp"
#include "support/desk_script.hpp"
#include "support/faulty_files.hpp"
#include "support/test_store.hpp"

namespace lotmere::test {
namespace {

namespace fs = std::filesystem;

// A home with so many tickets and the profiles of these users, each marked by its own number.
void fillHome(TempHome& temp, int tickets, const std::vector<std::string>& users) {
  for (int i = 1; i <= tickets; ++i) putTicket(temp.store(), i, i, 2007001, {{1, 2, 3, 4, 5, 6}, 7});
  for (const std::string& user : users)
    writeDatabase(temp.path() / (user + ".uLotmere"), realFiles(), [&](SQLite::Database& db) {
      createProfile(db);
      db.exec(R"(UPDATE "过滤条件" SET "Value"=)" + std::to_string(tickets));
    });
  temp.close();
  EXPECT_TRUE(copyDatabase(temp.home().mainDb(), temp.home().backupDb(), realFiles()));
}

// What a start finds: the tickets of the store, the profiles with their marks, and no trace of a restore.
std::string foundIn(const TempHome& temp) {
  ScriptedDesk desk;
  const auto store = openHome(temp.home(), desk);
  std::string text = store ? std::to_string(store->value(R"(SELECT count(*) FROM "日志表")")) : "none";
  for (const fs::path& profile : temp.home().profiles())
    text +=
        ' ' + profile.stem().string() +
        SQLite::Database(profile.string()).execAndGet(R"(SELECT max("Value") FROM "过滤条件")").getString();
  for (const fs::path& copy : {temp.home().mainDb(), temp.home().backupDb()})
    if (!isSoundStore(copy)) text += " unsound";
  for (const auto& entry : fs::directory_iterator(temp.path()))
    if (entry.path().filename().string().find("restore") != std::string::npos) text += " left-over";
  return text;
}

class TransferTest : public testing::Test {
 protected:
  void SetUp() override {
    fillHome(from_, 3, {"a", "b"});
    fillHome(to_, 5, {"b", "c"});
    ASSERT_EQ(save(), Outcome::done);
  }
  Outcome save(FileSystem& files = realFiles()) {
    const Outcome saved = saveEverything(from_.store(), from_.home(), desk_, file_, files);
    from_.close();
    return saved;
  }
  TempHome from_, to_, elsewhere_;
  const fs::path file_ = elsewhere_.path() / "all.lotmere";
  ScriptedDesk desk_;
};

TEST_F(TransferTest, CarriesStoreAndProfilesAndNothingOfTheOldHomeIsLeft) {
  EXPECT_EQ(fs::status(file_).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  desk_.choices = {0};
  ASSERT_EQ(prepareRestore(to_.home(), desk_, file_), Outcome::done);
  EXPECT_TRUE(restoreWaits(to_.home()));
  EXPECT_NE(desk_.asked.back().find("0 期开奖记录，0 个用户"), std::string::npos) << desk_.asked.back();
  EXPECT_EQ(foundIn(to_), "3 a3 b3");
  EXPECT_EQ(SQLite::Database(to_.home().backupDb().string())
                .execAndGet(R"(SELECT count(*) FROM "日志表")")
                .getInt(),
            3)
      << "an old backup would bring the old draws back";
  EXPECT_EQ(foundIn(from_), "3 a3 b3");
}

TEST_F(TransferTest, WithoutAYesNothingChanges) {
  const std::string saved = readFile(file_);
  desk_.choices = {std::nullopt, 1, std::nullopt};
  EXPECT_EQ(prepareRestore(to_.home(), desk_, file_), Outcome::refused);
  EXPECT_EQ(prepareRestore(to_.home(), desk_, file_), Outcome::refused);
  EXPECT_EQ(foundIn(to_), "5 b5 c5");
  putTicket(from_.store(), 9, 9, 2007001, {{1, 2, 3, 4, 5, 6}, 7});
  EXPECT_EQ(save(), Outcome::refused) << "a file that stands is asked about";
  EXPECT_TRUE(readFile(file_) == saved);
  for (const char* own : {"Lotmere.db", "Lotmere.backup.db-journal", "x.uLotmere", "TJmode.tjmod"})
    EXPECT_EQ(saveEverything(from_.store(), from_.home(), desk_, from_.path() / own), Outcome::refused)
        << own;
}

TEST_F(TransferTest, AStopLeavesEverythingAsItWas) {
  desk_.course().on_look = [&] { desk_.course().requestStop(); };
  EXPECT_EQ(prepareRestore(to_.home(), desk_, file_), Outcome::stopped);
  EXPECT_EQ(foundIn(to_), "5 b5 c5");
  fs::remove(file_);
  EXPECT_EQ(save(), Outcome::stopped);
  EXPECT_TRUE(fs::is_empty(elsewhere_.path()));
}

TEST_F(TransferTest, AFileThatIsNotWhatWasSavedIsRefused) {
  const auto change = [](const char* sql) {
    return [sql](const fs::path& path) { SQLite::Database(path.string(), SQLite::OPEN_READWRITE).exec(sql); };
  };
  const auto add_file = [this](const char* name) {
    return [this, name](const fs::path& path) {
      fs::remove(path);
      const std::string store = readFile(from_.home().mainDb());
      ASSERT_TRUE(writeArchive(path, {{"Lotmere.db", store}, {name, "bytes"}}, desk_));
    };
  };
  const struct {
    const char* name;
    std::function<void(const fs::path&)> spoil;
    const char* said;
  } rows[] = {
      {"a profile beside the home", add_file("../x.uLotmere"), "已损坏"},
      {"a profile anywhere", add_file("/tmp/x.uLotmere"), "已损坏"},
      {"a profile of nobody", add_file(".uLotmere"), "已损坏"},
      {"another file of the home", add_file("Lotmere.lock"), "已损坏"},
      {"cut in half", [](const fs::path& path) { fs::resize_file(path, fs::file_size(path) / 2); }, "已损坏"},
      {"empty", [](const fs::path& path) { fs::resize_file(path, 0); }, "不是本程序保存的"},
      {"a text", [](const fs::path& path) { realFiles().writeWhole(path, "01 02 03 04 05 06+07"); },
       "不是本程序保存的"},
      {"a bare store",
       [this](const fs::path& path) {
         fs::copy_file(from_.home().backupDb(), path, fs::copy_options::overwrite_existing);
       },
       "不是本程序保存的"},
      {"a flipped byte in a draw",
       [](const fs::path& path) {
         std::string bytes = readFile(path);
         bytes[bytes.size() / 2] ^= 1;
         realFiles().writeWhole(path, bytes);
       },
       "已损坏"},
      {"a lost profile", change(R"(DELETE FROM "目录" WHERE "名称"='a.uLotmere')"), "已损坏"},
      {"a renamed profile", change(R"(UPDATE "目录" SET "名称"='c.uLotmere' WHERE "名称"='a.uLotmere';
                                      UPDATE "内容" SET "名称"='c.uLotmere' WHERE "名称"='a.uLotmere')"),
       "已损坏"},
      {"no store", change(R"(DELETE FROM "目录" WHERE "名称"='Lotmere.db'; UPDATE "总数" SET "文件数"=2)"),
       "已损坏"},
      {"of a newer format", change("PRAGMA user_version = 2"), "更新版本"},
      {"with the store of a newer program",
       [this](const fs::path& path) {
         from_.store().db().exec("PRAGMA user_version = " + std::to_string(schemaVersion() + 1));
         fs::remove(path);
         EXPECT_EQ(save(), Outcome::done);
       },
       "更新版本"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    fs::remove(file_);
    ASSERT_EQ(save(), Outcome::done);
    row.spoil(file_);
    EXPECT_EQ(prepareRestore(to_.home(), desk_, file_), Outcome::refused);
    EXPECT_NE(desk_.told.back().text.find(row.said), std::string::npos) << desk_.told.back().text;
    EXPECT_EQ(foundIn(to_), "5 b5 c5");
  }
  EXPECT_THROW((void)prepareRestore(to_.home(), desk_, elsewhere_.path() / "none"), fs::filesystem_error);
}

TEST_F(TransferTest, ADamagedStoreIsReplacedAndKept) {
  fs::resize_file(to_.home().mainDb(), 50);
  fs::remove(to_.home().backupDb());
  desk_.choices = {0};
  ASSERT_EQ(prepareRestore(to_.home(), desk_, file_), Outcome::done);
  EXPECT_EQ(foundIn(to_), "3 a3 b3");
  EXPECT_EQ(fs::file_size(to_.path() / "Lotmere.db.damaged"), 50);
}

// The power fails at each step; the next start finds all of the old or all of the new.
TEST_F(TransferTest, CutOffAnywhereItLeavesTheOldOrTheNew) {
  refuseEachStep([this](FaultyFiles& machine) {
    TempHome home;
    fillHome(home, 5, {"b", "c"});
    desk_.choices = {0};
    bool counts = false;
    try {
      counts = prepareRestore(home.home(), desk_, file_, machine) == Outcome::done;
      finishRestore(home.home(), machine);
    } catch (const fs::filesystem_error&) {
      EXPECT_TRUE(machine.failed());
    }
    EXPECT_EQ(foundIn(home), counts ? "3 a3 b3" : "5 b5 c5");
  });
  refuseEachStep([this](FaultyFiles& machine) {
    const std::string saved = readFile(file_);
    desk_.choices = {0};
    try {
      EXPECT_EQ(save(machine), Outcome::done);
    } catch (const fs::filesystem_error&) {
      EXPECT_TRUE(machine.failed() && readFile(file_) == saved);
    }
  });
}

}  // namespace
}  // namespace lotmere::test

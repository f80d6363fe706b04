// The steps of a start, and what each failure leaves.
#include "start/startup.hpp"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "base/failure.hpp"
#include "store/schema.hpp"
#include "store/store_files.hpp"
#include "support/desk_script.hpp"
#include "support/faulty_files.hpp"
#include "support/test_store.hpp"

namespace lotmere::test {
namespace {

// A start as the window makes it, without the steps that show something.
StartOutcome startAll(ProgramStart& start) {
  const StartStep steps[] = {start.singleInstance(), start.databasePresence(), start.compaction(),
                             start.sizeGuard(),      start.homeFiles(),        start.mainConnection()};
  return runSteps(steps);
}

TEST(Start, ASecondOneTouchesNothing) {
  TempHome temp;
  ScriptedDesk desk;
  ProgramStart first(temp.home(), desk);
  ASSERT_TRUE(startAll(first).ready);
  const std::string store = readFile(temp.home().mainDb());
  ProgramStart second(temp.home(), desk);
  const StartOutcome outcome = startAll(second);
  EXPECT_EQ(outcome.step, "single instance");
  EXPECT_TRUE(outcome.messages.empty());
  ASSERT_EQ(desk.told.size(), 1u);
  EXPECT_EQ(desk.told[0].text, "程序正在运行,不允许同时打开多个!!!");
  EXPECT_TRUE(readFile(temp.home().mainDb()) == store);
}

TEST(Start, AFailureEndsItWithTheAdviceOfItsStep) {
  std::string ran;
  const auto step = [&](const char* name, StartAdvice advice, bool fails) {
    return StartStep{name,
                     [&ran, name, fails] {
                       ran += name;
                       if (fails) throw SQLite::Exception("gone", SQLITE_CANTOPEN);
                       return true;
                     },
                     advice};
  };
  const std::string text = failureText(SQLite::Exception("gone", SQLITE_CANTOPEN));
  for (const auto& [advice, messages, last] :
       {std::tuple{StartAdvice::administrator, 2u, "不要直接双击打开。)"},
        {StartAdvice::security, 1u, "重启计算机]"},
        {StartAdvice::reinstall, 1u, "(文件丢失,需要重新安装!)"}}) {
    ran.clear();
    const StartStep steps[] = {step("a", advice, false), step("b", advice, true), step("c", advice, false)};
    const StartOutcome outcome = runSteps(steps);
    EXPECT_EQ(ran, "ab");
    EXPECT_EQ(outcome.step, "b");
    ASSERT_EQ(outcome.messages.size(), messages);
    EXPECT_TRUE(outcome.messages.front().starts_with(text));
    EXPECT_TRUE(outcome.messages.back().ends_with(last)) << outcome.messages.back();
  }
}

// An old backup in the place of a large store would lose what came after it, whichever step failed before.
TEST(Start, ALargeStoreKeepsEverythingAndARefusedStepIsTold) {
  refuseEachStep([](FaultyFiles& machine) {
    TempHome temp;
    static_cast<void>(temp.store());
    ASSERT_TRUE(copyDatabase(temp.home().mainDb(), temp.home().backupDb(), realFiles()));
    writeDatabase(temp.home().templateFile(), realFiles(), createProfile);
    temp.store().db().exec("CREATE TABLE large AS SELECT randomblob(12000000) AS bytes");
    temp.close();
    ScriptedDesk desk;
    ProgramStart start(temp.home(), desk, machine);
    ASSERT_TRUE(startAll(start).ready) << "no refusal in here keeps the user out";
    EXPECT_EQ(desk.told.size(), machine.failed() ? 1U : 0U);
    EXPECT_GT(std::filesystem::file_size(temp.home().mainDb()), kLargestMainDb);
    EXPECT_EQ(start.store().value("SELECT length(bytes) FROM large"), 12000000);
    EXPECT_TRUE(isSoundStore(temp.home().backupDb()));
  });
}

// Whatever is refused: a start that comes to no end says why, what goes wrong besides is told, and the next
// start mends what is left.
TEST(Start, NoRefusalIsSilentOrLosesAnything) {
  for (const bool first : {true, false})
    refuseEachStep([first](FaultyFiles& machine) {
      TempHome temp;
      if (!first) putPick(temp.store(), 7, PickState::dan);
      temp.close();
      const bool saved = copyDatabase(temp.home().mainDb(), temp.home().backupDb(), realFiles());
      EXPECT_EQ(saved, !first);
      if (!first) loseRow(temp.home().mainDb(), "日志表");
      {
        ScriptedDesk desk;
        ProgramStart start(temp.home(), desk, machine);
        const StartOutcome outcome = startAll(start);
        EXPECT_EQ(outcome.messages.empty() && desk.told.empty(), !machine.failed());
        EXPECT_EQ(outcome.ready, outcome.messages.empty());
      }
      ScriptedDesk desk;
      ProgramStart next(temp.home(), desk);
      EXPECT_TRUE(startAll(next).ready && desk.told.empty());
      EXPECT_EQ(next.store().value(R"(SELECT "Value" FROM "过滤条件" WHERE "ID"=7)"), first ? 0 : 2);
      EXPECT_TRUE(isSoundStore(temp.home().backupDb()));
    });
}

// Also where a flipped byte has made an older version of the number.
TEST(Start, AStoreOfTheFirstVersionIsBroughtUpToDate) {
  for (const bool flipped : {false, true}) {
    TempHome temp;
    if (!flipped)
      temp.store().db().exec(
          R"(ALTER TABLE "用户模式" DROP COLUMN "区间待统计"; ALTER TABLE "用户模式" DROP COLUMN "当前用户";
             ALTER TABLE "用户表" DROP COLUMN "密码形式"; ALTER TABLE "历史数据过滤" DROP COLUMN
             "自选范围")");
    temp.store().db().exec(R"(UPDATE "历史数据过滤" SET "使用状态"=1; PRAGMA user_version = 1)");
    putPick(temp.store(), 7, PickState::dan);
    temp.close();
    EXPECT_EQ(checkStore(temp.home().mainDb()), StoreState::sound);
    const auto value = [&](const std::string& select) { return temp.store().value("SELECT " + select); };
    EXPECT_EQ(temp.store().value("PRAGMA user_version"), schemaVersion());
    EXPECT_EQ(value(R"("Value" FROM "过滤条件" WHERE "ID"=7)"), 2);
    EXPECT_EQ(value(R"(count(*) FROM "用户模式" WHERE "当前用户"='')"), 1);
    EXPECT_EQ(value(R"("区间待统计" FROM "用户模式")"), 1) << "an older program may have left them";
    EXPECT_EQ(value(R"("自选范围" FROM "历史数据过滤")"), 1) << "a range in use stays";
  }
}

}  // namespace
}  // namespace lotmere::test

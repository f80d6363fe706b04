// The way back for settings, and sets with names.
#include "conditions/setting_steps.hpp"

#include <gtest/gtest.h>

#include <deque>
#include <random>

#include "conditions/condition_store.hpp"
#include "conditions/named_sets.hpp"
#include "support/store_test.hpp"

namespace lotmere {
namespace {

using Steps = test::StoreTest;
using NamedSets = test::StoreTest;

// Changes something of each kind that a set holds.
void shuffle(ConditionSet& set, std::mt19937& random) {
  const auto some = [&](int most) { return static_cast<int>(random() % static_cast<unsigned>(most)); };
  set.cells.set(1 + some(kRedCount), 1 + some(2));
  set.cells.set(1000 + some(200), some(2));
  set.cells.set(kSetToleranceCell, some(kMostSetTolerance + 1));
  set.use(1 + some(73), some(2) == 1);
  if (some(2) == 0) set.setMember(AttributeTable::first, "自定义组3", 1 + some(kRedCount), true);
  if (some(2) == 0) set.setMember(AttributeTable::third, "六区间2", 1 + some(kRedCount), some(2) == 1);
  if (some(3) == 0) set.interval[1 + some(kRedCount)] = static_cast<std::int8_t>(1 + some(4));
  if (some(3) == 0) set.match = {true, 2026001 + some(20), 2026030 + some(20), 1 + some(6), true};
}

// Against a plain list of sets: where a walk of changes, undo and redo stands, and where it ends.
TEST_F(Steps, WalkAsAListOfSetsDoes) {
  std::mt19937 random(1 + GTEST_FLAG_GET(random_seed));
  std::deque<ConditionSet> past{loadConditionSet(store_)}, future;
  for (int turn = 0; turn < 300; ++turn) {
    const auto what = random() % 10;
    if (what < 4) {
      const ConditionSet set = changeSettings(store_, [&](ConditionSet& edited) { shuffle(edited, random); });
      if (set == past.back()) continue;
      past.push_back(set);
      future.clear();
      if (past.size() > kMostSteps + 1) past.pop_front();
    } else if (what < 8) {
      const auto made = undoSettings(store_);
      ASSERT_EQ(made.has_value(), past.size() > 1) << turn;
      if (!made) continue;
      future.push_front(past.back());
      past.pop_back();
    } else {
      const auto made = redoSettings(store_);
      ASSERT_EQ(made.has_value(), !future.empty()) << turn;
      if (!made) continue;
      past.push_back(future.front());
      future.pop_front();
    }
    ASSERT_EQ(loadConditionSet(store_), past.back()) << turn;
    ASSERT_EQ(nextSteps(store_).undo.has_value(), past.size() > 1);
    ASSERT_EQ(nextSteps(store_).redo.has_value(), !future.empty());
  }
}

TEST_F(Steps, AreNamedByWhatChangedAndKeepAStoreThatRefuses) {
  changeSettings(store_, [](ConditionSet& set) { set.use(1, false); });
  EXPECT_EQ(nextSteps(store_).undo, "总和值");
  changeSettings(store_, [](ConditionSet& set) {
    set.use(1, true);
    set.use(6, false);
    set.use(kSmartOptimisation, true);
    set.cells.set(kSetToleranceCell, 2);
  });
  EXPECT_EQ(nextSteps(store_).undo, "总和值、连号、智能优化 等 4 项");
  changeSettings(store_, [&](ConditionSet& set) { set = loadFactorySet(store_); }, {.name = "还原默认值"});
  EXPECT_EQ(undoSettings(store_)->name, "还原默认值");
  EXPECT_EQ(nextSteps(store_).redo, "还原默认值");
  // What the program changes by itself is no step and leaves the redo.
  changeSettings(store_, [](ConditionSet& set) { set.match.last += 1; }, {.kept = false});
  EXPECT_EQ(nextSteps(store_).redo, "还原默认值");

  const ConditionSet before = loadConditionSet(store_);
  store_.db().exec(R"(CREATE TEMP TRIGGER t BEFORE UPDATE ON "设置步骤" BEGIN SELECT RAISE(ABORT,'x'); END)");
  EXPECT_THROW(undoSettings(store_), SQLite::Exception);
  EXPECT_EQ(loadConditionSet(store_), before);
}

TEST_F(NamedSets, AreSavedLoadedAndTakenBack) {
  const ConditionSet first = changeSettings(store_, [](ConditionSet& set) {
    for (const int cell : {3, 30, kBlueCodeBase + 2}) set.cells.set(cell, 1);
    set.use(2, true);
    set.setMember(AttributeTable::first, "自定义组3", 8, true);
    set.setMember(AttributeTable::third, "六区间2", 8, false);
    set.match = {true, 2026001, 2026050, 5, true};
  });
  ASSERT_EQ(keepNamedSet(store_, desk_, {" 周末 ", true, setText(first)}), Outcome::done);
  ASSERT_EQ(keepNamedSet(store_, desk_, {"平日", false, setText(first, WithPicks::no)}), Outcome::done);
  const ConditionSet second = changeSettings(store_, [&](ConditionSet& set) {
    for (const int cell : {4, 30, kBlueCodeBase + 3}) set.cells.set(cell, 2);
    set.use(2, false);
    set.allow(1060, false);
    set.match = {};
  });
  EXPECT_EQ(nameOfSet(store_, first), "周末") << "by the settings alone, the first by name";

  EXPECT_EQ(loadNamedSet(store_, desk_, "平日", WithPicks::yes), Outcome::refused);
  EXPECT_EQ(desk_.told.back().text, "方案“平日”里没有选号。");
  EXPECT_EQ(loadNamedSet(store_, desk_, "平时", WithPicks::no), Outcome::refused);
  EXPECT_EQ(loadConditionSet(store_), second);

  EXPECT_EQ(loadNamedSet(store_, desk_, "平日", WithPicks::no), Outcome::done);
  EXPECT_NE(desk_.told.back().text.find("对所有用户都改变了"), std::string::npos);
  ConditionSet expected = first;
  for (int n = 1; n <= kBlueCodeBase + kBlueCount; ++n) expected.cells.set(n, second.cells.value(n));
  EXPECT_EQ(loadConditionSet(store_), expected);
  EXPECT_EQ(loadNamedSet(store_, desk_, "周末", WithPicks::yes), Outcome::done);
  EXPECT_EQ(loadConditionSet(store_), first);
  EXPECT_EQ(loadNamedSet(store_, desk_, "周末", WithPicks::yes), Outcome::done);
  EXPECT_EQ(desk_.told.back().text, "方案“周末”与现在的设置相同，没有改变。");
  EXPECT_EQ(undoSettings(store_)->name, "载入方案“周末”");
  EXPECT_EQ(undoSettings(store_)->name, "载入方案“平日”");
  EXPECT_EQ(loadConditionSet(store_), second);
}

TEST_F(NamedSets, AreReplacedAndDeletedOnlyWithAnAnswer) {
  ASSERT_EQ(keepNamedSet(store_, desk_, {"周末", false, "旧"}), Outcome::done);
  EXPECT_EQ(keepNamedSet(store_, desk_, {"周末", false, "旧"}), Outcome::done) << "the same asks nothing";
  desk_.choices = {1, 0, 1, 0};
  EXPECT_EQ(keepNamedSet(store_, desk_, {"周末", false, "新"}), Outcome::refused);
  EXPECT_EQ(findNamedSet(store_, "周末")->text, "旧");
  EXPECT_EQ(keepNamedSet(store_, desk_, {"周末", false, "新"}), Outcome::done);
  EXPECT_EQ(findNamedSet(store_, "周末")->text, "新");
  EXPECT_EQ(deleteNamedSet(store_, desk_, "周末"), Outcome::refused);
  EXPECT_EQ(allNamedSets(store_).size(), 1U);
  EXPECT_EQ(deleteNamedSet(store_, desk_, "周末"), Outcome::done);
  EXPECT_EQ(deleteNamedSet(store_, desk_, "周末"), Outcome::refused);
  std::string longest;
  for (int i = 0; i < 40; ++i) longest += "周";
  for (const std::string& name : {std::string(" \t"), std::string("a\nb"), longest + "末"})
    EXPECT_EQ(keepNamedSet(store_, desk_, {name, false, "x"}), Outcome::refused) << name;
  EXPECT_EQ(keepNamedSet(store_, desk_, {longest, false, "x"}), Outcome::done);
}

TEST_F(NamedSets, AFileThatIsNoneOrBrokenGivesNoSet) {
  const ConditionSet base = loadConditionSet(store_);
  const std::string text = setText(base);
  const auto read = [&](const std::string& of) { return readNamedSet(desk_, "新", of, base); };
  EXPECT_EQ(read(text), (NamedSet{"新", true, text}));
  EXPECT_EQ(read(setText(base, WithPicks::no))->with_picks, false);
  const std::pair<std::string, std::string> broken[] = {
      {"", "这不是条件方案文件，或者是更新版本的程序写的。"},
      {"01 02 03 04 05 06 07\n", "这不是条件方案文件，或者是更新版本的程序写的。"},
      {"Lotmere 条件 2\n完\n", "这不是条件方案文件，或者是更新版本的程序写的。"},
      {text.substr(0, text.size() - 4), "方案文件不完整：最后没有“完”这一行。"},
      {"Lotmere 条件 1\n总和值：开 999\n完\n", "方案文件第 2 行的值不对：“总和值：开 999”"}};
  for (const auto& [of, refusal] : broken) {
    EXPECT_EQ(read(of), std::nullopt) << of;
    EXPECT_EQ(desk_.told.back().text, refusal);
  }
  const auto unknown = read("Lotmere 条件 1\n明天的条件：开\n总和值：关 60-140\n完\n");
  ASSERT_TRUE(unknown);
  EXPECT_EQ(desk_.told.back().text, "有 1 行不认识，跳过了，第一处在第 2 行：“明天的条件：开”");
  EXPECT_FALSE(putNamedSet(base, *unknown, WithPicks::no).isUsed(1));
}

}  // namespace
}  // namespace lotmere

// A user's settings as a value: what it loads, what it saves, and the way to a text and back.
#include <gtest/gtest.h>

#include <random>

#include "conditions/condition_store.hpp"
#include "conditions/set_text.hpp"
#include "support/store_test.hpp"

namespace lotmere {
namespace {

class ConditionSetTest : public test::StoreTest {
 protected:
  // A set of chance: switches 0 to 2, cells, members of every column that a user edits, intervals, the match.
  static ConditionSet shuffled(ConditionSet set, std::mt19937& random) {
    const auto pick = [&](int first, int last) { return std::uniform_int_distribution(first, last)(random); };
    for (const auto& [key, value] : std::vector(set.switches.rows())) set.switches.set(key, pick(0, 2));
    for (int n = 1; n <= kRedCount; ++n) set.cells.set(n, pick(0, 2));
    for (int n = 1; n <= kBlueCount; ++n) set.cells.set(kBlueCodeBase + n, pick(0, 2));
    for (const Condition& condition : allConditions())
      for (int k = 0; k < cellCount(condition); ++k) set.cells.set(condition.first + k, pick(0, 1));
    const auto members = [&] { return Members{random()} << 1 & ((Members{1} << (kRedCount + 1)) - 2); };
    for (int i = 1; i <= kGroupCount; ++i)
      set.setColumn(AttributeTable::first, conditionOfUsage(usageOfGroup(i)).name, members());
    for (int p = 1; p <= kPlaceCount; ++p) set.setColumn(AttributeTable::first, placeColumn(p), members());
    for (const CustomInterval& interval : factoryCustomIntervals())
      set.setColumn(AttributeTable::third, interval.name, members());
    std::array<Members, kIntervalCount + 1> intervals{};
    for (int n = 1; n <= kRedCount; ++n) {
      set.interval[n] = static_cast<std::int8_t>(pick(1, kIntervalCount));
      intervals[set.interval[n]] |= Members{1} << n;
    }
    for (int i = 1; i <= kIntervalCount; ++i)
      set.setColumn(AttributeTable::first, conditionOfUsage(usageOfInterval(i)).name, intervals[i]);
    set.cells.set(kToleranceCell, pick(0, kPlaceCount));
    set.cells.set(kSetToleranceCell, pick(0, kMostSetTolerance));
    set.cells.set(kShrinkTypeCell, pick(kSmallestShrink, kLargestShrink));
    set.cells.set(kFewerCell, pick(0, 1));
    set.cells.set(kEffortCell, pick(kLeastEffort, kMostEffort));
    set.match = {pick(0, 1) == 1, 2025001 + pick(0, 50), 2025100, pick(1, 6), pick(0, 1) == 1};
    return set;
  }
};

TEST_F(ConditionSetTest, IsLoadedAsItWasSaved) {
  const ConditionSet factory = loadConditionSet(store_);
  std::mt19937 random(5 + GTEST_FLAG_GET(random_seed));
  const ConditionSet first = shuffled(factory, random), second = shuffled(factory, random);
  EXPECT_NE(first, second);
  saveConditionSet(store_, factory, first);
  EXPECT_EQ(loadConditionSet(store_), first);
  saveConditionSet(store_, first, second);
  EXPECT_EQ(loadConditionSet(store_), second);

  // Rows that both hold alike aren't touched, whatever the store holds meanwhile.
  ConditionSet third = second;
  third.cells.set(1100, 1 - third.cells.value(1100));
  changeSettings(store_, [](ConditionSet& set) { set.cells.set(1101, 7); });
  saveConditionSet(store_, second, third);
  third.cells.set(1101, 7);
  EXPECT_EQ(loadConditionSet(store_), third);
}

TEST_F(ConditionSetTest, TheDefaultsComeBackWithNothingPicked) {
  const ConditionSet factory = loadConditionSet(store_);
  // A picked number in the factory rows is not picked afterwards either.
  store_.query(R"(UPDATE "默认过滤条件" SET "Value"=1 WHERE "ID" IN (1,33,101,116))").run();
  std::mt19937 random(7 + GTEST_FLAG_GET(random_seed));
  saveConditionSet(store_, factory, shuffled(factory, random));
  EXPECT_EQ(loadFactorySet(store_), factory);
  EXPECT_FALSE(factory.match.used || factory.match.chosen);
}

TEST_F(ConditionSetTest, GoesToATextAndBack) {
  const ConditionSet& factory = test::factorySet();
  std::mt19937 random(9 + GTEST_FLAG_GET(random_seed));
  for (int trial = 0; trial < 5; ++trial) {
    const ConditionSet set = shuffled(factory, random), base = shuffled(factory, random);
    const auto read = readSetText(setText(set), base);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->set, set);
    EXPECT_EQ(read->skipped, std::vector<SkippedLine>{});
  }
}

TEST_F(ConditionSetTest, ALineThatIsWrongIsReportedAndSkipped) {
  const ConditionSet& factory = test::factorySet();
  EXPECT_EQ(readSetText("", factory), std::nullopt);
  EXPECT_EQ(readSetText("总和值：开 60-140\n", factory), std::nullopt);
  EXPECT_EQ(readSetText("Lotmere 条件 2\n", factory), std::nullopt);

  const auto read = readSetText(
      "\xEF\xBB\xBFLotmere 条件 1\r\n\r\n总和值：开 60-140,150\r\n总和数：开 60\n奇数个数：开 1-9\n连号：关 "
      "2;2+2\n"
      "历史数据过滤：开 2026050-2026001 6\n历史数据过滤：开 2026001-2026050 5 "
      "自选\n缩水类型：8\n智能优化：开\n精简缩水：开 10\n精简缩水：开 7\n",
      factory);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->skipped, (std::vector<SkippedLine>{{4, "总和数：开 60", false},
                                                     {5, "奇数个数：开 1-9", true},
                                                     {7, "历史数据过滤：开 2026050-2026001 6", true},
                                                     {9, "缩水类型：8", true},
                                                     {11, "精简缩水：开 10", true}}));
  ConditionSet expected = factory;
  expected.switches.set(1, 1);
  for (int sum = 0; sum <= 170; ++sum)
    expected.cells.set(1000 + sum, (sum >= 60 && sum <= 140) || sum == 150);
  expected.switches.set(6, 0);
  for (int k = 0; k <= 10; ++k)
    expected.cells.set(3450 + k, runShapes()[k] == "2" || runShapes()[k] == "2+2");
  expected.match = {true, 2026001, 2026050, 5, true};
  expected.switches.set(kSmartOptimisation, 1);
  expected.cells.set(kFewerCell, 1);
  expected.cells.set(kEffortCell, 7);
  EXPECT_EQ(read->set, expected);
}

}  // namespace
}  // namespace lotmere

// The live count against the run itself, over stores of chance; `--gtest_random_seed=N` tries others.
#include "advice/live_count.hpp"

#include <gtest/gtest.h>

#include "catalogue/attributes.hpp"
#include "conditions/condition_store.hpp"
#include "pipeline/random_store.hpp"
#include "pipeline/run.hpp"
#include "support/scripted_course.hpp"
#include "support/store_test.hpp"
#include "tickets/init.hpp"
#include "tickets/upkeep.hpp"

namespace lotmere {
namespace {

using test::kPeriod;
using test::pick;

// A selection of `reds` reds, some of them Dan, and one to three blues.
void putSelection(Store& store, std::mt19937& random, int reds) {
  NumberSelection selection;
  const int first = pick(random, 1, 5), step = pick(random, 1, 2), dan = pick(random, 0, 2);
  for (int i = 0; i < reds; ++i) selection.red[first + i * step] = i < dan ? PickState::dan : PickState::tuo;
  for (int blue = pick(random, 1, 3); blue > 0; --blue) selection.blue[blue] = PickState::tuo;
  changeSettings(store, [&](ConditionSet& set) { lotmere::putSelection(set, selection); });
}

// A history of up to twelve draws; the sums that they have stored may be anything.
void putDraws(Store& store, std::mt19937& random) {
  const int draws[] = {0, 1, 2, 3, 12};
  test::putHistory(store, random, draws[pick(random, 0, 4)]);
  for (const char* sum : {"尾数和值", "合数和值", "大数和值", "小数和值", "奇数和值", "偶数和值", "和值"})
    test::setRows(store, "历史记录", sum, "1", [&](int old) { return old + pick(random, 1, 3); });
}

void putSettings(Store& store, std::mt19937& random) {
  StoreChange change(store);
  test::putConditions(store, random, 100 / pick(random, 2, 20), pick(random, 80, 99));
  // All kinds together leave little, so most trials have a part of the switches only. What few tickets meet
  // needs trials of its own: an earlier draw that comes again, and turns behind the places alone.
  changeSettings(store, [&](ConditionSet& set) {
    const int from = pick(random, 1, 300), to = from + pick(random, 20, 460);
    const bool alone = pick(random, 0, 2) == 0;
    for (const auto& [usage, on] : std::vector(set.switches.rows()))
      if (alone || usage < from || usage > to) set.use(usage, false);
    if (alone) {
      for (int turns = pick(random, 1, 3); turns > 0; --turns)
        set.use(usageOfTurn(pick(random, 0, kTurnCount - 1)), true);
      for (const UsageId usage : {usageOfPlace(pick(random, 1, kPlaceCount)), 266})
        set.use(usage, pick(random, 0, 1) == 1);
      set.cells.set(kToleranceCell, 0);
      set.match = {};
    }
    set.use(kSmartOptimisation, pick(random, 0, 1) == 1);
  });
  for (const std::string& column : attributeColumns(AttributeTable::third))
    if (column.find("区间") != std::string::npos && pick(random, 0, 3) == 0)
      test::setRows(store, "号码特性3", column, "1", [&](int) { return pick(random, 0, 1); });
  change.commit();
}

class Live : public test::StoreTest {
 protected:
  // Counts twice, and expects that the store's file stays as it is byte for byte.
  LiveCount::Result count() {
    const std::string before = test::readFile(store_.path());
    const auto result = live_.count(question(), course_);
    EXPECT_EQ(result, live_.count(question(), course_));
    EXPECT_TRUE(test::readFile(store_.path()) == before) << "the store has changed";
    return result.value();
  }
  LiveCount::Question question() {
    return {loadLiveTickets(store_), loadConditionSet(store_), loadDrawTable(store_), kPeriod};
  }
  // What a run leaves; what stood before and behind each of its steps must be what the count told.
  std::int64_t run(const LiveCount::Result& counted) {
    const RunResult result = runPipeline(store_, desk_, firstTicketPeriod(store_), WithFunnel::yes);
    std::vector<FunnelStep> steps;
    for (const FunnelRow& row : result.funnel) steps.push_back({row.name, row.before, row.after});
    std::vector<FunnelStep> told = counted.funnel;
    if (!counted.at_most) told.push_back({counted.shrink, counted.filtered, counted.survivors});
    if (counted.at_most) steps.pop_back();
    EXPECT_EQ(told, steps);
    return result.tickets;
  }

  LiveCount live_;
  FreeCourse course_;
  std::mt19937 random_{7};
};

TEST_F(Live, CountsWhatARunLeaves) {
  std::mt19937 random(2026 + GTEST_FLAG_GET(random_seed));
  int thinned = 0, emptied = 0;
  for (int trial = 0; trial < 80 && !HasFailure(); ++trial) {
    SCOPED_TRACE(trial);
    putDraws(store_, random);
    putSettings(store_, random);
    putSelection(store_, random, pick(random, 5, 14));
    store_.query(R"(DELETE FROM "日志表")").run();
    const auto expanded = count();
    EXPECT_TRUE(expanded.from_selection);
    EXPECT_EQ(expanded.period, kPeriod);
    EXPECT_EQ(expanded.tickets, countCombos(selectionOf(loadConditionSet(store_))).tickets);
    if (initTickets(store_, desk_, kPeriod).outcome == Outcome::done) {
      EXPECT_EQ(expanded.survivors, run(expanded));
    }

    test::putTickets(store_, random, pick(random, 1, 400));
    if (trial % 4) store_.query(R"(DELETE FROM "日志表" WHERE "期号"<?)").bind(kPeriod).run();
    count();
    putSettings(store_, random);  // clicks on conditions need no call
    const auto counted = count();
    EXPECT_FALSE(counted.from_selection);
    EXPECT_EQ(counted.period, store_.value(R"(SELECT min("期号") FROM "日志表")"));
    EXPECT_EQ(counted.tickets, countTickets(store_, counted.period));
    EXPECT_EQ(counted.survivors, run(counted));
    thinned += counted.survivors > 0 && counted.survivors < counted.tickets;
    emptied += counted.survivors == 0;
  }
  EXPECT_GT(thinned, 30) << "the trials must have something to tell";
  EXPECT_LT(emptied, 40);
}

TEST_F(Live, FollowsTheSelectionAndRefusesTooMany) {
  putSelection(store_, random_, 8);
  const auto first = count();
  test::putPick(store_, 33, PickState::tuo);
  EXPECT_GT(count().tickets, first.tickets);
  for (int red = 1; red <= kRedCount; ++red) test::putPick(store_, red, PickState::tuo);
  EXPECT_TRUE(count().too_many);
  EXPECT_EQ(liveText({kPeriod, 840, 12, false, false}),
            "表格中第 ２０２６０５０ 期共 ８４０ 注，按当前条件过滤缩水后余 １２ 注。");
  EXPECT_EQ(liveText({kPeriod, 840, 12, true, false, true}),
            "已选号码展开共 ８４０ 注，按当前条件过滤缩水后最多余 １２ 注。");
  changeSettings(store_, clearReds);
  const auto nothing = count();
  EXPECT_EQ(std::pair(nothing.tickets, nothing.survivors), std::pair(std::int64_t{0}, std::int64_t{0}));
  EXPECT_EQ(liveText(nothing), "还没有投注号，也没有选好号码。");
}

// The search for fewer tickets may leave less than the count says and never more.
TEST_F(Live, CountsThePlainShrinkWhereARunSearchesForFewer) {
  int fewer = 0;
  for (int trial = 0; trial < 5; ++trial) {
    putSelection(store_, random_, 8);
    const auto set = [&](std::initializer_list<std::pair<ConditionId, int>> cells) {
      changeSettings(store_, [&](ConditionSet& settings) {
        for (const auto& [cell, value] : cells) settings.cells.set(cell, value);
      });
    };
    store_.query(R"(UPDATE "过滤条件使用情况" SET "使用情况"=0)").run();
    set({{kShrinkTypeCell, 3 + trial}, {kFewerCell, 0}});
    store_.query(R"(DELETE FROM "日志表")").run();
    if (initTickets(store_, desk_, kPeriod).outcome != Outcome::done) continue;
    const auto plain = count();
    set({{kFewerCell, 1}, {kEffortCell, 1}});
    const auto counted = count();
    EXPECT_EQ(counted.at_most, trial != 4);
    EXPECT_GE(counted.survivors, plain.survivors);
    const auto left = run(counted);
    EXPECT_LE(left, counted.survivors);
    fewer += left < plain.survivors;
  }
  EXPECT_GT(fewer, 0);
}

// Dropped at each look that the reading and the count take: they give nothing, look no more, and the next is
// whole.
TEST_F(Live, IsDroppedAtAnyLook) {
  test::putTickets(store_, random_, 300);
  test::putConditions(store_, random_, 60, 99);
  const auto whole = count();
  int k = 0;
  for (bool reached = true; reached && !HasFailure(); ++k) {
    int looks = 0;
    auto asked = question();
    asked.table = loadLiveTickets(store_, [&] { return looks++ == k; });
    if (asked.table) {
      test::ScriptedCourse course(k - looks + 1);
      const auto result = live_.count(asked, course);
      EXPECT_EQ(result.has_value(), !course.stopRequested()) << k;
      looks += course.looks();
    }
    reached = looks > k;
    EXPECT_EQ(looks, reached ? k + 1 : k);
    EXPECT_EQ(live_.count(question(), course_), whole);
  }
  EXPECT_GT(k, 3);
}

}  // namespace
}  // namespace lotmere

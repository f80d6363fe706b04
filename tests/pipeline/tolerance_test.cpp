// The tolerance over the whole set and the funnel against each ticket judged by itself, over stores of
// chance; `--gtest_random_seed=N` tries others.
#include <gtest/gtest.h>

#include <algorithm>

#include "advice/funnel.hpp"
#include "advice/live_count.hpp"
#include "base/text.hpp"
#include "conditions/condition_store.hpp"
#include "pipeline/random_store.hpp"
#include "pipeline/run.hpp"
#include "support/scripted_course.hpp"
#include "support/store_test.hpp"

namespace lotmere {
namespace {

using test::kPeriod;

class Tolerance : public test::StoreTest {
 protected:
  void putStore(std::mt19937& random, int trial) {
    test::putHistory(store_, random, 12);
    test::putConditions(store_, random, 20 + 10 * (trial % 4), 85);
    test::putTickets(store_, random, 200);
    store_.query(R"(DELETE FROM "日志表" WHERE "期号"<>?)").bind(kPeriod).run();
    changeSettings(store_, [&](ConditionSet& set) {
      set.cells.set(kSetToleranceCell, trial % 5);
      if (trial % 2) set.cells.set(kShrinkTypeCell, kLargestShrink);
      set.match = {trial % 3 == 0, 2025001, kPeriod, 3 + trial % 2};
    });
  }
  [[nodiscard]] FilterPlan plan() {
    return {compileRules(loadConditionSet(store_)), loadDrawTable(store_), kPeriod};
  }
  [[nodiscard]] TicketSet tickets() {
    return loadTickets(store_, kPeriod, [](std::size_t) { return false; }).value();
  }
};

// A ticket stays when it fails no more than the tolerance, historical matches apart; every step's line and
// row tell how many fail it, and without a tolerance how many are left behind it.
TEST_F(Tolerance, AndFunnelFollowEachTicketJudgedByItself) {
  std::mt19937 random(17 + GTEST_FLAG_GET(random_seed));
  FreeCourse course;
  int partly = 0, matched = 0;
  for (int trial = 0; trial < 40 && !HasFailure(); ++trial) {
    SCOPED_TRACE(trial);
    putStore(random, trial);
    const FilterPlan judge = plan();
    const std::vector<Balls> whole = tickets().balls;
    const int tolerance = judge.rules().tolerance;
    std::vector<Balls> stays, left = whole;
    std::vector<FunnelRow> rows;
    std::string lines;
    for (const Balls ticket : whole) {
      StepBits failed = judge.failures(ticket);
      const bool matches = failed[matchStep()];
      matched += matches;
      failed.reset(matchStep());
      if (!matches && failed.count() <= static_cast<std::size_t>(tolerance)) stays.push_back(ticket);
    }
    for (std::size_t step = 0; step < filterSteps().size(); ++step) {
      if (!judge.isOn(step)) continue;
      const auto fails = [&](Balls ticket) { return judge.runs(step) && !judge.passes(step, ticket); };
      const auto all = static_cast<std::int64_t>(whole.size());
      const auto alone = std::ranges::count_if(whole, fails);
      const auto before = static_cast<std::int64_t>(left.size());
      std::erase_if(left, fails);
      const auto after = static_cast<std::int64_t>(left.size());
      rows.push_back({filterSteps()[step].plainName(), tolerance > 0 ? all : before,
                      tolerance > 0 ? all - alone : after, alone});
    }
    const auto foretold = foretellFunnel(judge, tickets(), course, 2).value();
    const auto counted = LiveCount().count(
        {loadLiveTickets(store_), loadConditionSet(store_), loadDrawTable(store_), kPeriod}, course);
    desk_.runningText().set({});
    const RunResult run = runPipeline(store_, desk_, kPeriod, WithFunnel::yes);
    EXPECT_EQ(run.funnel, foretold);
    EXPECT_EQ(counted->survivors, run.tickets);
    EXPECT_EQ(foretold.back().after, run.tickets);
    EXPECT_EQ(foretold.back().before, static_cast<std::int64_t>(stays.size()));
    ASSERT_EQ(foretold.size(), rows.size() + 1 + (tolerance > 0));
    EXPECT_TRUE(std::ranges::equal(rows, std::span(foretold).first(rows.size())));
    partly += !stays.empty() && stays.size() < whole.size();
    if (tolerance == 0 || judge.rules().shrink_type != kLargestShrink) continue;
    const TicketSet after = tickets();
    EXPECT_EQ(after.balls, stays);
    for (std::size_t row = 0; row < after.size(); ++row)
      EXPECT_TRUE(after.stored.seq[row] == static_cast<int>(row) + 1 && after.stored.mark[row] == 1) << row;
    const std::string text = desk_.runningText().text();
    for (const std::size_t step : {std::size_t{0}, std::size_t{12}, matchStep()})
      if (judge.isOn(step)) {
        const auto fail = std::ranges::count_if(
            whole, [&](Balls ticket) { return judge.runs(step) && !judge.passes(step, ticket); });
        EXPECT_NE(text.find(filterSteps()[step].name + "不符合：" + toFullWidth(fail) + " 注"), text.npos)
            << text;
      }
  }
  EXPECT_TRUE(partly > 15 && matched > 50) << partly << ' ' << matched;
}

// A stop in the walk keeps what it hadn't reached.
TEST_F(Tolerance, AStopKeepsWhatWasNotReached) {
  std::mt19937 random(5);
  putStore(random, 3);
  const TicketSet stored = tickets();
  TicketSet many;  // of no store
  many.period = stored.period;
  for (std::size_t i = 0; i < 20'000; ++i) many.add(stored.balls[i % stored.size()]);
  const FilterPlan judge = plan();
  const auto passes = [&](Balls ticket) { return !judge.rejects(judge.failures(ticket)); };
  TicketSet cut = many;
  test::ScriptedCourse course(1);  // behind the first block
  StepWatcher nobody;
  EXPECT_TRUE(thin(judge, cut, course, nobody).stopped);
  std::vector<Balls> expected(many.balls.begin(), many.balls.begin() + 8192);
  std::erase_if(expected, [&](Balls ticket) { return !passes(ticket); });
  expected.insert(expected.end(), many.balls.begin() + 8192, many.balls.end());
  EXPECT_EQ(cut.balls, expected);
  EXPECT_EQ(cut.seq.back(), static_cast<std::int32_t>(cut.size()));
  EXPECT_EQ(std::ranges::count(cut.mark, 1), static_cast<std::ptrdiff_t>(cut.size()));
}

}  // namespace
}  // namespace lotmere

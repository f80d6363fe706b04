// The back-test against each draw judged by a plan of its own, and the shares against all sixes counted one
// by one; `--gtest_random_seed=N` tries others.
#include "advice/backtest.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "advice/backtest_text.hpp"
#include "conditions/condition_store.hpp"
#include "pipeline/random_store.hpp"
#include "support/scripted_course.hpp"
#include "support/store_test.hpp"
#include "tickets/init.hpp"

namespace lotmere {
namespace {

using test::kPeriod;

// Of all tickets, those that the plan of one period lets through.
std::int64_t countLiterally(const FilterPlan& plan, bool by_blue) {
  NumberSelection all;
  std::fill(all.red.begin() + 1, all.red.end(), PickState::tuo);
  std::int64_t passed = 0;
  expandSelection(all, [&](const Reds& six, const std::vector<int>&) {
    for (int blue = 1; blue <= (by_blue ? kBlueCount : 1); ++blue) {
      int failing = 0;
      for (std::size_t step = 0; step < filterSteps().size() && failing <= plan.rules().tolerance; ++step)
        if (plan.runs(step) && !plan.passes(step, packBalls(six, blue)))
          failing += step == matchStep() ? 100 : 1;
      passed += failing <= plan.rules().tolerance;
    }
    return true;
  });
  return passed;
}

class BackTestOfChance : public test::StoreTest {
 protected:
  FreeCourse course_;
};

TEST_F(BackTestOfChance, EqualsEachDrawAndEachSixJudgedByItself) {
  std::mt19937 random(11 + GTEST_FLAG_GET(random_seed));
  int passed = 0, rejected = 0, between = 0;
  for (int trial = 0; trial < 4 && !HasFailure(); ++trial) {
    SCOPED_TRACE(trial);
    test::putHistory(store_, random, 20 + trial);
    test::putConditions(store_, random, 8, 92);
    const bool by_blue = trial == 2;
    ConditionSet set = loadConditionSet(store_);
    for (int place = 1; place <= kPlaceCount; ++place) set.use(usageOfPlace(place), by_blue && place > 4);
    for (int turn = 0; turn < kTurnCount; ++turn) set.use(usageOfTurn(turn), turn % 2 == trial % 2);
    set.cells.set(kSetToleranceCell, trial);
    set.match = {trial % 2 == 1, 2025001, kPeriod, 3};
    const DrawTable draws = loadDrawTable(store_);
    const std::size_t last = trial == 2 ? 2 : 5;
    const auto result = backTest(set, draws, last, course_, 1 + trial % 2);
    ASSERT_TRUE(result && result->draws.size() == last && result->chance.passing.size() == last);
    for (std::size_t place = 0; place < last; ++place) {
      const PastDraw& draw = draws.all()[draws.all().size() - last + place];
      const FilterPlan plan(compileRules(set), draws, draw.period);
      const StepBits failed = plan.failures(packBalls(draw.numbers.reds, draw.numbers.blue));
      const DrawVerdict& verdict = result->draws[place];
      EXPECT_EQ(verdict.period, draw.period);
      EXPECT_EQ(verdict.failed, failed);
      const auto others = failed.count() - failed[matchStep()];
      EXPECT_EQ(verdict.passed, !failed[matchStep()] && others <= static_cast<std::size_t>(trial));
      passed += verdict.passed;
      rejected += failed[matchStep()];
      if (place > 0) continue;
      EXPECT_EQ(result->chance.passing[place], countLiterally(plan, by_blue)) << place;
      between += result->chance.passing[place] > 0 && result->chance.passing[place] < result->chance.all;
    }
    EXPECT_EQ(result->chance.all, by_blue ? kAllTickets : kAllRedSixes);
  }
  EXPECT_TRUE(passed > 5 && rejected > 0 && between > 2) << passed << ' ' << rejected << ' ' << between;

  test::ScriptedCourse stopped(3);
  EXPECT_FALSE(backTest(loadConditionSet(store_), loadDrawTable(store_), 5, stopped).has_value());
}

TEST(CountedVerdicts, FollowTheToleranceAndLeaveTheMatchOutside) {
  const std::size_t match = matchStep();
  std::vector<DrawVerdict> draws;
  for (const std::vector<std::size_t>& failed :
       {std::vector<std::size_t>{}, {0}, {0}, {0, 1}, {match}, {1, match}, {0, 1, 2, 3}}) {
    DrawVerdict& draw = draws.emplace_back();
    for (const std::size_t step : failed) draw.failed.set(step);
  }
  const auto counts = countVerdicts(draws, 0);
  EXPECT_EQ(counts.failing_at_most, (std::vector{1, 3, 4, 4, 5}));
  EXPECT_EQ(counts.rejected_by_match, 2);
  EXPECT_TRUE(counts.stopped_alone[0] == 2 && counts.stopped_alone[1] == 0 &&
              counts.stopped_alone[match] == 1);
  const auto tolerant = countVerdicts(draws, 1).stopped_alone;
  EXPECT_TRUE(tolerant[0] == 1 && tolerant[1] == 1 && tolerant[2] == 0 && tolerant[match] == 2);
}

TEST(SuccessCounts, HaveTheQuantilesOfTheirDistribution) {
  const struct {
    std::vector<double> chances;
    CountRange range;
  } cases[] = {{std::vector(100, 0.5), {40, 60}},
               {std::vector(10, 0.5), {2, 8}},
               {std::vector(20, 0.1), {0, 5}},
               {{0.1, 0.5, 0.9}, {0, 3}},
               {{1, 1, 0}, {2, 2}},
               {{}, {0, 0}},
               {std::vector(1000, 0.3), {272, 329}}};
  for (const auto& [chances, range] : cases) {
    const auto found = centralRange(successDistribution(chances));
    EXPECT_EQ(found, range) << chances.size() << ": " << found.low << ' ' << found.high;
  }
  const auto three = successDistribution(std::vector{0.1, 0.5, 0.9});
  const double known[] = {0.045, 0.455, 0.455, 0.045};
  for (std::size_t k = 0; k < 4; ++k) EXPECT_NEAR(three[k], known[k], 1e-12);
}

TEST(BackTestText, SaysWhetherItDiffersFromChance) {
  BackTest test;
  test.draws.resize(3);
  test.draws[0] = {2026001, {}, true};
  test.draws[1].failed.set(0);
  test.counts = countVerdicts(test.draws, 0);
  test.chance = {kAllRedSixes, {553'784}, 1, 1.5, {0, 2}, 0.5};
  EXPECT_EQ(verdictText(test.draws[0]), "2026001\t符合");
  EXPECT_EQ(verdictText(test.draws[1]), "0\t不符合\t" + filterSteps()[0].plainName());
  EXPECT_NE(backTestLines(test).back().find("与随机相当"), std::string::npos);
  test.chance.range = {2, 3};
  EXPECT_EQ(backTestLines(test).back().find("与随机相当"), std::string::npos);
}

}  // namespace
}  // namespace lotmere

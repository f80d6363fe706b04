// Generation in one go against initialisation and run, and against each ticket judged by itself, over stores
// of chance; `--gtest_random_seed=N` tries others.
#include "pipeline/generate.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "advice/funnel.hpp"
#include "advice/set_share.hpp"
#include "conditions/condition_store.hpp"
#include "conditions/own_sets.hpp"
#include "pipeline/random_store.hpp"
#include "pipeline/run.hpp"
#include "reduction/cover.hpp"
#include "support/store_test.hpp"
#include "tickets/init.hpp"
#include "tickets/ticket_steps.hpp"

namespace lotmere {
namespace {

using test::kPeriod;
using test::pick;

NumberSelection randomSelection(std::mt19937& random) {
  NumberSelection selection;
  const int reds = pick(random, 6, 12), first = pick(random, 1, 9), step = pick(random, 1, 2);
  const int dan = pick(random, 0, 2);
  for (int i = 0; i < reds; ++i) selection.red[first + i * step] = i < dan ? PickState::dan : PickState::tuo;
  for (int blues = pick(random, 1, 6); blues > 0; --blues)
    selection.blue[pick(random, 1, kBlueCount)] = PickState::tuo;
  return selection;
}

// Settings of all kinds: with a few conditions or with many, with a tolerance, with a place for the blue,
// with each shrink, with a score and a search.
void putSettings(Store& store, std::mt19937& random, int trial) {
  test::putConditions(store, random, trial % 5 * 12, pick(random, 80, 99));
  changeSettings(store, [&](ConditionSet& set) {
    if (trial % 7 == 3)  // the combinations alone, which don't number the tickets
      for (const auto& [usage, on] : std::vector(set.switches.rows()))
        set.use(usage, usage >= usageOfTurn(0) && usage < usageOfTurn(0) + 12);
    if (trial % 7 == 3) set.match = {};
    set.use(usageOfPlace(kPlaceCount), trial % 3 > 0);
    set.cells.set(kSetToleranceCell, trial % 4 == 1 ? pick(random, 1, 4) : 0);
    set.use(kSmartOptimisation, trial % 6 == 2);
    set.cells.set(kFewerCell, trial % 16 == 5);
    set.cells.set(kEffortCell, 1);
  });
}

struct Generated {
  std::vector<test::Row> rows;  // IDs apart
  std::string text;             // from the tickets in front of the filters on
  std::vector<std::string> tips;
  std::string draws;
};

class Generate : public test::StoreTest {
 protected:
  // Draws, tickets, settings and the selection, the same for the same trial.
  NumberSelection put(int trial) {
    std::mt19937 random(static_cast<unsigned>(700 + trial + GTEST_FLAG_GET(random_seed) * 1000));
    const int draws[] = {0, 1, 2, 3, 12};
    putSettings(store_, random, trial);
    test::putHistory(store_, random, draws[trial % 5]);
    test::putTickets(store_, random, pick(random, 1, 60));
    const NumberSelection selection = randomSelection(random);
    changeSettings(store_, [&](ConditionSet& set) { putSelection(set, selection); });
    return selection;
  }
  [[nodiscard]] Generated look(ScriptedDesk& desk) {
    Generated seen{test::readRows(store_), desk.runningText().text(), {}, {}};
    for (test::Row& row : seen.rows) row.id = 0;
    seen.text.erase(0, seen.text.find("过滤缩水之前共"));
    for (const auto& tip : desk.tips) seen.tips.push_back(tip.text);
    Query draws = store_.query(R"(SELECT * FROM "历史记录" ORDER BY "期号")");
    while (draws.next())
      for (int column = 0; column < draws.statement().getColumnCount(); ++column)
        seen.draws += draws.statement().getColumn(column).getString() + ' ';
    return seen;
  }
  static std::vector<Balls> expandLiterally(const NumberSelection& selection) {
    std::vector<Balls> tickets;
    expandSelection(selection, [&](const Reds& six, const std::vector<int>& blues) {
      for (const int blue : blues) tickets.push_back(packBalls(six, blue));
      return true;
    });
    return tickets;
  }
};

TEST_F(Generate, StoresWhatInitialisationAndRunLeave) {
  int thinned = 0, by_blue = 0, kept = 0, literal = 0;
  for (int trial = 0; trial < 110 && !HasFailure(); ++trial) {
    SCOPED_TRACE(trial);
    const Existing existing = trial % 2 ? Existing::keep : Existing::replace;
    ScriptedDesk desk, other_desk;
    const NumberSelection selection = put(trial);
    const std::int64_t old_id = store_.value(R"(SELECT max("ID") FROM "日志表" WHERE "期号"=?)", kPeriod);
    const auto result = generateTickets(store_, desk, kPeriod, selection, existing);
    const Generated made = look(desk);
    EXPECT_LE(store_.value(R"(SELECT max("ID") FROM "日志表")"), old_id + result.left);
    kept += existing == Existing::keep &&
            store_.value(R"(SELECT count(*) FROM "日志表" WHERE "ID"<=?)", old_id) > 0;

    put(trial);
    const std::int64_t whole = initTickets(store_, other_desk, kPeriod, existing).rows;
    const RunResult run = runPipeline(store_, other_desk, kPeriod);
    const Generated expected = look(other_desk);
    EXPECT_EQ(result.outcome, Outcome::done);
    EXPECT_EQ(result.expanded, whole);
    EXPECT_EQ(result.left, run.tickets);
    EXPECT_EQ(made.rows, expected.rows);
    EXPECT_EQ(made.text, expected.text);
    EXPECT_EQ(made.tips, expected.tips);
    EXPECT_TRUE(made.draws == expected.draws);
    thinned += result.left > 0 && result.left < whole;
    // Each ticket judged by itself, then compared with each centre.
    const FilterPlan plan(compileRules(loadConditionSet(store_)), loadDrawTable(store_), kPeriod);
    by_blue += plan.rules().set.isUsed(usageOfPlace(kPlaceCount)) && plan.rules().places.canReject();
    if (existing == Existing::keep || plan.rules().effort > 0) continue;
    std::vector<Balls> left, numbers;
    for (const Balls ticket : expandLiterally(selection))
      if (!plan.rejects(plan.failures(ticket)) &&
          (plan.rules().shrink_type == kLargestShrink || std::ranges::none_of(left, [&](Balls centre) {
             return countShared(centre, ticket) >= plan.rules().shrink_type;
           })))
        left.push_back(ticket);
    for (const test::Row& row : made.rows) numbers.push_back(packBalls(row.reds, row.blue));
    EXPECT_EQ(numbers, left);
    literal += !left.empty();
  }
  EXPECT_TRUE(thinned > 25 && by_blue > 15 && kept > 15 && literal > 12)
      << thinned << ' ' << by_blue << ' ' << kept << ' ' << literal;
}

// What is too many is told with the funnel that a run over all of it would have had, and nothing is stored.
TEST_F(Generate, TellsTheFunnelOfTooManyAndStoresNothing) {
  const struct {
    const char* name;
    int type;
    bool smart, fewer, by_blue;
    GenerateLimits limits;
    const char* told;
  } cases[] = {
      {"left by the filters", 7, false, false, true, {.stored = 100}, "过滤缩水后还有 "},
      {"left by the shrink", 6, false, false, true, {.stored = 10}, "过滤缩水后还有 "},
      {"left by the shrink, tolerantly", 5, false, false, false, {.stored = 1}, "过滤缩水后还有 "},
      {"scored", 6, true, false, true, {.scored = 100}, "智能优化最多处理 １００ 注，过滤后还有 "},
      {"searched", 6, false, true, false, {.searched = 100}, "精简缩水最多处理 １００ 注，过滤后还有 "},
  };
  FreeCourse course;
  for (const auto& [name, type, smart, fewer, by_blue, limits, told] : cases) {
    SCOPED_TRACE(name);
    std::mt19937 random(20261);
    test::putHistory(store_, random, 12);
    test::putTickets(store_, random, 30);
    const auto before = test::readRows(store_);
    changeSettings(store_,
                   [&, type = type, smart = smart, fewer = fewer, by_blue = by_blue](ConditionSet& set) {
                     set.cells.set(kShrinkTypeCell, type);
                     set.use(kSmartOptimisation, smart);
                     set.cells.set(kFewerCell, fewer);
                     set.cells.set(kSetToleranceCell, type == 5);
                     set.use(usageOfPlace(kPlaceCount), by_blue);
                     set.cells.set(kToleranceCell, 0);
                     const int right[] = {2, 3, 11};
                     setPlace(set, kPlaceCount, right);
                   });
    NumberSelection selection;
    for (int i = 0; i < 14; ++i) selection.red[3 + 2 * i + i % 2] = PickState::tuo;
    for (const int blue : {1, 2, 3, 16}) selection.blue[blue] = PickState::tuo;
    ScriptedDesk desk;
    const auto result = generateTickets(store_, desk, kPeriod, selection, Existing::replace, limits);
    EXPECT_EQ(result.outcome, Outcome::refused);
    ASSERT_EQ(desk.told.size(), 1U);
    EXPECT_TRUE(desk.told[0].text.starts_with(told)) << desk.told[0].text;
    EXPECT_EQ(test::readRows(store_), before);

    TicketSet tickets;
    for (const Balls ticket : expandLiterally(selection)) tickets.add(ticket);
    const FilterPlan plan(compileRules(loadConditionSet(store_)), loadDrawTable(store_), kPeriod);
    auto foretold = foretellFunnel(plan, tickets, course).value();
    if (smart || fewer) foretold.pop_back();
    EXPECT_EQ(result.funnel, foretold);
    EXPECT_LT(foretold.back().after, 3003 * 4);
  }
}

// At every look at the course there is: nothing is stored, and behind the last one everything is.
TEST_F(Generate, AStopChangesNothing) {
  std::mt19937 random(9);
  test::putHistory(store_, random, 12);
  test::putTickets(store_, random, 20);
  const auto before = test::readRows(store_);
  NumberSelection selection;
  for (int red = 1; red <= 16; ++red) selection.red[red] = PickState::tuo;
  for (int blue = 1; blue <= 3; ++blue) selection.blue[blue] = PickState::tuo;
  int stopped = 0;
  for (int stop_at = 1;; ++stop_at) {
    ScriptedDesk desk;
    int looks = 0;
    desk.course().on_look = [&] {
      if (++looks == stop_at) desk.course().requestStop();
    };
    const auto result = generateTickets(store_, desk, kPeriod, selection, Existing::keep);
    if (result.outcome == Outcome::done) break;
    ++stopped;
    EXPECT_EQ(result.outcome, Outcome::stopped) << stop_at;
    EXPECT_EQ(test::readRows(store_), before) << stop_at;
    EXPECT_FALSE(desk.course().stopRequested() || desk.course().open) << stop_at;
  }
  EXPECT_GT(stopped, 8);
  EXPECT_NE(test::readRows(store_), before);
}

// Of all 17,721,088 tickets as many are left as chance gives the set.
TEST_F(Generate, TakesTheWholeGame) {
  FreeCourse course;
  std::mt19937 random(4);
  test::putHistory(store_, random, 12);
  NumberSelection all;
  std::fill(all.red.begin() + 1, all.red.end(), PickState::tuo);
  std::fill(all.blue.begin() + 1, all.blue.end(), PickState::tuo);
  for (const bool by_blue : {false, true}) {
    changeSettings(store_, [&](ConditionSet& set) {
      set.cells.set(kShrinkTypeCell, kLargestShrink);
      const int right[] = {2, 3, 11};
      setPlace(set, kPlaceCount, right);
      set.use(usageOfPlace(kPlaceCount), by_blue);
      set.cells.set(kSetToleranceCell, by_blue ? 1 : 0);
    });
    const auto rules = compileRules(loadConditionSet(store_));
    const FilterPlan plan(rules, loadDrawTable(store_), kPeriod);
    const auto share = SetShare::make(rules, course, 2).value();
    const auto result = generateTickets(store_, desk_, kPeriod, all, Existing::replace);
    EXPECT_EQ(result.expanded, kAllTickets);
    EXPECT_EQ(result.left, share.count(plan) * (kAllTickets / share.all()));
    EXPECT_GT(result.left, 10'000'000);
  }
}

TEST_F(Generate, AsksBeforeItReplacesAndRefusesAnEmptySelection) {
  test::putTicket(store_, 3, 1, kPeriod, {{1, 2, 3, 4, 5, 6}, 7});
  const auto before = test::readRows(store_);
  NumberSelection selection;
  EXPECT_EQ(generateTickets(store_, desk_, kPeriod, selection).outcome, Outcome::refused);
  for (int red = 1; red <= 7; ++red) selection.red[red] = PickState::tuo;
  selection.blue[1] = PickState::dan;
  desk_.choices = {std::nullopt, 0};
  EXPECT_EQ(generateTickets(store_, desk_, kPeriod, selection).outcome, Outcome::refused);
  EXPECT_EQ(test::readRows(store_), before);
  changeSettings(store_, [](ConditionSet& set) {
    for (const auto& [usage, on] : std::vector(set.switches.rows())) set.use(usage, false);
    set.cells.set(kShrinkTypeCell, kLargestShrink);
  });
  EXPECT_EQ(generateTickets(store_, desk_, kPeriod, selection).left, 7);
  EXPECT_EQ(test::readRows(store_).front().id, 4) << "behind the row that went";
  EXPECT_TRUE(loadRunSettings(store_, kPeriod) && !loadRunOrigin(store_, kPeriod));
  EXPECT_EQ(undoTickets(store_, desk_), Outcome::done);
  EXPECT_EQ(test::readRows(store_), before);
}

}  // namespace
}  // namespace lotmere

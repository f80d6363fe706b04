// Whole runs against the literal model: tickets, marks, numbers, lines and warnings.
#include "pipeline/run.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <stdexcept>

#include "advice/judge.hpp"
#include "base/text.hpp"
#include "conditions/condition_store.hpp"
#include "pipeline/random_store.hpp"
#include "pipeline/thin.hpp"
#include "support/scripted_course.hpp"
#include "support/store_test.hpp"

namespace lotmere {
namespace {

using test::kPeriod;
using test::putConditions;
using test::putHistory;
using test::putTickets;

class Run : public test::StoreTest {
 protected:
  // Runs and compares everything with the model.
  void expectLikeModel(const std::string& front = {}) {
    const test::Outcome expected = test::modelRun(store_);
    ScriptedDesk desk;
    desk.runningText().set(front);
    const RunResult result = runPipeline(store_, desk, kPeriod);
    EXPECT_EQ(result.outcome, Outcome::done);
    // A front of more than 30 characters goes.
    EXPECT_EQ(desk.runningText().text(), (front.size() > 30 ? "" : front) + expected.text);
    EXPECT_EQ(test::readRows(store_), expected.rows);
    std::vector<std::string> tips;
    for (const auto& tip : desk.tips) tips.push_back(tip.text);
    EXPECT_EQ(tips, expected.tips);
  }
};

struct Kind {
  const char* name;
  int used;         // conditions in use, of a hundred
  int allowed;      // cells allowed, of a hundred
  int first, last;  // only these switches
};

// Each with passes that leave some tickets, but for the second one.
const Kind kKinds[] = {{"few passes of every kind mixed", 6, 88, 1, 500},
                       {"many passes that reject everything", 60, 60, 1, 500},
                       {"every pass in order", 100, 100, 1, 500},
                       {"sums and counts", 30, 70, 1, 15},
                       {"intervals and groups", 40, 92, 16, 29},
                       {"places", 60, 90, 30, 36},
                       {"shapes", 20, 80, 37, 73},
                       {"later sums", 50, 95, 62, 65},
                       {"combinations alone", 70, 90, 100, 131},
                       {"overlaps with earlier draws", 60, 85, 263, 302},
                       {"custom intervals", 15, 92, 401, 463}};

TEST_F(Run, LeavesWhatTheRulesLeave) {
  for (const Kind& kind : kKinds) {
    SCOPED_TRACE(kind.name);
    std::mt19937 random(20260501);
    int emptied = 0, rejected = 0;
    for (int trial = 0; trial < 12 && !HasFailure(); ++trial) {
      SCOPED_TRACE(trial);
      const int draws[] = {0, 1, 2, 3, 12};
      putHistory(store_, random, draws[trial % 5]);
      putConditions(store_, random, kind.used, kind.allowed);
      store_.query(R"(UPDATE "过滤条件使用情况" SET "使用情况"=0 WHERE "条件"<? OR "条件">?)")
          .bind(kind.first, kind.last)
          .run();
      putTickets(store_, random, 60 + 30 * trial);
      expectLikeModel(std::string(static_cast<std::size_t>(25 + trial), 'x'));
      const std::size_t left = countTickets(store_, kPeriod);
      emptied += left == 0;
      rejected += left > 0 && left < 60U + 30U * static_cast<unsigned>(trial);
      if (left > 0) expectLikeModel();  // again over what is left
    }
    EXPECT_GT(kind.allowed > 60 ? rejected : emptied, 5) << "the trials must have something to tell";
  }
}

// At the k-th look at the desk, for every k there is: a stop keeps the rows not reached and numbers what is
// left, a failure leaves the table as it was.
TEST_F(Run, AStopOrAFailureInTheMiddle) {
  std::mt19937 random(11 + GTEST_FLAG_GET(random_seed));
  putHistory(store_, random, 12);
  putConditions(store_, random, 12, 95);
  store_.query(R"(UPDATE "过滤条件使用情况" SET "使用情况"=1 WHERE "条件" IN (1,301,302))").run();
  putTickets(store_, random, 300);
  const auto rows = test::readRows(store_);
  std::set<std::string> stopped_in;
  bool reached = true;
  for (int k = 0; reached && !HasFailure(); ++k) {
    SCOPED_TRACE(k);
    const bool fails = k % 2;
    test::writeRows(store_, rows);
    ScriptedDesk desk;
    int serves = 0;
    std::string last;
    desk.course().on_look = [&] {
      if (serves++ != k / 2) return;
      last = desk.runningText().text();
      last = last.substr(last.rfind('\n') + 1);
      desk.course().requestStop();
      if (fails) throw std::runtime_error("desk");
    };
    const auto result = test::valueOrNothing([&] { return runPipeline(store_, desk, kPeriod); });
    reached = serves > k / 2;
    EXPECT_FALSE(desk.course().stopRequested());
    // The last word is true wherever the stop came, also while rows are read or written back.
    const bool stopped = result.outcome == Outcome::stopped;
    const std::string end = stopped ? "用户中止,当前记录余：" : "全部过滤缩水完成,余：";
    const auto count = static_cast<std::int64_t>(countTickets(store_, kPeriod));
    const bool said = desk.runningText().text().ends_with(end + toFullWidth(count) + " 注");
    EXPECT_EQ(said, !fails || !reached || last.starts_with("全部过滤")) << desk.runningText().text();
    EXPECT_EQ(stopped, reached && !fails && !last.starts_with("全部过滤")) << last;
    EXPECT_FALSE(desk.course().open);
    const auto left = test::readRows(store_);
    const bool saved = !reached || last.starts_with("全部过滤") ||
                       (!fails && !last.empty() && !last.starts_with("正读取数据"));
    test::writeRows(store_, rows);
    // 组合（具体） begins without a line, so the model isn't told of a stop in it.
    if (!fails && reached && last.find("过滤后余") != std::string::npos) continue;
    const test::Outcome expected = test::modelRun(store_, last);
    EXPECT_EQ(left, saved ? expected.rows : rows);
    if (fails || last.find("过滤正") == std::string::npos) continue;
    stopped_in.insert(last);
    EXPECT_TRUE(stopped);
    EXPECT_EQ(desk.runningText().text(), expected.text);
  }
  EXPECT_GE(stopped_in.size(), 4U);
}

TEST_F(Run, AStopDuringTheWriteBackComesTooLate) {
  store_.db().exec("UPDATE 过滤条件使用情况 SET 使用情况=0; UPDATE 过滤条件 SET Value=7 WHERE ID=3900");
  test::putTicket(store_, 9000, 1, kPeriod + 1, {{1, 2, 3, 4, 5, 6}, 7});
  store_.db().exec(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<6000) INSERT INTO "
      "日志表 (ID,序号,期号,红球1,红球2,红球3,红球4,红球5,红球6,蓝球) SELECT i,i," +
      std::to_string(kPeriod) + ",1,2,3,4,5,6,7 FROM n");
  int late = 0;
  desk_.course().on_look = [&] {
    if (!desk_.runningText().text().ends_with("缩水后余：６０００ 注")) return;
    ++late;
    desk_.course().requestStop();
  };
  const RunResult result = runPipeline(store_, desk_, kPeriod);
  EXPECT_GT(late, 0);
  EXPECT_EQ(result.outcome, Outcome::done);
  EXPECT_TRUE(desk_.runningText().text().ends_with("全部过滤缩水完成,余：６０００ 注"));
  EXPECT_EQ(store_.value("SELECT count(*) FROM 日志表 WHERE 过滤标记=1"), 6000);
  EXPECT_FALSE(desk_.course().stopRequested());
}

// Both ends of the range count, the draws of the period and behind it never; the line comes with no ticket
// too.
TEST_F(Run, TheMatchWithPastDrawsTakesItsRangeWithBothEnds) {
  store_.db().exec(
      R"(UPDATE "过滤条件使用情况" SET "使用情况"=0; UPDATE "过滤条件" SET "Value"=7 WHERE "ID"=3900)");
  // Draw k holds 5k + 1 to 5k + 6; the fifth is the one of the period.
  const auto six = [](int k) {
    return DrawNumbers{{5 * k + 1, 5 * k + 2, 5 * k + 3, 5 * k + 4, 5 * k + 5, 5 * k + 6}, 1};
  };
  for (int k = 0; k < 6; ++k) test::putDraw(store_, kPeriod - 4 + k, "2026-01-01", six(k));
  const struct {
    PeriodNo first, last;
    int match;
    const char* left;
  } cases[] = {{kPeriod - 3, kPeriod - 2, 6, "0345"},   {kPeriod - 4, kPeriod - 4, 6, "12345"},
               {kPeriod - 1, kPeriod + 1, 6, "01245"},  {kPeriod, kPeriod + 1, 6, "012345"},
               {kPeriod - 2, kPeriod - 3, 6, "012345"}, {kPeriod - 3, kPeriod - 3, 1, "345"},
               {kPeriod - 4, kPeriod - 1, 1, "5"},      {kPeriod - 3, kPeriod - 3, 2, "02345"}};
  for (const auto& row : cases) {
    store_.query(R"(DELETE FROM "日志表")").run();
    for (int k = 0; k < 6; ++k) test::putTicket(store_, k + 1, k + 1, kPeriod, six(k));
    store_.query(R"(UPDATE "历史数据过滤" SET "使用状态"=1,"最小值"=?,"最大值"=?,"匹配值"=?)")
        .bind(row.first, row.last, row.match)
        .run();
    expectLikeModel();
    std::string left;
    Query ids = store_.query(R"(SELECT "ID"-1 FROM "日志表" ORDER BY "ID")");
    while (ids.next()) left += ids.text(0);
    EXPECT_EQ(left, row.left) << row.first << ' ' << row.last << ' ' << row.match;
  }
  // A sum that no ticket has: nothing is left for the match.
  store_.db().exec(R"(UPDATE "过滤条件" SET "Value"=0 WHERE "ID" BETWEEN 1000 AND 1170;
                      UPDATE "过滤条件使用情况" SET "使用情况"=1 WHERE "条件"=1)");
  runPipeline(store_, desk_, kPeriod);
  EXPECT_NE(desk_.runningText().text().find("[历史数据过滤]过滤后余：０ 注"), std::string::npos)
      << desk_.runningText().text();
}

TEST_F(Run, TheDrawBeforeThePeriodIsComputedAnewWithoutTicketsToo) {
  test::putDraws(store_, {{kPeriod - 4, {{1, 2, 3, 4, 5, 6}, 7}}, {kPeriod - 2, {{1, 2, 3, 4, 5, 8}, 7}}});
  test::putDraws(store_, {{kPeriod, {{1, 2, 3, 4, 5, 9}, 7}}});
  EXPECT_EQ(runPipeline(store_, desk_, kPeriod).outcome, Outcome::refused);
  EXPECT_EQ(store_.value(R"(SELECT sum("期号"*("和值"=23 AND "重叠号"=5)) FROM "历史记录")"), kPeriod - 2);
  EXPECT_EQ(store_.value(R"(SELECT count("和值") FROM "历史记录")"), 1);
}

class Thin : public test::StoreTest {
 protected:
  // 总和值 lets sums above 31 through; the set's sums are 21 to 53.
  FilterPlan plan() {
    ConditionSet set = loadConditionSet(store_);
    for (const auto& [usage, on] : std::vector(set.switches.rows())) set.switches.set(usage, usage == 1);
    for (int sum = 0; sum <= 170; ++sum) set.cells.set(1000 + sum, sum > 31);
    return {compileRules(set), {}, kPeriod};
  }
  static TicketSet tickets(std::size_t count) {
    TicketSet tickets;
    for (std::size_t row = 0; row < count; ++row)
      tickets.add(packBalls({static_cast<int>(row % 33) + 1, 2, 3, 4, 5, 6}, 1));
    return tickets;
  }
  StepWatcher nobody_;
};

// A stop between two blocks: what was judged is settled, what wasn't reached stands behind it, in its old
// order.
TEST_F(Thin, AStopBetweenBlocksLeavesTheRestAsItStood) {
  constexpr std::size_t rows = 20'000;
  TicketSet left = tickets(rows);
  test::ScriptedCourse course(2);
  const Funnel funnel = thin(plan(), left, course, nobody_);
  EXPECT_TRUE(funnel.stopped);
  EXPECT_EQ(funnel.steps.front().state, StepResult::State::cut_short);
  const std::size_t unreached = rows - 2 * 8192;
  ASSERT_GT(left.size(), unreached);
  const std::size_t passed = left.size() - unreached;
  EXPECT_EQ(funnel.steps.back().before, static_cast<std::int64_t>(left.size()));
  for (std::size_t row = 0; row < left.size(); ++row) {
    ASSERT_EQ(left.mark[row], 1) << "the closing marks all";
    ASSERT_EQ(left.seq[row], static_cast<std::int32_t>(row) + 1);
    if (row < passed) {
      ASSERT_GT(redsOf(left.balls[row])[0], 11);
    } else {
      ASSERT_EQ(left.origin[row], rows - (left.size() - row)) << row;
    }
  }
}

// Each step judged by itself: a ticket that the walk leaves fails none, one that it removes fails at least
// one.
TEST_F(Thin, JudgingTellsWhatTheWalkRemoves) {
  std::mt19937 random(40 + GTEST_FLAG_GET(random_seed));
  for (int trial = 0; trial < 20; ++trial) {
    test::putHistory(store_, random, trial);
    test::putConditions(store_, random, 10, 90);
    const FilterPlan all(compileRules(loadConditionSet(store_)), loadDrawTable(store_), kPeriod);
    test::putTickets(store_, random, 200);
    auto left = loadTickets(store_, kPeriod, [](std::size_t) { return false; }).value();
    const TicketSet whole = left;
    FreeCourse course;
    const FailureCounts failures = countFailures(all, whole.balls, course, 1 + trial % 3).value();
    thin(all, left, course, nobody_);
    std::set<std::uint32_t> stands(left.origin.begin(), left.origin.end());
    for (std::size_t row = 0; row < whole.size(); ++row) {
      ASSERT_EQ(failures[row] == 0, stands.contains(whole.origin[row])) << row;
      ASSERT_EQ(failures[row], all.failures(whole.balls[row]).count()) << row;
    }
  }
  test::ScriptedCourse stopped(1);
  EXPECT_EQ(countFailures(plan(), tickets(20).balls, stopped), std::nullopt);
}

// Two threads leave what one leaves, whole or stopped.
TEST_F(Thin, ThreadsLeaveTheSame) {
  const std::size_t rows = 600'000;
  TicketSet by_one = tickets(rows), by_three = by_one, stopped = by_one;
  FreeCourse course;
  const Funnel one = thin(plan(), by_one, course, nobody_);
  const Funnel three = thin(plan(), by_three, course, nobody_, 3);
  EXPECT_EQ(by_one.balls, by_three.balls);
  EXPECT_EQ(by_one.origin, by_three.origin);
  EXPECT_EQ(by_one.seq, by_three.seq);
  EXPECT_EQ(by_one.mark, by_three.mark);
  EXPECT_EQ(one.steps.front().after, three.steps.front().after);
  EXPECT_EQ(one.steps.front().after, static_cast<std::int64_t>(by_one.size()));

  test::ScriptedCourse stop(5);
  EXPECT_TRUE(thin(plan(), stopped, stop, nobody_, 3).stopped);
  std::vector<bool> stands(rows);
  std::size_t failing = 0;
  for (std::size_t row = 0; row < stopped.size(); ++row) {
    ASSERT_FALSE(stands[stopped.origin[row]]) << "a ticket stands twice";
    stands[stopped.origin[row]] = true;
    failing += redsOf(stopped.balls[row])[0] <= 11;
    ASSERT_EQ(stopped.seq[row], static_cast<std::int32_t>(row) + 1);
  }
  EXPECT_GT(failing, 0U) << "not reached";
  for (std::size_t row = 0; row < rows; ++row)
    ASSERT_TRUE(stands[row] || row % 33 < 11) << "a ticket that passes is gone";
}

}  // namespace
}  // namespace lotmere

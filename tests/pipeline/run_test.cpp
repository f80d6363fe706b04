// Whole runs against the literal model: tickets, marks, numbers, lines and warnings.
#include "pipeline/run.hpp"

#include <gtest/gtest.h>

#include <set>
#include <stdexcept>

#include "conditions/catalogue.hpp"
#include "conditions/condition_store.hpp"
#include "core/desk_script.hpp"
#include "core/row_copy.hpp"
#include "pipeline/order.hpp"
#include "pipeline/run_scene.hpp"

namespace lotmere {
namespace {

using test::kPeriod;

class Run : public testing::Test {
 protected:
  // Runs and compares everything with the model.
  void expect_LikeModel(const std::vector<test::PastDraw>& before) {
    const test::Outcome expected = test::model_Run(store(), before, kPeriod);
    ScriptedDesk desk;
    const RunResult result = run_Pipeline(store(), desk, kPeriod);
    EXPECT_TRUE(result.ran && !result.stopped);
    EXPECT_EQ(desk.running_Text().text(), expected.text);
    EXPECT_EQ(test::read_Rows(store()), expected.rows);
    std::vector<std::string> tips;
    for (const auto& tip : desk.tips) tips.push_back(tip.text);
    EXPECT_EQ(tips, expected.tips);
    EXPECT_EQ(desk.jobs_open, 0);
  }

  Store& store() { return home_.store(); }
  test::TempHome home_;
};

struct Kind {
  std::string name;
  int used;         // conditions in use, of a hundred
  int allowed;      // cells allowed, of a hundred
  int first, last;  // only these switches
};
std::ostream& operator<<(std::ostream& out, const Kind& kind) { return out << kind.name; }

class RandomRun : public Run, public testing::WithParamInterface<Kind> {};

TEST_P(RandomRun, LeavesWhatTheRulesLeave) {
  const Kind kind = GetParam();
  std::mt19937 random(20260501);
  int emptied = 0, rejected = 0;
  for (int trial = 0; trial < 12 && !HasFailure(); ++trial) {
    SCOPED_TRACE(trial);
    const int draws[] = {0, 1, 2, 3, 12};
    const auto before = test::put_History(store(), random, draws[trial % 5]);
    test::put_Conditions(store(), random, kind.used, kind.allowed);
    store()
        .query(R"(UPDATE "过滤条件使用情况" SET "使用情况"=0 WHERE "条件"<? OR "条件">?)")
        .bind(kind.first, kind.last)
        .run();
    test::put_Tickets(store(), random, 60 + 30 * trial);
    expect_LikeModel(before);
    if (const std::size_t left = count_Tickets(store(), kPeriod); left > 0) {
      rejected += left < std::size_t(60 + 30 * trial);
      expect_LikeModel(before);  // again over what is left
    } else {
      ++emptied;
    }
  }
  EXPECT_GT(kind.allowed > 60 ? rejected : emptied, 5) << "the trials must have something to tell";
}

INSTANTIATE_TEST_SUITE_P(Passes, RandomRun,
                         testing::Values(Kind{"FewPassesOfEveryKindMixed", 6, 88, 1, 500},
                                         Kind{"ManyPassesThatRejectEverything", 60, 60, 1, 500},
                                         Kind{"SumsAndCounts", 25, 92, 1, 15},
                                         Kind{"IntervalsAndGroups", 40, 92, 16, 29},
                                         Kind{"Places", 60, 90, 30, 36}, Kind{"Shapes", 25, 92, 37, 73},
                                         Kind{"LaterSums", 50, 95, 62, 65},
                                         Kind{"CombinationsAlone", 70, 90, 100, 131},
                                         Kind{"OverlapsWithEarlierDraws", 60, 85, 263, 302},
                                         Kind{"CustomIntervals", 15, 92, 401, 463}),
                         [](const auto& set) { return set.param.name; });

// Every condition on, all values allowed: each pass prints its line, in the order of the steps.
TEST_F(Run, PassesEveryConditionInOrder) {
  std::mt19937 random(7);
  const auto before = test::put_History(store(), random, 12);
  test::open_Conditions(store());
  store().query(R"(UPDATE "过滤条件使用情况" SET "使用情况"=1 WHERE "条件"<>300)").run();
  StoreChange places(store());
  for (int n = 1; n <= kRedCount; ++n)
    for (int p = 1; p <= 7; ++p)
      write_Attribute(store(), AttributeTable::first, "第" + std::to_string(p), n, true);
  places.commit();
  store().query(R"(UPDATE "历史数据过滤" SET "使用状态"=1,"最小值"=2003001,"最大值"=2999001)").run();
  test::write_Rows(store(), {{4, 1, kPeriod, {3, 9, 14, 22, 27, 31}, 5}});
  expect_LikeModel(before);
}

TEST(PassOrder, HoldsEachFigureConditionOnce) {
  std::multiset<UsageId> passed;
  for (const PassStep& step : pass_Order())
    if (step.kind == PassKind::figure) passed.insert(step.usage);
  std::multiset<UsageId> wanted;
  for (const Condition& condition : catalogue()) {
    const bool series = condition.usage >= 16 && condition.usage <= 29;
    const bool figure = condition.kind == CellKind::value || condition.kind == CellKind::count ||
                        condition.kind == CellKind::run_shape || condition.kind == CellKind::shape;
    if (figure && !series) wanted.insert(condition.usage);
  }
  EXPECT_EQ(passed, wanted);
  EXPECT_EQ(pass_Order().size(), 59U + 6U);
}

// Stops at the k-th look at the desk, for every k there is.
TEST_F(Run, AStopKeepsTheRowsNotReachedAndNumbersWhatIsLeft) {
  std::mt19937 random(11);
  const auto before = test::put_History(store(), random, 12);
  test::put_Conditions(store(), random, 12, 95);
  store().query(R"(UPDATE "过滤条件使用情况" SET "使用情况"=1 WHERE "条件" IN (1,301,302))").run();
  test::put_Tickets(store(), random, 300);
  const auto rows = test::read_Rows(store());
  std::set<std::string> stopped_in;
  bool reached = true;
  for (int k = 1; reached && !HasFailure(); ++k) {
    SCOPED_TRACE(k);
    test::write_Rows(store(), rows);
    ScriptedDesk desk;
    int serves = 0;
    std::string at_stop;
    desk.on_serve = [&] {
      if (++serves != k) return;
      at_stop = desk.running_Text().text();
      desk.request_Stop();
    };
    const RunResult result = run_Pipeline(store(), desk, kPeriod);
    reached = serves >= k;
    EXPECT_FALSE(desk.stop_Requested());
    EXPECT_EQ(desk.jobs_open, 0);
    const std::string last = at_stop.substr(at_stop.rfind('\n') + 1);
    if (last.starts_with("正读取数据") || (reached && at_stop.empty())) {
      EXPECT_FALSE(result.ran);
      EXPECT_EQ(test::read_Rows(store()), rows);
      const std::string text = desk.running_Text().text();
      EXPECT_TRUE(text.empty() || text.ends_with("期]．．．")) << text;
      continue;
    }
    const auto left = test::read_Rows(store());
    test::write_Rows(store(), rows);
    const test::Outcome expected = test::model_Run(store(), before, kPeriod, last);
    EXPECT_EQ(left, expected.rows);
    if (last.find("过滤正") != std::string::npos) {
      stopped_in.insert(last);
      EXPECT_TRUE(result.stopped);
      EXPECT_EQ(desk.running_Text().text(), expected.text);
    }
  }
  EXPECT_GE(stopped_in.size(), 4U);
}

TEST_F(Run, ADeskThatFailsLeavesTheTableAsItWas) {
  std::mt19937 random(13);
  const auto before = test::put_History(store(), random, 12);
  test::put_Conditions(store(), random, 10, 95);
  test::put_Tickets(store(), random, 200);
  const auto rows = test::read_Rows(store());
  const auto finished = test::model_Run(store(), before, kPeriod).rows;
  int failures = 0;
  bool failed = true;
  for (int k = 1; failed; ++k) {
    SCOPED_TRACE(k);
    test::write_Rows(store(), rows);
    ScriptedDesk desk;
    int serves = 0;
    std::string at_failure;
    desk.on_serve = [&] {
      if (++serves != k) return;
      at_failure = desk.running_Text().text();
      throw std::runtime_error("desk");
    };
    failed = false;
    try {
      (void)run_Pipeline(store(), desk, kPeriod);
    } catch (const std::runtime_error&) {
      failed = true;
      ++failures;
    }
    const bool done = !failed || at_failure.find("全部过滤缩水完成") != std::string::npos;
    EXPECT_EQ(test::read_Rows(store()), done ? finished : rows);
    EXPECT_EQ(desk.jobs_open, 0);
  }
  EXPECT_GT(failures, 5);
  test::write_Rows(store(), rows);
  expect_LikeModel(before);
}

// A failure must not leave the flag up for the next job.
TEST_F(Run, AFailureAfterAStopClearsTheFlag) {
  std::mt19937 random(17);
  (void)test::put_History(store(), random, 1);
  test::open_Conditions(store());
  test::put_Tickets(store(), random, 10);
  ScriptedDesk desk;
  desk.on_serve = [&] {
    desk.request_Stop();
    throw std::runtime_error("desk");
  };
  EXPECT_THROW((void)run_Pipeline(store(), desk, kPeriod), std::runtime_error);
  EXPECT_FALSE(desk.stop_Requested());
}

TEST_F(Run, WithoutTicketsOnlySaysSo) {
  std::mt19937 random(19);
  (void)test::put_History(store(), random, 2);
  test::write_Rows(store(), {{3, 1, kPeriod - 1, {1, 2, 3, 4, 5, 6}, 7, 1, 5, 0, 9}});
  const auto rows = test::read_Rows(store());
  const struct {
    const char* what;
    PeriodNo period;
    std::string text;
  } cases[] = {{"a period without rows is named", kPeriod, "前\r\n\r\n表格中无[２０２６０５０]期数据．"},
               {"no period, no line", 0, "前"}};
  for (const auto& row : cases) {
    ScriptedDesk desk;
    desk.running_Text().set("前");
    EXPECT_FALSE(run_Pipeline(store(), desk, row.period).ran) << row.what;
    EXPECT_EQ(desk.running_Text().text(), row.text) << row.what;
    EXPECT_EQ(test::read_Rows(store()), rows) << row.what;
  }
}

TEST_F(Run, AShortRunningTextStaysInFrontAndALongOneGoes) {
  std::mt19937 random(23);
  const auto before = test::put_History(store(), random, 1);
  test::open_Conditions(store());
  for (const int characters : {30, 31}) {
    test::put_Tickets(store(), random, 5);
    std::string front;
    for (int i = 0; i < characters; ++i) front += "注";
    const auto expected = test::model_Run(store(), before, kPeriod);
    ScriptedDesk desk;
    desk.running_Text().set(front);
    (void)run_Pipeline(store(), desk, kPeriod);
    EXPECT_EQ(desk.running_Text().text(), (characters == 30 ? front : "") + expected.text);
  }
}

}  // namespace
}  // namespace lotmere

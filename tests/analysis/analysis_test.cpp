#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cmath>

#include "analysis/counts.hpp"
#include "analysis/distribution.hpp"
#include "analysis/omission_bars.hpp"
#include "analysis/omission_text.hpp"
#include "analysis/trend.hpp"
#include "base/text.hpp"
#include "game/game.hpp"
#include "game/metrics.hpp"
#include "history/history_rows.hpp"
#include "support/store_test.hpp"

namespace lotmere::test {
namespace {

// Every tenth draw holds a red twice, as a row of another program may.
std::vector<StoredDraw> putOddDraws(Store& store, std::size_t count, unsigned seed) {
  auto draws = inventDraws(count, seed);
  for (auto& [period, numbers] : draws) {
    numbers.blue = period * 7 % 16 + 1;
    if (period % 10 == 0) numbers.reds[1] = numbers.reds[0];
  }
  putDraws(store, draws);
  return draws;
}

constexpr const char* kHasRed = R"( ?1 IN ("红球1","红球2","红球3","红球4","红球5","红球6"))";

// The analysis on the table: a select for every number, and the marks as they stand after the last one.
std::vector<OmissionFigures> modelFigures(Store& store, BallColour balls, PeriodNo period) {
  const bool red = balls == BallColour::red;
  const std::string mark = red ? R"(max("红球1","红球2","红球3","红球4","红球5","红球6"))" : "0";
  store
      .query(R"(UPDATE "历史记录" SET "总期号"=(SELECT count(*) FROM "历史记录" AS "前"
                 WHERE "前"."期号"<"历史记录"."期号"),"遗漏数据"=)" +
             mark + R"( WHERE "期号"<=?)")
      .bind(period)
      .run();
  const auto total =
      static_cast<int>(store.value(R"(SELECT "总期号" FROM "历史记录" WHERE "期号"=?)", period));
  std::vector<OmissionFigures> figures;
  for (int n = 1; n <= ballCount(balls); ++n) {
    Query hits = store.query(R"(SELECT "总期号" FROM "历史记录" WHERE "期号"<=?2 AND)" +
                             std::string(red ? kHasRed : R"( "蓝球"=?1)") + R"( ORDER BY "总期号" ASC)");
    int previous = -1, sum = 0, count = 0;
    ClosedGaps gaps;
    for (hits.bind(n, period); hits.next(); previous = hits.number(0), ++count) {
      gaps.last = hits.number(0) - previous - 1;
      gaps.largest = std::max(gaps.largest, gaps.last);
      sum += gaps.last;
    }
    if (count > 1) gaps.average = static_cast<int>(std::nearbyint(1.0 * sum / (count - 1)));
    figures.push_back({count, total - previous, count > 1 ? std::optional(gaps) : std::nullopt});
  }
  return figures;
}

class Analysis : public StoreTest {
 protected:
  std::optional<Omission> analyse(BallColour balls, PeriodNo period) {
    return (balls == BallColour::red ? analyseRedOmission : analyseBlueOmission)(store_, desk_, period);
  }
};

TEST_F(Analysis, OmissionFiguresAndRowsAreThoseOfTheTable) {
  for (const std::size_t count : {1, 4, 40, 300}) {
    const auto draws = putOddDraws(store_, count, 5);
    TempHome model;
    putOddDraws(model.store(), count, 5);
    // Back and forth, so that values of an earlier analysis stand; the third one finds a hole to close.
    const std::pair<BallColour, std::size_t> steps[] = {{BallColour::red, 0},
                                                        {BallColour::blue, count / 4},
                                                        {BallColour::red, count / 8},
                                                        {BallColour::blue, 0}};
    for (const auto& [balls, before_newest] : steps) {
      const PeriodNo period = draws[count - 1 - before_newest].period;
      EXPECT_EQ(analyse(balls, period)->numbers, modelFigures(model.store(), balls, period)) << count;
      EXPECT_EQ(dumpHistory(store_), dumpHistory(model.store())) << count;
      if (balls == BallColour::blue && count > 4)
        for (Store* store : {&store_, &model.store()})
          store->query(R"(DELETE FROM "历史记录" WHERE "期号"=?)").bind(draws[count / 2].period).run();
    }
    store_.query(R"(DELETE FROM "历史记录")").run();
  }
}

TEST_F(Analysis, OmissionOfAPeriodAboveTheNewestIsThatOfTheNewestAndAMissingOneIsTold) {
  EXPECT_FALSE(analyse(BallColour::red, kDefaultPeriod));
  putDraw(store_, 2024001, "2024-01-02", {{1, 2, 3, 4, 5, 6}, 7});
  putDraw(store_, 2024003, "2024-01-07", {{1, 2, 3, 4, 5, 33}, 7});
  const std::string before = dumpHistory(store_);
  EXPECT_FALSE(analyse(BallColour::blue, 2024002));
  EXPECT_EQ(dumpHistory(store_), before);
  EXPECT_EQ(desk_.told.at(0).text, "历史记录是空的，无法统计遗漏。");
  EXPECT_EQ(desk_.told.at(1).text, "历史记录里没有 2024002 期，无法统计遗漏。");
  EXPECT_EQ(analyse(BallColour::red, 2099001)->period, 2024003);
}

// Red 7 came in the draws 2, 3 and 7 of ten, red 4 in 0, 3, 5 and 6, red 5 and blue 16 in all but the last.
TEST_F(Analysis, OmissionExampleInFiguresWordsAndBars) {
  for (int i = 0; i < 10; ++i) {
    const int sixth = i == 2 || i == 3 || i == 7 ? 7 : 20 + i;
    const int fourth = i == 0 || i == 3 || i == 5 || i == 6 ? 4 : 9;
    putDraw(store_, 2024001 + i, "2024-01-02", {{1, 2, 3, fourth, i == 9 ? 8 : 5, sixth}, i == 9 ? 1 : 16});
  }
  const Omission red = *analyse(BallColour::red, 2024010), blue = *analyse(BallColour::blue, 2024010);
  EXPECT_EQ(red.of(7), (OmissionFigures{3, 2, ClosedGaps{3, 2, 3}}));
  const auto figures = [](const char* hits, const char* largest, const char* average, const char* running) {
    return fmt::format(
        "\r\n\r\n总共开出：{} 期 \r\n\r\n历史遗漏最大值：{} 期\r\n\r\n历史遗漏平均值：{} 期"
        "\r\n\r\n最近一次的遗漏值：０ 期\r\n\r\n第２０２４０１０期遗漏值：{} 期",
        hits, largest, average, running);
  };
  const std::pair<std::string, std::string> texts[] = {
      {omissionReport(red, 7), "(红球号码０７ (截止 ２０２４０１０ 期))  总共开出：３ 期"},
      {omissionTip(red, 33), "(红球号码 ３３)  总共开出：０ 期"},
      {averageTip(red, 8), "历史遗漏平均值：— 期"},
      {omissionTip(red, 4), "红球号码 ０４" + figures("４", "２", "１", "３")},
      {omissionReport(blue, 16),
       "蓝球号码１６ 截止 ２０２４０１０ 期\r\n_____________________" + figures("９", "０", "０", "１")}};
  for (const auto& [text, expected] : texts) EXPECT_EQ(text, expected);

  const Box group = placeGroup(BallColour::red, 7, 33'000, 1000);
  EXPECT_EQ(std::tuple(group.left, group.top, group.width, group.height), std::tuple(6100, 100, 800, 800));
  // A base of 400, and a scale of 4.4 rounded to 4.
  const OmissionBars bars = drawOmissionBars(red, 7, 500, 760.3);
  const double lengths[] = {bars.largest.left, bars.largest.width, bars.largest.height, bars.average.top,
                            bars.running.left, bars.running.width, bars.ball_foot,      bars.ball_centre,
                            bars.base_line,    bars.caption_top};
  const double expected[] = {30, 105, 300, 200, 200, 240, 200, 320, 400.3, 475.3};
  for (int i = 0; i < 10; ++i) EXPECT_DOUBLE_EQ(lengths[i], expected[i]) << i;
  EXPECT_FALSE(bars.above_average);
  const OmissionBars shorter = drawOmissionBars(red, 5, 500, 760);  // on the same scale
  EXPECT_TRUE(shorter.above_average && shorter.running.height == 100);
}

TEST_F(Analysis, CountsAreThoseOfOneSelectANumber) {
  const auto draws = putOddDraws(store_, 300, 9);
  const std::pair<PeriodNo, PeriodNo> spans[] = {
      {draws[40].period, draws[250].period}, {0, 2999001}, {2009001, 2008001}};
  for (const auto& [from, to] : spans) {
    const std::string span = R"(SELECT count(*) FROM "历史记录" WHERE "期号">=?2 AND "期号"<=?3 AND)";
    for (const CountRow& row : countRedDraws(store_, desk_, from, to)) {
      EXPECT_EQ(row.count, store_.value(span + kHasRed, row.number, from, to));
      EXPECT_EQ(row.label, "红球:" + formatBall(row.number));
    }
    for (const CountRow& row : countBlueDraws(store_, desk_, from, to)) {
      EXPECT_EQ(row.count, store_.value(span + R"( "蓝球"=?1)", row.number, from, to));
      EXPECT_EQ(row.label, "蓝球:" + formatBall(row.number));
    }
  }
}

TEST_F(Analysis, TheChartStartsWithTheNewestTenDrawsAndFiftyPeriodsAreListed) {
  const auto draws = putOddDraws(store_, 10, 9);
  const ChartPeriods few = loadChartPeriods(store_);
  EXPECT_EQ(few.period(few.from), 0);
  putDraw(store_, 2030001, "2030-01-01", {{1, 2, 3, 4, 5, 6}, 7});
  const ChartPeriods enough = loadChartPeriods(store_);
  EXPECT_EQ(enough.period(enough.from), draws[1].period);
  EXPECT_EQ(enough.period(enough.to), 2030001);
  const auto many = putOddDraws(store_, 60, 9);
  const auto listed = loadOmissionPeriods(store_);
  EXPECT_TRUE(listed.size() == 50 && listed.front() == 2030001 && listed.back() == many[11].period);
}

TEST_F(Analysis, TheDistributionHoldsEachNumberInItsColumn) {
  const auto draws = putOddDraws(store_, 250, 9);
  EXPECT_EQ(buildHaoMaFenBu(store_, desk_, 2099001, DistributionSpan::all), 250);
  EXPECT_EQ(buildHaoMaFenBu(store_, desk_, draws[200].period, DistributionSpan::recent), 100);
  const auto table = loadDistribution(store_);
  ASSERT_EQ(table.size(), 100U);
  Query rows = store_.query(R"(SELECT * FROM "号码分布" ORDER BY rowid)");
  std::size_t place = 101;
  for (; rows.next(); ++place) {
    const auto& [reds, blue] = draws[place].numbers;
    std::vector<std::string> cells(50), found;
    cells[0] = std::to_string(draws[place].period);
    for (const int red : reds) cells[red] = formatBall(red);
    cells[33 + blue] = formatBall(blue);
    for (int i = 0; i < 50; ++i) found.push_back(rows.text(i));
    EXPECT_EQ(found, cells);
    const DistributionRow& row = table[place - 101];
    EXPECT_EQ(row.period, draws[place].period);
    for (int i = 0; i < kCodeCount; ++i) EXPECT_EQ(row.drawn[i], !cells[1 + i].empty());
  }
  EXPECT_EQ(place, 201U);
}

class TrendTest : public StoreTest {};

// Each figure by looking at the draws one by one.
TEST_F(TrendTest, GapsAndFootAreThoseOfAPlainModel) {
  const auto stored = putOddDraws(store_, 130, 5);
  const DrawTable history = loadDrawTable(store_);
  const auto all = history.all();
  const auto holds = [&](std::size_t draw, int place) {
    const DrawNumbers& numbers = all[draw].numbers;
    return place < kRedCount ? std::ranges::count(numbers.reds, place + 1) > 0
                             : numbers.blue == place - kRedCount + 1;
  };
  for (const std::size_t count : {std::size_t{1}, std::size_t{100}, std::size_t{1000}}) {
    const std::size_t end = 120;  // not the newest
    const Trend trend = trendOf(history, all[end - 1].period, count);
    const std::size_t first = end - std::min(end, count);
    ASSERT_EQ(trend.gaps.size(), end - first);
    for (int place = 0; place < kCodeCount; ++place) {
      TrendFoot foot;
      for (std::size_t draw = first; draw < end; ++draw) {
        std::size_t seen = draw + 1;
        while (seen > 0 && !holds(seen - 1, place)) --seen;
        const int gap = static_cast<int>(draw + 1 - seen);
        EXPECT_EQ(trend.gaps[draw - first][place], gap) << draw << ' ' << place;
        std::size_t run = draw + 1;
        while (run > first && holds(run - 1, place)) --run;
        foot.hits += holds(draw, place) ? 1 : 0;
        foot.largest_gap = std::max(foot.largest_gap, gap);
        foot.longest_run = std::max(foot.longest_run, static_cast<int>(draw + 1 - run));
      }
      foot.average_gap = static_cast<double>(end - first - foot.hits) / (foot.hits + 1);
      EXPECT_EQ(trend.foot[place], foot) << count << ' ' << place;
    }
  }
  EXPECT_TRUE(trendOf({}, 2008001, 100).gaps.empty());
  const DrawNumbers numbers{{1, 5, 7, 14, 21, 33}, 8};
  std::vector<int> figures;
  for (const TrendStatistic& statistic : trendStatistics()) figures.push_back(statistic.figure(numbers));
  EXPECT_EQ(figures, (std::vector<int>{81, 32, 5, 1, 21, 12, acValue(numbers.reds)}));
}

}  // namespace
}  // namespace lotmere::test

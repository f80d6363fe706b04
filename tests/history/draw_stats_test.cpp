#include "history/draw_stats.hpp"

#include <gtest/gtest.h>

#include <set>
#include <stdexcept>

#include "conditions/condition_store.hpp"
#include "core/desk_script.hpp"
#include "core/schema.hpp"
#include "draw_model.hpp"
#include "history/draw_columns.hpp"
#include "history_rows.hpp"
#include "support/test_store.hpp"

namespace lotmere::test {
namespace {

constexpr PeriodNo kFirst = 2007001;

void put_Draws(Store& store, const std::vector<StoredDraw>& draws) {
  StoreChange change(store);
  for (const StoredDraw& draw : draws) put_Draw(store, draw.period, "2007-01-02", draw.numbers);
  change.commit();
}

TEST(DrawColumns, EveryDerivedColumnHasExactlyOneRule) {
  std::multiset<std::string> stored;
  for (std::size_t i = 9; i < draw_Columns().size(); ++i) stored.insert(draw_Columns()[i].name);
  for (const char* work : {"遗漏数据", "总期号", "临时数据"}) stored.erase(work);
  std::multiset<std::string> ruled;
  for (const DrawColumnRule& rule : draw_ColumnRules()) ruled.emplace(rule.column);
  EXPECT_EQ(ruled, stored);
}

struct Figure {
  const char* name;
  Reds reds;
  const char* column;
  const char* value;
};

TEST(DrawStats, WorkedExamplesOfADrawWithNothingBefore) {
  const Figure figures[] = {
      {"two runs", {1, 2, 3, 7, 8, 20}, "连号", "3+2"},
      {"a run that ends at 33", {2, 9, 14, 31, 32, 33}, "连号", "3"},
      {"six in a row", {1, 2, 3, 4, 5, 6}, "连号", "6"},
      {"six in a row have five differences", {1, 2, 3, 4, 5, 6}, "AC值", "0"},
      {"span of six in a row", {1, 2, 3, 4, 5, 6}, "跨度", "5"},
      {"gap of six in a row", {1, 2, 3, 4, 5, 6}, "最大间距", "1"},
      {"the way to 33 is no gap", {2, 8, 12, 13, 17, 26}, "最大间距", "9"},
      {"tail groups are named by the tail",
       {1, 11, 13, 24, 27, 29},
       "尾数形式",
       "[1,1,3,4,7,9]（2,1,1,1,1）"},
      {"a tail of zero", {10, 12, 13, 24, 27, 29}, "尾数形式", "[0,2,3,4,7,9]（1,1,1,1,1,1）"},
      {"other groups count from one", {1, 2, 3, 4, 5, 13}, "间距七", "[1,2,3,4,5,6]（1,1,1,1,1,1）"},
      {"six in one group of a set without that shape", {1, 6, 11, 16, 21, 26}, "间距5", "[1,1,1,1,1,1]（6）"},
      {"six in one group of a set with it", {1, 5, 9, 13, 17, 21}, "间距四", "[1,1,1,1,1,1]（6）"},
      {"no red repeats a zero", {1, 9, 10, 20, 27, 30}, "重叠号", "0"},
      {"tails of zero repeat it", {1, 9, 10, 20, 27, 30}, "尾数重叠", "3"},
      {"no digit root is zero", {1, 9, 10, 20, 27, 30}, "合数重叠", "0"},
      {"the one lies next to it", {1, 9, 10, 20, 27, 30}, "斜位码", "1"},
      {"three draws before are missing", {1, 9, 10, 20, 27, 30}, "前3期出现个数", "0"},
      {"nothing is warm", {1, 9, 10, 20, 27, 30}, "温度10", "0"},
  };
  TempHome home;
  ScriptedDesk desk;
  for (const Figure& figure : figures) {
    put_Draw(home.store(), kFirst, "2007-01-02", {figure.reds, 1});
    calc_DrawStats(home.store(), desk, kFirst, kFirst);
    EXPECT_EQ(field(home.store(), kFirst, figure.column), figure.value) << figure.name;
  }
}

TEST(DrawStats, NoRedInAnyIntervalLeavesThePlainCount) {
  TempHome home;
  ScriptedDesk desk;
  for (const char* column : {"区间1", "区间2", "区间3", "区间4"})
    set_Column(home.store(), AttributeTable::first, column, {});
  put_Draw(home.store(), kFirst, "2007-01-02", {{1, 9, 10, 20, 27, 30}, 1});
  calc_DrawStats(home.store(), desk, kFirst, kFirst);
  EXPECT_EQ(field(home.store(), kFirst, "四区间"), "[]（0）");
}

// Ranges over the same invented draws, given by places of draws; a row outside the range must stay empty.
struct Range {
  const char* name;
  std::size_t from;
  std::size_t to;
  int widen;  // periods that the range reaches further on both sides
};

class DrawStatsAgainstModel : public testing::TestWithParam<Range> {};

TEST_P(DrawStatsAgainstModel, EveryColumnAgrees) {
  TempHome home;
  Store& store = home.store();
  ScriptedDesk desk;
  // Groups as a person may edit them: overlapping intervals with a hole, another split of big numbers, tails
  // that follow no rule.
  set_Column(store, AttributeTable::first, "区间1", std::array{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
  set_Column(store, AttributeTable::first, "区间2", std::array{8, 9, 10, 11, 12, 13, 14, 15, 16, 17});
  set_Column(store, AttributeTable::first, "区间3", std::array{25, 26, 27});
  set_Column(store, AttributeTable::first, "大数", std::array{3, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30});
  set_Column(store, AttributeTable::first, "低尾码", std::array{1, 5, 9, 13, 17, 21, 25, 29, 33});
  set_Column(store, AttributeTable::first, "自定义组10", std::array{2, 4, 6, 8, 10, 12, 14, 16, 18, 20});
  const auto draws = invent_Draws(60, 20070725);
  put_Draws(store, draws);

  const Range& range = GetParam();
  const PeriodNo from = draws[range.from].period - range.widen;
  const PeriodNo to = draws[range.to].period + range.widen;
  calc_DrawStats(store, desk, from, to);

  const auto in_range = std::count_if(draws.begin(), draws.end(), [&](const StoredDraw& draw) {
    return draw.period >= from && draw.period <= to;
  });
  const StoreChange reading(store);  // one lock for the model's many selects
  for (std::size_t i = 0; i < draws.size(); ++i) {
    const PeriodNo period = draws[i].period;
    const bool covered = period >= from && period <= to;
    const bool computed = covered && (i > 0 || in_range == 1);
    for (const auto& [column, value] : model_Row(store, period, i > 0)) {
      const bool heat = column.starts_with("温度");
      EXPECT_EQ(field(store, period, column), computed || (covered && heat) ? value : "")
          << column << " of draw " << i;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Ranges, DrawStatsAgainstModel,
    testing::Values(Range{"TheWholeHistory", 0, 59, 0}, Range{"FarBeyondBothEnds", 0, 59, 4000},
                    Range{"FromTheMiddle", 23, 41, 0}, Range{"OneInTheMiddle", 30, 30, 0},
                    Range{"OnlyTheEarliest", 0, 0, 0}, Range{"TheSecondOnItsOwn", 1, 1, 0},
                    Range{"TheFirstFour", 0, 3, 0}, Range{"TheNewest", 59, 59, 0}),
    [](const auto& range) { return range.param.name; });

TEST(DrawStats, ARangeWithoutADrawChangesNothing) {
  TempHome home;
  ScriptedDesk desk;
  const auto draws = invent_Draws(12, 5);
  put_Draws(home.store(), draws);
  const PeriodNo newest = draws.back().period;
  calc_DrawStats(home.store(), desk, draws.front().period, newest);
  const std::string before = dump_History(home.store());
  calc_DrawStats(home.store(), desk, newest + 1, newest + 1);
  calc_DrawStats(home.store(), desk, newest, newest - 1);
  updateWenDu(home.store(), desk, newest + 1, newest + 9);
  EXPECT_EQ(dump_History(home.store()), before);
}

TEST(DrawStats, FiguresOfOneDrawAgreeWithTheStoredOnes) {
  TempHome home;
  ScriptedDesk desk;
  const auto draws = invent_Draws(30, 11);
  put_Draws(home.store(), draws);
  updateWenDu(home.store(), desk, draws.front().period, draws.back().period);
  for (const StoredDraw& draw : draws) {
    calc_DrawStats(home.store(), desk, draw.period, draw.period);
    EXPECT_EQ(field(home.store(), draw.period, "温度5"),
              std::to_string(calc_WenDu(home.store(), draw.period, 5)));
    EXPECT_EQ(field(home.store(), draw.period, "前3期出现个数"),
              std::to_string(calc_qian3qi(home.store(), draw.period)));
  }
  EXPECT_EQ(calc_WenDu(home.store(), draws.back().period + 1, 5), 0) << "a draw that isn't stored";
}

TEST(DrawStats, RecountedIntervalsLeaveTheirTextAsItWas) {
  TempHome home;
  ScriptedDesk desk;
  put_Draw(home.store(), kFirst, "2007-01-02", {{1, 9, 10, 20, 27, 30}, 1});
  calc_DrawStats(home.store(), desk, kFirst, kFirst);
  const std::string text = field(home.store(), kFirst, "四区间");
  set_Column(home.store(), AttributeTable::first, "区间1", std::array{27, 30});
  recountQuJian(home.store(), desk, kFirst, kFirst);
  ASSERT_EQ(desk.told.size(), 1u);
  EXPECT_EQ(desk.told[0].text, "区间重新划分之后，各区间的开出号码个数需要重新计算。。。");
  EXPECT_EQ(field(home.store(), kFirst, "区间1"), "2");
  EXPECT_EQ(field(home.store(), kFirst, "区间3"), "2");
  EXPECT_EQ(field(home.store(), kFirst, "四区间"), text);
}

TEST(DrawStats, AFailureOnTheWayLeavesEveryRowAsItWas) {
  TempHome home;
  ScriptedDesk desk;
  const auto draws = invent_Draws(400, 3);
  put_Draws(home.store(), draws);
  const std::string before = dump_History(home.store());
  desk.on_serve = [&] {
    if (desk.progress > 200) throw std::runtime_error("the power fails");
  };
  EXPECT_THROW(calc_DrawStats(home.store(), desk, 0, draws.back().period), std::runtime_error);
  EXPECT_EQ(dump_History(home.store()), before);
  EXPECT_EQ(desk.jobs_open, 0);
}

}  // namespace
}  // namespace lotmere::test

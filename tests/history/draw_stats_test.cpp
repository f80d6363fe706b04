#include "history/draw_stats.hpp"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <map>
#include <stdexcept>

#include "catalogue/families.hpp"
#include "conditions/condition_store.hpp"
#include "game/metrics.hpp"
#include "history/draw_writer.hpp"
#include "history/upkeep.hpp"
#include "history_rows.hpp"
#include "panels/combination_list.hpp"
#include "panels/own_pages.hpp"
#include "store/interval_mark.hpp"
#include "store/schema.hpp"
#include "support/store_test.hpp"

namespace lotmere::test {
namespace {

// The statistics told plainly: a select for every group, a loop for every figure. Which figure stands in
// which column and against which earlier draws is told here once more; the metrics have a model of their own.
using ModelRow = std::map<std::string, std::string>;  // column to text, for every derived column

bool holds(const Reds& reds, int n) { return std::find(reds.begin(), reds.end(), n) != reds.end(); }

int members(Store& store, std::string_view table, const std::string& column, const Reds& reds) {
  return static_cast<int>(store.value(fmt::format(R"(SELECT sum("{}") FROM "{}" WHERE "号码" IN ({}))",
                                                  column, table, fmt::join(reds, ","))));
}

// How the groups of a family are told, and which they are, is the business of conditions/families.
std::string groupForm(Store& store, const Family& family, const Reds& reds) {
  GroupCounts counts = 0;
  for (int g = 0; g < family.draw_groups; ++g) {
    const std::string column = std::string(family.column) + std::to_string(family.first_suffix + g);
    const auto hit = static_cast<GroupCounts>(members(store, tableName(family.table), column, reds));
    counts += hit << (kGroupBits * g);
  }
  return drawText(family, counts);
}

// The figures of one of the draws, which are all that the history holds.
ModelRow modelRow(Store& store, const std::vector<StoredDraw>& draws, std::size_t at) {
  const Reds& reds = draws[at].numbers.reds;
  const Reds before = at > 0 ? draws[at - 1].numbers.reds : Reds{};
  const auto times = [&](int n, std::size_t window) {
    return std::count_if(draws.begin() + (at - std::min(at, window)), draws.begin() + at,
                         [n](const StoredDraw& draw) { return holds(draw.numbers.reds, n); });
  };
  std::map<std::string, std::int64_t> figure;
  figure["跨度"] = spanOf(reds);
  figure["最大间距"] = largestGap(reds);
  figure["AC值"] = acValue(reds);
  figure["重叠号"] = countRepeats(before, reds);
  figure["尾数重叠"] = countTailRepeats(before, reds);
  figure["合数重叠"] = countDigitRootRepeats(before, reds);
  figure["斜位码"] = countNeighbours(before, reds);
  figure["大数个数"] = members(store, "号码特性", "大数", reds);
  figure["低尾码个数"] = members(store, "号码特性", "低尾码", reds);
  figure["小数个数"] = kRedsPerTicket - figure["大数个数"];
  figure["高尾码个数"] = kRedsPerTicket - figure["低尾码个数"];
  for (const DrawColumn& column : drawColumns())
    if (column.name.starts_with("自定义组") || (column.name.starts_with("区间") && column.name.size() == 7))
      figure[column.name] = members(store, "号码特性", column.name, reds);
  for (const int n : reds) {
    figure["和值"] += n;
    figure["奇数和值"] += n % 2 ? n : 0;
    figure["偶数和值"] += n % 2 ? 0 : n;
    figure["奇数个数"] += n % 2;
    figure["偶数个数"] += 1 - n % 2;
    figure["大数和值"] += n >= 17 ? n : 0;
    figure["小数和值"] += n >= 17 ? 0 : n;
    figure["尾数和值"] += n % 10;
    figure["合数和值"] += (n - 1) % 9 + 1;
    figure["温度5"] += times(n, 5);
    figure["温度10"] += times(n, 10);
    figure["前3期出现个数"] += at >= 3 && times(n, 3) > 0;
  }
  ModelRow row = {{"连号", std::string(runShapes().at(runShape(reds)))}, {"已完成", "Y"}};
  for (const auto& [column, value] : figure) row[column] = std::to_string(value);
  for (const Family& family : families()) {
    const std::string name(family.draw_column);
    if (!name.empty()) row[name] = groupForm(store, family, reds);
  }
  return row;
}

class DrawStats : public StoreTest {
 protected:
  void put(std::size_t count) {
    draws_ = inventDraws(count, 20070725);
    // Against six zeros: tails of zero, and the one beside it.
    draws_[0].numbers.reds = {1, 9, 10, 20, 27, 30};
    putDraws(store_, draws_);
  }
  std::vector<StoredDraw> draws_;
};

TEST_F(DrawStats, EveryColumnOfEveryRangeAgreesWithTheModel) {
  // Groups as a user may edit them: overlapping intervals with a hole, another split of big numbers, tails
  // that follow no rule.
  store_.db().exec(
      R"(UPDATE "号码特性" SET "区间1"="号码"<13, "区间2"="号码" BETWEEN 8 AND 17, "区间3"="号码" IN (25,26),
                     "大数"="号码" IN (3,20,21,22,23,24,30), "低尾码"="号码"%4=1)");
  for (int group = 1; group <= 10; ++group)
    store_.db().exec(fmt::format(R"(UPDATE "号码特性" SET "自定义组{}"="号码"%{}=0)", group, group + 1));
  put(60);
  std::vector<ModelRow> model;
  for (std::size_t i = 0; i < draws_.size(); ++i) model.push_back(modelRow(store_, draws_, i));
  EXPECT_EQ(model[0].size(),
            static_cast<std::size_t>(std::ranges::count_if(drawColumns(), &DrawColumn::hasRule)));

  const struct {
    std::size_t from, to;  // places of draws_
    int widen;             // periods that the range reaches further on both sides
  } ranges[] = {{0, 59, 0}, {0, 59, 4000}, {23, 41, 0}, {30, 30, 0}, {0, 0, 0},
                {1, 1, 0},  {0, 1, 0},     {0, 3, 0},   {59, 59, 0}};
  for (const auto& range : ranges) {
    const StoreChange dropped(store_);
    computeDrawStatistics(store_, desk_, draws_[range.from].period - range.widen,
                          draws_[range.to].period + range.widen);
    for (std::size_t i = 0; i < draws_.size(); ++i) {
      const bool covered = i >= range.from && i <= range.to;
      for (const auto& [column, value] : model[i]) {
        const bool computed = covered && (i > 0 || range.to == 0 || column.starts_with("温度"));
        EXPECT_EQ(field(store_, draws_[i].period, column), computed ? value : "") << column << i;
      }
    }
  }
  recountIntervals(store_, desk_, draws_[20].period, draws_[40].period);
  updateHeat(store_, desk_, draws_[20].period, draws_[40].period);
  for (std::size_t i = 0; i < draws_.size(); ++i) {
    const PeriodNo period = draws_[i].period;
    for (const char* column : {"温度5", "温度10", "区间1", "区间2", "区间3", "区间4"})
      EXPECT_EQ(field(store_, period, column), i < 20 || i > 40 ? "" : model[i].at(column)) << i;
    EXPECT_EQ(field(store_, period, "和值") + field(store_, period, "四区间"), "") << i;
    EXPECT_EQ(std::to_string(heatOf(store_, period, 5)), model[i].at("温度5"));
    EXPECT_EQ(std::to_string(repeatsOfThree(store_, period)), model[i].at("前3期出现个数"));
  }
}

// Whatever changes the intervals leaves the mark in its own change, and only the recount takes it away.
TEST_F(DrawStats, TheIntervalCountsAreDueUntilTheyAreCountedAnew) {
  put(400);
  const auto expect_counted = [&](int interval) {
    const std::string name = "区间" + std::to_string(interval);
    for (const StoredDraw& draw : {draws_.front(), draws_[1], draws_[200], draws_.back()})
      EXPECT_EQ(field(store_, draw.period, name),
                std::to_string(members(store_, "号码特性", name, draw.numbers.reds)))
          << draw.period;
  };
  EXPECT_FALSE(recountDue(store_, desk_) || recountDivided(store_, desk_));
  const int some = draws_[200].numbers.reds[0];
  const auto toggle = [&](int interval, int number) {
    changeSettings(store_, [&](ConditionSet& set) { clickIntervalNumber(set, interval, number); });
  };
  changeSettings(store_, [&](ConditionSet& set) {
    set.setMember(AttributeTable::first, "区间1", some, some <= 10);
    set.setColumn(AttributeTable::first, "四1", membersOf(std::vector{5}));
  });
  EXPECT_FALSE(intervalCountsDue(store_)) << "what stands there already, and other columns";
  {
    const StoreChange dropped(store_);
    toggle(4, 33);
    EXPECT_TRUE(intervalCountsDue(store_));
  }
  EXPECT_FALSE(intervalCountsDue(store_)) << "a change that is rolled back takes its mark along";

  for (int interval = 1; interval <= 4; ++interval) {
    toggle(interval, some);
    ASSERT_TRUE(intervalCountsDue(store_));
    const std::string before = dumpHistory(store_);
    desk_.course().on_look = [] { throw std::runtime_error("the machine"); };
    EXPECT_THROW(recountDue(store_, desk_), std::runtime_error);
    desk_.course().on_look = {};
    EXPECT_TRUE(intervalCountsDue(store_) && dumpHistory(store_) == before)
        << "counts and mark are one change";
    EXPECT_TRUE(interval % 2 == 0 ? recountDue(store_, desk_) : recountDivided(store_, desk_));
    EXPECT_FALSE(intervalCountsDue(store_));
    expect_counted(interval);
  }
  EXPECT_EQ(desk_.told.size(), 2U) << "only who has divided the intervals is told";
  EXPECT_EQ(desk_.statuses.back(), "");
}

TEST_F(DrawStats, AFailureOnTheWayLeavesEveryRowAsItWas) {
  put(400);
  const PeriodNo newest = draws_.back().period;
  const std::string before = dumpHistory(store_);
  computeDrawStatistics(store_, desk_, newest + 1, newest + 9);
  desk_.course().on_look = [&] {
    if (desk_.course().done > 200) throw std::runtime_error("the power fails");
  };
  EXPECT_THROW(computeDrawStatistics(store_, desk_, 0, newest), std::runtime_error);
  EXPECT_EQ(dumpHistory(store_), before);
}

TEST_F(DrawStats, SavingADrawRecomputesItsRowAlone) {
  const Reds reds{1, 2, 3, 4, 5, 6};
  saveDraw(store_, desk_, 2007001, Date{}, {{7, 8, 9, 10, 11, 12}, 1}, Recalc::yes);
  saveDraw(store_, desk_, 2007002, Date{}, {reds, 2}, Recalc::yes);
  saveDraw(store_, desk_, 2007001, Date{}, {reds, 16}, Recalc::yes);
  EXPECT_EQ(findDraw(store_, 2007001)->numbers, (DrawNumbers{reds, 16}));
  EXPECT_EQ(field(store_, 2007001, "和值") + field(store_, 2007002, "重叠号"), "210");
}

TEST_F(DrawStats, TheCombinationListShowsTheGroupsOfADrawAsTheyAreNow) {
  putDraw(store_, 2007002, "2007-01-04", {{1, 11, 12, 21, 31, 33}, 7});
  const ConditionSet set = changeSettings(store_, [](ConditionSet& edited) {
    edited.setColumn(AttributeTable::first, "区间1", membersOf(std::vector{1, 11, 12}));
    edited.setColumn(AttributeTable::first, "区间2", 0);
    edited.setMember(AttributeTable::first, "十二11", 33, true);  // of no use to the filter, but to the list
    edited.use(100, true);
    edited.switches.set(131, 2);
  });
  const auto list = combinationList(set, combinationTexts(store_, desk_, 2007002));
  EXPECT_EQ(list[0], (PanelItem{"尾数形式 ≠ [1,1,1,1,2,3]", 0, true}));
  EXPECT_EQ(list[4], (PanelItem{"间距十二3分组 ≠ [1,2,3,3,3,3,12]", 4, false}));
  EXPECT_EQ(list[26], (PanelItem{"四区间 ≠ [1,1,1,3,4,4]", 26, false}));
  EXPECT_TRUE(list[31].selected);
  EXPECT_EQ(combinationTexts(store_, desk_, 2007003)[0], "尾数形式 ≠ ");
}

}  // namespace
}  // namespace lotmere::test

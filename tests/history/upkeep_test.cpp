#include "history/upkeep.hpp"

#include <gtest/gtest.h>

#include "core/desk_script.hpp"
#include "history/draw_stats.hpp"
#include "history_rows.hpp"
#include "support/test_store.hpp"

namespace lotmere::test {
namespace {

const Date kDay = *parse_Date("2007-01-02");

class Upkeep : public testing::Test {
 protected:
  void SetUp() override {
    for (const auto& draw : invent_Draws(5, 9, 2007001))
      saveDraw(store, desk, draw.period, kDay, draw.numbers, Recalc::yes);
  }
  TempHome home;
  Store& store = home.store();
  ScriptedDesk desk;
};

TEST_F(Upkeep, AStoredPeriodIsOverwrittenAndOnlyItsRowRecomputed) {
  const PeriodNo newest = latestPeriod(store);
  const PeriodNo second = periodsBack(store, newest, 3);
  const PeriodNo third = periodsBack(store, newest, 2);
  const Reds after = findDraw(store, third)->numbers.reds;
  const std::string overlap = field(store, third, "重叠号");
  ASSERT_NE(overlap, "6");
  saveDraw(store, desk, second, *parse_Date("2007-01-04"), {after, 16}, Recalc::yes);
  EXPECT_EQ(findDraw(store, second)->numbers, (DrawNumbers{after, 16}));
  EXPECT_EQ(field(store, second, "开奖日期"), "2007-01-04");
  EXPECT_EQ(field(store, second, "跨度"), std::to_string(after.back() - after.front()));
  EXPECT_EQ(field(store, third, "重叠号"), overlap);
  calc_DrawStats(store, desk, third, third);
  EXPECT_EQ(field(store, third, "重叠号"), "6");
}

TEST_F(Upkeep, WithoutRecalcTheFiguresWait) {
  saveDraw(store, desk, 2007100, kDay, {{1, 2, 3, 4, 5, 6}, 7}, Recalc::no);
  EXPECT_EQ(field(store, 2007100, "已完成"), "Y");
  EXPECT_EQ(field(store, 2007100, "和值"), "");
}

TEST_F(Upkeep, DeletingTakesOneRowAndTellsSo) {
  const PeriodNo newest = latestPeriod(store);
  const PeriodNo gone = periodsBack(store, newest, 1);
  const std::string overlap = field(store, newest, "重叠号");
  EXPECT_TRUE(deleteDraw(store, desk, gone));
  EXPECT_EQ(field(store, gone, "期号"), "no row");
  EXPECT_EQ(field(store, newest, "重叠号"), overlap);
  EXPECT_EQ(desk.told.back().text, "删除完成！");

  const std::string before = dump_History(store);
  EXPECT_FALSE(deleteDraw(store, desk, gone));
  EXPECT_EQ(dump_History(store), before);
  EXPECT_EQ(desk.told.back().text, "无法完成，历史记录表格中没有该期记录！");
  EXPECT_EQ(desk.told.back().title, "删除失败");
  EXPECT_EQ(desk.told.back().tone, Tone::error);
}

}  // namespace
}  // namespace lotmere::test

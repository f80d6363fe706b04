#include "tickets/prize_check.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "support/store_test.hpp"

namespace lotmere::test {
namespace {

constexpr PeriodNo kPeriod = 2007001;
constexpr DrawNumbers kDraw{{3, 8, 14, 24, 32, 33}, 16};
constexpr int kTiers[7][2] = {{0, 6}, {0, 6}, {0, 6}, {0, 5}, {5, 4}, {4, 3}, {2, 1}};  // by reds and blue

using PrizeCheck = StoreTest;

TEST_F(PrizeCheck, WritesAndTalliesTheHitsOfEveryTicketOfThePeriod) {
  putDraw(store_, kPeriod, "2007-01-02", kDraw);
  std::mt19937 random(8);  // NOLINT(*-msc51-cpp): the same tickets in every run
  StoreChange change(store_);
  putTicket(store_, 1, 1, 2007002, kDraw);
  for (int id = 2; id <= 20'000; ++id) {
    DrawNumbers numbers{kDraw.reds, static_cast<int>(15 + random() % 2)};  // in any order, and repeated
    std::shuffle(numbers.reds.begin(), numbers.reds.end(), random);
    for (int& red : numbers.reds)
      if (random() % 2) red = static_cast<int>(1 + random() % 33);
    putTicket(store_, id, 7, kPeriod, numbers);
  }
  store_.query(R"(UPDATE "日志表" SET "过滤标记"=-1,"红球中"=9,"蓝球中"=9)").run();
  change.commit();
  int served = 0;
  desk_.course().on_look = [&] { ++served, desk_.course().requestStop(); };
  const CheckResult result = checkCommand(store_, desk_, kPeriod);

  std::array<std::int64_t, kPrizeTiers> tally{};
  Query rows = store_.query(
      R"(SELECT "红球1","红球2","红球3","红球4","红球5","红球6","蓝球","红球中","蓝球中","期号" FROM
         "日志表")");
  while (rows.next()) {
    if (rows.number(9) != kPeriod) continue;
    int reds = 0;
    for (int i = 0; i < 6; ++i)
      reds += static_cast<int>(std::count(kDraw.reds.begin(), kDraw.reds.end(), rows.number(i)));
    const int blue = rows.number(6) == kDraw.blue ? 1 : 0;
    ASSERT_TRUE(rows.number(7) == reds && rows.number(8) == blue) << reds << "+" << blue;
    if (kTiers[reds][blue] > 0) ++tally.at(static_cast<std::size_t>(kTiers[reds][blue]) - 1);
  }
  EXPECT_EQ(result.tally, tally);
  EXPECT_GT(*std::min_element(tally.begin(), tally.end()), 0);
  EXPECT_EQ(result.tickets, 19'999);
  EXPECT_EQ(result.max_hit, 7);
  EXPECT_EQ(desk_.told.at(0).text, "开奖核对完成,结果请查看右边的操作提示！");
  EXPECT_GE(served, 18);
  EXPECT_EQ(store_.value(R"(SELECT "红球中"+"蓝球中" FROM "日志表" WHERE "ID"=1)"), 18) << "another period";
}

TEST_F(PrizeCheck, SaysWhatItFound) {
  putTicket(store_, 1, 1, kPeriod, {{3, 8, 14, 1, 2, 4}, 1});
  putTicket(store_, 2, 1, 2007002, kDraw);
  for (const PeriodNo period : {kPeriod, 2007003, 0}) {
    if (period == 2007003) putDraw(store_, period, "2007-01-07", kDraw);
    EXPECT_EQ(checkCommand(store_, desk_, period).max_hit, 0);
    EXPECT_EQ(desk_.told.back().title, "出错啦!");
  }
  EXPECT_EQ(desk_.told.at(0).text,
            "当前表格或历史开奖数据中没有第２００７００１期的数据！\r\n\r\n          无法核对哦^_^！！");
  EXPECT_EQ(desk_.told.at(2).text, "没有要核对的号码！请先选号！");

  putDraw(store_, kPeriod, "2007-01-02", kDraw);
  EXPECT_EQ(checkCommand(store_, desk_, kPeriod).max_hit, 3) << "three reds win nothing, and are hits";
  EXPECT_EQ(desk_.told.size(), 4u);
  EXPECT_EQ(
      desk_.runningText().text(),
      "\r\n\r\n开奖核对结果如下——\r\n\r\n一等奖： ０ 注\r\n\r\n二等奖： ０ 注\r\n\r\n三等奖： ０ 注\r\n\r\n"
      "四等奖： ０ 注\r\n\r\n五等奖： ０ 注\r\n\r\n六等奖： ０ 注\r\n\r\n");
  putDraw(store_, kPeriod, "2007-01-02", {{5, 6, 7, 9, 10, 11}, 16});
  EXPECT_EQ(checkCommand(store_, desk_, kPeriod).max_hit, 0);
  EXPECT_EQ(desk_.told.size(), 4u) << "without a single hit no message says the end";
}

TEST_F(PrizeCheck, TellsCostAndFixedWinnings) {
  CheckResult result;
  result.tickets = 50;
  result.tally = {1, 1, 0, 1, 2, 3};
  EXPECT_EQ(
      moneyText(result),
      "共 ５０ 注，成本 １００ 元；三等奖至六等奖的奖金共 ２３５ 元，一、二等奖的奖金浮动，没有计算在内。");
}

}  // namespace
}  // namespace lotmere::test

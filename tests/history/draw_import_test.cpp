#include "history/draw_import.hpp"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "history/any_draw_list.hpp"
#include "history/draw_list.hpp"
#include "history/upkeep.hpp"
#include "history_rows.hpp"
#include "support/store_test.hpp"

namespace lotmere::test {
namespace {

const Date kToday = *parseDate("2026-06-30");
const std::filesystem::path kLists = std::filesystem::path(TEST_DATA) / "draw_lists";

class DrawImportTest : public StoreTest {
 protected:
  DrawImport import(const std::string& text, Conflicts conflicts = Conflicts::ask) {
    realFiles().writeWhole(file_, text);
    return importDraws(store_, desk_, file_, kToday, conflicts);
  }
  std::filesystem::path file_ = home_.path() / "a list.txt";
};

std::string storedRows(Store& store) {
  return store.db()
      .execAndGet(
          R"(SELECT group_concat("期号"||' '||"开奖日期"||' '||"红球1"||' '||"红球6"||' '||"蓝球", ';')
                     FROM (SELECT * FROM "历史记录" ORDER BY "期号"))")
      .getString();
}

std::string listText(const std::vector<StoredDraw>& draws) {
  std::string text;
  for (const auto& [period, numbers] : draws)
    text += fmt::format("{} {}-01-02 {}\n", period, period / 1000, numbersText(numbers));
  return text;
}

TEST(DrawLists, OddOnesGiveTheSameDraws) {
  const struct {
    const char* file;
    int skipped;
  } lists[] = {{"a_box_around_each_number.txt", 0},
               {"bars_between_all_columns.txt", 0},
               {"date_in_front_of_short_periods.csv", 0},
               {"full_width_digits_and_chinese_dates.txt", 0},
               {"gb18030_with_semicolons.csv", 0},
               {"nonsense_between_draws.txt", 13},
               {"numbering_in_front_and_date_behind.txt", 0},
               {"numbers_without_gaps.txt", 0},
               {"our_own_sheet_saved_as.csv", 0},
               {"reds_as_they_were_drawn.txt", 0},
               {"times_of_day_and_quotes.csv", 0},
               {"utf16_with_tabs.txt", 0}};
  for (const auto& [file, skipped] : lists) {
    SCOPED_TRACE(file);
    TempHome home;
    ScriptedDesk desk;
    const DrawImport result = importDraws(home.store(), desk, kLists / file, kToday);
    EXPECT_EQ(result.outcome, Outcome::done);
    EXPECT_EQ(result.read, 3);
    EXPECT_EQ(result.skipped, skipped);
    EXPECT_EQ(storedRows(home.store()),
              "2024001 2024-01-02 6 29 8;2024002 2024-01-04 3 33 1;"
              "2024003 2024-01-07 6 27 12");
    EXPECT_EQ(field(home.store(), 2024003, "和值"), "90");
  }
}

TEST(DrawLists, ALineThatIsNoDrawSaysWhy) {
  const struct {
    const char* line;  // behind a draw of 2024001
    const char* fault;
  } cases[] = {{"2024999 2024-01-09 01 02 03 04 05 06+07", "期号不对"},
               {"2024002 2024-02-30 01 02 03 04 05 06+07", "日期不对"},
               {"2024002 2025-01-11 01 02 03 04 05 06+07", "期号和日期的年份不同"},
               {"2026099 2026-07-01 01 02 03 04 05 06+07", "日期在今天之后"},
               {"2024002 01 02 03 04 05 06+07", "没有日期"},
               {"2024-01-28 01 02 03 04 05 06+07", "没有期号"},
               {"2024002 2024-01-04 01 02 03 04 05 34+07", "红球 34 不对"},
               {"2024002 2024-01-04 05 02 03 04 05 06+07", "红球 05 重复"},
               {"2024002 2024-01-04 01 02 03 04 05 06+17", "蓝球 17 不对"},
               {"2024002 2024-01-04 01 02 03 04 05 06", "号码不完整"},
               {"2024002 2024-01-04 01 02 03 3.5 04 05 06 07", "号码不完整"},
               {"2024002 2024-01-", "没有日期"},
               {"2024001 2024-01-02 01 02 03 04 05 07+07", "和第 1 行的不同"},
               {"2024001 2024-01-03 01 02 03 04 05 06+07", "和第 1 行的不同"},
               {"2024001 2024-01-02 06 05 04 03 02 01 07", nullptr},
               {"2024002 2026-06-30 2024-01-04 ", "期号和日期的年份不同"},
               {"更新到 2024-01-28 21:15", nullptr},
               {"期号 红1 红2 红3 红4 红5 红6 蓝7", nullptr}};
  for (const auto& [line, fault] : cases) {
    SCOPED_TRACE(line);
    const auto list =
        readAnyDrawList(std::string("24001 2024-01-02 01 02 03 04 05 06+07\n") + line, kToday).rows;
    ASSERT_EQ(list.size(), fault ? 2U : 1U);
    if (!fault) continue;
    EXPECT_EQ(list[1].entry.fault, fault);
    EXPECT_EQ(list[1].entry.line, 2);
    const bool contradicts = std::string_view(fault).starts_with("和");
    EXPECT_EQ(list[0].entry.draw.has_value(), !contradicts) << "of two that differ neither counts";
  }
}

TEST(DrawLists, TheNumbersAreFoundAmongOtherColumns) {
  const DrawNumbers numbers{{3, 8, 14, 24, 32, 33}, 1};
  for (const char* line :
       {"2024002 2024-01-04 03 08 14 24 32 33 01", "2024002,2024/1/4,3,8,14,24,32,33,1,114,3,3,12",
        "2024002 2024-01-04 03 08 14 24 32 33 01 +3 -2",
        "99 12 2024002 2024-01-04 03 08 14 24 32 33+01 33 32 24", "2024-01-04 2 5 3 8 14 24 32 33|1 24002",
        "2024002 2024-01-04 12 03 08 14 24 32 33 + 01", "20240104 24002 03081424323301 24005",
        "3.5 2024002 1.5 20240104 35000000 03-08-14-24-32-33-01", "24002|20240104|33|24|32|14|08|03|01"}) {
    SCOPED_TRACE(line);
    const auto list = readAnyDrawList(line, kToday).rows;
    ASSERT_EQ(list.size(), 1U);
    ASSERT_TRUE(list[0].entry.draw) << list[0].entry.fault;
    EXPECT_EQ(list[0].period, 2024002);
    EXPECT_EQ(*list[0].entry.draw, (ListedDraw{*parseDate("2024-01-04"), numbers}));
  }
  // A column of its own in front of all numbers, which one line alone can't tell from a red.
  const auto list = readAnyDrawList(
                        "2024001 2024-01-02 2 06 22 23 25 26 29 08\n"
                        "2024002 2024-01-04 4 03 08 14 24 32 33 01\n"
                        "2024003 2024-01-07 7 06 07 14 16 20 27 12\n",
                        kToday)
                        .rows;
  ASSERT_EQ(list.size(), 3U);
  EXPECT_EQ(list[1].entry.draw.value().numbers, numbers);
  EXPECT_EQ(list[2].entry.draw.value().numbers.blue, 12);
}

TEST(DrawLists, ADateBehindTheNumbersOfADrawOverSeveralLinesMayBeThatOfTheNext) {
  std::string text = "24001\n2024-01-02\n1\n2\n3\n4\n5\n6\n7\n8\n";
  EXPECT_EQ(readAnyDrawList(text, kToday).rows.at(0).entry.draw.value().numbers.blue, 7);
  for (const char* order :
       {"2024-01-02\n24001\n1\n2\n3\n4\n5\n6\n7\n2024-01-04\n24002\n1\n2\n3\n4\n5\n6\n8\n",
        "24001\n1\n2\n3\n4\n5\n6\n7\n2024-01-02\n24002\n1\n2\n3\n4\n5\n6\n8\n2024-01-04\n"})
    for (const auto& row : readAnyDrawList(order, kToday).rows) EXPECT_FALSE(row.entry.draw) << order;
}

TEST(DrawLists, AMarkedListMayHaveAnyForm) {
  const std::string marked = "=336=\n";
  const char* const rest[] = {"2024001,2024/1/2,6,22,23,25,26,29,8\n2024002,2024/1/4,3,8,14,24,32,33,1\n",
                              "24001 2024-01-02 06 22 23 25 26 29+08\n24002 2024-01-04 03 08 14 24 32 33+01"};
  for (const std::string text : rest) {
    const DrawList list(marked + text, kToday);
    EXPECT_TRUE(list.isDrawList() && list.isOfAnotherForm());
    EXPECT_TRUE(list.names(2024001) && !list.names(2024003));
    EXPECT_EQ(list.newest(), 2024002);
    EXPECT_EQ(list.parseDraw(2024002).draw.value().numbers.blue, 1);
    EXPECT_FALSE(DrawList(text, kToday).isDrawList()) << "the mark must be there";
  }
  std::string wide = "\xFF\xFE";  // UTF-16
  for (const char c : marked + rest[0]) wide += {c, '\0'};
  EXPECT_EQ(DrawList(wide, kToday).newest(), 2024002);
  // Half of them in the plain form: it stays the plain one, with the faults of that.
  const DrawList plain(
      marked + "2024001 2024/01/02 06 22 23 25 26 29 08\n" + "2024002 2024-01-04 03 08 14 24 32 33 01",
      kToday);
  EXPECT_FALSE(plain.isOfAnotherForm());
  EXPECT_EQ(plain.parseDraw(2024002).fault, "日期不对");
}

TEST_F(DrawImportTest, TheOrderOfImportsDoesNotShowInTheStatistics) {
  const auto draws = inventDraws(60, 3);
  const auto middle = draws.begin() + 25;
  TempHome at_once;
  ScriptedDesk desk;
  realFiles().writeWhole(file_, listText(draws));
  ASSERT_EQ(importDraws(at_once.store(), desk, file_, kToday).added, 60);
  ASSERT_EQ(import(listText({middle, draws.end()})).added, 35);
  ASSERT_EQ(import(listText({draws.begin(), middle})).added, 25);
  EXPECT_EQ(dumpHistory(store_), dumpHistory(at_once.store()));
  // A draw that is replaced changes the figures of those behind it.
  auto changed = draws;
  std::swap(changed[30].numbers, changed[31].numbers);
  ASSERT_EQ(import(listText(changed), Conflicts::replace).changed, 2);
  EXPECT_NE(dumpHistory(store_), dumpHistory(at_once.store()));
  ASSERT_EQ(import(listText(draws), Conflicts::replace).changed, 2);
  EXPECT_EQ(dumpHistory(store_), dumpHistory(at_once.store()));
}

TEST_F(DrawImportTest, AConflictIsShownAndAskedAbout) {
  const std::string first = "2024001 2024-01-02 01 02 03 04 05 06+07\n";
  const std::string second = "2024002 2024-01-04 01 02 03 04 05 06+08\n";
  ASSERT_EQ(import(first).added, 1);
  const std::string before = dumpHistory(store_);
  const std::string list = "2024001 2024-01-02 01 02 03 04 05 07+07\n" + second;
  desk_.choices = {std::nullopt};
  const DrawImport cancelled = import(list);
  EXPECT_TRUE(cancelled.outcome == Outcome::refused && cancelled.cause.empty());
  EXPECT_EQ(dumpHistory(store_), before);
  EXPECT_EQ(desk_.asked.back(),
            "有 １ 期和历史记录里的不同：\r\n2024001 期\r\n　原有：2024-01-02  01 02 03 04 05 06+07\r\n"
            "　新的：2024-01-02  01 02 03 04 05 07+07\r\n\r\n要用新的替换原有的吗？");
  desk_.choices = {1};
  const DrawImport kept = import(list);
  EXPECT_EQ(importReport(kept),
            (std::vector<std::string>{"读到 2 期：新增 1 期，更改 0 期，跳过 0 行，最新一期 2024002",
                                      "有 1 期和原有记录不同，保留了原有的。"}));
  EXPECT_EQ(storedRows(store_), "2024001 2024-01-02 1 6 7;2024002 2024-01-04 1 6 8");
  desk_.choices = {0};
  EXPECT_EQ(import(list).changed, 1);
  EXPECT_EQ(storedRows(store_), "2024001 2024-01-02 1 7 7;2024002 2024-01-04 1 6 8");
  EXPECT_EQ(desk_.asked.size(), 3U);
  EXPECT_EQ(import(list).read, 2) << "what stands already asks nothing";

  desk_.choices = {1, 0};
  const DrawNumbers entered{{1, 2, 3, 4, 5, 9}, 9};
  EXPECT_EQ(enterDraw(store_, desk_, 2024001, *parseDate("2024-01-02"), entered), Outcome::refused);
  EXPECT_EQ(field(store_, 2024001, "红球6"), "7");
  EXPECT_EQ(enterDraw(store_, desk_, 2024001, *parseDate("2024-01-02"), entered), Outcome::done);
  EXPECT_EQ(field(store_, 2024001, "和值"), "24");
  EXPECT_EQ(enterDraw(store_, desk_, 2024001, *parseDate("2024-01-02"), entered), Outcome::done);
  EXPECT_EQ(desk_.asked.size(), 5U) << "the same again asks nothing";
}

TEST_F(DrawImportTest, WhatHoldsNoDrawsOrIsStoppedChangesNothing) {
  const auto draws = inventDraws(300, 5);
  ASSERT_EQ(import(listText({draws.begin(), draws.begin() + 9})).added, 9);
  const std::string before = dumpHistory(store_);
  const std::string every = "每一行要有期号、开奖日期和七个号码";
  const std::pair<std::string, std::string> refusals[] = {
      {"", "没有读到一条有效的开奖记录，" + every},
      {"<html>", "没有读到一条有效的开奖记录，" + every},
      {std::string("2024001\0", 8), "这不是文本文件"},
      {readFile(kLists / "without_dates.txt"), "这份数据没有开奖日期，" + every},
      {"\n2024001 2024-01-02 1 2 3 4 5 6 17",
       "没有读到一条有效的开奖记录，第 2 行（2024001 期）：蓝球 17 不对"}};
  for (const auto& [text, cause] : refusals) {
    const DrawImport result = import(text);
    EXPECT_EQ(result.outcome, Outcome::refused);
    EXPECT_EQ(result.cause, cause);
  }
  // Stopped while it reads, and while it stores.
  const std::string list = listText(draws);
  int looks = 0;
  desk_.course().on_look = [&] { ++looks; };
  TempHome whole;
  realFiles().writeWhole(file_, list);
  ASSERT_EQ(importDraws(whole.store(), desk_, file_, kToday).added, 300);
  const int all = looks;
  int stopped = 0;
  for (int moment = 1; moment <= all; ++moment) {
    looks = 0;
    desk_.course().on_look = [&] {
      if (++looks == moment) desk_.course().requestStop();
    };
    TempHome home;
    const DrawImport result = importDraws(home.store(), desk_, file_, kToday);
    const auto rows = home.store().value(R"(SELECT count(*) FROM "历史记录")");
    EXPECT_EQ(rows, result.outcome == Outcome::stopped ? 0 : 300) << moment;
    stopped += result.outcome == Outcome::stopped ? 1 : 0;
    EXPECT_FALSE(desk_.course().stopRequested());
  }
  EXPECT_GE(stopped, 4);
  EXPECT_LT(stopped, all) << "behind the last draw it is too late";
  EXPECT_EQ(dumpHistory(store_), before);
}

}  // namespace
}  // namespace lotmere::test

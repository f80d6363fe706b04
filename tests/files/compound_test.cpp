#include <fmt/format.h>
#include <gtest/gtest.h>

#include <map>

#include "files/compound_line.hpp"
#include "files/export_compound.hpp"
#include "files/import.hpp"
#include "support/random_numbers.hpp"
#include "support/store_test.hpp"

namespace lotmere::test {
namespace {

constexpr PeriodNo kPeriod = 2024007;

TEST(CompoundLine, ReadsABetInAllItsForms) {
  const CompoundBet bet{{1, 2, 3, 5, 8, 13, 21}, {4, 9}};
  EXPECT_EQ(compoundLine(bet), "01 02 03 05 08 13 21 + 04 09 (14注)");
  for (const char* line :
       {"01 02 03 05 08 13 21 + 04 09 (14注)", "  1,2,3,5,8,13,21|4,9 14注 ", "21 13 8 5 3 2 1+9 4",
        "０１　０２　０３　０５　０８　１３　２１＋０４　０９（１４注）", "01-02-03-05-08-13-21\t+04;09"})
    EXPECT_EQ(readCompoundLine(line), bet) << line;
  const CompoundBet repeated{{9, 1, 1, 2, 3, 4}, {16}};
  EXPECT_EQ(readCompoundLine(compoundLine(repeated)), repeated) << "a single six stays as it stands";

  for (const char* line :
       {"", "01 02 03 05 08 13 + 04 09 (3注)", "01 02 03 05 08 13 21 + 04 09 (15注)", "01 02 03 05 08 + 04",
        "01 02 03 05 08 13 34 + 04", "01 02 03 05 08 13 00 + 04", "01 02 03 05 08 13 21 + 17",
        "01 02 03 05 08 13 13 + 04", "01 02 03 05 08 13 + 04 04", "01 02 03 05 08 13 21 +",
        "01 02 03 05 08 13 04", "01 02 03 05 08 13 + 04 + 09", "红 01 02 03 05 08 13 + 04",
        "2024007 01 02 03 05 08 13 + 04", "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 + 1"})
    EXPECT_FALSE(readCompoundLine(line)) << line;
  for (const auto& [line, counted] : {std::pair{"01 02 03 05 08 13 21 + 04 09 (14注)", true},
                                      {"01 02 03 05 08 13+04 1注", true},
                                      {"01 02 03 05 08 13 21 + 04 09 (15注)", true},
                                      {"01 02 03 05 08 13 21 + 04 09", false},
                                      {"合计：100注", false},
                                      {"01 02 03 05 08 13+04 第1注：", false}})
    EXPECT_EQ(hasTicketCount(line), counted) << line;
}

class Compound : public StoreTest {
 protected:
  // Each ticket of the table with its number of times.
  std::map<std::string, int> tickets() {
    std::map<std::string, int> counts;
    Query rows = store_.query(
        R"(SELECT "期号"||' '||"红球1"||' '||"红球2"||' '||"红球3"||' '||"红球4"||' '||"红球5"||' '||"红球6"
           ||'+'||"蓝球" FROM "日志表")");
    while (rows.next()) ++counts[rows.text(0)];
    return counts;
  }
  ImportResult import(const std::string& text, int format) {
    realFiles().writeWhole(file_, text);
    return importCommand(store_, desk_, file_, ImportChoice{ImportFormat(format), kPeriod},
                         Existing::replace);
  }
  const std::filesystem::path file_ = home_.path() / "bets.txt";
};

TEST_F(Compound, WhatIsExportedComesBack) {
  std::mt19937 random(11);  // NOLINT(*-msc51-cpp): the same tickets in every run
  int id = 0;
  const auto put = [&](const DrawNumbers& numbers) {
    ++id;
    putTicket(store_, id, 5000 - id, kPeriod, numbers);
  };
  expandBet({{1, 2, 3, 4, 5, 6, 7, 8}, {2, 3}}, put);
  expandBet({{1, 2, 3, 4, 5, 6, 7}, {2}}, put);
  for (int i = 0; i < 200; ++i) put(randomNumbers(random, 10));
  put({{9, 9, 1, 2, 3, 4}, 16});
  const auto before = tickets();
  putTicket(store_, 4000, 1, kPeriod + 1, {{1, 2, 3, 4, 5, 6}, 1});  // of another period
  const CompoundExport exported = exportCompound(store_, desk_, file_);
  EXPECT_EQ(exported.outcome, Outcome::done);
  EXPECT_EQ(exported.tickets, id);
  const std::string text = readFile(file_);
  EXPECT_EQ(std::ranges::count(text, '\n'), exported.bets);
  EXPECT_LT(exported.bets, id * 3 / 4);
  EXPECT_NE(text.find("09 09 01 02 03 04 + 16 (1注)\r\n"), std::string::npos);
  const ImportResult imported = import(text, 3);
  EXPECT_EQ(imported.count, id);
  EXPECT_EQ(imported.skipped, 0);
  EXPECT_EQ(tickets(), before);
}

TEST_F(Compound, TheFormatsAreKeptApart) {
  const std::string bet = "01 02 03 05 08 13 14 + 04 09 (14注)\r\n";
  EXPECT_EQ(import("01 02 03 04 05 06+07\n" + bet + "junk\n1 2 3 4 5 6 7 + 1 (8注)", 3).skipped, 2);
  EXPECT_EQ(desk_.told.back().text, "数据导入完成，共导入：１５ 注！跳过了 ２ 行，第一处在第 ３ 行。");
  const auto before = tickets();
  for (const int format : {0, 1, 2}) {
    const std::string list = fmt::format("{0}{1}{0}{1}", "2024001 01 02 03 04 05 06 07\n", bet);
    EXPECT_EQ(import(list, format).outcome, Outcome::refused) << format;
    EXPECT_EQ(desk_.told.back().text,
              "第 ２ 行写着注数，是复式号码，要按复式格式导入（命令行 --format 3），没有导入号码！");
  }
  std::string huge;
  for (int i = 0; i < 27; ++i) huge += "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 + 1\n";
  EXPECT_EQ(import(huge, 3).count, 0);
  EXPECT_EQ(desk_.told.back().text,
            "文件里的复式号码共 １０４６５２０ 注，超过 １００００００ 注，没有导入号码！");
  EXPECT_EQ(tickets(), before);
}

TEST_F(Compound, AnExportThatIsStoppedOrHasNothingWritesNothing) {
  realFiles().writeWhole(file_, "yesterday");
  EXPECT_EQ(exportCompound(store_, desk_, file_).outcome, Outcome::refused);
  EXPECT_EQ(desk_.told.back().text, "表格中还没有号码！");
  putTicket(store_, 1, 1, kPeriod, {{1, 2, 3, 4, 5, 6}, 7});
  EXPECT_EQ(exportCompound(store_, desk_, store_.path()).outcome, Outcome::refused);
  desk_.course().on_look = [&] { desk_.course().requestStop(); };
  EXPECT_EQ(exportCompound(store_, desk_, file_).outcome, Outcome::stopped);
  EXPECT_EQ(readFile(file_), "yesterday");
  desk_.course().on_look = {};
  EXPECT_EQ(exportCompound(store_, desk_, file_).bets, 1);
  EXPECT_EQ(readFile(file_), "01 02 03 04 05 06 + 07 (1注)\r\n");
}

}  // namespace
}  // namespace lotmere::test

// The page of draws: what it searches, says of the next draw, opens on a web site and exports.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include "history/addresses.hpp"
#include "history/detail.hpp"
#include "history/export_sheet.hpp"
#include "history/search.hpp"
#include "history/status.hpp"
#include "history/upkeep.hpp"
#include "history_rows.hpp"
#include "support/store_test.hpp"

namespace lotmere::test {
namespace {

using Search = StoreTest;
using StatusOfHistory = StoreTest;
using HistoryExport = StoreTest;

TEST_F(Search, EveryTextIsAPlainPrefixOfItsColumn) {
  std::mt19937 random(6);
  const auto random_text = [&] {
    constexpr std::string_view characters = "112%_'\"[?*\\ aA";
    std::string text(random() % 4, ' ');
    for (char& c : text) c = characters[random() % characters.size()];
    return text;
  };
  const auto draws = inventDraws(300, 5);
  const StoreChange change(store_);
  for (const auto& [period, numbers] : draws) {
    putDraw(store_, period, "2007-01-" + std::to_string(10 + random() % 20), numbers);
    Query texts = store_.query(R"(UPDATE "历史记录" SET "尾数形式"=?,"连号"=? WHERE "期号"=?)");
    texts.bind(random_text(), random_text(), period).run();
  }
  std::size_t found = 0;
  for (int turn = 0; turn < 200; ++turn) {
    std::vector<ColumnFilter> filters{{"开奖日期", "2007-01-" + std::to_string(random() % 4)}};
    for (const char* column : {"期号", "红球6", "尾数形式", "连号"})
      if (random() % 3 == 0) filters.push_back({column, random_text()});
    std::vector<PeriodNo> wanted, got;
    for (const StoredDraw& draw : draws) {
      const bool fits = std::ranges::all_of(filters, [&](const ColumnFilter& filter) {
        return filter.text.find_first_not_of(' ') == std::string::npos ||
               field(store_, draw.period, filter.column).starts_with(filter.text);
      });
      if (fits) wanted.push_back(draw.period);
    }
    searchDraws(store_, buildSearchWhere(desk_, filters).value(),
                [&](const Query& row) { got.push_back(row.number(0)); });
    EXPECT_EQ(got, wanted);
    found += got.size();
  }
  EXPECT_GT(found, 500U) << "some filters find something";
  EXPECT_FALSE(buildSearchWhere(desk_, {{"期号", "2"}, {"期号\" OR 1=1 --", "2"}}));
  EXPECT_EQ(desk_.told.size(), 1U);
  const auto recent = loadHistoryRows(store_, HistorySpan::recent);
  EXPECT_TRUE(recent.from == draws[200].period && recent.to == draws[299].period);
  EXPECT_EQ(loadHistoryRows(store_, HistorySpan::all).from, draws[0].period);
}

TEST_F(StatusOfHistory, ADrawIsMissingFromTheDayAfterItWasDue) {
  const auto status_on = [&](const char* day) {
    return updateHistoryStatus(store_, *parseDate(day), *parseDate("2008-01-01"));
  };
  EXPECT_TRUE(status_on("2007-12-27").incomplete) << "an empty history";
  EXPECT_NE(status_on("2007-12-27").next_draw.find("2008001 期 于 2007-12-27 开奖"), std::string::npos);
  putDraw(store_, 2007153, "2007-12-27", {{1, 2, 3, 4, 5, 6}, 7});
  EXPECT_EQ(status_on("2007-12-30").history, "  ☆☆☆  历史记录： 已更新！  ☆☆☆  ");
  EXPECT_EQ(status_on("2007-12-31").history, " ◆◇◆→  历史记录： 不完整，请下载或手工添加开奖记录  ←◆◇◆  ");
  EXPECT_EQ(status_on("2007-12-31").next_draw,
            "     ※※※  2007154 期 于 2007-12-30 开奖     今天是： 2007-12-31  ※※※     ");
  putDraw(store_, 2007154, "2009-12-27", {{1, 2, 3, 4, 5, 6}, 7});
  EXPECT_TRUE(status_on("2007-12-31").outdated) << "a date after today hides nothing";
  EXPECT_FALSE(status_on("2009-12-27").incomplete);
}

TEST_F(StatusOfHistory, ADrawIsMissingWhereTheNumbersLeaveOneOut) {
  const struct {
    std::vector<PeriodNo> stored;
    PeriodNo missing;
  } cases[] = {{{2007150, 2007151, 2008001, 2008002}, 0},
               {{2007150, 2007152, 2007154}, 2007151},
               {{2007150, 2007151, 2008002}, 2008001},
               {{2007150, 2009001}, 2008001},
               {{5, 20070, 2007150, 2007151, 9999999}, 0}};
  for (const auto& [stored, missing] : cases) {
    store_.query(R"(DELETE FROM "历史记录")").run();
    for (const PeriodNo period : stored) putDraw(store_, period, "2009-01-01", {{1, 2, 3, 4, 5, 6}, 7});
    const HistoryStatus status = updateHistoryStatus(store_, *parseDate("2009-01-01"), Date{});
    EXPECT_EQ(status.incomplete, missing != 0) << missing;
    EXPECT_FALSE(status.outdated) << "nothing that a download would bring";
    EXPECT_EQ(status.missing, missing == 0 ? "" : fmt::format("历史记录中间缺少 {} 期", missing));
  }
}

TEST_F(StatusOfHistory, ADeletionShowsTheDrawAndTakesItsWholeNumber) {
  for (const PeriodNo period : {2008049, 2008050, 20080})
    putDraw(store_, period, "2008-04-29", {{5, 8, 9, 10, 11, 12}, period % 10 + 1});
  const auto stored = [&] { return store_.value(R"(SELECT count(*) FROM "历史记录")"); };
  const struct {
    const char* typed;
    std::optional<std::size_t> choice;
    std::string told;
    int left;
  } cases[] = {{"2008050", std::nullopt, "", 3},
               {"2008050", 1, "", 3},
               {"20080501", 0, "无法完成，历史记录表格中没有该期记录！", 3},
               {"-20080", 0, "无法完成，历史记录表格中没有该期记录！", 3},
               {"2008050a", 0, "期号“2008050a”不对，应为年份加三位期次的7位数字，如 2007001。", 3},
               {"", 0, "期号“”不对，应为年份加三位期次的7位数字，如 2007001。", 3},
               {" ２００８０４９", 0, "done", 2},
               {"20080", 0, "done", 1}};
  for (const auto& [typed, choice, told, left] : cases) {
    ScriptedDesk desk;
    desk.choices = {choice};
    EXPECT_EQ(deleteDraw(store_, desk, typed, "done"), doneIf(told == "done")) << typed;
    EXPECT_EQ(stored(), left) << typed;
    EXPECT_EQ(desk.told.empty() ? "" : desk.told[0].text, told);
    if (desk.asked.empty()) continue;
    EXPECT_EQ(desk.buttons[0], "删除") << "the answer that yes means";
    EXPECT_NE(desk.asked[0].find(typed == std::string("20080") ? "20080 期  2008-04-29  05 08 09 10 11 12+01"
                                 : left == 3 ? "2008050 期  2008-04-29  05 08 09 10 11 12+01"
                                             : "2008049 期  2008-04-29  05 08 09 10 11 12+10"),
              std::string::npos)
        << desk.asked[0];
  }
  EXPECT_TRUE(findDraw(store_, 2008050));
}

// A page about the game, in two encodings, at addresses that end in 8118.
struct Site : Fetcher {
  Fetched fetch(const std::string& address) override {
    if (!address.ends_with("8118.html")) return {std::nullopt, "网站答复 404"};
    return {address.starts_with("https://gb/") ? "x\xCB\xAB\xC9\xAB\xC7\xF2" : "<title>双色球</title>", {}};
  }
};

TEST(DetailPage, OpensWhereTheSiteSpeaksOfTheGame) {
  const std::string prefix = "https://site/d/";
  const struct {
    std::optional<std::string> period, prefix;
    std::string address;
    std::size_t told;
  } cases[] = {{"2008118", prefix, prefix + "08118.html", 0},
               {" 08118\n", " https://gb/ ", "https://gb/08118.html", 0},
               {"2008119", prefix, "", 1},
               {"２００８１１８", prefix, prefix + "08118.html", 0},
               {"20081180", prefix, "", 1},
               {"2008118", std::nullopt, "", 0},
               {"2.8118", prefix, "", 1},
               {"", prefix, "", 1},
               {std::nullopt, prefix, "", 0}};
  for (const auto& [period, typed, address, told] : cases) {
    TempHome home;
    ScriptedDesk desk;
    Site site;
    std::string kept;
    desk.texts = {period, typed};
    EXPECT_EQ(queryDetailPage(home.store(), desk, site, kept).value_or(""), address)
        << period.value_or("cancel");
    EXPECT_EQ(desk.told.size(), told);
    if (period == "2008119") {
      EXPECT_TRUE(desk.told.at(0).text.ends_with("原因：网站答复 404。"));
    }
    EXPECT_EQ(storedAddress(home.store(), AddressUse::detail_page).empty(), address.empty());
    rememberAddress(home.store(), AddressUse::draw_list, "list");
    desk.texts = {std::nullopt};
    EXPECT_EQ(findDetailPage(home.store(), desk, site, "2008118", kept).value_or(""), address);
  }
}

TEST_F(HistoryExport, AStopLeavesTheOldFileAndTheProgramsOwnIsRefused) {
  putDraws(store_, inventDraws(100, 3));
  const auto file = home_.path() / "x.xlsx";
  realFiles().writeWhole(file, "old");
  int served = 0;  // once while rows are put in, then while the file is made
  desk_.course().on_look = [&] {
    if (++served == 2) desk_.course().requestStop();
  };
  EXPECT_EQ(exportHistory(store_, desk_, file).outcome, Outcome::stopped);
  EXPECT_EQ(readFile(file), "old");
  desk_.course().on_look = nullptr;
  EXPECT_EQ(exportHistory(store_, desk_, file).rows, 100) << "the stop ended with its job";
  EXPECT_EQ(exportHistory(store_, desk_, home_.path() / "甲.uLotmere").rows, 0);
  EXPECT_EQ(desk_.told.back().text, kOwnFile);
  EXPECT_FALSE(std::filesystem::exists(home_.path() / "甲.uLotmere"));
}

}  // namespace
}  // namespace lotmere::test

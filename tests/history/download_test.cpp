#include "history/download.hpp"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

#include "core/desk_script.hpp"
#include "history/addresses.hpp"
#include "history_rows.hpp"
#include "support/test_store.hpp"

namespace lotmere::test {
namespace {

// Gives one reply, or breaks off; a second request breaks off too.
struct ScriptedFetcher : Fetcher {
  std::optional<std::string> reply;
  explicit ScriptedFetcher(const std::string& text) : reply(text) {}
  std::optional<std::string> fetch(const std::string& /*address*/) override {
    return std::exchange(reply, std::nullopt);
  }
};

std::string stored_Periods(Store& store) {
  return store.db().execAndGet(R"(SELECT group_concat("期号") FROM "历史记录")").getString();
}

TEST(Download, StoresWholeDrawsInReachOfADrawList) {
  const struct {
    const char* reply;
    bool ok;
    int added, overwritten, skipped;
  } cases[] = {{"336 2007011 2007/01/25 01 02 03 04 05 06 07", false, 0, 0, 0},
               {"<336>", true, 0, 0, 0},
               {"x336x 2007011期:2007/01/25;01,02,03,04,05,06+07\n", true, 1, 0, 0},
               {"<336> 2007012 2007/01/28 01 02 03 04 05 06 07 2007011 2007/01/25 01 02 03 04 05 06 07.",
                true, 2, 0, 0},
               {"<336> 2007010 2007/01/23 11 12 13 14 15 16 07", true, 0, 1, 0},
               {"<336> 2007000 2007/01/01 01 02 03 04 05 06 07", true, 0, 0, 1},
               {"<336> 2007999 2007/12/31 01 02 03 04 05 06 07", true, 0, 0, 1},
               {"<336> 2006999 2006/12/31 01 02 03 04 05 06 07", true, 0, 0, 0},
               {"<336> 2012010 2012/01/25 01 02 03 04 05 06 07", true, 1, 0, 0},
               {"<336> 2012011 2012/01/25 01 02 03 04 05 06 07", true, 0, 0, 0},
               {"<336> 12007011 2007/01/25 01 02 03 04 05 06 07", true, 0, 0, 0},
               {"<336> 20070110 2007/01/25 01 02 03 04 05 06 07", true, 0, 0, 0},
               {"<336> 2007011 2007/01/25 01 02 03 04 05 34 07 2007011 2007/01/25 01 02 03 04 05 06 07", true,
                0, 0, 1},
               {"<336> 2007012 2007/01/28 01 02 03 2007013 2007/01/30 01 02 03 04 05 06 07", true, 1, 0, 1},
               {"<336> 2007011 2007-01-25 01 02 03 04 05 06 07", true, 0, 0, 1},
               {"<336> 2007011 2007/02/30 01 02 03 04 05 06 07", true, 0, 0, 1},
               {"<336> 2007011 2007/01/25 01 02 03 04", true, 0, 0, 1},
               {"<336> 2007011 2007/01/25 01 02 03 04 05 06 0", true, 0, 0, 1},
               {"<336> 2007011 2007/01/25 01 02 03 04 05 34 07", true, 0, 0, 1},
               {"<336> 2007011 2007/01/25 01 02 03 04 05 06 17", true, 0, 0, 1},
               {"<336> 2007011 2007/01/25 01 02 03 04 05 06 071", true, 0, 0, 1},
               {"<336> 2007011 2007/01/25 1 02 03 04 05 06 07", true, 0, 0, 1},
               {"<336> 2007011 2007/01/25 01 02 03 03 05 06 07", true, 0, 0, 1}};
  for (const auto& [reply, ok, added, overwritten, skipped] : cases) {
    SCOPED_TRACE(reply);
    TempHome home;
    put_Draw(home.store(), 2007010, "2007-01-23", {{1, 2, 3, 4, 5, 6}, 7});
    ScriptedDesk desk;
    ScriptedFetcher fetcher(reply);
    const DownloadResult result = downloadDraws(home.store(), desk, fetcher, "address");
    EXPECT_EQ(result.ok, ok);
    EXPECT_EQ(desk.told.at(0).tone, ok ? Tone::information : Tone::error);
    EXPECT_EQ(result.added, added);
    EXPECT_EQ(result.overwritten, overwritten);
    EXPECT_EQ(result.skipped, skipped);
    EXPECT_EQ(home.store().value(R"(SELECT count("和值") FROM "历史记录")"), ok ? 1 + added : 0);
    const std::string stages[] = {" ■■■■■  正在下载开奖数据。。。。。。  ",
                                  " >>>>>>>>  正在统计各项值，请稍等！  <<<<<<<<  "};
    EXPECT_EQ(desk.statuses, ok ? std::vector<std::string>({stages[0], stages[0], stages[1], ""})
                                : std::vector<std::string>({stages[0], ""}));
  }
}

TEST(Download, RunsReachFiveThousandPeriodsAndAllRunsStepOverAGap) {
  const std::string list =
      "<336> 2003001 2003/02/23 01 02 03 04 05 06 07 2008001 2008/01/01 01 02 03 04 05 06 08"
      " 2008002 2008/01/03 01 02 03 04 05 06 09 2019001 2019/01/01 01 02 03 04 05 06 10";
  ScriptedDesk desk;
  TempHome one;
  for (const char* periods : {"2003001,2008001", "2003001,2008001,2008002", "2003001,2008001,2008002"}) {
    ScriptedFetcher fetcher(list);
    EXPECT_TRUE(downloadDraws(one.store(), desk, fetcher, "").ok);
    EXPECT_EQ(stored_Periods(one.store()), periods);
  }
  TempHome all;
  ScriptedFetcher fetcher(list);
  const DownloadResult result = downloadAll(all.store(), desk, fetcher, "https://example.org/'; --");
  EXPECT_EQ(stored_Periods(all.store()), "2003001,2008001,2008002,2019001");
  EXPECT_EQ(result.added, 4);
  EXPECT_EQ(result.overwritten, 0) << "runs overlap; an entry counts once";
  EXPECT_EQ(field(all.store(), 2019001, "重叠号"), "6");
  EXPECT_EQ(stored_Address(all.store(), AddressUse::draw_list), "https://example.org/'; --");
}

TEST(Download, AFailureOnTheWayLeavesTheHistoryAsItWas) {
  std::string list = "=336=\r\n";
  const auto draws = invent_Draws(300, 17);
  for (const auto& [period, numbers] : draws)
    list += fmt::format("{} 2007/01/02 {:02} {:02}\r\n", period, fmt::join(numbers.reds, " "), numbers.blue);
  // While draws are stored, and in the statistics.
  for (const int moment : {60, 103}) {
    TempHome home;
    ScriptedDesk desk;
    for (int i = 0; i < 5; ++i) put_Draw(home.store(), draws[i].period, "2007-01-02", draws[i].numbers);
    const std::string before = dump_History(home.store());
    ScriptedFetcher fetcher(list);
    int served = 0;
    desk.on_serve = [&] {
      if (++served != moment) return;
      EXPECT_GT(home.store().value("SELECT count(*) FROM 历史记录"), 100);
      throw std::runtime_error("the power fails");
    };
    EXPECT_THROW((void)downloadAll(home.store(), desk, fetcher, ""), std::runtime_error) << moment;
    EXPECT_EQ(dump_History(home.store()), before) << moment;
    EXPECT_EQ(desk.statuses.back(), "") << moment;
  }
}

TEST(Download, TheCommandAsksForAnAddressWhileNoneIsRemembered) {
  const struct {
    std::optional<std::string> typed;
    bool ok;
    std::size_t told;
    std::string remembered;
  } cases[] = {{std::nullopt, false, 0, ""},
               {" \t", false, 0, ""},
               {"ftp://site/list", false, 1, ""},
               {"/home/me/list.txt", false, 1, ""},
               {"https://site/page", false, 1, ""},
               {" HTTPS://site/list\n", true, 1, "HTTPS://site/list"},
               {"file:///home/me/list", true, 1, "file:///home/me/list"}};
  for (const auto& [typed, ok, told, remembered] : cases) {
    SCOPED_TRACE(typed.value_or("cancel"));
    TempHome home;
    ScriptedDesk desk;
    desk.texts = {typed};
    ScriptedFetcher list(typed && typed->find("page") != std::string::npos ? "<html>" : "<336>");
    EXPECT_EQ(download_Command(home.store(), desk, list).ok, ok);
    EXPECT_EQ(desk.told.size(), told);
    EXPECT_EQ(stored_Address(home.store(), AddressUse::draw_list), remembered);
    desk.texts = {std::nullopt};
    ScriptedFetcher again("<336>");
    EXPECT_EQ(download_Command(home.store(), desk, again).ok, ok);
  }
}

TEST(Download, AnAddressChangesToWhatIsTyped) {
  TempHome home;
  const struct {
    std::optional<std::string> typed;
    bool changed;
    std::string stored;
  } cases[] = {{"file:///b", true, "file:///b"},
               {std::nullopt, false, "file:///b"},
               {"b", false, "file:///b"},
               {"http://c", true, "http://c"},
               {" ", true, ""}};
  remember_Address(home.store(), AddressUse::draw_list, "http://list");
  for (const auto& [typed, changed, stored] : cases) {
    ScriptedDesk desk;
    desk.texts = {typed};
    EXPECT_EQ(change_Address(home.store(), desk, AddressUse::detail_page), changed);
    EXPECT_EQ(stored_Address(home.store(), AddressUse::detail_page), stored) << typed.value_or("cancel");
    EXPECT_EQ(desk.told.size(), typed == "b" ? 1U : 0U);
  }
  EXPECT_EQ(stored_Address(home.store(), AddressUse::draw_list), "http://list");
}

}  // namespace
}  // namespace lotmere::test

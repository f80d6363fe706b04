#include "history/download.hpp"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "core/desk_script.hpp"
#include "history/draw_list.hpp"
#include "history_rows.hpp"
#include "support/test_store.hpp"

namespace lotmere::test {
namespace {

// Gives one reply, or breaks off.
struct ScriptedFetcher : Fetcher {
  explicit ScriptedFetcher(std::optional<std::string> text) : reply(std::move(text)) {}
  std::optional<std::string> fetch(const std::string& /*address*/) override {
    ++fetches;
    return reply;
  }
  std::optional<std::string> reply;
  int fetches = 0;
};

std::string list_Draws(const std::vector<StoredDraw>& draws) {
  std::string text = "=336=\r\n";
  for (const auto& [period, numbers] : draws) {
    text += fmt::format("{} 2007/01/02 {:02} {:02}\r\n", period, fmt::join(numbers.reds, " "), numbers.blue);
  }
  return text;
}

std::string stored_Periods(Store& store) {
  return store.db()
      .execAndGet("SELECT coalesce(group_concat(期号 % 10000000), '') FROM 历史记录")
      .getString();
}

TEST(DrawList, CompactionKeepsDigitsAndSlashes) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"336", "336"},
      {"<b>336</b>", "#336#/#"},
      {"2007001 \r\n 2007/01/02", "2007001#2007/01/02"},
      {"2007-01-02", "2007#01#02"},
      {"第12期", "#12#"},
  };
  for (const auto& [raw, compact] : cases) EXPECT_EQ(compactDrawText(raw), compact) << raw;
}

struct Reply {
  const char* name;
  const char* text;
  bool ok;
  int added;
  int overwritten;
  int skipped;
  const char* periods;  // that the history holds afterwards
};

// The history holds 2007010 alone, with the reds 1 to 6.
constexpr Reply kReplies[] = {
    {"NoDrawList", "<html>404 not found</html>", false, 0, 0, 0, "2007010"},
    {"Empty", "", false, 0, 0, 0, "2007010"},
    {"DigitsFirst", "336 2007011 2007/01/25 01 02 03 04 05 06 07", false, 0, 0, 0, "2007010"},
    {"HeaderOnly", "<336>", true, 0, 0, 0, "2007010"},
    {"OneNew", "<336> 2007011 2007/01/25 01 02 03 04 05 06 07", true, 1, 0, 0, "2007010,2007011"},
    {"LettersBetween", "x336x 2007011期:2007/01/25;01,02,03,04,05,06+07\n", true, 1, 0, 0, "2007010,2007011"},
    {"AnyOrder", "<336> 2007012 2007/01/28 01 02 03 04 05 06 07 2007011 2007/01/25 01 02 03 04 05 06 07.",
     true, 2, 0, 0, "2007010,2007011,2007012"},
    {"StoredOneIsOverwritten", "<336> 2007010 2007/01/23 11 12 13 14 15 16 07", true, 0, 1, 0, "2007010"},
    {"TheOldestLookedAt", "<336> 2007000 2007/01/01 01 02 03 04 05 06 07", true, 1, 0, 0, "2007000,2007010"},
    {"TooOldIsLeftOut", "<336> 2006999 2006/12/31 01 02 03 04 05 06 07", true, 0, 0, 0, "2007010"},
    {"TooFarIsLeftOut", "<336> 2012011 2012/01/25 01 02 03 04 05 06 07", true, 0, 0, 0, "2007010"},
    {"DateWithDashes", "<336> 2007011 2007-01-25 01 02 03 04 05 06 07", true, 0, 0, 1, "2007010"},
    {"NoSuchDay", "<336> 2007011 2007/02/30 01 02 03 04 05 06 07", true, 0, 0, 1, "2007010"},
    {"CutInTheDate", "<336> 2007011 2007/01", true, 0, 0, 1, "2007010"},
    {"CutInTheReds", "<336> 2007011 2007/01/25 01 02 03 04", true, 0, 0, 1, "2007010"},
    {"CutInTheBlue", "<336> 2007011 2007/01/25 01 02 03 04 05 06 0", true, 0, 0, 1, "2007010"},
    {"CutBehindThePeriod", "<336> 2007011", true, 0, 0, 0, "2007010"},
    {"RedOf34", "<336> 2007011 2007/01/25 01 02 03 04 05 34 07", true, 0, 0, 1, "2007010"},
    {"RedOf0", "<336> 2007011 2007/01/25 00 02 03 04 05 06 07", true, 0, 0, 1, "2007010"},
    {"RedThatFoldsIn", "<336> 2007011 2007/01/25 01 02 03 04 05 40 07", true, 0, 0, 1, "2007010"},
    {"BlueOf17", "<336> 2007011 2007/01/25 01 02 03 04 05 06 17", true, 0, 0, 1, "2007010"},
    {"BlueOfThreeDigits", "<336> 2007011 2007/01/25 01 02 03 04 05 06 071", true, 0, 0, 1, "2007010"},
    {"RedOfOneDigit", "<336> 2007011 2007/01/25 1 02 03 04 05 06 07", true, 0, 0, 1, "2007010"},
    {"RedsOutOfOrder", "<336> 2007011 2007/01/25 02 01 03 04 05 06 07", true, 0, 0, 1, "2007010"},
    {"RedTwice", "<336> 2007011 2007/01/25 01 02 03 03 05 06 07", true, 0, 0, 1, "2007010"},
    {"LongerNumberIsNoPeriod", "<336> 12007011 2007/01/25 01 02 03 04 05 06 07", true, 0, 0, 0, "2007010"},
    {"LongerNumberStartsNoPeriod", "<336> 20070110 2007/01/25 01 02 03 04 05 06 07", true, 0, 0, 0,
     "2007010"},
    {"FirstOfTwoCounts",
     "<336> 2007011 2007/01/25 01 02 03 04 05 34 07 2007011 2007/01/25 01 02 03 04 05 06 07", true, 0, 0, 1,
     "2007010"},
    {"BadOneBetweenGoodOnes",
     "<336> 2007011 2007/01/25 01 02 03 04 05 06 07 2007012 2007/01/28 01 02 03 2007013 2007/01/30 01 02 03 "
     "04 05 06 07",
     true, 2, 0, 1, "2007010,2007011,2007013"},
};

class Download : public testing::TestWithParam<Reply> {};

TEST_P(Download, StoresWholeValidDrawsOnly) {
  const Reply& reply = GetParam();
  TempHome home;
  ScriptedDesk desk;
  put_Draw(home.store(), 2007010, "2007-01-23", {{1, 2, 3, 4, 5, 6}, 7});
  const std::string before = dump_History(home.store());
  ScriptedFetcher fetcher(reply.text);
  const DownloadResult result = downloadDraws(home.store(), desk, fetcher, "address");
  EXPECT_EQ(result.ok, reply.ok);
  EXPECT_EQ(result.added, reply.added);
  EXPECT_EQ(result.overwritten, reply.overwritten);
  EXPECT_EQ(result.skipped, reply.skipped);
  EXPECT_EQ(stored_Periods(home.store()), reply.periods);
  ASSERT_EQ(desk.told.size(), 1u);
  EXPECT_EQ(desk.told[0].tone, reply.ok ? Tone::information : Tone::error);
  if (reply.ok) {
    EXPECT_EQ(desk.told[0].text, "已成功更新!");
    EXPECT_EQ(home.store().value("SELECT count(*) FROM 历史记录 WHERE 和值 IS NULL"), 0)
        << "a draw without statistics";
  } else {
    EXPECT_EQ(dump_History(home.store()), before);
  }
}

INSTANTIATE_TEST_SUITE_P(Replies, Download, testing::ValuesIn(kReplies),
                         [](const auto& reply) { return reply.param.name; });

TEST(DownloadRun, AnOverwrittenDrawIsRecomputedAgainstItsNeighbours) {
  TempHome home;
  ScriptedDesk desk;
  put_Draw(home.store(), 2007009, "2007-01-21", {{1, 2, 3, 4, 5, 6}, 7});
  put_Draw(home.store(), 2007010, "2007-01-23", {{1, 2, 3, 4, 5, 6}, 7});
  ScriptedFetcher fetcher("<336> 2007010 2007/01/23 01 02 13 14 15 16 08");
  EXPECT_EQ(downloadDraws(home.store(), desk, fetcher, "").overwritten, 1);
  EXPECT_EQ(findDraw(home.store(), 2007010)->numbers.blue, 8);
  EXPECT_EQ(field(home.store(), 2007010, "重叠号"), "2");
  EXPECT_EQ(field(home.store(), 2007009, "和值"), "21") << "the earliest draw has a call of its own";
}

TEST(DownloadRun, AnUnreadableAddressTellsWhatMayBeWrong) {
  TempHome home;
  ScriptedDesk desk;
  ScriptedFetcher fetcher(std::nullopt);
  EXPECT_FALSE(downloadAll(home.store(), desk, fetcher, "").ok);
  ASSERT_EQ(desk.told.size(), 1u);
  EXPECT_EQ(
      desk.told[0].text,
      "服务器忙或网络链接断开,无法完成更新!\r\n\r\n要正常更新需要电脑与互联网联接正常.\r\n\r\n"
      "若无法更新可能是由于你的防火墙设为禁止程序访问网络,\r\n\r\n你可以重新设置防火墙或关闭防火墙后再试.)");
  EXPECT_EQ(stored_Periods(home.store()), "");
}

constexpr const char* kLongList =
    "<336> 2003001 2003/02/23 01 02 03 04 05 06 07 2008001 2008/01/01 01 02 03 04 05 06 08"
    " 2008002 2008/01/03 01 02 03 04 05 06 09 2019001 2019/01/01 01 02 03 04 05 06 10";

TEST(DownloadRun, ARunReachesFiveThousandPeriodsAndTheNextGoesOn) {
  TempHome home;
  ScriptedDesk desk;
  ScriptedFetcher fetcher(kLongList);
  const char* stored[] = {"2003001,2008001", "2003001,2008001,2008002", "2003001,2008001,2008002"};
  for (const char* periods : stored) {
    EXPECT_TRUE(downloadDraws(home.store(), desk, fetcher, "").ok);
    EXPECT_EQ(stored_Periods(home.store()), periods);
  }
}

TEST(DownloadRun, AllRunsStepOverAGapAndFetchOnce) {
  TempHome home;
  ScriptedDesk desk;
  ScriptedFetcher fetcher(kLongList);
  const DownloadResult result = downloadAll(home.store(), desk, fetcher, "");
  EXPECT_EQ(stored_Periods(home.store()), "2003001,2008001,2008002,2019001");
  EXPECT_EQ(result.added, 4);
  EXPECT_EQ(result.overwritten, 0) << "runs overlap; an entry counts once";
  EXPECT_EQ(fetcher.fetches, 1);
  EXPECT_EQ(desk.told.size(), 1u);
  EXPECT_EQ(field(home.store(), 2019001, "重叠号"), "6");
}

TEST(DownloadRun, AFailureOnTheWayLeavesTheHistoryAsItWas) {
  struct Moment {
    const char* name;
    int serves;
  };
  for (const Moment moment : {Moment{"while draws are stored", 60}, Moment{"in the statistics", 103}}) {
    TempHome home;
    ScriptedDesk desk;
    const auto draws = invent_Draws(300, 17);
    for (int i = 0; i < 5; ++i) put_Draw(home.store(), draws[i].period, "2007-01-02", draws[i].numbers);
    const std::string before = dump_History(home.store());
    ScriptedFetcher fetcher(list_Draws(draws));
    int served = 0;
    desk.on_serve = [&] {
      if (++served == moment.serves) {
        EXPECT_GT(home.store().value("SELECT count(*) FROM 历史记录"), 100) << moment.name;
        throw std::runtime_error("the power fails");
      }
    };
    EXPECT_THROW((void)downloadAll(home.store(), desk, fetcher, ""), std::runtime_error) << moment.name;
    EXPECT_EQ(dump_History(home.store()), before) << moment.name;
    EXPECT_EQ(desk.jobs_open, 0) << moment.name;
  }
}

TEST(DownloadAddress, IsRememberedAsTyped) {
  TempHome home;
  EXPECT_EQ(download_Address(home.store()), "");
  remember_Address(home.store(), "https://example.org/list?a='b'");
  remember_Address(home.store(), "https://example.org/'; --");
  EXPECT_EQ(download_Address(home.store()), "https://example.org/'; --");
}

}  // namespace
}  // namespace lotmere::test

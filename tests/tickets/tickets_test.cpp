// The selection on the pad, its expansion into rows, and the way of the rows through a ticket set.
#include <gtest/gtest.h>

#include <random>
#include <stdexcept>

#include "base/number_list.hpp"
#include "base/text.hpp"
#include "conditions/condition_store.hpp"
#include "support/store_test.hpp"
#include "tickets/init.hpp"
#include "tickets/ticket_list.hpp"
#include "tickets/ticket_rows.hpp"
#include "tickets/upkeep.hpp"

namespace lotmere {
namespace {

using enum PickState;
using test::Row;

constexpr PeriodNo kPeriod = 2026050;

// The six nested loops over the pools, as rows behind `id`.
std::vector<Row> nestedLoops(const NumberSelection& s, int id = 0) {
  std::vector<Row> tickets;
  const auto in = [&](int n) { return s.red[n] != none; };
  const auto dans = std::count(s.red.begin(), s.red.end(), dan);
  for (int a = 1; a <= 28; ++a)
    for (int b = a + 1; in(a) && b <= 29; ++b)
      for (int c = b + 1; in(b) && c <= 30; ++c)
        for (int d = c + 1; in(c) && d <= 31; ++d)
          for (int e = d + 1; in(d) && e <= 32; ++e)
            for (int f = e + 1; in(e) && f <= 33; ++f) {
              int held = 0;
              for (const int n : {a, b, c, d, e, f}) held += s.red[n] == dan;
              for (int blue = 1; in(f) && held == dans && blue <= 16; ++blue)
                if (s.blue[blue] != none)
                  tickets.push_back(
                      {++id, static_cast<int>(tickets.size()) + 1, kPeriod, {a, b, c, d, e, f}, blue});
            }
  return tickets;
}

// From lists of red Tuo, red Dan, blue Tuo and blue Dan.
NumberSelection picks(const char* red_tuo, const char* red_dan, const char* blue_tuo, const char* blue_dan) {
  NumberSelection selection;
  const char* lists[] = {red_tuo, red_dan, blue_tuo, blue_dan};
  for (int i = 0; i < 4; ++i)
    for (const int n : parseNumberList(lists[i], 1, kRedCount).value_or(std::vector<int>{}))
      (i < 2 ? selection.red[n] : selection.blue[n]) = i % 2 ? dan : tuo;
  return selection;
}

class Tickets : public test::StoreTest {
 protected:
  void pick(const NumberSelection& selection) {
    changeSettings(store_, [&](ConditionSet& set) { putSelection(set, selection); });
  }
};

TEST_F(Tickets, ExpandsAsNestedLoopsDo) {
  std::mt19937 random(3);
  std::discrete_distribution<int> red{70, 26, 4}, blue{80, 20};
  for (int trial = 0; trial < 40; ++trial) {
    NumberSelection selection;
    for (int n = 1; n <= kRedCount; ++n) selection.red[n] = PickState(red(random));
    for (int n = 1; n <= kBlueCount; ++n) selection.blue[n] = PickState(blue(random));
    if (trial % 5 == 0) selection.blue = {none, none, dan};
    const auto expected = nestedLoops(selection);
    const auto count = static_cast<std::int64_t>(expected.size());
    EXPECT_EQ(countCombos(selection).tickets, count) << trial;
    ConditionSet set = test::factorySet();
    const bool fits = replaceSelection(set, desk_, selection);
    EXPECT_EQ(fits, count <= 100'000) << trial;
    EXPECT_EQ(selectionOf(set), fits ? selection : NumberSelection{});
    if (!fits) continue;
    pick(selection);
    // Whatever is above 0 is picked; only 2 is Dan.
    store_.db().exec("UPDATE 过滤条件 SET Value=3 WHERE Value=1 AND ID<=116 AND ID%2=0");
    test::writeRows(store_, {});
    EXPECT_EQ(initTickets(store_, desk_, kPeriod).outcome, doneIf(count > 0)) << trial;
    EXPECT_EQ(test::readRows(store_), expected) << trial;
  }
}

const std::vector<Row> kOldRows = {{5, 1, kPeriod, {1, 2, 3, 4, 5, 6}, 7, 1, 4, 0, 2},
                                   {8, 1, kPeriod - 1, {1, 2, 3, 4, 5, 6}, 7},
                                   {12, 2, kPeriod, {2, 3, 4, 5, 6, 7}, 16},
                                   {40, 1, kPeriod + 1, {1, 2, 3, 4, 5, 6}, 7}};

TEST_F(Tickets, WritesTheTicketsBehindTheOldOnesOfThePeriod) {
  const NumberSelection selection = picks("1-8", "", "3,16", "");
  pick(selection);
  for (const bool keep : {false, true}) {
    test::writeRows(store_, kOldRows);
    std::vector<Row> expected = nestedLoops(selection, 12);
    if (keep) expected.insert(expected.begin(), {kOldRows[0], kOldRows[2]});
    ScriptedDesk desk;
    desk.choices = {keep};
    const InitResult result = initTickets(store_, desk, kPeriod);
    EXPECT_EQ(result.outcome, Outcome::done);
    const auto count = static_cast<std::int64_t>(expected.size());
    EXPECT_EQ(result.rows, count);
    EXPECT_EQ(test::readRows(store_), expected);
    EXPECT_EQ(desk.told.at(0).text, "初始化选号完成!共 " + toFullWidth(count) + " 注！");
    test::writeRows(store_, kOldRows);
    initTickets(store_, desk, kPeriod, keep ? Existing::keep : Existing::replace);
    EXPECT_EQ(test::readRows(store_), expected);
    EXPECT_EQ(desk.asked.size(), 1U) << "what was said ahead of time isn't asked";
  }
}

TEST_F(Tickets, ACancelledQuestionChangesNoPeriod) {
  pick(picks("1-8", "", "3,16", ""));
  test::writeRows(store_, kOldRows);
  desk_.choices = {std::nullopt, 2, std::nullopt, 1, 0};
  for (int times = 0; times < 2; ++times) {
    const InitResult result = initTickets(store_, desk_, kPeriod);
    EXPECT_EQ(result.outcome, Outcome::refused);
  }
  EXPECT_EQ(desk_.buttons, (std::vector<std::string>{"删除", "保留", "取消"}));
  for (int times = 0; times < 2; ++times) EXPECT_EQ(clearAllTickets(store_, desk_), Outcome::refused);
  EXPECT_EQ(test::readRows(store_), kOldRows);
  EXPECT_TRUE(desk_.told.empty());
  EXPECT_EQ(clearAllTickets(store_, desk_), Outcome::done);
  EXPECT_EQ(test::readRows(store_), std::vector<Row>{});
}

// At every look at the desk: a stop keeps the rows so far, a failure the old ones.
TEST_F(Tickets, AStopOrAFailureInTheMiddle) {
  const NumberSelection selection = picks("1-12", "", "3,16", "");
  pick(selection);
  for (int k = 0; k < 16; ++k) {
    const bool fails = k % 2, keeps = k >= 8;
    auto all = nestedLoops(selection, 12);  // 1,848 tickets
    if (keeps) all.insert(all.begin(), {kOldRows[0], kOldRows[2]});
    test::writeRows(store_, kOldRows);
    ScriptedDesk desk;
    desk.choices = {keeps};
    int serves = 0;
    desk.course().on_look = [&] {
      if (serves++ != k % 8 / 2) return;
      desk.course().requestStop();
      if (fails) throw std::runtime_error("desk");
    };
    const auto result = test::valueOrNothing([&] { return initTickets(store_, desk, kPeriod); });
    const auto rows = test::readRows(store_);
    const bool reached = serves > k % 8 / 2;
    EXPECT_EQ(reached, k % 8 < 6);
    EXPECT_EQ(desk.course().total, 1848) << "the kept rows bring the bar beyond its end";
    EXPECT_TRUE(result.outcome != Outcome::stopped || desk.course().done == result.rows)
        << desk.course().done;
    EXPECT_EQ(result.outcome == Outcome::stopped, reached && !fails);
    EXPECT_FALSE(desk.course().stopRequested());
    const auto written = static_cast<std::size_t>(result.rows);
    EXPECT_EQ(written < all.size(), reached);
    EXPECT_EQ(rows, reached && fails ? kOldRows : std::vector<Row>(all.begin(), all.begin() + written));
  }
}

TEST_F(Tickets, ASavedSetWritesScoresAlone) {
  test::writeRows(store_, kOldRows);
  const auto never = [](std::size_t) { return false; };
  auto set = loadTickets(store_, kPeriod, never);
  ASSERT_TRUE(set.has_value());
  set->score = {2, 7};
  saveTickets(store_, *set, never);
  auto expected = kOldRows;
  expected[0].mark = expected[0].shrink = 0;
  expected[2].score = 7;
  EXPECT_EQ(test::readRows(store_), expected);
}

TEST_F(Tickets, ListsEveryPeriodInTheOrderOfTheGrid) {
  test::writeRows(store_, kOldRows);
  store_.db().exec("UPDATE 日志表 SET 红球中=6,蓝球中=1 WHERE ID=12");
  store_.db().exec("UPDATE 日志表 SET 红球中=NULL,蓝球中=NULL,蓝球=NULL WHERE ID=40");
  const Reds first{1, 2, 3, 4, 5, 6};
  const std::vector<TicketRow> expected{{1, kPeriod - 1, {first, 7}, 0, 0},
                                        {1, kPeriod, {first, 7}, 0, 0},
                                        {2, kPeriod, {{2, 3, 4, 5, 6, 7}, 16}, 6, 1},
                                        {1, kPeriod + 1, {first, 0}, 0, 0}};
  EXPECT_EQ(loadTicketList(store_), expected);
}

TEST_F(Tickets, AClickOnThePad) {
  const auto empty = picks("", "", "", "");
  const auto five_dan = picks("6-9", "1-5", "1", "");
  const auto lone_dan = picks("1-6", "", "", "7");
  const auto some_blues = picks("1-6", "", "4-6", "");
  const auto at_limit = picks("1-22", "", "1", "");  // 74,613 tickets
  const std::string ask_tuo = "号码：５之前已经被设为胆码，现在要把它改为拖码吗？";
  const std::string ask_dan = "号码：５之前已经被设为拖码，现在要把它改为胆码吗？";
  const std::string no_dan = "红球“胆码”最多只设 ５ 个.";
  const std::string limit = "无法处理更多号码,请将注数控制在 １０００００ 注以内.";
  const struct {
    const char* what;
    NumberSelection before;
    int code;
    PadTab tab;
    std::optional<bool> answer;  // to the question, where one comes
    NumberSelection after;
    std::string said;  // question or message, empty for none
  } clicks[] = {
      {"a free red becomes Tuo", empty, 33, PadTab::tuo, {}, picks("33", "", "", ""), ""},
      {"a Dan becomes Tuo", five_dan, 5, PadTab::tuo, true, picks("5-9", "1-4", "1", ""), ask_tuo},
      {"a Dan stays on no", five_dan, 5, PadTab::tuo, false, five_dan, ask_tuo},
      {"a sixth Dan out of a Tuo", five_dan, 6, PadTab::dan, true, five_dan, no_dan},
      {"a blue too many", at_limit, 102, PadTab::tuo, {}, at_limit, limit + "请先减少几个红球的拖码个数！"},
      {"a lone blue Dan locks the others", lone_dan, 108, PadTab::tuo, {}, lone_dan, ""},
      {"it comes off", lone_dan, 107, PadTab::dan, {}, picks("1-6", "", "", ""), ""},
      {"a new blue Dan stands alone", some_blues, 109, PadTab::dan, {}, picks("1-6", "", "", "9"), ""},
      {"out of a Tuo too", some_blues, 105, PadTab::dan, true, picks("1-6", "", "", "5"), ask_dan},
  };
  for (const auto& click : clicks) {
    SCOPED_TRACE(click.what);
    NumberSelection selection = click.before;
    ScriptedDesk desk;
    if (click.answer) desk.answers = {*click.answer};
    EXPECT_EQ(clickNumber(selection, desk, click.code, click.tab), click.before != click.after);
    EXPECT_EQ(selection, click.after);
    EXPECT_TRUE(desk.answers.empty());
    for (const auto& told : desk.told) desk.asked = {told.text};
    EXPECT_EQ(desk.asked, std::vector<std::string>(click.said.empty() ? 0 : 1, click.said));
  }
}

TEST_F(Tickets, TheSummaryNamesEachCount) {
  EXPECT_EQ(
      combosText({3, 2, 4, 1, 7}),
      "\r\n\r\n\r\n已选红球“拖码”个数： ３\r\n\r\n已选红球“胆码”个数： ２\r\n\r\n已选蓝球“拖码”个数： ４"
      "\r\n\r\n已选蓝球“胆码”个数： １\r\n\r\n过滤缩水前全部号码组合： ７  注");
}

TEST_F(Tickets, AClickOnAMarkedNumberWarnsFirst) {
  store_.db().exec("UPDATE 概率表 SET 概率=-1 WHERE 号码=105");
  desk_.answers = {false};
  const LowChanceNumbers marked = lowChanceNumbers(store_);
  NumberSelection selection = picks("", "", "5", "");
  EXPECT_FALSE(clickNumber(selection, desk_, 105, PadTab::dan, marked, kPeriod))
      << "warned before it is asked";
  EXPECT_TRUE(clickNumber(selection, desk_, 107, PadTab::dan, marked, kPeriod)) << "not marked";
  EXPECT_FALSE(clickNumber(selection, desk_, 105, PadTab::tuo, marked, kPeriod)) << "locked";
  ASSERT_TRUE(desk_.told.size() == 1 && desk_.answers.empty());
  EXPECT_EQ(desk_.told[0].text, "根据概率统计,号码: 05 在第 2026050 期出现的几率较低！");
}

}  // namespace
}  // namespace lotmere

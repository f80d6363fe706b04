#include "tickets/init.hpp"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>

#include "conditions/condition_store.hpp"
#include "core/desk_script.hpp"
#include "core/text.hpp"
#include "support/test_store.hpp"
#include "tickets/ticket_rows.hpp"

namespace lotmere {
namespace {

using test::Row;
using test::TempHome;

constexpr PeriodNo kPeriod = 2026050;

NumberSelection random_Selection(std::mt19937& random, int reds) {
  NumberSelection selection;
  std::uniform_int_distribution<int> red(1, kRedCount), blue(1, kBlueCount), dans(0, 5);
  int left = dans(random);
  for (int i = 0; i < reds; ++i) {
    PickState& state = selection.red[red(random)];
    if (state == PickState::none) state = left-- > 0 ? PickState::dan : PickState::tuo;
  }
  const bool lone = dans(random) == 0;
  for (int i = lone ? 2 : 0; i < 3; ++i)
    selection.blue[blue(random)] = lone ? PickState::dan : PickState::tuo;
  return selection;
}

// The six nested loops over the pools.
std::vector<DrawNumbers> nested_Loops(const NumberSelection& s) {
  std::vector<DrawNumbers> tickets;
  const auto in = [&](int n) { return s.red[n] != PickState::none; };
  int dans = 0;
  for (int n = 1; n <= 33; ++n) dans += s.red[n] == PickState::dan;
  for (int a = 1; a <= 28; ++a)
    for (int b = a + 1; in(a) && b <= 29; ++b)
      for (int c = b + 1; in(b) && c <= 30; ++c)
        for (int d = c + 1; in(c) && d <= 31; ++d)
          for (int e = d + 1; in(d) && e <= 32; ++e)
            for (int f = e + 1; in(e) && f <= 33; ++f) {
              if (!in(f)) continue;
              int held = 0;
              for (const int n : {a, b, c, d, e, f}) held += s.red[n] == PickState::dan;
              for (int blue = 1; blue <= 16; ++blue)
                if (held == dans && s.blue[blue] != PickState::none)
                  tickets.push_back({{a, b, c, d, e, f}, blue});
            }
  return tickets;
}

TEST(Expansion, EqualsTheNestedLoops) {
  std::mt19937 random(3);
  for (int trial = 0; trial < 60; ++trial) {
    const NumberSelection selection = random_Selection(random, 4 + trial % 12);
    std::vector<DrawNumbers> tickets;
    expand_Selection(selection, [&](const Reds& six, const std::vector<int>& blues) {
      for (const int blue : blues) tickets.push_back({six, blue});
      return true;
    });
    const auto expected = nested_Loops(selection);
    EXPECT_EQ(tickets, expected) << trial;
    EXPECT_EQ(count_Combos(selection).tickets, static_cast<std::int64_t>(expected.size())) << trial;
  }
}

class Init : public testing::Test {
 protected:
  void put_Selection(const NumberSelection& selection) {
    StoreChange change(store());
    for (int n = 1; n <= kRedCount; ++n) test::put_Pick(store(), n, selection.red[n]);
    for (int n = 1; n <= kBlueCount; ++n) test::put_Pick(store(), 100 + n, selection.blue[n]);
    change.commit();
  }
  // `reds` numbers from 1 on and two blues.
  NumberSelection pick_Block(int reds) {
    NumberSelection selection;
    for (int n = 1; n <= reds; ++n) selection.red[n] = PickState::tuo;
    selection.blue[3] = selection.blue[16] = PickState::tuo;
    put_Selection(selection);
    return selection;
  }
  // The rows of a selection behind `id`.
  static std::vector<Row> new_Rows(const NumberSelection& selection, int id) {
    std::vector<Row> rows;
    for (const DrawNumbers& numbers : nested_Loops(selection))
      rows.push_back({++id, static_cast<int>(rows.size()) + 1, kPeriod, numbers.reds, numbers.blue});
    return rows;
  }
  Store& store() { return home_.store(); }
  TempHome home_;
};

const std::vector<Row> kOldRows = {{5, 1, kPeriod, {1, 2, 3, 4, 5, 6}, 7, 1, 4, 0, 2},
                                   {8, 1, kPeriod - 1, {1, 2, 3, 4, 5, 6}, 7},
                                   {12, 2, kPeriod, {2, 3, 4, 5, 6, 7}, 16},
                                   {40, 1, kPeriod + 1, {1, 2, 3, 4, 5, 6}, 7}};
const char* kQuestion = "该期数已有记录存在日志表中!要删除它吗？\r\n\r\n按'是',删除它;按'否'保留它!";

TEST_F(Init, WritesTheTicketsBehindTheOldOnes) {
  const NumberSelection selection = pick_Block(8);
  const struct {
    const char* what;
    std::vector<Row> before;
    std::optional<bool> answer;
    std::size_t kept;
    int last_id;
  } cases[] = {
      {"an empty table", {}, {}, 0, 0},
      {"other periods go without a question, their IDs come again", {kOldRows[1], kOldRows[3]}, {}, 0, 0},
      {"yes removes this period's rows, IDs go on behind them", kOldRows, true, 0, 12},
      {"no keeps them, numbers start again at 1", kOldRows, false, 2, 12}};
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    test::write_Rows(store(), row.before);
    std::vector<Row> expected = new_Rows(selection, row.last_id);
    if (row.kept > 0) expected.insert(expected.begin(), {kOldRows[0], kOldRows[2]});
    ScriptedDesk desk;
    if (row.answer) desk.answers = {*row.answer};
    const InitResult result = init_Tickets(store(), desk, kPeriod);
    EXPECT_TRUE(result.done && !result.stopped);
    EXPECT_EQ(result.rows, static_cast<std::int64_t>(56 + row.kept));
    EXPECT_EQ(test::read_Rows(store()), expected);
    EXPECT_EQ(desk.asked, row.answer ? std::vector<std::string>{kQuestion} : std::vector<std::string>{});
    const std::string done = "初始化选号完成!共 " + to_QuanJiao(result.rows) + " 注！";
    ASSERT_EQ(desk.told.size(), 1U);
    EXPECT_EQ(desk.told[0].text, done);
    EXPECT_EQ(desk.running_Text().text(), "\r\n" + done + "\r\n\r\n");
    EXPECT_EQ(desk.jobs_open, 0);
  }
}

TEST_F(Init, ARefusalChangesNothing) {
  const struct {
    const char* what;
    PeriodNo period;
    int reds;
  } cases[] = {{"no period", 0, 8}, {"a negative period", -1, 8}, {"too few numbers", kPeriod, 5}};
  for (const auto& row : cases) {
    pick_Block(row.reds);
    test::write_Rows(store(), kOldRows);
    ScriptedDesk desk;
    const InitResult result = init_Tickets(store(), desk, row.period);
    EXPECT_FALSE(result.done || result.stopped) << row.what;
    EXPECT_EQ(test::read_Rows(store()), kOldRows) << row.what;
    EXPECT_EQ(desk.told.size(), row.reds < 6 ? 1U : 0U) << row.what;
  }
}

TEST_F(Init, AStopKeepsTheRowsSoFarAndSaysNothing) {
  const NumberSelection selection = pick_Block(14);  // 6,006 tickets
  test::write_Rows(store(), kOldRows);
  ScriptedDesk desk;
  desk.running_Text().set("stands");
  desk.answers = {true};
  int serves = 0;
  desk.on_serve = [&] {
    if (++serves == 3) desk.request_Stop();
  };
  const InitResult result = init_Tickets(store(), desk, kPeriod);
  EXPECT_TRUE(result.stopped && !result.done);
  const auto all = new_Rows(selection, 12);
  const auto rows = test::read_Rows(store());
  ASSERT_GT(rows.size(), 0U);
  ASSERT_LT(rows.size(), all.size());
  EXPECT_EQ(rows, std::vector<Row>(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(rows.size())));
  EXPECT_EQ(result.rows, static_cast<std::int64_t>(rows.size()));
  EXPECT_TRUE(desk.told.empty());
  EXPECT_EQ(desk.running_Text().text(), "stands");
  EXPECT_FALSE(desk.stop_Requested());
}

TEST_F(Init, ADeskThatFailsInTheMiddleLeavesTheTableAsItWas) {
  pick_Block(14);
  for (const int k : {0, 1, 5}) {  // 0: at the question
    test::write_Rows(store(), kOldRows);
    ScriptedDesk desk;
    if (k > 0) desk.answers = {true};
    int serves = 0;
    desk.on_serve = [&] {
      if (++serves == k) throw std::logic_error("desk");
    };
    EXPECT_THROW((void)init_Tickets(store(), desk, kPeriod), std::logic_error);
    EXPECT_EQ(test::read_Rows(store()), kOldRows) << k;
    EXPECT_EQ(desk.jobs_open, 0) << k;
  }
}

TEST_F(Init, TicketsOfOtherPeriodsBetweenRemovedOnesStayWhenTheSetIsSaved) {
  std::mt19937 random(5);
  std::uniform_int_distribution<int> coin(0, 2);
  for (int trial = 0; trial < 20; ++trial) {
    std::vector<Row> rows;
    for (int id = 1; id <= 60; ++id)
      rows.push_back(
          {id * 3, id, coin(random) == 0 ? kPeriod - 1 : kPeriod, {6, 5, 4, 3, 3, 33}, 16, id % 2, 3, 1, id});
    test::write_Rows(store(), rows);
    std::size_t served = 0;
    auto set = load_Tickets(store(), kPeriod, [&](std::size_t) { return ++served == 0; });
    ASSERT_TRUE(set.has_value());
    ASSERT_EQ(set->size(), count_Tickets(store(), kPeriod));
    std::vector<Row> expected;
    std::size_t place = 0, kept = 0;
    for (Row row : rows) {
      if (row.period == kPeriod) {
        EXPECT_EQ(reds_Of(set->balls[place]), row.reds);
        EXPECT_EQ(blue_Of(set->balls[place]), row.blue);
        EXPECT_EQ(set->mark[place], 0);
        const std::size_t from = place++;
        if (coin(random) == 1) continue;
        set->move_Row(from, kept);
        row.seq = set->seq[kept] = static_cast<int>(kept) + 1;
        row.mark = set->mark[kept] = static_cast<std::int8_t>(coin(random));
        row.shrink = set->shrink[kept] = static_cast<std::int8_t>(coin(random));
        row.score = set->score[kept];
        row.pick = 0;
        ++kept;
      }
      expected.push_back(row);
    }
    set->truncate(kept);
    save_Tickets(store(), *set, [](std::size_t) { return true; });
    EXPECT_EQ(test::read_Rows(store()), expected) << trial;
    EXPECT_FALSE(load_Tickets(store(), kPeriod, [](std::size_t) { return true; }).has_value()) << "stopped";
  }
}

}  // namespace
}  // namespace lotmere

#include "reduction/smart.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <random>

#include "conditions/condition_store.hpp"
#include "core/desk_script.hpp"
#include "support/test_store.hpp"

namespace lotmere {
namespace {

constexpr PeriodNo kPeriod = 2026050;
using Seven = std::array<int, 7>;

Seven random_Seven(std::mt19937& random) {
  std::uniform_int_distribution<int> red(1, 33), blue(1, 16);
  Seven numbers{};
  for (int& n : numbers) n = red(random);
  std::sort(numbers.begin(), numbers.end() - 1);
  numbers[6] = blue(random);
  return numbers;
}

// The two vectors of 463 differences, compared slot by slot. `draws` are the draws before the period, newest
// first; they fill the rows from 10 downwards, the oldest of the ten in row 10.
int count_AgreeingSlots(const std::vector<Seven>& draws, const Seven& ticket) {
  std::array<Seven, 11> d{};
  const std::size_t used = std::min<std::size_t>(10, draws.size());
  for (std::size_t i = 0; i < used; ++i) d[10 - i] = draws[used - 1 - i];
  const auto fill = [&](std::size_t first_row, const Seven& own) {
    std::array<int, 463> slots{};
    std::size_t k = 0;
    for (std::size_t a = first_row; a < first_row + 9; ++a)
      for (std::size_t b = 0; b < 7; ++b)
        for (std::size_t c = 0; c < 7; ++c) slots[k++] = d[a][b] - own[c];
    for (std::size_t b = 0; b < 6; ++b)
      for (std::size_t c = b + 1; c < 7; ++c) slots[k++] = own[b] - own[c];
    return slots;
  };
  const auto reference = fill(2, d[1]);
  const auto vector = fill(1, ticket);
  int score = 0;
  for (std::size_t i = 0; i < 463; ++i) score += reference[i] == vector[i];
  return score;
}

class Smart : public testing::Test {
 protected:
  // Draws before the period, newest first, and one of the period itself, which takes no part.
  std::vector<Seven> put_Draws(int count) {
    StoreChange change(store());
    store().query(R"(DELETE FROM "历史记录")").run();
    std::vector<Seven> draws;
    for (int i = 0; i <= count; ++i) {
      const Seven s = random_Seven(random_);
      test::put_Draw(store(), kPeriod - 3 * i, "2026-01-01", {{s[0], s[1], s[2], s[3], s[4], s[5]}, s[6]});
      if (i > 0) draws.push_back(s);
    }
    change.commit();
    return draws;
  }
  static TicketSet make_Set(const std::vector<Seven>& tickets) {
    TicketSet set;
    set.period = kPeriod;
    for (const Seven& t : tickets) set.add(pack_Balls({t[0], t[1], t[2], t[3], t[4], t[5]}, t[6]));
    return set;
  }
  Store& store() { return home_.store(); }
  test::TempHome home_;
  std::mt19937 random_{77};
};

TEST_F(Smart, ScoresEqualTheLiteralComparisonAndTheLowerSixtyPercentGo) {
  set_Usage(store(), kSmartOptimisation, true);
  for (int trial = 0; trial < 52; ++trial) {
    SCOPED_TRACE(trial);
    const auto draws = put_Draws(trial % 13);
    std::vector<Seven> tickets;
    const int count = 1 + trial % 17;
    for (int i = 0; i < count; ++i) tickets.push_back(random_Seven(random_));
    if (!draws.empty()) tickets.back() = draws.front();
    if (trial % 3 == 0) std::shuffle(tickets[0].begin(), tickets[0].end() - 1, random_);
    if (trial % 4 == 0) tickets[0][2] = tickets[0][1];
    TicketSet set = make_Set(tickets);
    std::shuffle(set.seq.begin(), set.seq.end(), random_);

    std::vector<int> scores, order(tickets.size());
    for (const Seven& ticket : tickets) scores.push_back(count_AgreeingSlots(draws, ticket));
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), [&](int a, int b) {
      return std::pair(scores[a], set.seq[a]) < std::pair(scores[b], set.seq[b]);
    });
    // Sixty percent, a part of a row counted as a row.
    for (int i = 0; i * 10 < count * 6; ++i) scores[order[i]] = 0;

    ScriptedDesk desk;
    desk.running_Text().set("x");
    optimise_Smart(store(), desk, set, 6);
    EXPECT_EQ(std::vector<int>(set.score.begin(), set.score.end()), scores);
    EXPECT_EQ(desk.running_Text().text(), "x\r\n\r\n[ 智能优化 ] 完 成 ");
    EXPECT_EQ(set.size(), tickets.size());
  }
}

TEST_F(Smart, TiesFallByRunningNumber) {
  set_Usage(store(), kSmartOptimisation, true);
  put_Draws(4);
  TicketSet set = make_Set(std::vector<Seven>(5, Seven{1, 5, 9, 20, 30, 33, 2}));
  set.seq = {4, 1, 5, 3, 2};
  ScriptedDesk desk;
  optimise_Smart(store(), desk, set, 3);
  const int score = set.score[2];
  EXPECT_GT(score, 0);
  EXPECT_EQ(set.score, (std::vector<std::int32_t>{score, 0, score, 0, 0}));
}

TEST_F(Smart, SaysWhenItIsNotUsed) {
  const struct {
    const char* what;
    int usage, type;
    bool tickets;
    const char* text;
  } cases[] = {{"its switch is off", 0, 6, true, "x\r\n\r\n[ 智能优化 ] <未使用这个条件>"},
               {"only exactly 1 is on", 2, 6, true, "x\r\n\r\n[ 智能优化 ] <未使用这个条件>"},
               {"the shrink deletes nothing", 1, 7, true, "x\r\n\r\n[ 智能优化 ] <未使用这个条件>"},
               {"off without tickets", 0, 6, false, "x\r\n\r\n[ 智能优化 ] <未使用这个条件>"},
               {"on without tickets it says nothing", 1, 6, false, "x"}};
  put_Draws(10);
  for (const auto& row : cases) {
    store().query(R"(UPDATE "过滤条件使用情况" SET "使用情况"=? WHERE "条件"=300)").bind(row.usage).run();
    TicketSet set = make_Set(std::vector<Seven>(row.tickets ? 3 : 0, Seven{1, 5, 9, 20, 30, 33, 2}));
    std::fill(set.score.begin(), set.score.end(), 42);
    ScriptedDesk desk;
    desk.running_Text().set("x");
    optimise_Smart(store(), desk, set, row.type);
    EXPECT_EQ(desk.running_Text().text(), row.text) << row.what;
    EXPECT_EQ(set.score, std::vector<std::int32_t>(set.size(), 42)) << row.what;
  }
}

TEST_F(Smart, AStopKeepsOldScoresAndStillClearsTheLowerOnes) {
  set_Usage(store(), kSmartOptimisation, true);
  put_Draws(10);
  TicketSet set = make_Set(std::vector<Seven>(10'000, Seven{1, 5, 9, 20, 30, 33, 2}));
  std::fill(set.score.begin(), set.score.end(), 5000);
  ScriptedDesk desk;
  int serves = 0;
  desk.on_serve = [&] {
    if (++serves == 2) desk.request_Stop();
  };
  optimise_Smart(store(), desk, set, 6);
  EXPECT_EQ(std::count(set.score.begin(), set.score.end(), 0), 6000);
  EXPECT_EQ(std::count(set.score.begin(), set.score.end(), 5000), 4000) << "those not reached keep theirs";
  EXPECT_EQ(desk.running_Text().text(), "\r\n\r\n[ 智能优化 ]优化正在进行中．．．");
}

}  // namespace
}  // namespace lotmere

// Cover shrink, smart optimisation and hints against models that compare ticket by ticket and row by row.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "base/text.hpp"
#include "reduction/hints.hpp"
#include "reduction/shrink.hpp"
#include "reduction/smart.hpp"
#include "reduction/vote_tally.hpp"
#include "support/random_numbers.hpp"
#include "support/store_test.hpp"

namespace lotmere {
namespace {

constexpr PeriodNo kPeriod = 2026050;
using Tickets = std::vector<DrawNumbers>;

TicketSet makeSet(const Tickets& tickets) {
  TicketSet set;
  set.period = kPeriod;
  for (const DrawNumbers& ticket : tickets) set.add(packBalls(ticket.reds, ticket.blue));
  for (std::int32_t& seq : set.seq) seq += 100;
  return set;
}

// The rule word for word: one walk over what is left for every centre. Returns the places of the centres.
std::vector<std::uint32_t> centreByCentre(const Tickets& tickets, int type) {
  std::vector<bool> deleted(tickets.size());
  std::vector<std::uint32_t> centres;
  for (std::uint32_t centre = 0; centre < tickets.size(); ++centre) {
    if (deleted[centre]) continue;
    centres.push_back(centre);
    const Reds& reds = tickets[centre].reds;
    for (std::size_t row = centre + 1; row < tickets.size(); ++row) {
      int shared = tickets[row].blue == tickets[centre].blue;
      for (const int red : tickets[row].reds)
        shared += std::find(reds.begin(), reds.end(), red) != reds.end();
      if (shared >= type) deleted[row] = true;
    }
  }
  return centres;
}

// Tickets out of the first `reds` numbers; with `wild` out of order, some with a red two or three times.
Tickets randomTickets(std::mt19937& random, std::size_t count, int reds, bool wild) {
  Tickets tickets(count);
  for (DrawNumbers& ticket : tickets) {
    ticket = test::randomNumbers(random, reds);
    if (!wild) continue;
    std::shuffle(ticket.reds.begin(), ticket.reds.end(), random);
    for (auto repeats = random() % 3; repeats > 0; --repeats) ticket.reds[repeats] = ticket.reds[0];
  }
  return tickets;
}

using Shrink = test::StoreTest;
using Smart = test::StoreTest;
using Hints = test::StoreTest;

TEST_F(Shrink, EqualsTheRuleCentreByCentre) {
  std::mt19937 random(99);
  for (int trial = 0; trial < 192; ++trial) {
    SCOPED_TRACE(trial);
    const int type = 3 + trial % 4;
    const int reds[] = {33, 12, 33, 9};
    const auto tickets = randomTickets(random, 3 * trial, reds[trial / 4 % 4], trial / 4 % 4 >= 2);
    const auto centres = centreByCentre(tickets, type);
    TicketSet set = makeSet(tickets);
    ScriptedDesk desk;
    EXPECT_EQ(shrinkCover(store_, desk, set, type, false), static_cast<std::int64_t>(centres.size()));
    EXPECT_EQ(set.origin, centres);
    for (std::size_t row = 0; row < set.size(); ++row) {
      EXPECT_EQ(set.shrink[row], type);
      EXPECT_EQ(set.seq[row], static_cast<int>(row) + 1);
      EXPECT_EQ(set.balls[row], packBalls(tickets[centres[row]].reds, tickets[centres[row]].blue));
    }
  }
}

// The first `reached` tickets are judged, the others stay behind them as they were.
void expectStopped(const TicketSet& set, const Tickets& tickets, std::size_t reached, int type) {
  const Tickets judged(tickets.begin(), tickets.begin() + static_cast<std::ptrdiff_t>(reached));
  std::vector<std::uint32_t> expected = centreByCentre(judged, type);
  const std::size_t centres = expected.size();
  for (std::size_t row = reached; row < tickets.size(); ++row)
    expected.push_back(static_cast<std::uint32_t>(row));
  ASSERT_EQ(set.origin, expected);
  for (std::size_t i = 0; i < set.size(); ++i) {
    const DrawNumbers& ticket = tickets[expected[i]];
    ASSERT_EQ(set.balls[i], packBalls(ticket.reds, ticket.blue));
    ASSERT_EQ(set.shrink[i], i < centres ? type : 0);
    ASSERT_EQ(set.seq[i], static_cast<int>(i < centres ? i + 1 : expected[i] + 101));
  }
}

TEST_F(Shrink, AStopLeavesTheTicketsNotReached) {
  std::mt19937 random(4);
  const auto tickets = randomTickets(random, 9000, 33, true);
  for (const int stop_at : {1, 2, 4}) {
    TicketSet set = makeSet(tickets);
    ScriptedDesk desk;
    int served = 0;
    desk.course().on_look = [&] {
      if (++served == stop_at) desk.course().requestStop();
    };
    const auto centres = shrinkCover(store_, desk, set, 4, false);
    const auto reached = static_cast<std::size_t>(desk.course().done);  // as the bar tells it
    EXPECT_EQ(served, stop_at);
    EXPECT_TRUE(reached > 0 && reached <= 2500U * static_cast<unsigned>(stop_at)) << reached;
    expectStopped(set, tickets, reached, 4);
    const auto marked = std::ranges::count(set.shrink, std::int8_t{4});
    EXPECT_TRUE(centres == marked && marked > 0);
  }
}

// A stop that came during the optimisation before lets one centre stand and compares one ticket with it.
TEST_F(Shrink, AStopBeforehandComparesOneTicket) {
  std::mt19937 random(4);
  auto tickets = randomTickets(random, 100, 33, false);
  for (const bool near : {false, true}) {
    // Three reds and the blue in common, which is just enough.
    if (near) tickets[1] = tickets[0];
    for (const int place : {0, 2, 4}) tickets[1].reds[place] = near ? 0 : tickets[1].reds[place];
    TicketSet set = makeSet(tickets);
    ScriptedDesk desk;
    desk.course().requestStop();
    EXPECT_EQ(shrinkCover(store_, desk, set, 4, false), 1);
    expectStopped(set, tickets, near ? 2 : 1, 4);
  }
}

// With an effort: the tickets of the search in their order, marked and numbered as ever, between the same
// lines.
TEST_F(Shrink, SearchesForFewerCentres) {
  std::mt19937 random(7);
  const auto tickets = randomTickets(random, 500, 10, false);
  TicketSet plain = makeSet(tickets), set = makeSet(tickets);
  ScriptedDesk desk;
  const auto more = shrinkCover(store_, desk_, plain, 6, false);
  const auto centres = shrinkCover(store_, desk, set, 6, false, 1);
  EXPECT_LT(centres, more);
  ASSERT_EQ(set.size(), static_cast<std::size_t>(centres));
  EXPECT_TRUE(std::ranges::is_sorted(set.origin));
  for (std::size_t row = 0; row < set.size(); ++row) {
    const DrawNumbers& ticket = tickets[set.origin[row]];
    EXPECT_EQ(set.balls[row], packBalls(ticket.reds, ticket.blue));
    EXPECT_TRUE(set.shrink[row] == 6 && set.seq[row] == static_cast<int>(row) + 1);
  }
  EXPECT_EQ(desk.runningText().text(),
            "\r\n\r\n[ 智能优化 ] <未使用这个条件>\r\n\r\n[保六型]缩水后余：" + toFullWidth(centres) + " 注");
  const std::vector<std::string> statuses = desk.statuses;
  ASSERT_GT(statuses.size(), 1U);
  EXPECT_EQ(statuses[statuses.size() - 2], "精简缩水：目前最少 " + toFullWidth(centres) + " 注");
  EXPECT_EQ(statuses.back(), "") << "none is left";

  // A stop keeps the best complete cover; one that came beforehand is that of the plain shrink.
  ScriptedDesk stopping;
  stopping.course().on_look = [&] { stopping.course().requestStop(); };
  TicketSet stopped = makeSet(tickets);
  const auto kept = shrinkCover(store_, stopping, stopped, 6, false, 9);
  EXPECT_TRUE(kept >= centres && kept <= more);
  EXPECT_EQ(std::ranges::count(stopped.shrink, std::int8_t{6}), kept);
  TicketSet late = makeSet(tickets);
  EXPECT_EQ(shrinkCover(store_, stopping, late, 6, false, 9), 1);
  EXPECT_GT(late.size(), 400U);

  TicketSet seven = makeSet(tickets);
  EXPECT_EQ(shrinkCover(store_, desk_, seven, 7, false, 9), 0);
  EXPECT_EQ(seven.size(), tickets.size());
}

// However many of them repeat a red, a few thousand tickets stand between two looks at the desk.
TEST_F(Shrink, ServesTheDeskOverTicketsThatRepeatARed) {
  std::mt19937 random(24);
  TicketSet set = makeSet(randomTickets(random, 60'000, 33, true));
  std::int64_t shown = 0;
  int served = 0;
  desk_.course().on_look = [&] {
    EXPECT_LE(desk_.course().done - shown, 2500);
    shown = desk_.course().done;
    ++served;
  };
  EXPECT_GT(shrinkCover(store_, desk_, set, 6, false), 10'000);
  EXPECT_GE(served, 60'000 / 2500 - 1);
}

// `draws` are the draws before the period, newest first; with fewer than ten the newest rows stay zero. The
// differences of the newest row to the nine behind the first stand against those of the ticket to the nine
// from the first on; one slot more always agrees.
int countAgreeingSlots(const Tickets& draws, const DrawNumbers& ticket) {
  const auto seven = [](const DrawNumbers& numbers) {
    const auto& [a, b, c, d, e, f] = numbers.reds;
    return std::array{a, b, c, d, e, f, numbers.blue};
  };
  std::array<std::array<int, 7>, 10> row{};
  const std::size_t used = std::min<std::size_t>(10, draws.size());
  std::transform(draws.begin(), draws.begin() + used, row.end() - used, seven);
  const auto own = seven(ticket);
  int score = 1;
  for (int b = 0; b < 7; ++b)
    for (int c = 0; c < 7; ++c) {
      for (int a = 0; a < 9; ++a) score += row[a][b] - own[c] == row[a + 1][b] - row[0][c];
      if (b < c) score += own[b] - own[c] == row[0][b] - row[0][c];
    }
  return score;
}

// Puts the draws before the period, newest first, and one of the period itself, which takes no part.
void putDraws(Store& store, const Tickets& draws) {
  store.query(R"(DELETE FROM "历史记录")").run();
  std::vector<StoredDraw> rows{{kPeriod, {{1, 2, 3, 4, 5, 6}, 7}}};
  for (const DrawNumbers& draw : draws) rows.push_back({kPeriod - 3 * static_cast<int>(rows.size()), draw});
  test::putDraws(store, rows);
}

TEST_F(Smart, ScoresEqualTheLiteralComparisonAndTheLowerSixtyPercentGo) {
  std::mt19937 random(77);
  for (int trial = 0; trial < 52; ++trial) {
    SCOPED_TRACE(trial);
    const auto draws = randomTickets(random, trial % 13, 33, false);
    putDraws(store_, draws);
    const int count = 1 + trial % 17;
    auto tickets = randomTickets(random, count, 33, trial % 2);
    if (!draws.empty()) tickets.back() = draws.front();
    if (trial % 5 == 0) std::fill(tickets.begin(), tickets.end(), tickets[0]);  // ties, which fall by number
    TicketSet set = makeSet(tickets);
    std::shuffle(set.seq.begin(), set.seq.end(), random);

    std::vector<int> scores, order(tickets.size());
    for (const DrawNumbers& ticket : tickets) scores.push_back(countAgreeingSlots(draws, ticket));
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), [&](int a, int b) {
      return std::pair(scores[a], set.seq[a]) < std::pair(scores[b], set.seq[b]);
    });
    // Sixty percent, a part of a row counted as a row.
    for (int i = 0; i * 10 < count * 6; ++i) scores[order[i]] = 0;

    ScriptedDesk desk;
    optimiseSmart(store_, desk, set, 6, true);
    EXPECT_EQ(std::vector<int>(set.score.begin(), set.score.end()), scores);
    EXPECT_EQ(desk.runningText().text(), "\r\n\r\n[ 智能优化 ] 完 成 ");
  }
}

// Types that name none of 3 to 6 delete nothing and only count.
TEST_F(Smart, IsNotUsedWithoutItsSwitchOrWhereNothingIsDeleted) {
  for (const auto& [used, type] : {std::pair{false, 6}, {true, 7}, {true, 12}, {true, 2}, {true, -1}}) {
    TicketSet set = makeSet(Tickets(2, {{1, 2, 3, 4, 5, 6}, 7}));
    set.score = {42, 42};
    ScriptedDesk desk;
    EXPECT_EQ(shrinkCover(store_, desk, set, type, used), type == 6) << type;
    EXPECT_EQ(desk.runningText().text(),
              std::string("\r\n\r\n[ 智能优化 ] <未使用这个条件>\r\n\r\n") +
                  (type == 6 ? "[保六型]缩水后余：１ 注" : "[保七型]缩水后余：２ 注"));
    EXPECT_EQ(set.score[0], 42);
    EXPECT_EQ(set.seq, type == 6 ? std::vector{1} : (std::vector{101, 102})) << type;
  }
}

TEST_F(Smart, AStopKeepsOldScoresAndStillClearsTheLowerOnes) {
  TicketSet set = makeSet(Tickets(10'000));
  std::fill(set.score.begin(), set.score.end(), 5000);
  ScriptedDesk desk;
  int serves = 0;
  desk.course().on_look = [&] {
    if (++serves == 2) desk.course().requestStop();
  };
  optimiseSmart(store_, desk, set, 6, true);
  EXPECT_EQ(std::count(set.score.begin(), set.score.end(), 0), 6000);
  EXPECT_EQ(std::count(set.score.begin(), set.score.end(), 5000), 4000) << "those not reached keep theirs";
  EXPECT_EQ(desk.runningText().text(), "\r\n\r\n[ 智能优化 ]优化正在进行中．．．");
}

std::string chancesText(Store& store) {
  Query rows = store.query(R"(SELECT group_concat("号码" || ':' || "概率", ' ') FROM "概率表")");
  return rows.next() ? rows.text(0) : "";
}

// The hints statement by statement; `draws` are those before the period, newest first.
void markOnTheTable(Store& store, const Tickets& draws) {
  const auto guess = [](int seed, int period, int factor, int count) {
    return static_cast<int>(std::nearbyint(rndFixed(-(seed + period)) * factor + 1)) % count + 1;
  };
  store.db().exec("UPDATE 概率表 SET 概率=0");
  for (const auto& [base, red_top, blue_top] : {std::tuple{0, 2, 2}, {6000, 2, 2}, {12000, 2, 1}}) {
    std::map<int, int> votes;
    for (int i = base + 1; draws.size() >= 5 && i <= base + 1988; ++i) {
      for (const int red : draws[1].reds)
        if (guess(i, kPeriod - 1, 12345, 33) == red) ++votes[guess(i, kPeriod, 12345, 33)];
      if (i <= base + 518 && (guess(i, kPeriod - 1, 45678, 16) == draws[1].blue ||
                              guess(i, kPeriod - 2, 45678, 16) == draws[2].blue))
        ++votes[100 + guess(i, kPeriod, 45678, 16)];
    }
    if (!votes.empty() && votes.rbegin()->first < 100) continue;
    for (const auto& [code, count] : votes)
      store.query("UPDATE 概率表 SET 概率=? WHERE 号码=? AND 概率>=0").bind(count, code).run();
    for (const auto& [colour, top] : {std::pair{"<100", red_top}, {">100", blue_top}})
      store.db().exec("UPDATE 概率表 SET 概率=-1 WHERE 号码 IN (SELECT 号码 FROM 概率表 WHERE 号码" +
                      std::string(colour) + " ORDER BY 概率 DESC,号码 ASC LIMIT " + std::to_string(top) +
                      ")");
    store.db().exec("UPDATE 概率表 SET 概率=0 WHERE 概率>0");
  }
}

TEST_F(Hints, EqualTheStatementsOnTheTable) {
  StoreChange all(store_);  // one change of all trials, so that they don't wait for the disk
  std::mt19937 random(5);
  for (std::size_t trial = 0; trial < 260; ++trial) {
    SCOPED_TRACE(trial);
    auto draws = randomTickets(random, trial % 13, 33, false);
    const bool unmarked = trial % 5 == 4 && draws.size() >= 5;
    for (DrawNumbers& draw : draws) draw.blue *= !unmarked;  // no guess hits a 0
    putDraws(store_, draws);
    hintGaiLv(store_, kPeriod);
    const std::string marks = chancesText(store_);
    const auto [reds, blues] = lowChanceNumbers(store_);
    EXPECT_TRUE(reds.size() == (unmarked ? 0 : 6) && blues.size() == (unmarked ? 0 : 5)) << marks;
    markOnTheTable(store_, draws);
    EXPECT_EQ(marks, chancesText(store_));
  }
}

TEST(VoteTally, CountsWithAHistoryAloneAndAnswersWithinItsBounds) {
  VoteTally tally;
  tally.target_period = kPeriod;
  EXPECT_TRUE(tally.redVotes(7) == 0 && tally.blueVotes(16) == 0 && !tally.ready);
  tally.setDraws({{{}, {{1, 2, 3, 4, 5, 6}, 7}, {}}});
  for (int n = 1; n <= 33; ++n) EXPECT_GT(tally.redVotes(n), 0) << "of some eleven";
  EXPECT_TRUE(tally.redVotes(0) == -1 && tally.redVotes(100) == 0 && tally.redVotes(101) == -1);
  EXPECT_TRUE(tally.blueVotes(0) == -1 && tally.blueVotes(17) == -1 && tally.ready);
}

}  // namespace
}  // namespace lotmere

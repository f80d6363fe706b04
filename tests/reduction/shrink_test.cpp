#include "reduction/shrink.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>

#include "conditions/condition_store.hpp"
#include "core/desk_script.hpp"
#include "core/text.hpp"
#include "reduction/cover.hpp"
#include "support/test_store.hpp"

namespace lotmere {
namespace {

struct Ticket {
  Reds reds;
  int blue;
};

TicketSet make_Set(const std::vector<Ticket>& tickets) {
  TicketSet set;
  set.period = 2026050;
  for (const Ticket& ticket : tickets) set.add(pack_Balls(ticket.reds, ticket.blue));
  for (std::int32_t& seq : set.seq) seq += 100;
  return set;
}

// The rule word for word: a mark table, and one walk over what is left for every centre. Returns the places
// of the centres.
std::vector<std::size_t> centre_ByCentre(const std::vector<Ticket>& tickets, int type) {
  std::vector<int> state(tickets.size(), 0);  // 0 not looked at, above 0 a centre, -1 deleted
  std::vector<std::size_t> centres;
  for (std::size_t centre = 0; centre < tickets.size(); ++centre) {
    if (state[centre] != 0) continue;
    state[centre] = type;
    centres.push_back(centre);
    std::array<int, 201> marks{};
    for (const int red : tickets[centre].reds) marks[static_cast<std::size_t>(red)] = 1;
    marks[static_cast<std::size_t>(100 + tickets[centre].blue)] = 1;
    for (std::size_t row = centre + 1; row < tickets.size(); ++row) {
      int shared = marks[static_cast<std::size_t>(100 + tickets[row].blue)];
      for (const int red : tickets[row].reds) shared += marks[static_cast<std::size_t>(red)];
      if (state[row] >= 0 && shared >= type) state[row] = -1;
    }
  }
  return centres;
}

// Tickets out of the first `reds` numbers; with `wild` some out of order, some with a red two or three times.
std::vector<Ticket> random_Tickets(std::mt19937& random, int count, int reds, bool wild) {
  std::uniform_int_distribution<int> red(1, reds), blue(1, 4), place(0, 5);
  std::vector<Ticket> tickets;
  while (static_cast<int>(tickets.size()) < count) {
    Ticket ticket{{}, blue(random)};
    for (int& n : ticket.reds) n = red(random);
    std::array<int, 6> sorted = ticket.reds;
    std::sort(sorted.begin(), sorted.end());
    const bool repeats = std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end();
    if (!wild && repeats) continue;
    if (!wild) ticket.reds = sorted;
    tickets.push_back(ticket);
  }
  return tickets;
}

struct Sets {
  std::string name;
  int reds;
  bool wild;
};
class RandomShrink : public testing::TestWithParam<Sets> {};

TEST_P(RandomShrink, EqualsTheRuleCentreByCentre) {
  test::TempHome home;
  std::mt19937 random(99);
  for (int type = 3; type <= 6; ++type) {
    for (int trial = 0; trial < 12; ++trial) {
      const auto tickets = random_Tickets(random, 20 + 40 * trial, GetParam().reds, GetParam().wild);
      const auto centres = centre_ByCentre(tickets, type);
      TicketSet set = make_Set(tickets);
      ScriptedDesk desk;
      EXPECT_EQ(shrink_Cover(home.store(), desk, set, type), static_cast<std::int64_t>(centres.size()));
      EXPECT_EQ(std::vector<std::size_t>(set.origin.begin(), set.origin.end()), centres)
          << type << " " << trial;
      for (std::size_t row = 0; row < set.size(); ++row) {
        EXPECT_EQ(set.shrink[row], type);
        EXPECT_EQ(set.seq[row], static_cast<int>(row) + 1);
        EXPECT_EQ(set.balls[row], pack_Balls(tickets[centres[row]].reds, tickets[centres[row]].blue));
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Sets, RandomShrink,
                         testing::Values(Sets{"OfAllNumbers", 33, false}, Sets{"OfTwelveReds", 12, false},
                                         Sets{"UnsortedAndRepeatedReds", 33, true},
                                         Sets{"RepeatedRedsOfNine", 9, true}),
                         [](const auto& set) { return set.param.name; });

TEST(Shrink, KeepsTheFirstOfTicketsThatShareEnough) {
  const Ticket a{{1, 2, 3, 4, 5, 6}, 1}, b{{1, 2, 3, 7, 8, 9}, 1}, c{{1, 2, 3, 4, 10, 11}, 2},
      d{{12, 13, 14, 15, 16, 17}, 3}, e{{1, 2, 12, 13, 14, 18}, 3};
  const struct {
    const char* what;
    std::vector<Ticket> tickets;
    int type;
    std::vector<std::uint32_t> kept;
    const char* line;
  } cases[] = {{"the blue counts as one of seven", {a, b, c, d, e}, 4, {0, 3}, "[保四型]缩水后余：２ 注"},
               {"six shared reds are six", {a, {a.reds, 2}}, 6, {0}, "[保六型]缩水后余：１ 注"},
               {"the same ticket twice stays with seven", {a, a}, 7, {0, 1}, "[保七型]缩水后余：２ 注"},
               {"a red 16 is no blue 16",
                {{{1, 2, 3, 4, 5, 16}, 9}, {{1, 2, 20, 21, 22, 23}, 16}},
                3,
                {0, 1},
                "[保三型]缩水后余：２ 注"},
               {"a red that stands twice in the later ticket counts twice",
                {a, {{1, 1, 1, 30, 31, 32}, 9}},
                3,
                {0},
                "[保三型]缩水后余：１ 注"},
               {"a red that stands twice in the centre counts once",
                {{{1, 1, 1, 30, 31, 32}, 9}, a},
                3,
                {0, 1},
                "[保三型]缩水后余：２ 注"},
               {"no ticket", {}, 3, {}, "[保三型]缩水后余：０ 注"},
               {"a type above seven only counts", {a, a}, 12, {0, 1}, "[保七型]缩水后余：２ 注"},
               {"a type that names none deletes nothing", {a, a}, 2, {0, 1}, "[保七型]缩水后余：２ 注"},
               {"nor does a negative one", {a, a}, -1, {0, 1}, "[保七型]缩水后余：２ 注"}};
  test::TempHome home;
  for (const auto& row : cases) {
    TicketSet set = make_Set(row.tickets);
    ScriptedDesk desk;
    desk.running_Text().set("x");
    shrink_Cover(home.store(), desk, set, row.type);
    EXPECT_EQ(set.origin, row.kept) << row.what;
    EXPECT_EQ(desk.running_Text().text(),
              std::string("x\r\n\r\n[ 智能优化 ] <未使用这个条件>\r\n\r\n") + row.line)
        << row.what;
    const bool counts = row.type < 3 || row.type > 6;
    for (std::size_t i = 0; i < set.size(); ++i) {
      EXPECT_EQ(set.shrink[i], counts ? 0 : row.type) << row.what;
      EXPECT_EQ(set.seq[i], static_cast<int>(i) + (counts ? 101 : 1)) << row.what;
    }
  }
}

TEST(Shrink, AStopLeavesTheTicketsNotReached) {
  test::TempHome home;
  std::mt19937 random(4);
  const auto tickets = random_Tickets(random, 9000, 33, false);
  TicketSet set = make_Set(tickets);
  ScriptedDesk desk;
  desk.on_serve = [&] { desk.request_Stop(); };
  const std::int64_t centres = shrink_Cover(home.store(), desk, set, 4);
  ASSERT_GT(centres, 0);
  const auto literal = centre_ByCentre(tickets, 4);
  ASSERT_LT(centres, static_cast<std::int64_t>(literal.size()));
  const auto visited = tickets.size() - (set.size() - static_cast<std::size_t>(centres));
  for (std::size_t i = 0; i < set.size(); ++i) {
    const bool centre = i < static_cast<std::size_t>(centres);
    ASSERT_EQ(set.origin[i], centre ? literal[i] : visited + i - static_cast<std::size_t>(centres));
    ASSERT_EQ(set.shrink[i], centre ? 4 : 0);
    ASSERT_EQ(set.seq[i], static_cast<int>(centre ? i + 1 : set.origin[i] + 101));
  }
  EXPECT_TRUE(desk.running_Text().text().ends_with("[保四型]缩水后余：" + to_QuanJiao(centres) + " 注"));
  EXPECT_EQ(desk.jobs_open, 0);
}

// A stop that came during the optimisation before: one centre, one comparison.
TEST(Shrink, AStopBeforehandLeavesOneCentre) {
  const Ticket a{{1, 2, 3, 4, 5, 6}, 1}, near{{1, 2, 3, 4, 5, 7}, 1}, far{{11, 12, 13, 14, 15, 16}, 2};
  const struct {
    const char* what;
    std::vector<Ticket> tickets;
    std::vector<std::uint32_t> left;
  } cases[] = {{"the second ticket is covered and goes", {a, near, near}, {0, 2}},
               {"the second ticket is not covered and stays as it was", {a, far, near}, {0, 1, 2}},
               {"a lone ticket", {a}, {0}}};
  test::TempHome home;
  for (const auto& row : cases) {
    TicketSet set = make_Set(row.tickets);
    ScriptedDesk desk;
    desk.request_Stop();
    EXPECT_EQ(shrink_Cover(home.store(), desk, set, 4), 1) << row.what;
    EXPECT_EQ(set.origin, row.left) << row.what;
    for (std::size_t i = 0; i < set.size(); ++i) EXPECT_EQ(set.shrink[i], i == 0 ? 4 : 0) << row.what;
  }
}

}  // namespace
}  // namespace lotmere

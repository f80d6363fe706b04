// The search for fewer tickets: its parts against literal counts, the whole against the promise.
#include "reduction/cover_search.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <set>

#include "reduction/cover.hpp"
#include "reduction/shrink.hpp"
#include "reduction/subset_gains.hpp"
#include "reduction/symmetry.hpp"
#include "support/desk_script.hpp"
#include "support/random_numbers.hpp"
#include "support/scripted_course.hpp"

namespace lotmere {
namespace {

using Tickets = std::vector<Balls>;
using Places = std::vector<std::uint32_t>;

Tickets randomTickets(std::mt19937& random, std::size_t count, int reds, int blues) {
  Tickets tickets;
  for (std::size_t i = 0; i < count; ++i) {
    DrawNumbers numbers = test::randomNumbers(random, reds);
    numbers.blue = 1 + numbers.blue % blues;
    std::shuffle(numbers.reds.begin(), numbers.reds.end(), random);
    tickets.push_back(packBalls(numbers.reds, numbers.blue));
  }
  return tickets;
}

// Every six out of the first `reds` numbers that the test lets pass, with each of the blues.
template <class Passes>
Tickets expand(int reds, int blues, Passes&& passes) {
  Tickets tickets;
  for (unsigned set = 0; set < 1U << reds; ++set) {
    if (std::popcount(set) != kRedsPerTicket) continue;
    Reds six{};
    for (int n = 1, i = 0; n <= reds; ++n)
      if (set >> (n - 1) & 1) six[i++] = n;
    if (!passes(six)) continue;
    for (int blue = 1; blue <= blues; ++blue) tickets.push_back(packBalls(six, blue));
  }
  return tickets;
}
Tickets expand(int reds, int blues) {
  return expand(reds, blues, [](const Reds&) { return true; });
}

// What the search promises, word for word.
void expectCover(const Tickets& tickets, const Places& kept, int shared) {
  EXPECT_TRUE(std::ranges::is_sorted(kept));
  std::set<int> blues, kept_blues;
  for (const std::uint32_t place : kept) {
    ASSERT_LT(place, tickets.size());
    kept_blues.insert(blueOf(tickets[place]));
  }
  for (std::uint32_t row = 0; row < tickets.size(); ++row) {
    blues.insert(blueOf(tickets[row]));
    ASSERT_TRUE(std::ranges::any_of(kept, [&](std::uint32_t place) {
      return place == row || countShared(tickets[place], tickets[row]) >= shared;
    }));
  }
  for (const int blue : blues) EXPECT_TRUE(blue == 0 || kept_blues.contains(blue)) << "lost blue " << blue;
}

TEST(SubsetGains, EqualTheCountOverAllTicketsForEveryN) {
  std::mt19937 random(11);
  for (int shared = 2; shared <= 6; ++shared) {
    const CoverTickets tickets(randomTickets(random, 300, 9, 3));
    SubsetGains gains(tickets, shared);
    std::vector<int> weight(tickets.size());
    for (int i = 0; i < 400; ++i) {
      const auto ticket = static_cast<std::uint32_t>(random() % tickets.size());
      const int change = static_cast<int>(random() % 7) - 2;
      weight[ticket] += change;
      gains.change(ticket, change);
    }
    for (std::uint32_t ticket = 0; ticket < tickets.size(); ++ticket) {
      int covered = 0;
      for (std::uint32_t other = 0; other < tickets.size(); ++other) {
        const std::uint64_t both = tickets.masks()[tickets.six(ticket)] & tickets.masks()[tickets.six(other)];
        if (std::popcount(both) + (tickets.blue(ticket) == tickets.blue(other)) >= shared)
          covered += weight[other];
      }
      ASSERT_EQ(gains.of(ticket), covered) << shared;
    }
  }
}

TEST(CoverMatrices, HoldWhatTicketsCoverWhateverTheSymmetry) {
  const CoverTickets tickets(expand(8, 3));
  const auto symmetries = findSymmetries(tickets);
  ASSERT_GT(symmetries.size(), 5U);
  FreeCourse course;
  SearchRun run(course, 1'000'000'000);
  for (const Symmetry& symmetry : symmetries) {
    const Orbits orbits = findOrbits(tickets, symmetry);
    const auto matrix = makeMatrix(tickets, 5, orbits, 0, 1'000'000, run);
    ASSERT_TRUE(matrix);
    for (std::uint32_t column = 0; column < matrix->columns(); ++column) {
      std::set<std::uint32_t> near;
      for (const std::uint32_t ticket : orbits.tickets[column])
        for (std::uint32_t other = 0; other < tickets.size(); ++other) {
          const std::uint64_t both =
              tickets.masks()[tickets.six(ticket)] & tickets.masks()[tickets.six(other)];
          if (std::popcount(both) + (tickets.blue(ticket) == tickets.blue(other)) >= 5)
            near.insert(orbits.of[other]);
        }
      const auto list = matrix->near[column];
      ASSERT_EQ(std::set(list.begin(), list.end()), near);
      ASSERT_EQ(list.size(), near.size()) << "each once";
      ASSERT_EQ(matrix->cost[column], orbits.tickets[column].size());
    }
  }
  EXPECT_FALSE(makeMatrix(tickets, 5, findOrbits(tickets, {}), 0, 1000, run)) << "beyond the limit";
}

TEST(CoverSearch, KeepsThePromiseOverRandomSets) {
  std::mt19937 random(3);
  for (int trial = 0; trial < 40; ++trial) {
    const int shared = 3 + trial % 4;
    SCOPED_TRACE(testing::Message() << "trial " << trial << " N " << shared);
    auto tickets = randomTickets(random, 1 + random() % 400, 7 + trial % 12, 1 + trial % 5);
    if (trial % 3 == 0) tickets.insert(tickets.end(), tickets.begin(), tickets.begin() + tickets.size() / 4);
    if (trial % 4 == 3)  // a red twice, a number outside the game
      for (std::size_t i = 0; i < tickets.size(); i += 9) tickets[i] = packBalls({1, 1, 3, 5, 9, 40}, trial);
    test::ScriptedCourse course(20);
    const SmallCover cover = searchCover(tickets, shared, 1, course);
    EXPECT_EQ(cover.fault, CoverFault::none);
    expectCover(tickets, cover.kept, shared);
    EXPECT_LE(cover.kept.size(), plainCover(tickets, shared).size() + 5);

    test::ScriptedCourse again(20);
    EXPECT_EQ(searchCover(tickets, shared, 1, again).kept, cover.kept) << "the same input, the same cover";
  }
}

TEST(CoverSearch, ReachesSizesThatAreKnown) {
  const auto filtered = [](const Reds& six) {
    const int sum = six[0] + six[1] + six[2] + six[3] + six[4] + six[5];
    const int odd = six[0] % 2 + six[1] % 2 + six[2] % 2 + six[3] % 2 + six[4] % 2 + six[5] % 2;
    return sum > 36 && sum < 58 && odd > 1 && odd < 5;
  };
  const struct {
    const char* name;
    Tickets tickets;
    int shared;
    std::size_t most;
  } rows[] = {
      {"12 reds, one blue", expand(12, 1), 6, 38},
      {"13 reds, one blue", expand(13, 1), 6, 61},
      {"14 reds, one blue, N 5", expand(14, 1), 5, 14},
      {"10 reds, two blues, N 5", expand(10, 2), 5, 5},
      {"12 reds, four blues, N 4: one for each blue", expand(12, 4), 4, 4},
      {"a filtered set, N 3: one for each blue", expand(16, 8, filtered), 3, 8},
      {"a filtered set, N 6, blue by blue", expand(12, 3, filtered), 6, 90},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    FreeCourse course;
    std::vector<std::size_t> told;
    const SmallCover cover =
        searchCover(row.tickets, row.shared, 1, course, [&](std::size_t size) { told.push_back(size); });
    EXPECT_EQ(cover.fault, CoverFault::none);
    expectCover(row.tickets, cover.kept, row.shared);
    EXPECT_LE(cover.kept.size(), row.most);
    EXPECT_LT(cover.kept.size(), plainCover(row.tickets, row.shared).size());
    ASSERT_FALSE(told.empty());
    EXPECT_EQ(told.back(), cover.kept.size());
    EXPECT_TRUE(std::ranges::is_sorted(told, std::greater{})) << "each better than the one before";
  }
}

// The smallest sets: a few orbits, one of which may cover everything and still cost more than a lower bound.
TEST(CoverSearch, EndsOverTheSmallestFullSets) {
  FreeCourse course;
  for (int reds = 6; reds <= 8; ++reds)
    for (int blues = 1; blues <= 4; ++blues)
      for (int shared = 3; shared <= 6; ++shared) {
        SCOPED_TRACE(testing::Message() << reds << " reds, " << blues << " blues, N " << shared);
        const Tickets tickets = expand(reds, blues);
        expectCover(tickets, searchCover(tickets, shared, 1, course).kept, shared);
      }
}

TEST(CoverSearch, AStopKeepsACompleteCoverThatNeverGrowsWithTime) {
  const Tickets tickets = expand(13, 2);
  std::size_t before = plainCover(tickets, 6).size() + 1;
  for (const int looks : {1, 2, 5, 20, 80}) {
    test::ScriptedCourse course(looks);
    const SmallCover cover = searchCover(tickets, 6, 9, course);
    expectCover(tickets, cover.kept, 6);
    EXPECT_LE(cover.kept.size(), before);
    EXPECT_LE(course.looks(), looks + 1) << "ends soon";
    before = cover.kept.size();
  }
}

TEST(CoverCheck, NamesEachFault) {
  const Tickets tickets = {packBalls({1, 2, 3, 4, 5, 6}, 1), packBalls({1, 2, 3, 4, 5, 7}, 1),
                           packBalls({1, 2, 3, 4, 5, 8}, 2), packBalls({20, 21, 22, 23, 24, 25}, 1)};
  using enum CoverFault;
  const struct {
    const char* name;
    Places kept;
    int shared;
    CoverFault fault;
  } rows[] = {
      {"one of each", {0, 2, 3}, 6, none},
      {"five of the second blue's reds are enough", {2, 3}, 5, none},
      {"five shared reds of another blue aren't six", {0, 3}, 6, ticket_uncovered},
      {"a ticket far from all others", {0, 2}, 5, ticket_uncovered},
      {"nothing kept", {}, 3, ticket_uncovered},
      {"a blue gone", {0, 3}, 5, blue_lost},
      {"a place behind the last", {0, 2, 3, 4}, 6, not_of_the_set},
      {"a place twice", {0, 2, 2, 3}, 6, not_of_the_set},
      {"out of order", {2, 0, 3}, 6, not_of_the_set},
  };
  for (const auto& row : rows) EXPECT_EQ(checkCover(tickets, row.kept, row.shared), row.fault) << row.name;
}

// A search gone wrong costs tickets, never the promise.
TEST(CoverCheck, TheRunGoesOnWithThePlainShrink) {
  const Tickets tickets = {packBalls({1, 2, 3, 4, 5, 6}, 1), packBalls({1, 2, 3, 4, 5, 7}, 1),
                           packBalls({1, 2, 3, 4, 5, 8}, 2), packBalls({20, 21, 22, 23, 24, 25}, 1)};
  for (const auto& [kept, fault] :
       {std::pair{Places{0, 2}, CoverFault::ticket_uncovered}, {Places{0, 1, 2, 3}, CoverFault::none}}) {
    TicketSet set;
    for (const Balls ticket : tickets) set.add(ticket);
    ScriptedDesk desk;
    const SmallCover cover = checkedCover(tickets, kept, 6);
    EXPECT_EQ(cover.fault, fault);
    const Places plain = {0, 2, 3};
    EXPECT_EQ(cover.kept, fault == CoverFault::none ? kept : plain);
    EXPECT_EQ(keepCover(desk, set, 6, cover), static_cast<std::int64_t>(cover.kept.size()));
    EXPECT_EQ(std::ranges::count(set.shrink, 6), std::ssize(set.shrink));
    EXPECT_EQ(desk.told.size(), fault == CoverFault::none ? 0U : 1U);
  }
}

}  // namespace
}  // namespace lotmere

#include "tickets/compound_bets.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numeric>

#include "support/random_numbers.hpp"

namespace lotmere::test {
namespace {

using Tickets = std::vector<DrawNumbers>;

Tickets expand(const CompoundBet& bet) {
  Tickets tickets;
  expandBet(bet, [&](const DrawNumbers& numbers) { tickets.push_back(numbers); });
  return tickets;
}

// How often each ticket stands.
std::map<std::pair<Reds, int>, int> counted(const Tickets& tickets) {
  std::map<std::pair<Reds, int>, int> counts;
  for (const auto& [reds, blue] : tickets) ++counts[{reds, blue}];
  return counts;
}

// Joins, and holds the bets against the tickets.
std::vector<CompoundBet> join(const Tickets& tickets) {
  auto bets = joinTickets(tickets);
  Tickets all;
  for (const CompoundBet& bet : bets) {
    const Tickets some = expand(bet);
    EXPECT_EQ(static_cast<std::int64_t>(some.size()), countTickets(bet));
    EXPECT_LE(bet.reds.size(), static_cast<std::size_t>(kMostJoinedReds));
    all.insert(all.end(), some.begin(), some.end());
  }
  EXPECT_TRUE(counted(all) == counted(tickets)) << "together exactly the tickets";
  EXPECT_EQ(joinTickets(tickets), bets) << "the same every time";
  return bets;
}

std::vector<int> upTo(int last) {
  std::vector<int> numbers(last);
  std::iota(numbers.begin(), numbers.end(), 1);
  return numbers;
}

TEST(CompoundBets, AFullSelectionIsAsFewBetsAsItsSizeAllows) {
  for (const int reds : {6, 7, 9, 12}) {
    const CompoundBet bet{upTo(reds), {2, 5, 16}};
    EXPECT_EQ(join(expand(bet)), std::vector{bet}) << reds;
    Tickets twice = expand(bet);
    const Tickets again = expand({upTo(reds), {5}});
    twice.insert(twice.end(), again.begin(), again.end());
    EXPECT_EQ(join(twice), (std::vector<CompoundBet>{bet, {upTo(reds), {5}}}))
        << "what stands twice is bet twice";
  }
  // More reds than one bet takes: fewer than with the twelve first, which leave 1,756.
  EXPECT_LT(join(expand({upTo(14), {1}})).size(), 1'650U) << "of 3,003 sixes";
}

TEST(CompoundBets, OnlyWholeSetsWithTheSameBluesAreJoined) {
  Tickets tickets = expand({{1, 2, 3, 4, 5, 6, 7}, {3, 4}});
  const DrawNumbers gone = tickets[2];
  tickets.erase(tickets.begin() + 2);
  const auto bets = join(tickets);
  EXPECT_EQ(bets.size(), 7U) << "seven reds of which one six lacks a blue";
  EXPECT_TRUE(std::ranges::any_of(bets, [](const CompoundBet& bet) { return bet.blues.size() == 1; }));
  tickets.push_back(gone);
  EXPECT_EQ(join(tickets), (std::vector{CompoundBet{{1, 2, 3, 4, 5, 6, 7}, {3, 4}}}));
  // The larger set is found although a smaller one begins in front of it.
  Tickets two = expand({{1, 2, 3, 4, 5, 6, 7}, {9}});
  for (const DrawNumbers& ticket : expand({{2, 3, 4, 5, 6, 7, 8, 9}, {9}}))
    if (ticket.reds != Reds{2, 3, 4, 5, 6, 7}) two.push_back(ticket);
  const auto largest = join(two);
  EXPECT_EQ(largest.size(), 7U) << "28 of the 34 in one, the other six by themselves";
  EXPECT_TRUE(std::ranges::count(largest, CompoundBet{{2, 3, 4, 5, 6, 7, 8, 9}, {9}}) == 1);
}

TEST(CompoundBets, TicketsOfAFileStayAsTheyStand) {
  const Tickets odd{{{6, 5, 4, 3, 2, 1}, 4},  {{1, 1, 2, 3, 4, 5}, 4}, {{1, 2, 3, 4, 5, 6}, 0},
                    {{0, 2, 3, 4, 5, 99}, 4}, {{6, 5, 4, 3, 2, 1}, 2}, {{1, 2, 3, 4, 5, 6}, 4}};
  const auto bets = join(odd);
  EXPECT_EQ(bets, (std::vector<CompoundBet>{{{6, 5, 4, 3, 2, 1}, {2, 4}},
                                            {{1, 1, 2, 3, 4, 5}, {4}},
                                            {{1, 2, 3, 4, 5, 6}, {0}},
                                            {{0, 2, 3, 4, 5, 99}, {4}},
                                            {{1, 2, 3, 4, 5, 6}, {4}}}));
  EXPECT_TRUE(joinTickets({}).empty());
}

TEST(CompoundBets, OfTicketsOfChanceTheyAreExactlyThese) {
  std::mt19937 random(5);  // NOLINT(*-msc51-cpp): the same tickets in every run
  for (int round = 0; round < 60; ++round) {
    Tickets tickets;
    // Whole bets that overlap, single tickets among them, some twice, in any order.
    for (int bet = 0; bet < 4; ++bet) {
      std::vector<int> reds = upTo(11 + round % 4);
      std::ranges::shuffle(reds, random);
      reds.resize(6 + random() % 4);
      std::ranges::sort(reds);
      const int blue = 1 + static_cast<int>(random() % 15);
      for (const DrawNumbers& ticket : expand({reds, {blue, blue + 1}})) tickets.push_back(ticket);
    }
    for (int single = 0; single < 30; ++single) tickets.push_back(randomNumbers(random, 9));
    std::ranges::shuffle(tickets, random);
    const auto bets = join(tickets);
    EXPECT_LT(bets.size(), tickets.size());
  }
}

TEST(CompoundBets, TheSearchCanBeEnded) {
  Tickets tickets = expand({upTo(14), {1}});
  const Tickets others = expand({upTo(9), {2}});
  tickets.insert(tickets.end(), others.begin(), others.end());
  int looks = 0;
  std::int64_t last = 0;
  const auto some = joinTickets(tickets, [&](std::int64_t settled) {
    EXPECT_GE(settled, last);
    last = settled;
    return ++looks >= 10;
  });
  EXPECT_EQ(some.size(), 10U) << "as many as were found by then";
}

}  // namespace
}  // namespace lotmere::test

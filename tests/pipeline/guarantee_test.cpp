// What tickets promise, against every ticket checked by itself; `--gtest_random_seed=N` tries others.
#include "advice/guarantee.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/random_numbers.hpp"
#include "support/scripted_course.hpp"
#include "tickets/prize_check.hpp"

namespace lotmere {
namespace {

// Out of the first numbers, so that they share some; several blues to a six, some twice. With `wild` out of
// order, with a red twice or missing, or without a blue.
std::vector<Balls> randomTickets(std::mt19937& random, std::size_t count, int reds, bool wild) {
  std::vector<Balls> tickets;
  DrawNumbers numbers;
  while (tickets.size() < count) {
    const int blue = static_cast<int>(1 + random() % 5);
    if (random() % 3 == 0) numbers = test::randomNumbers(random, reds);
    numbers.blue = blue;
    DrawNumbers ticket = numbers;
    if (wild) std::shuffle(ticket.reds.begin(), ticket.reds.end(), random);
    if (wild && random() % 5 == 0) ticket.reds[random() % 5] = ticket.reds[5];
    if (wild && random() % 9 == 0) ticket.reds[random() % 6] = 0;
    if (wild && random() % 9 == 0) ticket.blue = 0;
    tickets.push_back(packBalls(ticket.reds, ticket.blue));
  }
  return tickets;
}

TEST(GuaranteeOfTickets, EqualsEveryTicketCheckedAgainstEveryDraw) {
  std::mt19937 random(3 + GTEST_FLAG_GET(random_seed));
  FreeCourse course;
  std::array<std::int64_t, kPrizeTiers + 1> seen{};
  for (int trial = 0; trial < 60; ++trial) {
    SCOPED_TRACE(trial);
    const int reds = 7 + trial % 27;
    const auto draws = randomTickets(random, random() % 400, reds, trial % 3 == 1);
    const auto held = randomTickets(random, random() % (trial % 2 ? 10 : 300), reds, trial % 5 == 1);
    Guarantee literal{
        static_cast<std::int64_t>(draws.size()), static_cast<std::int64_t>(held.size()), {}, {}};
    for (const Balls draw : draws) {
      int best = 0;
      for (const Balls ticket : held) {
        const int tier = prizeTier(countHits(ticket, draw));
        if (tier == 0) continue;
        ++literal.won.at(static_cast<std::size_t>(tier) - 1);
        best = best == 0 ? tier : std::min(best, tier);
      }
      ++literal.best.at(static_cast<std::size_t>(best));
    }
    EXPECT_EQ(checkGuarantee(draws, held, course, 1 + trial % 3), literal);
    for (std::size_t tier = 0; tier < seen.size(); ++tier) seen.at(tier) += literal.best.at(tier);
  }
  EXPECT_GT(std::ranges::min(seen), 20) << "the trials must have something to tell";
}

TEST(GuaranteeOfTickets, EndsAtAnyLook) {
  std::mt19937 random(1);
  const auto draws = randomTickets(random, 900, 12, true);
  const auto held = randomTickets(random, 30, 12, false);
  int stopped = 0;
  for (int stop_at = 1;; ++stop_at, ++stopped) {
    test::ScriptedCourse course(stop_at);
    if (checkGuarantee(draws, held, course)) break;
  }
  EXPECT_GT(stopped, 5);
}

TEST(GuaranteeOfTickets, IsToldInALineAPrize) {
  Guarantee guarantee{8, 3, {2, 1, 0, 0, 1, 4, 0}, {1, 0, 0, 2, 6, 0}};
  EXPECT_EQ(
      guaranteeText(guarantee, "过滤前"),
      "把过滤前的 8 注逐一当作开奖号码，核对余下的 3 注：\n"
      "最高奖级\t期数\t占％\t平均中奖注数\n"
      "一等奖\t1\t12.50\t0.1250\n二等奖\t0\t0.00\t0.0000\n三等奖\t0\t0.00\t0.0000\n"
      "四等奖\t1\t12.50\t0.2500\n五等奖\t4\t50.00\t0.7500\n六等奖\t0\t0.00\t0.0000\n没有中奖\t2\t25.00\t—\n"
      "成本 6 元；三等奖至六等奖平均每期 57.50 元，一、二等奖的奖金浮动，没有计算在内。\n"
      "前提是开奖号码就在这些号码之中；这有多大可能，这里不作判断。\n");
}

}  // namespace
}  // namespace lotmere

// What a condition lets through by itself, against its own pass over all red sixes and over each draw.
#include "advice/strength.hpp"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "advice/value_shares.hpp"
#include "conditions/condition_store.hpp"
#include "history/draw_stats.hpp"
#include "pipeline/random_store.hpp"
#include "pipeline/thin.hpp"
#include "store/periods.hpp"
#include "support/store_test.hpp"
#include "tickets/init.hpp"

namespace lotmere {
namespace {

using test::kPeriod;

TicketSet allSixes() {
  NumberSelection all;
  std::fill(all.red.begin() + 1, all.red.end(), PickState::tuo);
  TicketSet sixes;
  sixes.period = kPeriod;
  sixes.reserve(kAllRedSixes);
  expandSelection(all, [&](const Reds& six, const std::vector<int>&) {
    sixes.add(packBalls(six, 1));
    return true;
  });
  return sixes;
}

class StrengthTest : public test::StoreTest {
 protected:
  // How many of a set the step of a condition keeps, all others being switched off.
  std::int64_t pass(TicketSet tickets) {
    const FilterPlan plan(compileRules(set_), loadDrawTable(store_), tickets.period);
    // A turn by itself, without the filter's tolerance.
    if (!plan.turns().empty())
      return std::ranges::count_if(tickets.balls,
                                   [&](Balls balls) { return !plan.turns().front().hits(redsOf(balls)); });
    FreeCourse course;
    StepWatcher nobody;
    thin(plan, tickets, course, nobody);
    return static_cast<std::int64_t>(tickets.size());
  }

  void switchAllOff() {
    set_ = loadConditionSet(store_);
    for (const auto& [usage, on] : std::vector(set_.switches.rows())) set_.use(usage, false);
    set_.match = {};
  }

  Strength model(int last) {
    Strength strength{pass(sixes_)};
    for (const StoredDraw& draw : drawsBefore(store_, kPeriod, last)) {
      TicketSet ticket;
      ticket.period = draw.period;
      ticket.add(packBalls(draw.numbers.reds, draw.numbers.blue));
      strength.passed += static_cast<int>(pass(ticket));
      ++strength.draws;
    }
    return strength;
  }

  const TicketSet sixes_ = allSixes();
  ConditionSet set_;
};

// Every kind of condition, with cells of chance.
TEST_F(StrengthTest, IsWhatThePassOfTheConditionKeeps) {
  std::mt19937 random(3 + GTEST_FLAG_GET(random_seed));
  int partly = 0;
  for (const int draws : {0, 1, 30}) {
    test::putHistory(store_, random, draws);
    test::putConditions(store_, random, 0, 60);
    switchAllOff();
    const int last = draws == 30 ? 20 : 100;
    for (const UsageId usage :
         {1, 4, 5, 6, 7, 8, 9, 12, 13, 16, 20, 37, 59, 104, 263, 265, 266, 301, 302, 463}) {
      SCOPED_TRACE(testing::Message() << draws << " draws, condition " << usage);
      const Condition& condition = conditionOfUsage(usage);
      const DrawTable table = loadDrawTable(store_);
      const auto strength = conditionStrength(set_, table, condition, kPeriod, last);
      const auto shares = valueShares(set_, table, condition, kPeriod, last);
      EXPECT_EQ(shares.has_value(), usage != 104 && usage != 266);
      if (shares) {
        EXPECT_EQ(strengthOf(*shares, set_, condition), strength);
        EXPECT_TRUE(holdsFor(*shares, set_, table, condition, kPeriod));
        ConditionSet other = set_;
        if (usage == 20) {
          other.setMember(AttributeTable::first, "自定义组1", 7,
                          !holds(other.column(AttributeTable::first, "自定义组1"), 7));
          EXPECT_FALSE(holdsFor(*shares, other, table, condition, kPeriod));
        }
      }
      set_.use(usage, true);
      EXPECT_EQ(strength, model(last));
      set_.use(usage, false);
      partly += strength && strength->passed > 0 && strength->passed < strength->draws;
    }
    for (const int match : {0, 1, 3, 6, 7}) {
      SCOPED_TRACE(testing::Message() << draws << " draws, match " << match);
      set_.match = {true, 2025099, 2026045, match};
      EXPECT_EQ(matchStrength(set_, loadDrawTable(store_), kPeriod, last), model(last));
    }
    set_.match = {};
  }
  EXPECT_GT(partly, 10) << "the draws must have something to tell";
  for (const UsageId usage : {30, 36, 300})
    EXPECT_EQ(conditionStrength(set_, {}, conditionOfUsage(usage), kPeriod, 100), std::nullopt) << usage;
}

// A six or a draw counts for the number that it has at the place.
TEST_F(StrengthTest, AValueOfAPlaceHasTheSixesThatHaveItThere) {
  std::mt19937 random(6);
  test::putHistory(store_, random, 30);
  const DrawTable table = loadDrawTable(store_);
  for (int place = 1; place <= kPlaceCount; ++place) {
    const auto number_of = [&](Balls ticket) { return static_cast<int>(ticket >> (8 * (place - 1)) & 0xFF); };
    const auto shares = valueShares(set_, table, conditionOfUsage(usageOfPlace(place)), kPeriod, 12).value();
    std::vector<std::int64_t> sixes(shares.sixes.size());
    std::vector<int> draws(sixes.size());
    for (const Balls six : sixes_.balls)
      if (place < kPlaceCount) ++sixes[static_cast<std::size_t>(number_of(six))];
    if (place == kPlaceCount) std::fill(sixes.begin() + 1, sixes.end(), kAllRedSixes / kBlueCount);
    for (const StoredDraw& draw : drawsBefore(store_, kPeriod, 12))
      ++draws[static_cast<std::size_t>(number_of(packBalls(draw.numbers.reds, draw.numbers.blue)))];
    EXPECT_EQ(shares.sixes, sixes) << place;
    EXPECT_EQ(shares.draws, draws) << place;
  }
}

TEST(StrengthText, ASentenceSaysWhatChanceGives) {
  const std::string end = " 期符合，按机会应有 37～57 期：";
  const std::pair<int, std::string> cases[] = {{37, "与随机相当。"}, {36, "比随机少。"}, {58, "比随机多。"}};
  for (const auto& [passed, verdict] : cases) {
    EXPECT_EQ(strengthSentence({523'000, passed, 100}, false),
              fmt::format("放行全部红球组合的 47.2%；最近 100 期中 {}{}{}", passed, end, verdict));
  }
  EXPECT_EQ(strengthSentence({kAllRedSixes, 0, 0}, true),
            "对下一期放行全部红球组合的 100%；还没有开奖记录可以对照。");
}

// The oldest draw that is judged has its own draws before it too.
TEST_F(StrengthTest, TheLastDrawJudgedIsJudgedAgainstThoseBeforeIt) {
  std::mt19937 random(5);
  test::putConditions(store_, random, 0, 100);
  switchAllOff();
  const Reds often{2, 9, 13, 20, 21, 33}, once{1, 5, 6, 17, 28, 30};
  test::putDraws(store_, {{2026049, {often, 1}}, {2026047, {often, 2}}, {2026045, {once, 3}}});
  test::putDraws(store_, {{2026043, {often, 4}}, {kPeriod, {once, 5}}});
  computeDrawStatistics(store_, desk_, 2026043, kPeriod);
  computeDrawStatistics(store_, desk_, 2026043, 2026043);
  for (const auto& [usage, last] : {std::pair{104, 1}, {266, 2}}) {
    set_.use(usage, true);
    const auto strength =
        conditionStrength(set_, loadDrawTable(store_), conditionOfUsage(usage), kPeriod, last);
    EXPECT_TRUE(strength == model(last) && strength->passed == 0) << usage;
    set_.use(usage, false);
  }
}

TEST(StrengthText, OneLine) {
  const std::string lead = "放行全部红球组合的 ", drawn = "最近 １００ 期中有 ９５ 期的开奖号码符合";
  const std::pair<Strength, std::string> cases[] = {
      {{690'015, 95, 100}, lead + "６２.３％，" + drawn},
      {{0, 0, 0}, lead + "０％，还没有开奖记录可以对照"},
      {{1000, 95, 100}, lead + "不到 ０.１％，" + drawn},
      {{kAllRedSixes - 1000, 95, 100}, lead + "超过 ９９.９％，" + drawn},
      {{kAllRedSixes, 3, 7}, lead + "１００％，最近 ７ 期中有 ３ 期的开奖号码符合"}};
  for (const auto& [strength, text] : cases) EXPECT_EQ(strengthText(strength), text);
}

}  // namespace
}  // namespace lotmere

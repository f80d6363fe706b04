// What is computed without a store: texts, number lists, dates and the metrics of six numbers.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "base/dates.hpp"
#include "base/number_list.hpp"
#include "base/text.hpp"
#include "game/game.hpp"
#include "game/metrics.hpp"
#include "game/prizes.hpp"

namespace lotmere {
namespace {

TEST(Text, ReadsPeriodsAndWritesFullWidthDigits) {
  for (const char* typed : {"2007001", "  2007001\t\r\n", "２００７００１", "　2007００1 "})
    EXPECT_EQ(parsePeriod(typed), 2007001) << '"' << typed << '"';
  for (const char* typed : {"", " ", "202609", "20260961", "99999999999", "２０２６０９", "2007abc",
                            "200700a", "-2007001", "+207001", "2026000", "2002001", "2026 96", "２\xEF\xBC"})
    EXPECT_EQ(parsePeriod(typed), std::nullopt) << '"' << typed << '"';
  EXPECT_EQ(parseWhole(" －5").value_or(1), 1) << "no minus of another kind";
  EXPECT_EQ(parseWhole("-２0260961 "), -20'260'961);
  EXPECT_EQ(leadingNumber("123456789012345678901234567890"), 1'234'567'890) << "no overflow";
  EXPECT_EQ(toFullWidth("过滤后余：1234567890 注 aZ-，"), "过滤后余：１２３４５６７８９０ 注 aZ-，");
  EXPECT_EQ(countCharacters("期号：2007001"), 10u);
  EXPECT_EQ(quoteTyped("期\x7F\x1B"
                       "5",
                       4) +
                quoteTyped("期\t234", 4),
            "“期??5”“期?23…”");
  for (const PeriodNo period : {2003000, 2002366, 2026000, 2026367, 2100001}) EXPECT_FALSE(isPeriod(period));
  EXPECT_TRUE(isPeriod(2003001) && isPeriod(2099366));
  EXPECT_EQ(decodeText("ab\xFF", 1, ""), "\x04gf");
  EXPECT_EQ(decodeText("hgf", 0, "no key") + decodeText("hgf", 0, "8 signs."), "abc");
}

TEST(NumberList, ReadsNumbersAndRangesAndRefusesTheRest) {
  EXPECT_EQ(parseNumberList(" 33 , 1 - 3,05,7-7", 1, 33), (std::vector{1, 2, 3, 5, 7, 33}));
  for (const char* text : {"", "1,", ",1", "0", "34", "9-5", "1-", "-1", "1-2-3", "1-5,3", "1 2", "a"})
    EXPECT_FALSE(parseNumberList(text, 1, 33)) << text;
}

TEST(Dates, DrawDaysAreSundayTuesdayAndThursday) {
  const char* const days[][2] = {{"1999-12-27", "1999-12-28"}, {"2024-12-31", "2025-01-02"},
                                 {"2026-08-19", "2026-08-20"}, {"2024-02-29", "2024-03-03"},
                                 {"2000-01-02", "2000-01-04"}, {"2026-08-21", "2026-08-23"}};
  for (const auto& [day, next] : days) EXPECT_EQ(formatDate(nextDrawDate(*parseDate(day))), next);
  for (const char* text : {"1900-02-29", "2024-13-01", "2024-01-00", "2024/01/02", "2024-1-02"})
    EXPECT_FALSE(parseDate(text)) << text;
}

int root(int n) { return n > 9 ? root(n / 10 + n % 10) : n; }

// However a ticket comes to share so many numbers or more, it wins at least this.
TEST(Prizes, SharedNumbersPromiseTheWorstOfTheirPrizes) {
  for (int shared = 0; shared <= 7; ++shared) {
    int worst = 1;
    for (const int blue : {0, 1})
      for (int reds = std::max(0, shared - blue); reds <= kRedsPerTicket; ++reds) {
        const int tier = prizeTier({reds, blue});
        worst = worst == 0 || tier == 0 ? 0 : std::max(worst, tier);
      }
    EXPECT_EQ(leastPrize(shared), worst) << shared;
  }
  EXPECT_EQ(fixedWinnings({7, 9, 2, 1, 3, 4}), 2 * 3000 + 200 + 3 * 10 + 4 * 5);
}

TEST(Metrics, AgreeWithTheLiteralRulesOnAnySixNumbers) {
  std::mt19937 random(20240102);
  for (int turn = 0; turn < 30'000; ++turn) {
    // A small range makes repeats and long runs common; a missing draw before stands as zeros.
    const int highest = turn % 2 ? kRedCount : 8;
    Reds now, before;
    for (int& red : now) red = std::uniform_int_distribution(1, highest)(random);
    for (int& red : before) red = std::uniform_int_distribution(0, turn % 5 ? highest : 0)(random);
    SCOPED_TRACE(turn);
    const std::set<int> numbers(now.begin(), now.end());
    std::set<int> differences;
    for (int i = 0; i < 5; ++i)
      for (int j = i + 1; j < 6; ++j) differences.insert(std::abs(now[i] - now[j]));
    int largest_step = 0;
    for (auto n = numbers.begin(); std::next(n) != numbers.end(); ++n)
      largest_step = std::max(largest_step, *std::next(n) - *n);
    ASSERT_EQ(spanOf(now), *differences.rbegin());
    ASSERT_EQ(acValue(now), static_cast<int>(differences.size()) - 5);
    ASSERT_EQ(largestGap(now), largest_step);
    std::multiset<std::string, std::greater<>> runs;
    for (int n = 1, run = 0; n <= kRedCount + 1; ++n) {
      if (!numbers.contains(n) && run > 1) runs.insert(std::to_string(run));
      run = numbers.contains(n) ? run + 1 : 0;
    }
    ASSERT_EQ(runShapes().at(runShape(now)), runs.empty() ? "0" : fmt::format("{}", fmt::join(runs, "+")));
    const auto hits = [&](auto same) {
      return std::count_if(now.begin(), now.end(), [&](int b) {
        return std::any_of(before.begin(), before.end(), [&](int a) { return same(a, b); });
      });
    };
    ASSERT_EQ(countRepeats(before, now), hits([](int a, int b) { return a == b; }));
    ASSERT_EQ(countTailRepeats(before, now), hits([](int a, int b) { return a % 10 == b % 10; }));
    ASSERT_EQ(countDigitRootRepeats(before, now), hits([](int a, int b) { return root(a) == root(b); }));
    ASSERT_EQ(countNeighbours(before, now), hits([](int a, int b) { return std::abs(a - b) == 1; }));
  }
}

}  // namespace
}  // namespace lotmere

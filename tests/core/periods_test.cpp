#include "core/periods.hpp"

#include <gtest/gtest.h>

#include "support/test_store.hpp"

namespace lotmere {
namespace {

using test::put_Draw;
using test::TempHome;

constexpr DrawNumbers kNumbers{{1, 2, 3, 4, 5, 6}, 7};

Date day(const char* text) { return *parse_Date(text); }

TEST(Periods, AnEmptyHistoryAnswersTheDefault) {
  TempHome home;
  Store& store = home.store();
  for (const PeriodNo answer : {latestPeriod(store), firstPeriod(store), periodsBack(store, 2026001, 1),
                                periodsUpTo(store, 2026001, 5)})
    EXPECT_EQ(answer, kDefaultPeriod);
  EXPECT_EQ(nextPeriod(store, day("2026-08-23")), 2026001);
  EXPECT_TRUE(drawsBefore(store, 2026001, 10).empty());
}

TEST(Periods, LookUpsStepOverGapsAndYears) {
  TempHome home;
  Store& store = home.store();
  put_Draw(store, 2004002, "2004-01-06", {{2, 3, 4, 5, 6, 7}, 8});
  put_Draw(store, 2003007, "2003-03-16", kNumbers);
  put_Draw(store, 2003089, "2003-12-28", kNumbers);
  put_Draw(store, 2004001, "2004-01-04", kNumbers);
  EXPECT_EQ(latestPeriod(store), 2004002);
  EXPECT_EQ(firstPeriod(store), 2003007);
  struct Row {
    PeriodNo period;
    int n;
    PeriodNo back, up_to;
  };
  const Row rows[] = {{2004002, 1, 2004001, 2004002}, {2004002, 2, 2003089, 2004001},
                      {2004002, 9, 2003007, 2003007}, {2004001, 1, 2003089, 2004001},
                      {2003050, 1, 2003007, 2003007}, {2003007, 1, kDefaultPeriod, 2003007},
                      {9999999, 1, 2004002, 2004002}, {2003001, 1, kDefaultPeriod, kDefaultPeriod}};
  for (const Row& row : rows) {
    EXPECT_EQ(periodsBack(store, row.period, row.n), row.back) << row.period << " back " << row.n;
    EXPECT_EQ(periodsUpTo(store, row.period, row.n), row.up_to) << row.period << " up to " << row.n;
  }
  const auto before = drawsBefore(store, 2004002, 2);
  ASSERT_EQ(before.size(), 2u);
  EXPECT_EQ(before[0].period, 2004001);
  EXPECT_EQ(before[1].period, 2003089);
  EXPECT_EQ(findDraw(store, 2004002).value().numbers, (DrawNumbers{{2, 3, 4, 5, 6, 7}, 8}));
  EXPECT_FALSE(findDraw(store, 2003008));
}

TEST(Periods, TheNextPeriodCountsOnUntilADrawOfTheNewYearStands) {
  TempHome home;
  Store& store = home.store();
  put_Draw(store, 2003089, "2003-12-28", kNumbers);
  EXPECT_EQ(nextPeriod(store, day("2004-01-01")), 2003090) << "the date field alone doesn't turn the year";
  put_Draw(store, 2003090, "2004-01-01", kNumbers);
  EXPECT_EQ(nextPeriod(store, day("2004-01-04")), 2004001);
  put_Draw(store, 2004001, "2003-12-30", kNumbers);
  EXPECT_EQ(format_Date(latestDrawDate(store)), "2004-01-01") << "the newest date counts, wherever it stands";
  EXPECT_EQ(nextPeriod(store, day("2004-01-04")), 2004002);
}

}  // namespace
}  // namespace lotmere

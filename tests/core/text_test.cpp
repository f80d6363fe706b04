// Texts, number lists and dates: what a person types and what the program writes.
#include "core/text.hpp"

#include <gtest/gtest.h>

#include <map>

#include "core/dates.hpp"
#include "core/number_list.hpp"

namespace lotmere {
namespace {

TEST(Text, APeriodIsTheNumberInTheFirstSevenCharacters) {
  const std::map<std::string, PeriodNo> periods = {{"2007001", 2007001},
                                                   {"  2007001\t\r\n", 2007001},
                                                   {"20070019", 2007001},
                                                   {"2007001abc", 2007001},
                                                   {"2007abc", 2007},
                                                   {"007", 7},
                                                   {"", 0},
                                                   {"   ", 0},
                                                   {"abc2007001", 0},
                                                   {"-2007001", 0},
                                                   {"2007.01", 2007},
                                                   {"２００７００１", 0}};
  for (const auto& [typed, period] : periods) EXPECT_EQ(parse_Period(typed), period) << '"' << typed << '"';
  EXPECT_EQ(leading_Number("123456789012345678901234567890"), 1'234'567'890)
      << "a long number must not overflow";
}

TEST(Text, OnlyAsciiDigitsBecomeFullWidth) {
  EXPECT_EQ(to_QuanJiao("过滤后余：1234567890 注 aZ-，"), "过滤后余：１２３４５６７８９０ 注 aZ-，");
  EXPECT_EQ(to_QuanJiao(17721088), "１７７２１０８８");
  EXPECT_EQ(count_Characters("期号：2007001"), 10u);
}

TEST(Text, ScrambledNamesComeBack) {
  EXPECT_EQ(decode_Text("abc", 1, ""), "hgf");
  for (const std::string name : {"Lotmere.db", "数据", "\xFC\xFF\x01", ""})
    EXPECT_EQ(decode_Text(decode_Text(name, 1, "any"), 0, "________"), name);
  for (const char* key : {"", "1234567", "123456789"}) EXPECT_EQ(decode_Text("hgf", 0, key), "") << key;
}

TEST(NumberList, ReadsNumbersAndRangesAndRefusesTheRest) {
  const std::map<std::string, std::vector<int>> lists = {
      {"1,2,5-9", {1, 2, 5, 6, 7, 8, 9}}, {" 33 , 1 - 3 ", {1, 2, 3, 33}}, {"05,7-7", {5, 7}}};
  for (const auto& [text, numbers] : lists) EXPECT_EQ(parse_NumberList(text, 1, 33), numbers) << text;
  for (const char* text :
       {"",   " ",  ",", "1,",    ",1",  "1,,2",  "0",   "34",  "1-34", "9-5", "1-",
        "-1", "1-", "-", "1-2-3", "1,1", "1-5,3", "1.5", "1 2", "x",    "+1",  "99999999999"})
    EXPECT_FALSE(parse_NumberList(text, 1, 33)) << '"' << text << '"';
}

TEST(Dates, OnlyDaysOfTheCalendarAreRead) {
  for (const char* day : {"2003-02-23", "2024-02-29", "2000-02-29", "1999-12-31"})
    EXPECT_EQ(format_Date(parse_Date(day).value()), day);
  for (const char* text :
       {"", "2023-02-29", "1900-02-29", "2024-13-01", "2024-00-10", "2024-04-31", "2024-01-00", "2024/01/02",
        "2024-1-02", "2024-01-2 ", "20240102", "2024-01-02 ", "-024-01-02"})
    EXPECT_FALSE(parse_Date(text)) << '"' << text << '"';
  EXPECT_EQ(parse_Date("2024/01/02", '/'), parse_Date("2024-01-02"));
}

TEST(Dates, DrawDaysAreSundayTuesdayAndThursday) {
  struct Row {
    const char* day;
    int weekday;
    const char* next;
  };
  const Row rows[] = {{"2000-01-01", 6, "2000-01-02"}, {"2000-01-02", 0, "2000-01-04"},
                      {"1999-12-27", 1, "1999-12-28"}, {"2024-12-31", 2, "2025-01-02"},
                      {"2026-08-19", 3, "2026-08-20"}, {"2024-02-29", 4, "2024-03-03"},
                      {"2026-08-21", 5, "2026-08-23"}};
  for (const Row& row : rows) {
    EXPECT_EQ(weekdayIndex(*parse_Date(row.day)), row.weekday) << row.day;
    EXPECT_EQ(format_Date(nextDrawDate(*parse_Date(row.day))), row.next) << row.day;
  }
}

}  // namespace
}  // namespace lotmere

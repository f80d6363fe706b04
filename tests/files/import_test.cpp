#include "files/import.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <random>

#include "core/desk_script.hpp"
#include "support/test_store.hpp"

namespace lotmere::test {
namespace {

constexpr PeriodNo kPeriod = 2024007;
constexpr DrawNumbers kNumbers{{1, 2, 3, 4, 5, 6}, 7};
using Ticket = std::optional<ImportTicket>;
const Ticket kTicket = ImportTicket{kPeriod, kNumbers};

TEST(ImportLine, IsForgivingAsFarAsItGoes) {
  const std::tuple<int, const char*, bool> rows[] = {
      {0, "\t 1，2\u30003-4+5，6，7。。\r", true},
      {0, "1，2，3，4，5，6，7", false},   // 13 characters, 25 bytes
      {0, "1a 2/9 x3 4 5 6 7 8 9", true},  // passes over what isn't a digit, and over an eighth number
      {0, "，1 2 3 4 5 6 7 8 9", false},   // the line begins with its first number
      {0, "4294967297 2 3 4 5 6 7", false},
      {1, "期20240071 2 3 4 5 6 7", true},  // what is left of a longer run is the first number
      {1, "0000000 01 02 03 04 05 06 07", false},
      {2, "12,,,,,,01,02,03,04,05,06|07", true}};
  for (const auto& [format, line, reads] : rows)
    EXPECT_EQ(import_Line(line, {ImportFormat(format), kPeriod}), reads ? kTicket : Ticket()) << line;
}

// The same rules step by step, on characters.
Ticket model_Line(std::u32string line, int format) {
  const auto cut_ToDigit = [&] { line.erase(0, std::min(line.size(), line.find_first_of(U"0123456789"))); };
  line.erase(0, std::min(line.size(), line.find_first_not_of(U" \t")));
  line.erase(line.find_last_not_of(U" \t") + 1);
  if (line.size() < 15) return {};
  PeriodNo period = kPeriod;
  if (format == 1) {
    std::size_t from = 0;
    while (line.substr(from, 7).find_first_not_of(U"0123456789") != std::u32string::npos) ++from;
    if (from + 7 > line.size()) return {};
    const std::u32string seven = line.substr(from, 7);
    period = std::stoi(std::string(seven.begin(), seven.end()));
    line.erase(0, from + 7);
    if (period < 1) return {};
  }
  for (char32_t& c : line)
    if (std::u32string(U" -+，\u3000|").find(c) != std::u32string::npos) c = U',';
  if (format == 2) line.erase(0, std::min(line.size(), line.find(U',')));
  if (format != 0) cut_ToDigit();
  std::array<double, 7> a{};
  for (double& value : a) {
    for (std::size_t i = 0; i < line.size() && line[i] >= U'0' && line[i] <= U'9'; ++i)
      value = value * 10 + (line[i] - U'0');
    const std::size_t comma = line.find(U',');
    if (comma == std::u32string::npos) break;
    line.erase(0, comma);
    cut_ToDigit();
    if (line.empty()) break;
  }
  ImportTicket ticket{period, {}};
  for (std::size_t i = 0; i < 7; ++i) {
    if (a.at(i) < 1 || a.at(i) > (i < 6 ? 33 : 16)) return {};
    (i < 6 ? ticket.numbers.reds.at(i) : ticket.numbers.blue) = static_cast<int>(a.at(i));
  }
  return ticket;
}

std::string to_Utf8(const std::u32string& text) {
  std::string utf8;
  for (const char32_t c : text) {
    if (c >= 0x80) utf8 += {char(0xE0 | c >> 12), char(0x80 | (c >> 6 & 0x3F))};
    utf8 += c < 0x80 ? char(c) : char(0x80 | (c & 0x3F));
  }
  return utf8;
}

TEST(ImportLine, AgreesWithTheRulesStepByStep) {
  const std::u32string separators = U" ,-+，\u3000|";
  const std::vector<std::u32string> parts = {U"，", U"\u3000", U" ", U"\t", U"/",
                                             U"期", U"20240",  U"0", U"7",  U"2007001"};
  std::mt19937 random(7);  // NOLINT(*-msc51-cpp): the same lines in every run
  int found = 0;
  for (int round = 0; round < 60'000; ++round) {
    std::u32string line;
    if (round % 3 == 0) line += parts[random() % parts.size()];
    for (std::size_t i = 0; i < 7 + random() % 3; ++i) {
      const std::string number = std::to_string(random() % (i < 6 ? 35 : 18));
      line.append(number.begin(), number.end()) += separators[random() % separators.size()];
      while (random() % 8 == 0) line += parts[random() % parts.size()];
    }
    const int format = round % 4 % 3;
    const Ticket expected = model_Line(line, format);
    ASSERT_EQ(import_Line(to_Utf8(line), {ImportFormat(format), kPeriod}), expected) << to_Utf8(line);
    found += expected ? 1 : 0;
  }
  EXPECT_TRUE(found > 5'000 && found < 55'000) << found;
}

class Import : public testing::Test {
 protected:
  ImportResult import(const std::string& bytes, int format = 0) {
    std::ofstream(file, std::ios::binary) << bytes;
    return import_Tickets(home.store(), desk, file, {ImportFormat(format), kPeriod});
  }
  // ID, running number, period, first red, blue and the sum of the work columns of each row.
  std::string rows() {
    Query query = home.store().query(
        R"(SELECT "ID"||' '||"序号"||' '||"期号"||' '||"红球1"||' '||"蓝球"||' '||("过滤标记"+"缩水标记"+"精选标记"+
           "临时数据"+"红球中"+"蓝球中")||';' FROM "日志表" ORDER BY "ID")");
    std::string text;
    while (query.next()) text += query.text(0);
    return text;
  }

  TempHome home;
  ScriptedDesk desk;
  const std::filesystem::path file = home.path() / "tickets.txt";
};

TEST_F(Import, GoesOnBehindTheRowsThatAreKeptOrStartsAnew) {
  EXPECT_EQ(import("01 02 03 04 05 06 07\n\r\nnothing\n02 02 03 04 05 06 08").count, 2);
  EXPECT_TRUE(desk.asked.empty()) << "an empty table has nothing to keep";
  put_Ticket(home.store(), 9, 1, 2001001, kNumbers);
  desk.answers = {true, false};
  const std::string two = "1 1 2024007 1 7 0;2 2 2024007 2 8 0;";
  EXPECT_EQ(import("2007001 03 02 03 04 05 06 09\r2007002 04 02 03 04 05 06 10\r", 1).count, 2);
  EXPECT_EQ(rows(), two + "9 1 2001001 1 7 0;10 3 2007001 3 9 0;11 4 2007002 4 10 0;");
  EXPECT_EQ(import("1 01 02 03 04 05 06 07\r\n2 02 02 03 04 05 06 08\r\n", 2).count, 2);
  EXPECT_EQ(rows(), two);
  EXPECT_EQ(desk.running_Text().text(), "\r\n\r\n表格中号码全部删除已完成．");
}

TEST_F(Import, ReadsUtf8AndElseGb18030) {
  std::string wide = "x";  // its characters lie across every edge of a block
  for (int i = 0; i < 200'000; ++i) wide += "第";
  const std::string utf8 = "\xEF\xBB\xBF 1，2\u30003，4 5 6 7 第\n" + wide + "\n1，2，3，4，5，6，7。。";
  EXPECT_EQ(import(utf8).count, 2);
  desk.answers = {false};
  // The second byte of a character may be a bar, and what is no character is passed over.
  const std::string gb = std::string(300'000, '\xFF') + "\n11\x81|9\xA3\xAC 2\xA1\xA1 3 4 5 6 7 \xB5\xDA\xA1";
  EXPECT_EQ(import(gb).count, 1);
  EXPECT_EQ(rows(), "1 1 2024007 11 7 0;");
  desk.answers = {true, true};
  // A mark in front; two characters that would be one beyond the last of UTF-8, and the line too short.
  for (const char* line : {"\x84\x31\x95\x33 01 02 3 4 5 6 7", "1 2 3 4 5 6 7\xF4\x90\x81\x81"})
    EXPECT_EQ(import(line).count, 1) << line;
}

TEST_F(Import, ChangesNothingUnlessItSucceeds) {
  put_Ticket(home.store(), 9, 1, 2001001, kNumbers);
  desk.running_Text().set("text");
  const std::string line = "01 02 03 04 05 06 07\n";
  std::string large;
  for (int i = 0; i < 20'000; ++i) large += line;
  for (const std::string& bytes : {std::string(), line + '\0', std::string("01 02 03 04 05 06\n")})
    EXPECT_EQ(import(bytes).count, 0) << "without asking anything";
  desk.answers = {false};
  desk.on_serve = [&] { desk.answers.empty() ? throw std::runtime_error("the face fails") : void(); };
  EXPECT_THROW(import(large), std::runtime_error);
  int served = 0;
  desk.on_serve = [&] { ++served; };
  std::filesystem::resize_file(file, std::uintmax_t{1} << 30);
  EXPECT_FALSE(import_Tickets(home.store(), desk, file, {}).is_text);
  EXPECT_LT(served, 5) << "what is no text isn't read to its end";
  std::filesystem::resize_file(file, (std::uintmax_t{1} << 30) + 1);
  for (const auto& path : {home.path() / "none", home.path(), std::filesystem::path(), file})
    EXPECT_THROW((void)import_Tickets(home.store(), desk, path, {}), std::filesystem::filesystem_error);
  EXPECT_EQ(rows(), "9 1 2001001 1 7 0;");
  EXPECT_EQ(desk.running_Text().text(), "text");
  EXPECT_FALSE(desk.stop_Requested() || desk.jobs_open != 0);
  EXPECT_EQ(import_Command(home.store(), desk, file, std::nullopt).count, 0) << "a cancelled dialog";
  EXPECT_EQ(desk.running_Text().text(), "text\r\n\r\n数据导入完成，共导入：０ 注！");
  EXPECT_TRUE(!read_ImportChoice(desk, 0, "200700") && read_ImportChoice(desk, 2, "200700"));
}

TEST_F(Import, GoesOnToTheEndOfTheFile) {
  desk.on_serve = [&] { desk.request_Stop(); };
  std::string large;
  for (int i = 0; i < 20'000; ++i) large += "01 02 03 04 05 06 07\n";
  EXPECT_EQ(import(large).count, 20'000);
  EXPECT_FALSE(desk.stop_Requested()) << "the next job isn't stopped for it";
}

}  // namespace
}  // namespace lotmere::test

#include "files/import.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <random>

#include "support/desk_script.hpp"
#include "support/test_store.hpp"

namespace lotmere::test {
namespace {

constexpr PeriodNo kPeriod = 2024007;
constexpr DrawNumbers kNumbers{{1, 2, 3, 4, 5, 6}, 7};
using Ticket = std::optional<ImportTicket>;
const Ticket kTicket = ImportTicket{kPeriod, kNumbers};

// What lines of chance don't reach; for the rest they have the rules step by step.
TEST(ImportLine, IsForgivingAsFarAsItGoes) {
  const Ticket more = ImportTicket{kPeriod, kNumbers, true};
  const std::tuple<int, const char*, Ticket> rows[] = {
      {0, "\t 1，2\u30003-4+5，6，7。。\r", kTicket},
      {0, "1a 2/9 x3 4 5 6 7 8 9", more},    // passes over what isn't a digit, and over an eighth number
      {0, "1 2 3 4 5 6 7*8   。", kTicket},  // what a number ends in is no number
      {0, "1，2，3，4，5，6，7", {}},        // 13 characters, 25 bytes
      {0, "4294967297 2 3 4 5 6 7", {}},
      {1, "第２０２４００７期01 2 3 4 5 6 7 8", more},
      {1, "0000000 01 02 03 04 05 06 07", {}}};
  for (const auto& [format, line, ticket] : rows)
    EXPECT_EQ(importLine(line, {ImportFormat(format), kPeriod}), ticket) << line;
}

// The same rules step by step, on characters.
Ticket modelLine(std::u32string line, int format) {
  for (char32_t& c : line)
    if (c >= U'０' && c <= U'９') c -= U'０' - U'0';
  const auto cut_to_digit = [&] { line.erase(0, std::min(line.size(), line.find_first_of(U"0123456789"))); };
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
    if (std::u32string(U" \t-+，\u3000|＋｜").find(c) != std::u32string::npos) c = U',';
  if (format == 2) line.erase(0, std::min(line.size(), line.find(U',')));
  if (format != 0) cut_to_digit();
  std::array<double, 7> a{};
  for (double& value : a) {
    for (std::size_t i = 0; i < line.size() && line[i] >= U'0' && line[i] <= U'9'; ++i)
      value = value * 10 + (line[i] - U'0');
    line.erase(0, line.find(U','));
    if (line.empty()) break;
    cut_to_digit();
    if (line.empty()) break;
  }
  ImportTicket ticket{period, {}};
  for (std::size_t i = 0; i < 7; ++i) {
    if (a.at(i) < 1 || a.at(i) > (i < 6 ? 33 : 16)) return {};
    (i < 6 ? ticket.numbers.reds.at(i) : ticket.numbers.blue) = static_cast<int>(a.at(i));
  }
  ticket.more = line.find_first_of(U"0123456789") != std::u32string::npos;
  return ticket;
}

std::string toUtf8(const std::u32string& text) {
  std::string utf8;
  for (const char32_t c : text) {
    if (c >= 0x80) utf8 += {char(0xE0 | c >> 12), char(0x80 | (c >> 6 & 0x3F))};
    utf8 += c < 0x80 ? char(c) : char(0x80 | (c & 0x3F));
  }
  return utf8;
}

TEST(ImportLine, AgreesWithTheRulesStepByStep) {
  const std::u32string separators = U" ,-+，\u3000|＋｜\t";
  const std::vector<std::u32string> parts = {U"，", U"\u3000", U" ", U"\t", U"/",      U"－",
                                             U"期", U"20240",  U"0", U"７", U"2007001"};
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
    const Ticket expected = modelLine(line, format);
    ASSERT_EQ(importLine(toUtf8(line), {ImportFormat(format), kPeriod}), expected) << toUtf8(line);
    found += expected ? 1 : 0;
  }
  EXPECT_TRUE(found > 5'000 && found < 55'000) << found;
}

class Import : public testing::Test {
 protected:
  ImportResult import(const std::string& bytes, int format = 0, Existing existing = Existing::ask) {
    std::ofstream(file_, std::ios::binary) << bytes;
    return importTickets(home_.store(), desk_, file_, {ImportFormat(format), kPeriod}, existing);
  }
  // ID, running number, period, first red, blue and the sum of the work columns of each row.
  std::string rows() {
    Query query = home_.store().query(
        R"(SELECT "ID"||' '||"序号"||' '||"期号"||' '||"红球1"||' '||"蓝球"||' '||
           ("过滤标记"+"缩水标记"+"精选标记"+"临时数据"+"红球中"+"蓝球中")||';' FROM "日志表" ORDER BY "ID")");
    std::string text;
    while (query.next()) text += query.text(0);
    return text;
  }

  TempHome home_;
  ScriptedDesk desk_;
  const std::filesystem::path file_ = home_.path() / "tickets.txt";
};

TEST_F(Import, GoesOnBehindTheRowsThatAreKeptOrStartsAnew) {
  const ImportResult first = import("01 02 03 04 05 06 07\n\r\nnothing\n\r02 02 03 04 05 06 08\nx\n");
  EXPECT_TRUE(first.count == 2 && first.skipped == 2 && first.first_skipped == 3);
  EXPECT_TRUE(desk_.asked.empty()) << "an empty table has nothing to keep";
  putTicket(home_.store(), 9, 1, 2001001, kNumbers);
  const std::string two = "1 1 2024007 1 7 0;2 2 2024007 2 8 0;";
  const std::string old = two + "9 1 2001001 1 7 0;";
  const std::string new_lines = "2007001 03 02 03 04 05 06 09\r2007002 04 02 03 04 05 06 10\r";
  desk_.choices = {std::nullopt, 2, 0, 1};
  desk_.runningText().set("text");
  for (int times = 0; times < 2; ++times) {
    const ImportResult result = import(new_lines, 1);
    EXPECT_TRUE(result.cancelled && result.count == 0);
    EXPECT_EQ(rows(), old) << "Esc and the third button change nothing";
  }
  EXPECT_EQ(desk_.buttons, (std::vector<std::string>{"保留并追加", "替换", "取消"}));
  EXPECT_EQ(import(new_lines, 1).count, 2);
  const std::string more = "10 3 2007001 3 9 0;11 4 2007002 4 10 0;";
  EXPECT_EQ(rows(), old + more);
  const std::string two_lines = "1 01 02 03 04 05 06 07\r\n2 02 02 03 04 05 06 08\r\n";
  EXPECT_EQ(import(two_lines, 2).count, 2);
  EXPECT_EQ(rows(), two);
  EXPECT_EQ(desk_.runningText().text(), "text\r\n\r\n表格中号码全部删除已完成．");
  EXPECT_EQ(import(two_lines, 2, Existing::keep).count, 2);
  EXPECT_EQ(rows(), two + "3 3 2024007 1 7 0;4 4 2024007 2 8 0;");
  EXPECT_EQ(import(two_lines, 2, Existing::replace).count, 2);
  EXPECT_EQ(rows(), two);
  EXPECT_EQ(desk_.asked.size(), 4U) << "what was said ahead of time isn't asked";
}

// Running numbers that are taken for reds: lines that could be read, and those past 33 that can't.
TEST_F(Import, AWrongFormatIsToldAndAskedAboutBeforeAnythingIsStored) {
  putTicket(home_.store(), 9, 1, 2001001, kNumbers);
  std::string lines = "序号 号码\r\n01 02 03 04 05 06 07\r\n\r\n";
  for (int seq = 30; seq < 40; ++seq) lines += std::to_string(seq) + " 01 02 03 04 05 16+07\r\n";
  desk_.choices = {std::nullopt, 1, 0, 2};
  for (int times = 0; times < 3; ++times) EXPECT_TRUE(import(lines).cancelled) << times;
  EXPECT_EQ(rows(), "9 1 2001001 1 7 0;");
  ASSERT_EQ(desk_.asked.size(), 4U);
  EXPECT_NE(desk_.asked[0].find("有 ４ 行"), std::string::npos) << desk_.asked[0];
  EXPECT_NE(desk_.asked[0].find("第 ４ 行"), std::string::npos) << desk_.asked[0];
  EXPECT_EQ(desk_.asked[3], "表格中原有的数据要保留吗？") << "asked behind the first, and cancelled";
  desk_.choices = {0};
  const ImportResult all = import(lines, 0, Existing::keep);
  EXPECT_TRUE(all.count == 5 && all.skipped == 7 && all.first_skipped == 1);
  EXPECT_EQ(import(lines, 2, Existing::replace).count, 10) << "the right format asks nothing";
  desk_.told.clear();
  std::ofstream(file_) << lines;
  importCommand(home_.store(), desk_, file_, ImportChoice{ImportFormat(2), kPeriod}, Existing::keep);
  ASSERT_EQ(desk_.told.size(), 1U);
  EXPECT_EQ(desk_.told[0].text, "数据导入完成，共导入：１０ 注！跳过了 ２ 行，第一处在第 １ 行。");
  EXPECT_TRUE(desk_.runningText().text().ends_with(desk_.told[0].text));
}

TEST_F(Import, ReadsUtf8AndElseGb18030) {
  std::string wide = "x";  // its characters lie across every edge of a block
  for (int i = 0; i < 200'000; ++i) wide += "第";
  const std::string utf8 = "\xEF\xBB\xBF 1，2\u30003，4 5 6 7 第\n" + wide + "\n1，2，3，4，5，6，7。。";
  EXPECT_EQ(import(utf8).count, 2);
  // The second byte of a character may be a bar, and what is no character is passed over.
  const std::string gb = std::string(300'000, '\xFF') + "\n11\x81|9\xA3\xAC 2\xA1\xA1 3 4 5 6 7 \xB5\xDA\xA1";
  EXPECT_EQ(import(gb, 0, Existing::replace).count, 1);
  EXPECT_EQ(rows(), "1 1 2024007 11 7 0;");
  // A mark in front; two characters that would be one beyond the last of UTF-8, and the line too short.
  for (const char* line : {"\x84\x31\x95\x33 01 02 3 4 5 6 7", "1 2 3 4 5 6 7\xF4\x90\x81\x81"})
    EXPECT_EQ(import(line, 0, Existing::keep).count, 1) << line;
}

TEST_F(Import, ReadsUtf16BehindItsMark) {
  // A surrogate alone, which takes nothing of the line behind it along; its first byte is a line feed.
  const std::u16string text = std::u16string(150'000, u'第') + u"\xD80A\n01，02，03，04，05，06＋07\r\n";
  for (const bool little : {true, false}) {
    std::string bytes = little ? "\xFF\xFE" : "\xFE\xFF";
    for (const char16_t unit : text) {
      const char low = static_cast<char>(unit & 0xFF), high = static_cast<char>(unit >> 8);
      bytes += {little ? low : high, little ? high : low};
    }
    const ImportResult result = import(bytes, 0, Existing::keep);
    EXPECT_TRUE(result.count == 1 && result.first_skipped == 1 && result.skipped == 1) << little;
    EXPECT_TRUE(
        import(bytes + std::string(2, '\0'), 0, Existing::keep).refusal.starts_with("这不是文本文件"));
    EXPECT_EQ(import(bytes + "0", 0, Existing::keep).count, 1) << "half a character";
  }
}

TEST_F(Import, ChangesNothingUnlessItSucceeds) {
  putTicket(home_.store(), 9, 1, 2001001, kNumbers);
  desk_.runningText().set("text");
  const std::string line = "01 02 03 04 05 06 07\n";
  std::string large;
  for (int i = 0; i < 20'000; ++i) large += line;
  for (const std::string& bytes : {std::string(), line + '\0', std::string("01 02 03 04 05 06\n")})
    EXPECT_EQ(import(bytes).count, 0) << "without asking anything";
  desk_.choices = {1};
  desk_.course().on_look = [&] {
    desk_.choices.empty() ? throw std::runtime_error("the face fails") : void();
  };
  EXPECT_THROW(import(large), std::runtime_error);
  int served = 0;
  desk_.course().on_look = [&] { ++served; };
  std::filesystem::resize_file(file_, std::uintmax_t{1} << 30);
  EXPECT_EQ(importTickets(home_.store(), desk_, file_, {}).refusal, "这不是文本文件，没有导入号码！");
  EXPECT_LT(served, 5) << "what is no text isn't read to its end";
  std::filesystem::resize_file(file_, (std::uintmax_t{1} << 30) + 1);
  for (const auto& path : {home_.path() / "none", home_.path(), std::filesystem::path(), file_})
    EXPECT_THROW((void)importTickets(home_.store(), desk_, path, {}), std::filesystem::filesystem_error);
  EXPECT_EQ(rows(), "9 1 2001001 1 7 0;");
  EXPECT_EQ(desk_.runningText().text(), "text");
  EXPECT_FALSE(desk_.course().stopRequested() || desk_.course().open);
  EXPECT_EQ(importCommand(home_.store(), desk_, file_, std::nullopt).count, 0) << "a cancelled dialog";
  EXPECT_EQ(desk_.runningText().text(), "text\r\n\r\n数据导入完成，共导入：０ 注！");
  for (const char* typed : {"200700", "2007abc", "20070011", ""}) {
    desk_.told.clear();
    EXPECT_FALSE(readImportChoice(desk_, 0, typed) || readImportChoice(desk_, 2, typed)) << typed;
    EXPECT_EQ(desk_.told.size(), 2U);
    EXPECT_TRUE(readImportChoice(desk_, 1, typed)) << "the lines hold their periods";
  }
  EXPECT_EQ(readImportChoice(desk_, 2, "２００７００１")->period, 2007001);
}

TEST_F(Import, GoesOnToTheEndOfTheFile) {
  desk_.course().on_look = [&] { desk_.course().requestStop(); };
  std::string large;
  for (int i = 0; i < 20'000; ++i) large += "01 02 03 04 05 06 07\n";
  EXPECT_EQ(import(large).count, 20'000);
  EXPECT_FALSE(desk_.course().stopRequested()) << "the next job isn't stopped for it";
}

}  // namespace
}  // namespace lotmere::test

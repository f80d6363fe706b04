// What a file holds, told by its beginning.
#include "files/file_content.hpp"

#include <gtest/gtest.h>

#include <fstream>

#include "conditions/condition_store.hpp"
#include "conditions/set_text.hpp"
#include "start/transfer.hpp"
#include "support/desk_script.hpp"
#include "support/test_store.hpp"

namespace lotmere::test {
namespace {

const Date kToday = std::chrono::August / 20 / 2026;

std::string repeated(const std::string& line, std::size_t times) {
  std::string text;
  for (std::size_t i = 0; i < times; ++i) text += line;
  return text;
}

TEST(FileContent, IsToldByWhatTheReadersTake) {
  using enum FileKind;
  using enum ImportFormat;
  const std::string draw = "2026090,2026-08-18,1,2,3,4,5,6,7\n";
  const struct {
    const char* what;
    std::string bytes;
    FileContent content;
  } rows[] = {
      {"draws", draw, {draws}},
      {"a draw among other lines", "a page\n1 2 3\n" + draw + "the end of the page\n", {draws}},
      {"draws with their dates behind the numbers", "2026090 01 02 03 04 05 06 07 2026-08-18\n", {draws}},
      {"a draw whose date is yet to come", "2026095,2026-08-30,1,2,3,4,5,6,7\n", {draws}},
      {"numbers alone", "01 02 03 04 05 06 + 07\n\n01 02 03 04 05 06 + 08\n", {tickets, numbers}},
      {"numbers with a title", "my numbers\n01 02 03 04 05 06 07\n", {tickets, numbers}},
      {"periods without dates",
       "2026090 01 02 03 04 05 06 07\n2026091 01 02 03 04 05 06 07\n",
       {tickets, period_numbers}},
      {"a table with hits", "期号,红球,蓝球\n2026090,01,02,03,04,05,06,07,3,1\n", {tickets, period_numbers}},
      {"running numbers", "1 08 09 10 11 12 13 07\n2 08 09 10 11 12 14 07\n", {tickets, seq_numbers}},
      {"compound bets", "01 02 03 05 08 13 21 + 04 09 (14注)\n", {tickets, compound}},
      {"more tickets than draws", draw + repeated("01 02 03 04 05 06 07\n", 2), {tickets, numbers}},
      {"one row of numbers in a letter", "dear all\n01 02 03 04 05 06 07\nyours\nme\n", {other_text}},
      {"a red that is none", "01 02 03 04 05 34 07\n", {other_text}},
      {"a set", setText(ConditionSet{}), {conditions}},
      {"a set of a later program", "Lotmere 条件 99\n", {conditions}},
      {"nothing", "", {other_text}},
      {"a spreadsheet", std::string("PK\3\4\0\0\0\0", 8) + draw, {no_text}},
      {"another database", std::string("SQLite format 3\0", 16) + std::string(100, '\0'), {no_text}},
  };
  for (const auto& [what, bytes, content] : rows) {
    const FileContent told = contentOf(bytes, true, kToday);
    EXPECT_TRUE(told == content) << what << ": " << int(told.kind) << ' ' << int(told.format);
  }
}

// The end of the head cuts a line, or a character; what it leaves of them counts for nothing.
TEST(FileContent, TheFirstPartOfAFileIsEnough) {
  TempHome home;
  const auto file = home.path() / "a file";
  const std::string ticket = "01，02，03，04，05，06＋07\n";
  for (const std::string& line : {ticket, "x" + ticket}) {
    std::ofstream(file, std::ios::binary)
        << line << repeated(ticket, kContentHead / ticket.size()) << repeated("2026090 2026-08-18\n", 9'999);
    EXPECT_EQ(readFileContent(file, kToday).kind, FileKind::tickets);
  }
  EXPECT_THROW(static_cast<void>(readFileContent(home.path(), kToday)), std::filesystem::filesystem_error);
  ScriptedDesk desk;
  std::filesystem::remove(file);
  ASSERT_EQ(saveEverything(home.store(), {home.path()}, desk, file), Outcome::done);
  EXPECT_EQ(readFileContent(file, kToday).kind, FileKind::everything);
}

}  // namespace
}  // namespace lotmere::test

#include <gtest/gtest.h>

#include "cli_home.hpp"
#include "core/text.hpp"

namespace lotmere::test {
namespace {

// A person reads it at a glance in a terminal of two lines.
constexpr std::size_t kLongestLine = 160;

void expect_Refusal(const Reply& reply, int status) {
  EXPECT_EQ(reply.status, status);
  EXPECT_EQ(reply.out, "");
  ASSERT_FALSE(reply.err.empty());
  EXPECT_EQ(reply.err.find('\n'), reply.err.size() - 1) << reply.err;
  EXPECT_FALSE(trim(reply.err).empty());
  EXPECT_LE(count_Characters(reply.err), kLongestLine) << reply.err;
}

Arguments add_Draw(const std::string& period, const std::string& date, const Arguments& numbers) {
  Arguments arguments{"draws", "add", period, date};
  arguments.insert(arguments.end(), numbers.begin(), numbers.end());
  return arguments;
}

struct BadCase {
  const char* fault;
  int status;
  Arguments arguments;
};

// A home where every command has something to lose: draws, a selection, conditions, tickets.
class BadInput : public testing::Test {
 protected:
  BadInput() {
    home_.do_Step({"draws", "fetch", "--all", home_.put_File("list.txt", kDrawList)});
    home_.do_Step({"numbers", "pick", "--red-tuo", "1-8", "--blue-tuo", "1"});
    home_.do_Step({"conditions", "allow", "总和值", "60-140"});
    home_.do_Step({"conditions", "group", "1", "1-5"});
    home_.do_Step({"tickets", "init", "2024007"});
  }

  void expect_AllRefused(const std::vector<BadCase>& cases) const {
    const std::string before = home_.contents();
    const auto files = home_.files();
    for (const BadCase& bad : cases) {
      SCOPED_TRACE(bad.fault);
      expect_Refusal(home_.run(bad.arguments), bad.status);
      EXPECT_TRUE(home_.contents() == before) << "the store has changed";
      EXPECT_EQ(home_.files(), files);
    }
  }

  CliHome home_;
};

TEST_F(BadInput, Usage) {
  expect_AllRefused({
      {"no command", 2, {}},
      {"an unknown group", 2, {"draw", "list"}},
      {"an unknown command", 2, {"draws", "lst"}},
      {"a group alone", 2, {"tickets"}},
      {"an unknown option", 2, {"draws", "list", "--first", "3"}},
      {"a word too many", 2, {"numbers", "clear", "all"}},
      {"an option without its value", 2, {"numbers", "pick", "--red-tuo"}},
      {"an option given twice", 2, {"numbers", "pick", "--red-tuo", "1-6", "--red-tuo", "7"}},
      {"a missing period", 2, {"tickets", "run"}},
      {"a missing file", 2, {"tickets", "export"}},
      {"a missing state", 2, {"conditions", "use", "总和值"}},
      {"an answer that is neither yes nor no", 2, {"--answer", "maybe", "tickets", "clear"}},
      {"a count of 0", 2, {"draws", "list", "--last", "0"}},
      {"a count beyond any number", 2, {"draws", "list", "--last", "99999999999"}},
      {"a format that isn't there", 2, {"tickets", "export", "x.txt", "--format", "2"}},
      {"an interval that isn't there", 2, {"conditions", "interval", "5", "1-3"}},
      {"a group that isn't there", 2, {"conditions", "group", "0", "1-3"}},
  });
  EXPECT_NE(home_.run({"dreaws", "list"}).err.find("dreaws"), std::string::npos) << "the wrong word is named";
  EXPECT_NE(home_.run({"draws", "lst"}).err.find("lst"), std::string::npos) << "the wrong word is named";
}

TEST_F(BadInput, PeriodsAndDraws) {
  const Arguments good{"1", "2", "3", "4", "5", "6", "7"};
  expect_AllRefused({
      {"a period of letters", 1, {"tickets", "init", "abc"}},
      {"an empty period", 1, {"tickets", "init", ""}},
      {"a negative period", 1, {"tickets", "run", "-2024001"}},
      {"a period without a number in its year", 1, {"tickets", "init", "2026000"}},
      {"a year before the lottery", 1, {"tickets", "list", "1999001"}},
      {"a short period", 1, {"draws", "delete", "20240"}},
      {"a period that isn't stored", 1, {"draws", "delete", "2024004"}},
      {"a period without tickets", 1, {"tickets", "run", "2024001"}},
      {"a range turned round", 1, {"draws", "stats", "2024005", "2024001"}},
      {"a range without draws", 1, {"draws", "stats", "2030001", "2030009"}},
      {"a bad end of a range", 1, {"draws", "stats", "2024001", "x"}},
      {"a draw in period 0", 1, add_Draw("0", "2024-01-16", good)},
      {"a day that is none", 1, add_Draw("2024007", "2024-02-30", good)},
      {"a date of another form", 1, add_Draw("2024007", "16.01.2024", good)},
      {"no date", 1, add_Draw("2024007", "", good)},
      {"the same red twice", 1, add_Draw("2024007", "2024-01-16", {"1", "1", "3", "4", "5", "6", "7"})},
      {"red 0", 1, add_Draw("2024007", "2024-01-16", {"0", "2", "3", "4", "5", "6", "7"})},
      {"red 34", 1, add_Draw("2024007", "2024-01-16", {"1", "2", "3", "4", "5", "34", "7"})},
      {"blue 17", 1, add_Draw("2024007", "2024-01-16", {"1", "2", "3", "4", "5", "6", "17"})},
      {"six numbers", 2, add_Draw("2024007", "2024-01-16", {"1", "2", "3", "4", "5", "6"})},
      {"eight numbers", 2, add_Draw("2024007", "2024-01-16", {"1", "2", "3", "4", "5", "6", "7", "8"})},
  });
  // Words among the numbers of a draw: refused as bad usage or as a bad draw, but refused.
  for (const char* word : {"a", "-7", "1.5", "0x1", "", "99999999999999999999"}) {
    SCOPED_TRACE(word);
    const std::string before = home_.contents();
    const Reply reply = home_.run(add_Draw("2024007", "2024-01-16", {word, "2", "3", "4", "5", "6", "7"}));
    expect_Refusal(reply, reply.status == 2 ? 2 : 1);
    EXPECT_TRUE(home_.contents() == before);
  }
}

TEST_F(BadInput, NumberLists) {
  std::vector<BadCase> cases;
  for (const char* list : {"",      " ",     "1,,2", ",1",  "1,",  "5-2", "1-",
                           "-",     "1-2-3", "1-99", "0",   "0-6", "34",  "1,1",
                           "1-5,3", "a",     "1;2",  "1 2", "+1",  "1.5", "99999999999999999999"}) {
    cases.push_back({list, 1, {"numbers", "pick", "--red-tuo", list, "--blue-tuo", "1"}});
    cases.push_back({list, 1, {"numbers", "pick", "--red-tuo", "1-6", "--blue-tuo", list}});
  }
  for (const char* list : {"1,,2", "5-2", "1-99", "a"}) {
    cases.push_back({list, 1, {"conditions", "interval", "1", list}});
    cases.push_back({list, 1, {"conditions", "group", "1", list}});
  }
  expect_AllRefused(cases);
}

TEST_F(BadInput, SelectionsBeyondALimit) {
  expect_AllRefused({
      {"a red both Tuo and Dan", 1, {"numbers", "pick", "--red-tuo", "1-10", "--red-dan", "3"}},
      {"a blue both Tuo and Dan", 1, {"numbers", "pick", "--blue-tuo", "1", "--blue-dan", "1"}},
      {"six red Dan", 1, {"numbers", "pick", "--red-dan", "1-6", "--red-tuo", "7-9"}},
      {"two blue Dan", 1, {"numbers", "pick", "--blue-dan", "1,2"}},
      {"a blue Tuo beside a blue Dan", 1, {"numbers", "pick", "--blue-dan", "1", "--blue-tuo", "2"}},
      {"blue 17", 1, {"numbers", "pick", "--blue-tuo", "17"}},
      {"100,776 tickets", 1, {"numbers", "pick", "--red-tuo", "1-19", "--blue-tuo", "1-4"}},
      {"all tickets", 1, {"numbers", "pick", "--red-tuo", "1-33", "--blue-tuo", "1-16"}},
  });
  home_.do_Step({"numbers", "pick", "--red-tuo", "1-5", "--blue-tuo", "1"});
  expect_AllRefused({{"too few numbers for a ticket", 1, {"tickets", "init", "2024008"}}});
}

TEST_F(BadInput, Conditions) {
  expect_AllRefused({
      {"an unknown name", 1, {"conditions", "use", "没有这个", "on"}},
      {"an empty name", 1, {"conditions", "use", "", "on"}},
      {"an unknown number", 1, {"conditions", "use", "99999", "on"}},
      {"an unknown state", 2, {"conditions", "use", "总和值", "maybe"}},
      {"a value past the last", 1, {"conditions", "allow", "总和值", "300"}},
      {"values turned round", 1, {"conditions", "allow", "总和值", "140-60"}},
      {"values that are words", 1, {"conditions", "allow", "总和值", "all"}},
      {"no values", 1, {"conditions", "allow", "总和值", ""}},
      {"a run shape that isn't there", 1, {"conditions", "allow", "连号", "7"}},
      {"a good and a bad shape", 1, {"conditions", "allow", "四区间", "2,2,1,1;9,9"}},
      {"values of an unknown condition", 1, {"conditions", "allow", "没有这个", "1"}},
  });
}

TEST_F(BadInput, FilesAndAddresses) {
  std::filesystem::create_directory(home_.path() / "folder");
  const std::string here = home_.path().string();
  expect_AllRefused({
      {"a file in a folder that isn't there", 1, {"tickets", "export", here + "/none/x.txt"}},
      {"a folder as file", 1, {"tickets", "export", here + "/folder"}},
      {"a folder with a slash as file", 1, {"tickets", "export", here + "/folder/"}},
      {"a file as folder", 1, {"tickets", "export", here + "/list.txt/x.txt"}},
      {"no file name", 1, {"tickets", "export", ""}},
      {"an unknown column", 1, {"tickets", "export", here + "/x.txt", "--columns", "红球"}},
      {"no column", 1, {"tickets", "export", here + "/x.txt", "--columns", ""}},
      {"a file that isn't there", 1, {"draws", "fetch", "file://" + here + "/none.txt"}},
      {"a folder", 1, {"draws", "fetch", "file://" + here + "/folder"}},
      {"an address where nobody answers", 1, {"draws", "fetch", "http://127.0.0.1:1/list.txt"}},
      {"no address", 1, {"draws", "fetch", "--all", "nonsense"}},
      {"a scheme that isn't read", 1, {"draws", "fetch", "ftp://127.0.0.1:1/list.txt"}},
  });
  const struct {
    const char* fault;
    std::string text;
  } files[] = {{"an empty file", ""},
               {"a page", "<html><body>404</body></html>"},
               {"draws without the mark", "2024007 2024/01/16 01 02 03 04 05 06 07\n"},
               {"the mark without the sign in front", "336= 2024007 2024/01/16 01 02 03 04 05 06 07\n"}};
  for (const auto& [fault, text] : files)
    expect_AllRefused({{fault, 1, {"draws", "fetch", home_.put_File("list.txt", text)}}});
}

TEST_F(BadInput, ATornOffListStoresOnlyItsWholeDraws) {
  const std::string torn = home_.put_File("list.txt",
                                          "=336= 2024007 2024/01/16 01 02 03 04 05 06 07\n"
                                          "2024008 2024/01/18 01 02 03 04 05 05 07\n"
                                          "2024009 2024/13/21 01 02 03 04 05 06 07\n"
                                          "2024010 2024/01/23 01 02 03 04 0");
  const Reply reply = home_.run({"draws", "fetch", torn});
  EXPECT_EQ(reply.status, 0);
  EXPECT_NE(reply.out.find("新增 1 期，更新 0 期，跳过 3 条"), std::string::npos) << reply.out;
  EXPECT_EQ(home_.run({"draws", "list", "--last", "1"}).out, "2024007 2024-01-16 01 02 03 04 05 06+07\n");
}

}  // namespace
}  // namespace lotmere::test

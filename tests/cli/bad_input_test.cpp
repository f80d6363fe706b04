#include "cli_home.hpp"

namespace lotmere::test {
namespace {

Arguments addDraw(const std::string& period, const std::string& date, const Arguments& numbers) {
  Arguments arguments{"draws", "add", period, date};
  arguments.insert(arguments.end(), numbers.begin(), numbers.end());
  return arguments;
}

const std::string kLongWord = "\x1B[2J" + std::string(300, 'x');

// A home where every command has something to lose: draws, a selection, conditions, tickets.
class BadInput : public testing::Test {
 protected:
  BadInput() {
    home_.doStep({"draws", "fetch", "--all", home_.putFile("list.txt", kDrawList)});
    home_.doStep({"numbers", "pick", "--red-tuo", "1-8", "--blue-tuo", "1"});
    home_.doStep({"conditions", "allow", "总和值", "60-140"});
    home_.doStep({"conditions", "group", "1", "1-5"});
    home_.doStep({"tickets", "init", "2024007"});
  }

  CliHome home_;
};

TEST_F(BadInput, Usage) {
  home_.expectRefused({
      {"no command", 2, {}},
      {"an unknown option", 2, {"draws", "list", "--first", "3"}},
      {"an answer that is neither yes nor no", 2, {"--answer", "maybe", "tickets", "clear"}},
      {"an interval that isn't there", 2, {"conditions", "interval", "5", "1-3"}},
  });
  EXPECT_NE(home_.run({"dreaws", "list"}).err.find("dreaws"), std::string::npos) << "the wrong word is named";
}

TEST_F(BadInput, PeriodsAndDraws) {
  const Arguments good{"1", "2", "3", "4", "5", "6", "7"};
  home_.expectRefused({
      {"a period of letters", 1, {"tickets", "init", kLongWord}},
      {"an empty period, which isn't a missing one", 1, {"tickets", "list", ""}},
      {"a deletion that nobody answered", 1, {"draws", "delete", "2024006"}},
      {"a period without tickets", 1, {"tickets", "run", "2024001"}},
      {"a range turned round", 1, {"draws", "stats", "2024005", "2024001"}},
      {"a match turned round", 1, {"conditions", "match", "2024002", "2024001", "5"}},
      {"an end that is no period", 1, {"counts", "blue", "2024001", "today"}},
      {"balls of another colour", 2, {"omission", "green", "202400"}},
      {"a period too short", 1, {"omission", "blue", "202400"}},
      {"hints for a period too short", 1, {"numbers", "hints", "202400"}},
      {"an analysis up to a draw that isn't stored", 1, {"omission", "red", "2024004"}},
      {"a check without a draw", 1, {"tickets", "check", "2024007"}},
      {"a day that is none", 1, addDraw("2024007", "2024-02-30", good)},
      {"blue 17", 1, addDraw("2024007", "2024-01-16", {"1", "2", "3", "4", "5", "6", "17"})},
  });
  for (const char* word : {"a", "-7", "1.5", "0x1", "", "99999999999999999999"})
    home_.expectRefused({{word, 2, addDraw("2024007", "2024-01-16", {word, "2", "3", "4", "5", "6", "7"})}});
}

TEST_F(BadInput, SetsAndTheWayBack) {
  home_.doStep({"sets", "save", "周末"});
  home_.putFile("bad.txt", "Lotmere 条件 1\n总和值：开 999\n完\n");
  const std::string bad = (home_.path() / "bad.txt").string();
  home_.expectRefused({
      {"a set that isn't there", 1, {"sets", "load", "平日"}},
      {"numbers that it doesn't hold", 1, {"sets", "load", "周末", "--with-numbers"}},
      {"a name of blanks", 1, {"sets", "save", "  "}},
      {"a replacement that nobody answered", 1, {"sets", "save", "周末", "--with-numbers"}},
      {"a deletion that nobody answered", 1, {"sets", "delete", "周末"}},
      {"the program's own file", 1, {"sets", "export", "周末", home_.home().mainDb().string()}},
      {"a file that isn't there", 1, {"sets", "import", (home_.path() / "none.txt").string()}},
      {"a value that breaks a rule", 1, {"sets", "import", bad}},
      {"another set that isn't there", 1, {"sets", "diff", "周末", "平日"}},
      {"a back-test of a set that isn't there", 1, {"conditions", "backtest", "--set", "平日"}},
      {"nothing to make again", 1, {"conditions", "redo"}},
      {"no tickets to bring back again", 1, {"tickets", "redo"}},
  });
}

// What a list may hold is tested with its reader; here, that every command asks it, and for its own numbers.
TEST_F(BadInput, NumberLists) {
  for (const std::string& list : {std::string(), std::string("5-2"), kLongWord})
    home_.expectRefused({{list.c_str(), 1, {"numbers", "pick", "--red-tuo", list, "--blue-tuo", "1"}},
                         {list.c_str(), 1, {"numbers", "pick", "--red-tuo", "1-6", "--blue-tuo", list}},
                         {list.c_str(), 1, {"conditions", "interval", "1", list}},
                         {list.c_str(), 1, {"conditions", "group", "1", list}}});
}

TEST_F(BadInput, SelectionsAndConditions) {
  home_.expectRefused({
      {"a red both Tuo and Dan", 1, {"numbers", "pick", "--red-tuo", "1-10", "--red-dan", "3"}},
      {"no number at all", 2, {"numbers", "pick"}},
      {"factory values without a word", 1, {"conditions", "reset"}},
      {"six red Dan", 1, {"numbers", "pick", "--red-dan", "1-6", "--red-tuo", "7-9"}},
      {"a blue Tuo beside a blue Dan", 1, {"numbers", "pick", "--blue-dan", "1", "--blue-tuo", "2"}},
      {"100,947 tickets", 1, {"numbers", "pick", "--red-tuo", "1-23", "--blue-tuo", "1"}},
      {"an unknown name", 1, {"conditions", "use", kLongWord, "on"}},
      {"the strength of an unknown name", 1, {"conditions", "strength", kLongWord}},
      {"the strength against 10,001 draws", 2, {"conditions", "strength", "1", "--last", "10001"}},
      {"an unknown state", 2, {"conditions", "use", "总和值", "maybe"}},
      {"a value past the last", 1, {"conditions", "allow", "总和值", "300"}},
      {"place 8", 2, {"conditions", "position", "8", "1"}},
      {"a blue at place 7 that isn't there", 1, {"conditions", "position", "7", "17"}},
      {"an interval behind the last", 1, {"conditions", "division", "六区间7", "1"}},
      {"seven reds to match", 2, {"conditions", "match", "2024001", "2024002", "7"}},
      {"a shrink type behind the last", 2, {"conditions", "shrink", "8"}},
      {"an effort behind the last", 2, {"conditions", "shrink", "6", "--effort", "10"}},
      {"neither on nor off", 2, {"conditions", "shrink", "6", "--fewer", "maybe"}},
      {"no shrink type", 2, {"conditions", "shrink", "--fewer", "on"}},
  });
  const std::string range = home_.run({"numbers", "pick", "--blue-tuo", "17"}).err;
  EXPECT_NE(range.find("应为 1 到 16 的"), std::string::npos) << range;
  home_.doStep({"numbers", "pick", "--red-tuo", "1-5", "--blue-tuo", "1"});
  home_.expectRefused({{"too few numbers for a ticket", 1, {"tickets", "init", "2024008"}}});
}

TEST_F(BadInput, FilesAndAddresses) {
  const std::string here = home_.path().string();
  home_.putFile("garbage.txt", std::string("01 02 03 04 05 06 07\n\0", 22));
  home_.expectRefused({
      {"a file in a folder that isn't there", 1, {"tickets", "export", here + "/none/x.txt"}},
      {"no file name", 1, {"tickets", "export", ""}},
      {"an empty address, which isn't a missing one", 1, {"draws", "fetch", ""}},
      {"bets with columns of tickets",
       2,
       {"tickets", "export", here + "/x.txt", "--compound", "--columns", "号码"}},
      {"bets in a format of tickets",
       2,
       {"tickets", "export", here + "/x.txt", "--format", "1", "--compound"}},
      {"a draw list that isn't there", 1, {"draws", "import", here + "/none"}},
      {"an answer that is none", 2, {"draws", "import", here + "/list.txt", "--existing", "ask"}},
      {"compound bets as a sheet", 1, {"tickets", "export", here + "/x.xlsx", "--compound"}},
      {"a layout of text for a table", 1, {"tickets", "export", here + "/x.csv", "--format", "1"}},
      {"empty lines in a table", 1, {"tickets", "export", here + "/x", "--as", "csv", "--columns", "分隔行"}},
      {"an unknown column", 1, {"tickets", "export", here + "/x.txt", "--columns", "红球"}},
      {"no address", 1, {"draws", "fetch", "--all", "nonsense"}},
      {"no address to remember", 1, {"draws", "address", "list", "ftp://site/list"}},
      {"an address for nothing", 2, {"draws", "address", "home", "http://site/list"}},
      {"two spans of draws", 2, {"conditions", "backtest", "--all", "--last", "5"}},
      {"a tolerance of ten", 2, {"conditions", "tolerance-all", "10"}},
      {"the store as a sheet", 1, {"tickets", "funnel", "--csv", here + "/Lotmere.db"}},
      {"no ticket file", 1, {"tickets", "import", here + "/none", "--period", "2024007"}},
      {"no text", 1, {"--answer", "no", "tickets", "import", here + "/garbage.txt", "--period", "2024007"}},
      {"tickets of no period", 1, {"tickets", "import", here + "/list.txt"}},
  });
  const std::string page = home_.putFile("list.txt", "<html><body>404</body></html>");
  home_.expectRefused({{"a page for a list", 1, {"draws", "fetch", page}}});
}

TEST_F(BadInput, HomesThatCannotBeOpened) {
  const std::string before = home_.contents();
  const std::string file = (home_.path() / "list.txt").string();
  for (const std::string& home : {file, file + "/below", std::string("/proc/lotmere")})
    expectOneLine(runBare({"--home", home, "numbers", "show"}), 1);
  const auto held = lockHome(home_.home());
  ASSERT_TRUE(held);
  expectOneLine(home_.run({"numbers", "clear"}), 1);
  EXPECT_EQ(home_.contents(), before);
}

}  // namespace
}  // namespace lotmere::test

#include "cli_home.hpp"

namespace lotmere::test {
namespace {

Arguments add_Draw(const std::string& period, const std::string& date, const Arguments& numbers) {
  Arguments arguments{"draws", "add", period, date};
  arguments.insert(arguments.end(), numbers.begin(), numbers.end());
  return arguments;
}

const std::string kLongWord = "\x1B[2J" + std::string(300, 'x');

struct BadCase {
  std::string fault;
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
    for (const BadCase& bad : cases) {
      SCOPED_TRACE(bad.fault);
      expect_OneLine(home_.run(bad.arguments), bad.status);
      EXPECT_TRUE(home_.contents() == before) << "the home has changed";
    }
  }

  CliHome home_;
};

TEST_F(BadInput, Usage) {
  expect_AllRefused({
      {"no command", 2, {}},
      {"an unknown group", 2, {"draw", "list"}},
      {"an unknown command", 2, {"draws", "lst"}},
      {"an unknown option", 2, {"draws", "list", "--first", "3"}},
      {"an option given twice", 2, {"numbers", "pick", "--red-tuo", "1-6", "--red-tuo", "7"}},
      {"an answer that is neither yes nor no", 2, {"--answer", "maybe", "tickets", "clear"}},
      {"an interval that isn't there", 2, {"conditions", "interval", "5", "1-3"}},
  });
  EXPECT_NE(home_.run({"dreaws", "list"}).err.find("dreaws"), std::string::npos) << "the wrong word is named";
}

TEST_F(BadInput, PeriodsAndDraws) {
  const Arguments good{"1", "2", "3", "4", "5", "6", "7"};
  expect_AllRefused({
      {"a period of letters", 1, {"tickets", "init", kLongWord}},
      {"an empty period, which isn't a missing one", 1, {"tickets", "list", ""}},
      {"an empty period, which isn't a missing one", 1, {"omission", "red", ""}},
      {"a period without a number in its year", 1, {"tickets", "init", "2026000"}},
      {"a period that isn't stored", 1, {"draws", "delete", "2024004"}},
      {"a period without tickets", 1, {"tickets", "run", "2024001"}},
      {"a range turned round", 1, {"draws", "stats", "2024005", "2024001"}},
      {"a day that is none", 1, add_Draw("2024007", "2024-02-30", good)},
      {"the same red twice", 1, add_Draw("2024007", "2024-01-16", {"1", "1", "3", "4", "5", "6", "7"})},
      {"red 34", 1, add_Draw("2024007", "2024-01-16", {"1", "2", "3", "4", "5", "34", "7"})},
      {"blue 17", 1, add_Draw("2024007", "2024-01-16", {"1", "2", "3", "4", "5", "6", "17"})},
      {"six numbers", 2, add_Draw("2024007", "2024-01-16", {"1", "2", "3", "4", "5", "6"})},
  });
  for (const char* word : {"a", "-7", "1.5", "0x1", "", "99999999999999999999"})
    expect_AllRefused({{word, 2, add_Draw("2024007", "2024-01-16", {word, "2", "3", "4", "5", "6", "7"})}});
}

TEST_F(BadInput, NumberLists) {
  std::vector<BadCase> cases;
  for (const std::string list :
       {"", "1,,2", ",1", "1,", "5-2", "1-", "-", "1-2-3", "0", "1-99", "1,1", kLongWord.c_str(), "1;2"}) {
    cases.push_back({list, 1, {"numbers", "pick", "--red-tuo", list, "--blue-tuo", "1"}});
    cases.push_back({list, 1, {"numbers", "pick", "--red-tuo", "1-6", "--blue-tuo", list}});
    cases.push_back({list, 1, {"conditions", "interval", "1", list}});
    cases.push_back({list, 1, {"conditions", "group", "1", list}});
  }
  expect_AllRefused(cases);
}

TEST_F(BadInput, SelectionsAndConditions) {
  expect_AllRefused({
      {"a red both Tuo and Dan", 1, {"numbers", "pick", "--red-tuo", "1-10", "--red-dan", "3"}},
      {"six red Dan", 1, {"numbers", "pick", "--red-dan", "1-6", "--red-tuo", "7-9"}},
      {"a blue Tuo beside a blue Dan", 1, {"numbers", "pick", "--blue-dan", "1", "--blue-tuo", "2"}},
      {"blue 17", 1, {"numbers", "pick", "--blue-tuo", "17"}},
      {"100,947 tickets", 1, {"numbers", "pick", "--red-tuo", "1-23", "--blue-tuo", "1"}},
      {"an unknown name", 1, {"conditions", "use", kLongWord, "on"}},
      {"an unknown state", 2, {"conditions", "use", "总和值", "maybe"}},
      {"a value past the last", 1, {"conditions", "allow", "总和值", "300"}},
  });
  home_.do_Step({"numbers", "pick", "--red-tuo", "1-5", "--blue-tuo", "1"});
  expect_AllRefused({{"too few numbers for a ticket", 1, {"tickets", "init", "2024008"}}});
}

TEST_F(BadInput, FilesAndAddresses) {
  const std::string here = home_.path().string();
  expect_AllRefused({
      {"a file in a folder that isn't there", 1, {"tickets", "export", here + "/none/x.txt"}},
      {"no file name", 1, {"tickets", "export", ""}},
      {"the store in place of a file", 1, {"tickets", "export", here + "/Lotmere.db"}},
      {"its backup", 1, {"tickets", "export", here + "/./Lotmere.backup.db"}},
      {"an empty address, which isn't a missing one", 1, {"draws", "fetch", ""}},
      {"an unknown column", 1, {"tickets", "export", here + "/x.txt", "--columns", "红球"}},
      {"a file that isn't there", 1, {"draws", "fetch", "file://" + here + "/none.txt"}},
      {"an address where nobody answers", 1, {"draws", "fetch", "http://127.0.0.1:1/list.txt"}},
      {"no address", 1, {"draws", "fetch", "--all", "nonsense"}},
      {"a scheme that isn't read", 1, {"draws", "fetch", "ftp://127.0.0.1:1/list.txt"}},
  });
  for (const char* text :
       {"", "<html><body>404</body></html>", "2024007 2024/01/16 01 02 03 04 05 06 07\n"}) {
    const std::string address = home_.put_File("list.txt", text);
    expect_AllRefused({{text, 1, {"draws", "fetch", address}}});
  }
}

void spoil(const std::filesystem::path& file) {
  std::fstream(file, std::ios::in | std::ios::out | std::ios::binary) << "this is no database any more";
}

TEST_F(BadInput, HomesThatCannotBeOpened) {
  const std::string before = home_.contents();
  const std::string file = (home_.path() / "list.txt").string();
  for (const std::string& home : {file, file + "/below", std::string("/proc/lotmere")})
    expect_OneLine(run_Bare({"--home", home, "numbers", "show"}), 1);
  const auto held = HomeLock::take(home_.home());
  ASSERT_TRUE(held);
  expect_OneLine(home_.run({"numbers", "clear"}), 1);
  EXPECT_EQ(home_.contents(), before);
}

TEST_F(BadInput, ALostStoreComesBackFromASoundBackupOnly) {
  const auto store = home_.home().main_Db(), backup = home_.home().backup_Db();
  std::filesystem::copy_file(store, backup, std::filesystem::copy_options::overwrite_existing);
  const auto lose = [&](bool missing) {
    spoil(store);
    if (missing) std::filesystem::remove(store);
  };
  for (const bool missing : {false, true}) {
    lose(missing);
    const Reply recovered = home_.run({"numbers", "show"});
    expect_OneLine(recovered, 0);
    EXPECT_NE(recovered.out.find("注数: 28\n"), std::string::npos) << recovered.out;
    EXPECT_EQ(home_.run({"numbers", "show"}).err, "") << "told once";
  }
  spoil(backup);
  const std::string spoilt = read_File(backup);
  for (const bool missing : {false, true}) {
    lose(missing);
    expect_OneLine(home_.run({"numbers", "clear"}), 1);
    EXPECT_EQ(std::filesystem::exists(store), !missing);
    EXPECT_EQ(read_File(backup), spoilt);
  }
}

}  // namespace
}  // namespace lotmere::test

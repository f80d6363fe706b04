// Several users, and what becomes of a lost store, from the command line.
#include "cli_home.hpp"

namespace lotmere::test {
namespace {

Arguments as_User(const CliHome& home, const std::string& name, Arguments command) {
  const std::string file = (home.path() / (name + ".pw")).string();
  command.insert(command.begin(), {"--user", name, "--password-file", file});
  return command;
}

// Two users, each with a pick of their own; the second one is current.
class TwoUsers : public ::testing::Test {
 protected:
  void SetUp() override {
    home_.do_Step({"users", "mode", "multi"});
    for (const auto& [name, reds] : {std::pair{"甲", "1-7"}, {"乙", "8-15"}}) {
      home_.put_File(name + std::string(".pw"), name + std::string("'s word \r\nsecond line\n"));
      home_.do_Step(
          {"users", "login", name, "--password-file", (home_.path() / (name + std::string(".pw"))).string()});
      home_.do_Step(as_User(home_, name, {"numbers", "pick", "--red-tuo", reds, "--blue-tuo", "1"}));
    }
  }
  std::string count_As(const std::string& name) {
    const std::string text = home_.run(as_User(home_, name, {"numbers", "show"})).out;
    return text.substr(std::min(text.size(), text.find("注数")));
  }
  CliHome home_;
};

TEST_F(TwoUsers, WorkOnSettingsOfTheirOwn) {
  home_.do_Step(as_User(home_, "乙", {"tickets", "init", "2024001"}));
  EXPECT_EQ(count_As("乙"), "注数: 28\n");
  EXPECT_NE(home_.run(as_User(home_, "乙", {"tickets", "list"})).out, "") << "the session goes on";
  EXPECT_EQ(count_As("甲"), "注数: 7\n");
  EXPECT_EQ(home_.run(as_User(home_, "甲", {"tickets", "list"})).out, "") << "a switch empties the tickets";
  EXPECT_EQ(count_As("乙"), "注数: 28\n");
}

TEST_F(TwoUsers, AreAskedWhoTheyAre) {
  const std::string folder = home_.path().string();
  home_.expect_Refused({
      {"nobody", 1, {"numbers", "clear"}},
      {"no password", 1, {"--user", "乙", "numbers", "clear"}},
      {"another's", 1, {"--user", "乙", "--password-file", folder + "/甲.pw", "numbers", "clear"}},
      {"a folder", 1, {"--user", "乙", "--password-file", folder, "numbers", "clear"}},
      {"no text", 1, {"--user", "乙", "--password-file", folder + "/Lotmere.db", "numbers", "clear"}},
      {"a stranger", 1, {"--user", "丙", "numbers", "clear"}},
      {"no password to log in", 1, {"users", "login", "甲"}},
      {"no name", 1, {"users", "login", ""}},
      {"a new user not wanted", 1, {"users", "login", "丙", "--answer", "no"}},
      {"two users and a mode for one", 1, {"users", "mode", "single"}},
      {"an unknown mode", 2, {"users", "mode", "three"}},
  });
}

TEST_F(TwoUsers, LoseNothingWithTheStore) {
  home_.do_Step(
      as_User(home_, "乙", {"draws", "add", "2024001", "2024-01-02", "1", "2", "3", "4", "5", "6", "7"}));
  std::filesystem::remove(home_.home().main_Db());
  const Reply check = home_.run({"store", "check"});
  EXPECT_NE(check.out.find("恢复\t数据文件丢失，已从备份恢复\n"), std::string::npos) << check.out;
  EXPECT_NE(check.out.find("\n历史记录\t1\n"), std::string::npos) << check.out;
  EXPECT_NE(home_.run({"store", "compact"}).out.find("备份已更新"), std::string::npos);
  EXPECT_EQ(count_As("乙"), "注数: 28\n");
  EXPECT_EQ(count_As("甲"), "注数: 7\n");
}

}  // namespace
}  // namespace lotmere::test

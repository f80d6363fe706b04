// Several users, and what becomes of a lost store, from the command line.
#include <unistd.h>

#include "base/platform.hpp"
#include "cli_home.hpp"

namespace lotmere::test {
namespace {

// Two users, each with a pick of their own; the second one is current.
class TwoUsers : public ::testing::Test {
 protected:
  void SetUp() override {
    home_.doStep({"users", "mode", "multi"});
    for (const auto& [name, reds] : {std::pair{"甲", "1-7"}, {"乙", "8-15"}}) {
      home_.putFile(name + std::string(".pw"), name + std::string("'s word \r\nsecond line\n"));
      home_.doStep({"users", "login", name, "--new", "--password-file", file(name)});
      home_.doStep(asUser(name, {"numbers", "pick", "--red-tuo", reds, "--blue-tuo", "1"}));
    }
  }
  [[nodiscard]] std::string file(const std::string& name) const {
    return (home_.path() / (name + ".pw")).string();
  }
  [[nodiscard]] Arguments asUser(const std::string& name, Arguments command) const {
    command.insert(command.begin(), {"--user", name, "--password-file", file(name)});
    return command;
  }
  [[nodiscard]] Reply runAs(const std::string& name, const Arguments& command) const {
    return home_.run(asUser(name, command));
  }
  void expectCount(const std::string& name, int count) const {
    const std::string text = runAs(name, {"numbers", "show"}).out;
    EXPECT_TRUE(text.ends_with("注数: " + std::to_string(count) + "\n")) << name << ": " << text;
  }
  CliHome home_;
};

TEST_F(TwoUsers, WorkOnSettingsOfTheirOwn) {
  home_.doStep(asUser("乙", {"tickets", "init", "2024001"}));
  expectCount("乙", 28);
  EXPECT_NE(runAs("乙", {"tickets", "list"}).out, "") << "the session goes on";
  const std::string before = home_.contents();
  const Reply refused = runAs("甲", {"numbers", "show"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(
      refused.err,
      "登录会清空现有的 28 注号码。 没有执行：请加 --answer yes（清空并登录）或 --answer no（取消）。\n");
  EXPECT_EQ(runAs("甲", {"--answer", "no", "numbers", "show"}).status, 1);
  EXPECT_TRUE(home_.contents() == before) << "nothing is lost by a slip";
  const Reply switched = runAs("甲", {"--answer", "yes", "tickets", "list"});
  EXPECT_EQ(switched.out, "") << "a switch empties the tickets";
  EXPECT_EQ(switched.err, "登录会清空现有的 28 注号码。 [清空并登录]\n已登录为“甲”。\n");
  expectCount("甲", 7);
  expectCount("乙", 28);
}

TEST_F(TwoUsers, AreAskedWhoTheyAre) {
  const std::string folder = home_.path().string();
  home_.putFile("empty.pw", "");
  home_.putFile("long.pw", std::string(5000, 'x'));
  const auto clear_with = [](const std::string& file) {
    return Arguments{"--user", "乙", "--password-file", file, "numbers", "clear"};
  };
  const auto give = [](const std::string& name, const std::string& file, const char* answer) {
    return Arguments{"users", "password", name, "--new-password-file", file, "--answer", answer};
  };
  home_.expectRefused({
      {"nobody", 1, {"numbers", "clear"}},
      {"no password", 1, {"--user", "乙", "numbers", "clear"}},
      {"another's", 1, clear_with(file("甲"))},
      {"an empty one", 1, clear_with(file("empty"))},
      {"a folder", 1, clear_with(folder)},
      {"no such file", 1, clear_with(folder + "/none")},
      {"no text", 1, clear_with(folder + "/Lotmere.db")},
      {"a stranger", 1, {"--user", "丙", "numbers", "clear"}},
      {"a stranger who logs in", 1, {"users", "login", "丙", "--answer", "yes"}},
      {"no password to log in", 1, {"users", "login", "甲"}},
      {"a new user of an old name", 1, {"users", "login", "甲", "--new"}},
      {"no name", 1, {"users", "login", ""}},
      {"two names", 2, {"--user", "乙", "users", "login", "甲"}},
      {"two names, the other way round", 2, {"users", "login", "甲", "--user", ""}},
      {"no new password", 2, {"users", "password", "甲"}},
      {"forgotten, but no", 1, give("甲", file("乙"), "no")},
      {"an empty new password", 1, give("甲", file("empty"), "yes")},
      {"a line that is too long", 1, give("甲", file("long"), "yes")},
      {"removed without an answer", 1, {"users", "remove", "甲"}},
      {"two users and a mode for one", 1, {"users", "mode", "single"}},
      {"an unknown mode", 2, {"users", "mode", "three"}},
  });
}

TEST_F(TwoUsers, AreListedOneALine) {
  const std::string today = formatDate(realClock().today());
  const std::string first = "临时用户\t—\t\n", last = "甲\t" + today + "\t";
  EXPECT_EQ(home_.run({"users", "list"}).out, first + "乙\t" + today + "\t当前\n" + last + "\n");
  expectCount("甲", 7);
  EXPECT_EQ(home_.run({"users", "list"}).out, first + "乙\t" + today + "\t\n" + last + "当前\n");
  home_.doStep({"users", "remove", "乙", "--answer", "yes"});
  EXPECT_EQ(home_.run({"users", "list"}).out, first + last + "当前\n");
}

TEST_F(TwoUsers, ALoginStandsAndIsSaidWhateverBecomesOfTheCommand) {
  const Reply reply = runAs("甲", {"draws", "delete", "2024001"});
  EXPECT_EQ(reply.status, 1);
  EXPECT_EQ(reply.err.substr(0, reply.err.find('\n')), "已登录为“甲”。") << reply.err;
  EXPECT_NE(home_.run({"users", "list"}).out.find("\t当前\n"), std::string::npos);
  EXPECT_EQ(runAs("甲", {"numbers", "show"}).err, "") << "and not said again";
}

// The end of a pipe in which a text waits.
int pipeWith(const std::string& text) {
  int ends[2]{};
  EXPECT_EQ(::pipe(ends), 0);
  EXPECT_EQ(::write(ends[1], text.data(), text.size()), ssize_t(text.size()));
  ::close(ends[1]);
  return ends[0];
}

TEST_F(TwoUsers, TypePasswordsIntoPipes) {
  // Both from the standard input: the old one, then the new one, and the rest stays for others.
  const int standard = ::dup(STDIN_FILENO), typed = pipeWith("乙's word\r\nnew word\nrest");
  ASSERT_EQ(::dup2(typed, STDIN_FILENO), STDIN_FILENO);
  home_.doStep({"users", "password", "乙", "--password-file", "-", "--new-password-file", "-"});
  EXPECT_EQ(readFirstLine("-", 100), "rest");
  if (standard >= 0) ::dup2(standard, STDIN_FILENO), ::close(standard);
  EXPECT_EQ(runAs("乙", {"numbers", "show"}).status, 1) << "the old one";
  home_.putFile("乙.pw", "new word");
  expectCount("乙", 28);
  // Somebody forgot theirs, and the new one comes from a pipe with a name.
  const int third = pipeWith("third");
  home_.doStep({"users", "password", "乙", "--new-password-file", "/dev/fd/" + std::to_string(third),
                "--answer", "yes"});
  home_.putFile("乙.pw", "third\n");
  expectCount("乙", 28);
  expectCount("甲", 7);
  for (const int end : {typed, third}) ::close(end);
}

// The profiles of 甲 and 乙 lie there: what each of them has set, also the one who never logged out.
TEST_F(TwoUsers, FindTheirProfilesAgainInANewStore) {
  for (const auto& lost : {home_.home().mainDb(), home_.home().backupDb()}) std::filesystem::remove(lost);
  const Reply check = home_.run({"store", "check"});
  EXPECT_NE(check.out.find("恢复\t数据文件和备份都丢失，新建了数据文件\n"), std::string::npos) << check.out;
  EXPECT_NE(check.err.find("还有 2 个用户文件"), std::string::npos) << check.err;
  expectOneLine(check, 0);
  EXPECT_EQ(home_.run({"users", "mode", "multi"}).err, "") << "told once";
  const auto make = [&](const std::string& name, const Arguments& answer) {
    Arguments call{"users", "login", name, "--new", "--password-file", file(name)};
    call.insert(call.end(), answer.begin(), answer.end());
    return home_.run(call);
  };
  expectOneLine(make("乙", {}), 1);
  EXPECT_EQ(make("乙", {"--answer", "yes"}).status, 0);
  expectCount("乙", 28);
  EXPECT_EQ(make("甲", {"--answer", "no"}).status, 0);
  expectCount("甲", 0);
  EXPECT_TRUE(std::filesystem::exists(home_.path() / "甲.uLotmere.old"));
}

TEST_F(TwoUsers, LoseNothingWithTheStore) {
  home_.doStep(asUser("乙", {"draws", "add", "2024001", "2024-01-02", "1", "2", "3", "4", "5", "6", "7"}));
  std::filesystem::remove(home_.home().mainDb());
  const Reply check = home_.run({"store", "check"});
  EXPECT_NE(check.out.find("恢复\t数据文件丢失，已从备份恢复\n"), std::string::npos) << check.out;
  EXPECT_NE(check.out.find("\n历史记录\t1\n"), std::string::npos) << check.out;
  EXPECT_NE(home_.run({"store", "compact"}).out.find("备份已更新"), std::string::npos);
  expectCount("甲", 7);
}

TEST_F(TwoUsers, ADamagedBackupIsMadeAnewOrTheCheckFails) {
  loseRow(home_.home().backupDb(), "历史记录");
  const std::filesystem::path blocked = home_.path() / "Lotmere.backup.db.new" / "full";
  std::filesystem::create_directories(blocked);
  expectOneLine(home_.run({"store", "check"}), 1);
  std::filesystem::remove_all(blocked.parent_path());
  const Reply check = home_.run({"store", "check"});
  EXPECT_EQ(check.status, 0);
  EXPECT_NE(check.out.find("备份\t已损坏，已重新建立\n"), std::string::npos) << check.out;
  EXPECT_TRUE(isSoundStore(home_.home().backupDb()));
  EXPECT_NE(home_.run({"store", "check"}).out.find("备份\t正常\n"), std::string::npos);
}

}  // namespace
}  // namespace lotmere::test

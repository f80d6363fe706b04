// Several users, and what becomes of a lost store, from the command line.
#include <fcntl.h>
#include <unistd.h>

#include "cli_home.hpp"
#include "core/platform.hpp"

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
      home_.do_Step({"users", "login", name, "--new", "--password-file",
                     (home_.path() / (name + std::string(".pw"))).string()});
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
  const std::string before = home_.contents();
  const Reply refused = home_.run(as_User(home_, "甲", {"numbers", "show"}));
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(
      refused.err,
      "登录会清空现有的 28 注号码。 没有执行：请加 --answer yes（清空并登录）或 --answer no（取消）。\n");
  EXPECT_EQ(home_.run(as_User(home_, "甲", {"--answer", "no", "numbers", "show"})).status, 1);
  EXPECT_TRUE(home_.contents() == before) << "nothing is lost by a slip";
  const Reply switched = home_.run(as_User(home_, "甲", {"--answer", "yes", "tickets", "list"}));
  EXPECT_EQ(switched.out, "") << "a switch empties the tickets";
  EXPECT_EQ(switched.err, "登录会清空现有的 28 注号码。 [清空并登录]\n已登录为“甲”。\n");
  EXPECT_EQ(count_As("甲"), "注数: 7\n");
  EXPECT_EQ(count_As("乙"), "注数: 28\n");
}

TEST_F(TwoUsers, AreAskedWhoTheyAre) {
  const std::string folder = home_.path().string();
  home_.put_File("empty.pw", "");
  home_.put_File("long.pw", std::string(5000, 'x'));
  home_.expect_Refused({
      {"nobody", 1, {"numbers", "clear"}},
      {"no password", 1, {"--user", "乙", "numbers", "clear"}},
      {"another's", 1, {"--user", "乙", "--password-file", folder + "/甲.pw", "numbers", "clear"}},
      {"an empty one", 1, {"--user", "乙", "--password-file", folder + "/empty.pw", "numbers", "clear"}},
      {"a folder", 1, {"--user", "乙", "--password-file", folder, "numbers", "clear"}},
      {"no such file", 1, {"--user", "乙", "--password-file", folder + "/none", "numbers", "clear"}},
      {"no text", 1, {"--user", "乙", "--password-file", folder + "/Lotmere.db", "numbers", "clear"}},
      {"no line", 1, {"--user", "乙", "--password-file", folder + "/long.pw", "numbers", "clear"}},
      {"a stranger", 1, {"--user", "丙", "numbers", "clear"}},
      {"a stranger who logs in", 1, {"users", "login", "丙"}},
      {"the same, with an answer", 1, {"--answer", "yes", "users", "login", "丙"}},
      {"no password to log in", 1, {"users", "login", "甲"}},
      {"a new user of an old name", 1, {"users", "login", "甲", "--new"}},
      {"no name", 1, {"users", "login", ""}},
      {"a name that steers", 1, {"users", "login", "--new", "甲\u202e"}},
      {"a name that nobody sees", 1, {"users", "login", "--new", "\u3000"}},
      {"two names", 2, {"--user", "乙", "users", "login", "甲"}},
      {"two names, the other way round", 2, {"users", "login", "甲", "--user", ""}},
      {"two names for a password",
       2,
       {"--user", "乙", "users", "password", "甲", "--new-password-file", "-"}},
      {"two names to be removed", 2, {"--user", "乙", "users", "remove", "甲"}},
      {"no new password", 2, {"users", "password", "甲"}},
      {"forgotten, and no answer", 1, {"users", "password", "甲", "--new-password-file", folder + "/乙.pw"}},
      {"an empty password",
       1,
       {"users", "password", "甲", "--new-password-file", folder + "/empty.pw", "--answer", "yes"}},
      {"removed without an answer", 1, {"users", "remove", "甲"}},
      {"removed, but no", 1, {"users", "remove", "甲", "--answer", "no"}},
      {"who is current", 1, {"users", "remove", "乙", "--answer", "yes"}},
      {"the guest", 1, {"users", "remove", "临时用户", "--answer", "yes"}},
      {"two users and a mode for one", 1, {"users", "mode", "single"}},
      {"an unknown mode", 2, {"users", "mode", "three"}},
  });
}

TEST_F(TwoUsers, AreListedOneALine) {
  const std::string today = format_Date(real_Clock().today());
  const std::string first = "临时用户\t—\t\n", last = "甲\t" + today + "\t";
  EXPECT_EQ(home_.run({"users", "list"}).out, first + "乙\t" + today + "\t当前\n" + last + "\n");
  EXPECT_EQ(count_As("甲"), "注数: 7\n");
  EXPECT_EQ(home_.run({"users", "list"}).out, first + "乙\t" + today + "\t\n" + last + "当前\n");
  home_.do_Step({"users", "remove", "乙", "--answer", "yes"});
  EXPECT_EQ(home_.run({"users", "list"}).out, first + last + "当前\n");
}

TEST_F(TwoUsers, ALoginStandsAndIsSaidWhateverBecomesOfTheCommand) {
  const Reply reply = home_.run(as_User(home_, "甲", {"draws", "delete", "2024001"}));
  EXPECT_EQ(reply.status, 1);
  EXPECT_EQ(reply.err.substr(0, reply.err.find('\n')), "已登录为“甲”。") << reply.err;
  EXPECT_NE(home_.run({"users", "list"}).out.find("\t当前\n"), std::string::npos);
  EXPECT_EQ(home_.run(as_User(home_, "甲", {"numbers", "show"})).err, "") << "and not said again";
}

// What waits in a pipe, and the name of its end.
struct Pipe {
  explicit Pipe(const std::string& text) {
    EXPECT_EQ(::pipe(ends), 0);
    EXPECT_EQ(::write(ends[1], text.data(), text.size()), ssize_t(text.size()));
    ::close(ends[1]);
  }
  ~Pipe() { ::close(ends[0]); }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  [[nodiscard]] std::string name() const { return "/dev/fd/" + std::to_string(ends[0]); }
  int ends[2]{};
};

TEST_F(TwoUsers, TypePasswordsIntoPipes) {
  const auto picks = [&](const std::string& file) {
    return home_.run({"--user", "乙", "--password-file", file, "numbers", "show"}).status;
  };
  EXPECT_EQ(picks(Pipe("乙's word\n").name()), 0);
  EXPECT_EQ(picks(Pipe("乙's word").name()), 0) << "without a line end";
  EXPECT_EQ(picks(Pipe("甲's word\n").name()), 1);
  EXPECT_EQ(picks(Pipe("").name()), 1);
  // Both from the standard input: the old one, then the new one, and the rest stays for others.
  const Pipe typed("乙's word\r\nnew word\nrest");
  const int standard = ::dup(STDIN_FILENO);
  ASSERT_EQ(::dup2(typed.ends[0], STDIN_FILENO), STDIN_FILENO);
  home_.do_Step({"users", "password", "乙", "--password-file", "-", "--new-password-file", "-"});
  EXPECT_EQ(read_FirstLine("-", 100), "rest");
  if (standard >= 0) ::dup2(standard, STDIN_FILENO), ::close(standard);
  EXPECT_EQ(picks(Pipe("乙's word\n").name()), 1);
  EXPECT_EQ(picks(Pipe("new word\n").name()), 0);
  // Somebody forgot theirs.
  home_.do_Step({"users", "password", "乙", "--new-password-file", Pipe("third").name(), "--answer", "yes"});
  EXPECT_EQ(picks(Pipe("third\n").name()), 0);
  EXPECT_EQ(count_As("甲"), "注数: 7\n") << "another user's password";
}

// The store and its backup are lost; the profiles of 甲 and 乙 lie there.
TEST_F(TwoUsers, FindTheirProfilesAgainInANewStore) {
  for (const auto& file : {home_.home().main_Db(), home_.home().backup_Db()}) std::filesystem::remove(file);
  home_.do_Step({"users", "mode", "multi"});
  const auto make = [&](const std::string& name, Arguments answer) {
    answer.insert(answer.begin(), {"users", "login", name, "--new", "--password-file",
                                   (home_.path() / (name + ".pw")).string()});
    return home_.run(answer);
  };
  expect_OneLine(make("甲", {}), 1);
  EXPECT_EQ(make("甲", {"--answer", "yes"}).status, 0);
  EXPECT_EQ(count_As("甲"), "注数: 7\n");
  EXPECT_EQ(make("乙", {"--answer", "no"}).status, 0);
  EXPECT_EQ(count_As("乙"), "注数: 0\n");
  EXPECT_TRUE(std::filesystem::exists(home_.path() / "乙.uLotmere.old"));
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

TEST_F(TwoUsers, AreToldWhenTheStoreAndItsBackupAreGone) {
  std::filesystem::remove(home_.home().main_Db());
  std::filesystem::remove(home_.home().backup_Db());
  const Reply check = home_.run({"store", "check"});
  EXPECT_NE(check.out.find("恢复\t数据文件和备份都丢失，新建了数据文件\n"), std::string::npos) << check.out;
  EXPECT_NE(check.err.find("还有 2 个用户文件"), std::string::npos) << check.err;
  expect_OneLine(check, 0);
}

TEST_F(TwoUsers, ADamagedBackupIsMadeAnewOrTheCheckFails) {
  lose_Row(home_.home().backup_Db(), "历史记录");
  const std::filesystem::path blocked = home_.path() / "Lotmere.backup.db.new" / "full";
  std::filesystem::create_directories(blocked);
  expect_OneLine(home_.run({"store", "check"}), 1);
  std::filesystem::remove_all(blocked.parent_path());
  const Reply check = home_.run({"store", "check"});
  EXPECT_EQ(check.status, 0);
  EXPECT_NE(check.out.find("备份\t已损坏，已重新建立\n"), std::string::npos) << check.out;
  EXPECT_TRUE(is_SoundStore(home_.home().backup_Db()));
  EXPECT_NE(home_.run({"store", "check"}).out.find("备份\t正常\n"), std::string::npos);
}

}  // namespace
}  // namespace lotmere::test

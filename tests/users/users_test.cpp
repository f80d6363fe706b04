// Several people on one machine: their profiles, and what a login changes.
#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "conditions/condition_store.hpp"
#include "conditions/named_sets.hpp"
#include "conditions/setting_steps.hpp"
#include "store/interval_mark.hpp"
#include "store/store_files.hpp"
#include "support/desk_script.hpp"
#include "support/faulty_files.hpp"
#include "support/test_store.hpp"
#include "tickets/ticket_steps.hpp"
#include "users/accounts.hpp"
#include "users/login.hpp"
#include "users/profile.hpp"
#include "users/user_name.hpp"

namespace lotmere::test {
namespace {

namespace fs = std::filesystem;
using std::chrono::days;

constexpr Date kToday{std::chrono::year{2026} / 8 / 20};
const std::string kWrong = "密码错误！(注意大小写区分)";

// A home in multi-user mode with a draw of two days ago, the users 甲 and 乙 besides the guest, and 丙, who
// is in.
struct Shop {
  TempHome temp;
  Store& store = temp.store();
  ScriptedDesk desk;

  Shop() {
    completeHome(temp.home());
    EXPECT_TRUE(chooseUserMode(store, UserMode::multi));
    putDraw(store, 2026090, "2026-08-18", {{1, 2, 3, 4, 5, 6}, 7});
    for (const char* name : {"甲", "乙", "丙"}) enter(name);
  }
  UserDesk at(FileSystem& files = realFiles(), Date today = kToday) {
    return {store, temp.home(), desk, today, files, HashLimits::lowest()};
  }
  // Made where there is no such user, with their name as the password; current afterwards.
  void enter(const std::string& name) {
    if (store.value(R"(SELECT count(*) FROM "日志表")") > 0) desk.choices.emplace_back(0);
    ASSERT_EQ(logIn(at(), {name, name}, findUser(store, name) ? NewUser::refused : NewUser::made),
              Outcome::done)
        << name;
  }
  [[nodiscard]] std::string told() const { return desk.told.empty() ? std::string() : desk.told.back().text; }
  void putTickets() {
    for (const int id : {1, 2}) putTicket(store, id, id, 2007001, {{1, 2, 3, 4, 5, 6}, id});
  }
  void run(const std::string& sql) { store.db().exec(sql); }
  void lastLogin(const std::string& name, const std::string& date) {
    store.query(R"(UPDATE "用户表" SET "最后登陆时间"=? WHERE "用户名"=?)").bind(date, name).run();
  }
  // Random settings in every table that a user owns, and in one that all share.
  void scramble(unsigned seed) {
    std::mt19937 random(seed);
    const auto some = [&] { return std::to_string(random() % 1000 + 2); };
    run(R"(UPDATE "过滤条件" SET "Value"=("ID"*)" + some() + ")%7");
    run(R"(UPDATE "过滤条件使用情况" SET "使用情况"=("条件"*)" + some() + ")%3");
    run(R"(UPDATE "号码特性" SET "四0"=("号码"*)" + some() + R"()%5, "自定义组10"=("号码"*)" + some() +
        ")%11");
    run(R"(UPDATE "区间定义" SET "区间"=("号码"*)" + some() + ")%4");
    run(R"(UPDATE "号码特性3" SET "六区间1"=)" + some());
  }
  [[nodiscard]] std::string rowsOf(const std::string& table) {
    std::string text;
    SQLite::Statement row(store.db(), "SELECT * FROM \"" + table + "\" ORDER BY rowid");
    while (row.executeStep())
      for (int i = 0; i < row.getColumnCount(); ++i) text += row.getColumn(i).getString() + ' ';
    return text;
  }
  [[nodiscard]] std::string settings() {
    return rowsOf("过滤条件") + rowsOf("过滤条件使用情况") + rowsOf("号码特性") + rowsOf("区间定义");
  }
  // All that a refused operation must leave as it is.
  [[nodiscard]] std::string everything() {
    std::string text = settings() + rowsOf("用户表") + rowsOf("日志表") + rowsOf("用户模式");
    for (const auto& entry : fs::directory_iterator(temp.path())) text += entry.path().string();
    return text;
  }
  [[nodiscard]] fs::path file(const std::string& name) { return profileFile(temp.home(), name); }
  [[nodiscard]] bool isThere(const std::string& name) {
    const bool there = findUser(store, name).has_value();
    EXPECT_EQ(fs::exists(file(name)), there && name != kGuest) << name << "'s profile";
    return there;
  }
};

TEST(Users, EachFindsTheirOwnSettingsAgainAndTheGuestTheLast) {
  Shop shop;
  const std::string factory = shop.settings();
  std::map<std::string, std::string> left;
  for (unsigned round = 0; round < 12; ++round) {
    const std::string name = "用户" + std::to_string(round % 3);
    shop.putTickets();
    const std::string shared = shop.rowsOf("号码特性3");
    shop.enter(name);
    EXPECT_EQ(shop.settings(), left.contains(name) ? left[name] : factory) << name;
    EXPECT_EQ(shop.rowsOf("日志表"), "");
    EXPECT_EQ(shop.rowsOf("号码特性3"), shared) << "the divisions belong to all";
    shop.scramble(round);
    left[name] = shop.settings();
  }
  EXPECT_TRUE(shop.desk.tips.empty());
  shop.enter(std::string(kGuest));
  EXPECT_EQ(shop.settings(), left["用户2"]);
  ASSERT_EQ(shop.desk.tips.size(), 1);
  EXPECT_EQ(shop.desk.tips[0].text, "临时用户的设置不保存，只保留到下一次登录。");
  shop.scramble(99);
  ASSERT_EQ(resumeSession(shop.at(), {std::string(kGuest), ""}), Outcome::done);
  shop.enter("用户1");
  EXPECT_TRUE(shop.isThere(std::string(kGuest)));
  EXPECT_EQ(shop.settings(), left["用户1"]);
  for (const bool leaves : {false, true}) {
    shop.desk.answers = {leaves};
    EXPECT_EQ(exitProgram(shop.at()), doneIf(leaves));
    EXPECT_EQ(currentUser(shop.store), leaves ? "" : "用户1");
  }
}

TEST(Users, SetsWithNamesTravelWithTheirUserAndTheWayBackEndsWithAnothers) {
  Shop shop;
  const auto sets = [&] { return shop.rowsOf("命名方案"); };
  const auto steps = [&] { return shop.store.value(R"(SELECT count(*) FROM "设置步骤")"); };
  std::map<std::string, std::string> left;
  for (const std::string name : {"甲", "乙", "甲", "临时用户", "乙", "乙", "丁"}) {
    const bool same = name == currentUser(shop.store);
    shop.putTickets();
    keepTickets(shop.store, TicketAction::import);
    shop.enter(name);
    EXPECT_EQ(sets(), left[name]) << name;
    EXPECT_EQ(steps(), same ? 1 : 0) << name;
    EXPECT_EQ(shop.rowsOf("号码步骤"), "") << name;
    changeSettings(shop.store, [](ConditionSet& set) { set.cells.set(5, 3 - set.cells.value(5)); });
    for (const char* kind : {"常用", "的"}) {
      if (same) continue;
      ASSERT_EQ(
          keepNamedSet(shop.store, shop.desk, {name + kind, true, setText(loadConditionSet(shop.store))}),
          Outcome::done);
    }
    if (name != kGuest) left[name] = sets();
    if (same) shop.run(R"(DELETE FROM "设置步骤" WHERE "序号">1)");
  }
  // The way back outlasts the end of the program, for whoever comes back first.
  const auto before = loadConditionSet(shop.store);
  changeSettings(shop.store, [](ConditionSet& set) { set.cells.set(9, 1); });
  ASSERT_EQ(logOut(shop.at()), Outcome::done);
  shop.enter("丁");
  ASSERT_TRUE(undoSettings(shop.store));
  EXPECT_EQ(loadConditionSet(shop.store), before);
}

TEST(Users, WhoComesWithOtherIntervalsLeavesTheirCountsDue) {
  Shop shop;
  EXPECT_FALSE(intervalCountsDue(shop.store)) << "all have the factory's";
  shop.run(R"(UPDATE "号码特性" SET "区间3"=1 WHERE "号码"=5)");
  for (const char* name : {"甲", "丙", "丁"}) {  // others of their own, the changed ones, a new user
    clearIntervalMark(shop.store);
    shop.enter(name);
    EXPECT_TRUE(intervalCountsDue(shop.store)) << name;
  }
}

// The clock of the machine may be wrong: then nobody goes. 甲 logs in, idle for as long as the guest.
TEST(Users, AMonthWithoutALoginEndsAUser) {
  const struct {
    const char* name;
    int idle;            // days of 乙 before 20 August 2026
    Date today;          // of the machine
    const char* newest;  // draw; none where empty
    const char* last;    // login of 丙; never where empty
    bool kept;
  } rows[] = {
      {"29 days", 29, kToday, "2026-08-18", "2026-08-20", true},
      {"30 days", 30, kToday, "2026-08-18", "2026-08-20", false},
      {"a draw of today", 30, kToday, "2026-08-20", "2026-08-20", false},
      {"no draw", 99, kToday, "", "2026-08-20", true},
      {"a draw without a date", 99, kToday, "yesterday", "2026-08-20", true},
      {"behind the newest draw", 99, kToday, "2026-08-21", "2026-08-20", true},
      {"behind somebody's login", 99, kToday, "2026-08-18", "2026-08-21", true},
      {"a year after the newest draw", 0, Date{std::chrono::year{2027} / 8 / 18}, "2026-08-18", "", false},
      {"a day more", 0, Date{std::chrono::year{2027} / 8 / 19}, "2026-08-18", "", true},
      {"a login that was never", 99, kToday, "2026-08-18", "", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Shop shop;
    for (const std::string name : {"甲", "临时用户"}) shop.lastLogin(name, "2025-01-01");
    shop.lastLogin("乙", formatDate(kToday - days{row.idle}));
    shop.lastLogin("丙", row.last);
    shop.run(R"(DELETE FROM "历史记录")");
    if (*row.newest != 0) putDraw(shop.store, 2026090, row.newest, {{1, 2, 3, 4, 5, 6}, 7});
    ASSERT_EQ(logIn(shop.at(realFiles(), row.today), {"甲", "甲"}), Outcome::done);
    EXPECT_EQ(shop.isThere("乙"), row.kept);
    EXPECT_TRUE(shop.isThere("甲") && shop.isThere("丙") && shop.isThere("临时用户"));
  }
}

TEST(Users, TheLastLoginNeverMovesBackwards) {
  Shop shop;
  for (const int offset : {3, -400, 2})
    for (const auto enter : {+[](const UserDesk& at) {
                               return logIn(at, {"乙", "乙"});
                             },
                             +[](const UserDesk& at) {
                               return resumeSession(at, {"乙", "乙"});
                             }}) {
      ASSERT_EQ(enter(shop.at(realFiles(), kToday + days{offset})), Outcome::done);
      EXPECT_EQ(findUser(shop.store, "乙")->last_login, kToday + days{3});
      EXPECT_EQ(findUser(shop.store, "甲")->last_login, kToday) << "another user's";
    }
}

TEST(Users, ARefusedLoginChangesNothing) {
  Shop shop;
  shop.run(R"(UPDATE "用户表" SET "密码"=')" + hashPassword("Secret", HashLimits::lowest()) +
           R"(' WHERE "用户名"='丙')");
  shop.scramble(1);
  shop.putTickets();
  const std::string before = shop.everything();
  const std::string unusable = "用户名太长，或者含有不能使用的字符，请换一个用户名。";
  const struct {
    Credentials typed;
    NewUser new_user;
    std::string says;
  } rows[] = {
      {{" \t ", "pw"}, NewUser::made, "用户名不能为空！"},
      {{"\u3000\u00a0", "pw"}, NewUser::made, "用户名不能为空！"},
      {{"丙", "secret"}, NewUser::refused, kWrong},
      {{"甲", "丙"}, NewUser::refused, kWrong},
      {{"甲", ""}, NewUser::refused, kWrong},
      {{"甲", "another"}, NewUser::made, "已经有用户“甲”，密码不对。要建立新用户，请换一个用户名。"},
      {{"a\nb", "pw"}, NewUser::made, unusable},
      {{std::string(300, 'x'), "pw"}, NewUser::made, unusable},
      {{"丁", "pw"},
       NewUser::refused,
       "没有用户“丁”。要建立新用户，请点击“我是新用户”（命令行：users login 用户名 --new）。"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(logIn(shop.at(), row.typed, row.new_user), Outcome::refused);
    EXPECT_EQ(shop.told(), row.says);
  }
  shop.desk.answers = {false};
  EXPECT_EQ(logIn(shop.at(), {"丁", "pw"}, NewUser::asked), Outcome::refused);
  EXPECT_EQ(resumeSession(shop.at(), {"丁", "pw"}), Outcome::refused) << "a slip makes no user";
  EXPECT_EQ(resumeSession(shop.at(), {"丙", "丙"}), Outcome::refused) << "another password";
  // The tickets of 丙 stand: whoever comes is asked, 丙 too when it is a new login.
  for (const Credentials& comes :
       {Credentials{"甲", "甲"}, {"丁", "pw"}, {"丙", "Secret"}, {"临时用户", ""}}) {
    shop.desk.choices = {{}};
    EXPECT_EQ(logIn(shop.at(), comes, NewUser::made), Outcome::refused);
    EXPECT_EQ(shop.desk.asked.back(), "登录会清空现有的 2 注号码。");
  }
  EXPECT_EQ(resumeSession(shop.at(), {" 丙 ", "Secret\t"}), Outcome::done)
      << "the same session keeps its tickets";
  EXPECT_TRUE(shop.everything() == before);
}

TEST(Users, NamesShowThemselvesAndSteerNothing) {
  for (const char* name : {"甲", "投注站 3号", "Ångström", "😀", "中\u3000国", "\u00e9\u0301"})
    EXPECT_TRUE(isUserName(name)) << name;
  const std::string_view bad[] = {
      // what nobody sees
      "", " \u3000", "\u00a0", "\u1680\u2003\u202f\u205f", "\u200b\u200d", "\ufeff", "\u3164", "\u2800",
      "\ufe0f",
      // what steers
      "a\x07", "a\x7f", "a\u0085", "a\u009b31m", "甲\u200e", "\u202e甲", "甲\u2066乙\u2069", "\u061c甲",
      "甲\u00ad乙", "甲\u200b乙", "甲\u2028乙", "甲\u2029", "甲\U000e0041",
      // no text: cut short, two longer forms of A, half a pair, above the last character, what begins none,
      // and 甲 in another encoding
      "\xff", "甲\xe4\xb9", "\xc1\x81", "\xe0\x81\x81", "\xed\xa0\x80", "\xf4\x90\x80\x80",
      "\x80\x80\x80\x80\x80\x80\x80\x80\x80\x80\x80\x80", "\xbc\xd7"};
  for (const std::string_view name : bad) EXPECT_FALSE(isUserName(name)) << testing::PrintToString(name);
}

// Each typed password against what the row holds.
TEST(Users, APasswordIsComparedAsItsColumnSays) {
  const std::string hash = hashPassword("pw", HashLimits::lowest());
  const struct {
    const char* name;
    User row;
    std::string typed;
    bool good;
  } rows[] = {
      {"a hash", {"甲", hash, false, {}}, "pw", true},
      {"another password", {"甲", hash, false, {}}, "Pw", false},
      {"the hash itself", {"甲", hash, false, {}}, hash, false},
      {"a plain one", {"甲", "pw", true, {}}, "pw", true},
      {"another plain one", {"甲", "pw", true, {}}, "pw2", false},
      {"a plain one that looks like a hash", {"甲", hash, true, {}}, hash, true},
      {"which it isn't", {"甲", hash, true, {}}, "pw", false},
      {"no hash at all", {"甲", "pw", false, {}}, "pw", false},
      {"the guest", {"临时用户", hash, false, {}}, "x", true},
  };
  for (const auto& row : rows) EXPECT_EQ(fits(row.row, row.typed), row.good) << row.name;
  EXPECT_NE(hash, hashPassword("pw", HashLimits::lowest())) << "the salt is new each time";
}

// What an older version left behind: plain texts in the rows, and one in a page that it gave up.
TEST(Users, PlainPasswordsLeaveNoTraceBehindTheNextLogin) {
  const std::string secrets[] = {"first-secret", hashPassword("x", HashLimits::lowest()), "third-secret",
                                 "erased-secret"};
  for (const bool resumed : {false, true}) {
    Shop shop;
    shop.run("PRAGMA secure_delete = OFF");
    for (int i = 0; i < 200; ++i) addUser(shop.store, "filler" + std::to_string(i), secrets[3]);
    const char* const name[] = {"甲", "乙", "丙"};
    for (int i = 0; i < 3; ++i)
      shop.store.query(R"(UPDATE "用户表" SET "密码"=?, "密码形式"=0 WHERE "用户名"=?)")
          .bind(secrets[i], name[i])
          .run();
    shop.run(R"(DELETE FROM "用户表" WHERE "用户名" LIKE 'filler%')");
    setCurrentUser(shop.store, resumed ? "甲" : "乙");
    ASSERT_TRUE(copyDatabase(shop.temp.home().mainDb(), shop.temp.home().backupDb(), realFiles()));
    const auto traces = [&] {
      std::string found;
      for (const auto& entry : fs::directory_iterator(shop.temp.path()))
        for (const std::string& secret : secrets)
          if (readFile(entry.path()).find(secret) != std::string::npos)
            found += entry.path().filename().string() + ' ' + secret + '\n';
      return found;
    };
    for (const char* trace : {"Lotmere.db first", "Lotmere.db erased", "Lotmere.backup.db third"})
      ASSERT_NE(traces().find(trace), std::string::npos) << trace;
    EXPECT_EQ(resumeSession(shop.at(), {"甲", "wrong"}), Outcome::refused);
    EXPECT_NE(traces(), "") << "a refused login changes nothing";
    // In the middle of the change the plain texts stand in the journal, which must go as well.
    ASSERT_EQ(resumeSession(shop.at(), {"甲", secrets[0]}), Outcome::done);
    EXPECT_EQ(traces(), "");
    EXPECT_TRUE(isSoundStore(shop.temp.home().backupDb()));
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(isHashOf(findUser(shop.store, name[i])->password, secrets[i]));
  }
}

TEST(Users, ABackupThatCannotBeRenewedIsToldAndKeepsNobodyOut) {
  Shop shop;
  shop.run(R"(UPDATE "用户表" SET "密码"='plain', "密码形式"=0 WHERE "用户名"='丙')");
  FaultyFiles machine(1);
  ASSERT_EQ(resumeSession(shop.at(machine), {"丙", "plain"}), Outcome::done);
  ASSERT_EQ(shop.desk.tips.size(), 1);
  EXPECT_TRUE(shop.desk.tips[0].text.starts_with("备份没有更新，旧的密码还在其中。"));
}

TEST(Users, AChangeOfAnAccountTouchesNoOther) {
  using Text = std::optional<std::string>;
  const auto change = [](const char* name, const Text& before, const char* after) {
    return [=](const UserDesk& at) { return changePassword(at, name, before, after); };
  };
  const auto remove = [](const char* name) {
    return [=](const UserDesk& at) { return removeUser(at, name); };
  };
  const std::string current = "“丙”是当前用户，请先换一个用户登录，再删除。";
  const struct {
    const char* name;
    std::function<Outcome(const UserDesk&)> change;
    std::optional<std::size_t> answer;  // to the question, if there is one
    std::string says;
    const char* leaves;  // the users whose name isn't their password any longer, and those who are gone
  } rows[] = {
      {"a new password", change(" 乙 ", " 乙\t", " new\n"), {}, "", "乙=new "},
      {"a forgotten one", change("乙", {}, "new"), 0, "", "乙=new "},
      {"forgotten, and Esc", change("乙", {}, "new"), {}, "", ""},
      {"a wrong one", change("乙", "甲", "new"), {}, kWrong, ""},
      {"nothing new", change("乙", "乙", " "), {}, "新密码不能为空！", ""},
      {"the guest's", change("临时用户", {}, "new"), {}, "临时用户不用密码。", ""},
      {"without a name", change("", "x", "new"), {}, "用户名不能为空！", ""},
      {"a removal", remove("乙"), 0, "", "乙 gone "},
      {"a removal, and Esc", remove("乙"), {}, "", ""},
      {"of the current user", remove("丙"), 0, current, ""},
      {"of the guest", remove("临时用户"), 0, "临时用户不能删除。", ""},
      {"of nobody", remove("丁"), 0, "没有用户“丁”。", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Shop shop;
    const std::string before = shop.everything();
    shop.desk.choices = {row.answer};
    const bool done = *row.leaves != 0;
    EXPECT_EQ(row.change(shop.at()), doneIf(done));
    EXPECT_EQ(shop.everything() == before, !done);
    EXPECT_EQ(shop.told(), row.says);
    std::string leaves;
    for (const std::string name : {"甲", "乙", "丙"})
      if (!shop.isThere(name))
        leaves += name + " gone ";
      else if (const User user = *findUser(shop.store, name); !fits(user, name))
        leaves += name + (fits(user, "new") ? "=new " : "=? ");
    EXPECT_EQ(leaves, row.leaves);
  }
}

// The file of somebody who was here before, beside the users of today.
TEST(Users, AProfileThatLiesThereIsTakenOrKeptAsideButNeverLost) {
  enum class Settings { left, factory, untouched };
  for (const auto& [answer, wanted] : {std::pair<std::optional<std::size_t>, Settings>{0, Settings::left},
                                       {1, Settings::factory},
                                       {2, Settings::untouched},
                                       {{}, Settings::untouched}}) {
    Shop shop;
    const std::string factory = shop.settings();
    shop.scramble(3);
    const std::string left = shop.settings();
    shop.enter("乙");
    shop.scramble(4);
    const auto leave = [&] { shop.run(R"(DELETE FROM "用户表" WHERE "用户名"='丙')"); };
    leave();
    const std::string bytes = readFile(shop.file("丙"));
    const auto beside = [&](const char* ending) { return shop.file("丙") += ending; };
    std::ofstream(beside(".old")) << "of an earlier time";
    const std::string before = shop.everything();
    shop.desk.choices = {answer};
    EXPECT_EQ(logIn(shop.at(), {"丙", "new"}, NewUser::made), doneIf(wanted != Settings::untouched));
    EXPECT_EQ(shop.everything() == before, wanted == Settings::untouched);
    EXPECT_EQ(readFile(beside(".old")), "of an earlier time");
    EXPECT_TRUE(readFile(beside(wanted == Settings::factory ? ".old2" : "")) == bytes);
    if (wanted == Settings::untouched) continue;
    EXPECT_TRUE(shop.settings() == (wanted == Settings::left ? left : factory));
    // A damaged one gives the factory settings, not those of whoever was here before.
    shop.enter("乙");
    leave();
    std::ofstream(shop.file("丙")) << "no profile";
    shop.desk.choices = {0};
    ASSERT_EQ(logIn(shop.at(), {"丙", "new"}, NewUser::made), Outcome::done);
    EXPECT_TRUE(shop.settings() == factory);
  }
}

TEST(Users, NoNameLeadsOutOfTheFolderOrMeetsAnother) {
  const Home home{"/home/u"};
  std::set<fs::path> files;
  for (const char* name :
       {"../x", "a/b", "a'b", ".", "..", "x.", "x", " x", "甲", "😀", "a%2Fb", "CON:", "a\\b", "/"}) {
    const fs::path file = profileFile(home, name);
    EXPECT_EQ(file.parent_path(), home.folder) << file;
    EXPECT_EQ(file.lexically_normal(), file);
    EXPECT_TRUE(files.insert(file).second) << file;
  }
  EXPECT_EQ(profileFile(home, "甲 1.b").filename(), "甲 1.b.uLotmere");
}

TEST(Users, ABrokenProfileIsToldAndKept) {
  const auto alter = [](const fs::path& file, const char* change) {
    SQLite::Database(file.string(), SQLite::OPEN_READWRITE).exec(change);
  };
  const struct {
    const char* name;
    std::function<void(const fs::path&)> spoil;
    bool some;  // of its tables were read
  } rows[] = {
      {"a table is gone", [&](const fs::path& file) { alter(file, R"(DROP TABLE "号码特性")"); }, true},
      {"a table has lost columns",
       [&](const fs::path& file) { alter(file, R"(ALTER TABLE "号码特性" DROP COLUMN "四0")"); }, true},
      {"a row is lost", [](const fs::path& file) { loseRow(file, "过滤条件使用情况"); }, true},
      {"not a database", [](const fs::path& file) { std::ofstream(file) << std::string(9000, 'x'); }, false},
      {"empty", [](const fs::path& file) { fs::resize_file(file, 0); }, false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Shop shop;
    shop.scramble(1);
    const std::string cells = shop.rowsOf("过滤条件");
    shop.enter("乙");
    const std::string before = shop.settings();
    row.spoil(shop.file("丙"));
    shop.enter("丙");
    EXPECT_EQ(shop.told(), "用户文件丢失或损坏,无法打开！");
    EXPECT_EQ(shop.rowsOf("过滤条件") == cells, row.some);
    EXPECT_EQ(shop.settings() == before, !row.some);
    EXPECT_TRUE(fs::exists(shop.file("丙") += ".damaged"));
  }
}

TEST(Users, AProfileLockedByAnotherProgramIsNoBrokenOne) {
  Shop shop;
  shop.scramble(1);
  const std::string settings = shop.settings();
  SQLite::Database other(shop.file("甲").string(), SQLite::OPEN_READWRITE);
  other.exec("BEGIN EXCLUSIVE");
  EXPECT_THROW((void)logIn(shop.at(), {"甲", "甲"}), SQLite::Exception);
  EXPECT_TRUE(shop.settings() == settings && currentUser(shop.store) == "丙");
  EXPECT_FALSE(fs::exists(shop.file("甲") += ".damaged"));
}

TEST(Users, AProfileIsWholeWhereverItsSavingBreaksOff) {
  refuseEachStep([](FaultyFiles& machine) {
    Shop shop;
    shop.scramble(1);
    const std::string settings = shop.settings();
    bool entered = false;
    try {
      entered = logIn(shop.at(machine), {"丁", "丁"}, NewUser::made) == Outcome::done;
    } catch (const fs::filesystem_error&) {
      EXPECT_TRUE(machine.failed());
    }
    EXPECT_EQ(currentUser(shop.store), entered ? "丁" : "丙");
    EXPECT_EQ(findUser(shop.store, "丁").has_value(), entered);
    EXPECT_TRUE(entered || shop.settings() == settings);
    EXPECT_TRUE(entered || !fs::exists(shop.file("丁"))) << "what is left would be taken for somebody else's";
    shop.enter("丁");
    shop.enter("丙");
    EXPECT_TRUE(shop.settings() == settings) << "the settings of a user are lost";
  });
}

TEST(Users, ATemplateThatFallsShortIsMadeAnewAndAMissingOneIsTold) {
  Shop shop;
  shop.scramble(1);
  const std::string settings = shop.settings();
  const fs::path form = shop.temp.home().templateFile();
  for (const char* spoiled : {R"(DELETE FROM "过滤条件" WHERE "ID">3000)", R"(DROP TABLE "区间定义")", ""}) {
    if (*spoiled != 0)
      SQLite::Database(form.string(), SQLite::OPEN_READWRITE).exec(spoiled);
    else
      std::ofstream(form) << "no template";
    shop.enter("乙");
    shop.enter("丙");
    EXPECT_TRUE(shop.settings() == settings) << spoiled;
  }
  fs::remove(form);
  EXPECT_EQ(logIn(shop.at(), {"乙", "乙"}), Outcome::refused);
  EXPECT_EQ(shop.told(), "数据模板文件丢失无法导出，请重新安装！");
  EXPECT_EQ(currentUser(shop.store), "丙") << "nobody takes the place of settings that aren't saved";
}

}  // namespace
}  // namespace lotmere::test

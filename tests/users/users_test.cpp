// Several people on one machine: their profiles, and what a login changes.
#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "core/desk_script.hpp"
#include "core/interval_mark.hpp"
#include "core/store_files.hpp"
#include "support/faulty_files.hpp"
#include "support/test_store.hpp"
#include "users/accounts.hpp"
#include "users/login.hpp"
#include "users/profile.hpp"
#include "users/user_name.hpp"

namespace lotmere::test {
namespace {

namespace fs = std::filesystem;

constexpr Date kToday{std::chrono::year{2026} / 8 / 20};

// A home in multi-user mode with a draw of two days ago and, where `users`, two users besides the guest.
struct Shop {
  TempHome temp;
  Store& store = temp.store();
  ScriptedDesk desk;

  explicit Shop(bool users = true) {
    complete_Home(temp.home());
    EXPECT_TRUE(choose_UserMode(store, UserMode::multi));
    put_Draw(store, 2026090, "2026-08-18", {{1, 2, 3, 4, 5, 6}, 7});
    if (!users) return;
    for (const char* name : {"甲", "乙"}) enter(name);
  }
  UserDesk at(FileSystem& files = real_Files(), Date today = kToday) {
    return {store, temp.home(), desk, today, files, HashLimits::lowest()};
  }
  // Made where there is no such user; current afterwards.
  void enter(const std::string& name, const std::string& password = "pw") {
    if (ticket_Count() > 0) desk.choices.emplace_back(0);
    ASSERT_TRUE(log_In(at(), {name, password}, find_User(store, name) ? NewUser::refused : NewUser::made))
        << name;
  }
  [[nodiscard]] std::string told() const { return desk.told.empty() ? std::string() : desk.told.back().text; }
  [[nodiscard]] std::int64_t ticket_Count() { return store.value(R"(SELECT count(*) FROM "日志表")"); }
  void put_Tickets() {
    for (const int id : {1, 2}) put_Ticket(store, id, id, 2007001, {{1, 2, 3, 4, 5, 6}, id});
  }
  void last_Login(const std::string& name, std::optional<Date> date) {
    store.query(R"(UPDATE "用户表" SET "最后登陆时间"=? WHERE "用户名"=?)")
        .bind(date ? format_Date(*date) : std::string(), name)
        .run();
  }
  void run(const std::string& sql) { store.db().exec(sql); }
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
  [[nodiscard]] std::string rows_Of(const std::string& table) {
    std::string text;
    SQLite::Statement row(store.db(), "SELECT * FROM \"" + table + "\" ORDER BY rowid");
    while (row.executeStep())
      for (int i = 0; i < row.getColumnCount(); ++i) text += row.getColumn(i).getString() + ' ';
    return text;
  }
  [[nodiscard]] std::string settings() {
    return rows_Of("过滤条件") + rows_Of("过滤条件使用情况") + rows_Of("号码特性") + rows_Of("区间定义");
  }
  // All that a refused operation must leave as it is.
  [[nodiscard]] std::string everything() {
    std::string text = settings() + rows_Of("用户表") + rows_Of("日志表") + rows_Of("用户模式");
    for (const auto& entry : fs::directory_iterator(temp.path())) text += entry.path().string();
    return text;
  }
  [[nodiscard]] bool has_File(const std::string& name) { return fs::exists(profile_File(temp.home(), name)); }
};

TEST(Users, EachFindsTheirOwnSettingsAgain) {
  Shop shop;
  const std::string factory = shop.settings();
  std::map<std::string, std::string> left;
  for (unsigned round = 0; round < 12; ++round) {
    const std::string name = "甲乙丙" + std::to_string(round % 3);
    shop.put_Tickets();
    const std::string shared = shop.rows_Of("号码特性3");
    shop.enter(name);
    EXPECT_EQ(shop.settings(), left.contains(name) ? left[name] : factory) << name;
    EXPECT_EQ(shop.rows_Of("日志表"), "");
    EXPECT_EQ(shop.rows_Of("号码特性3"), shared) << "the divisions belong to all";
    shop.scramble(round);
    left[name] = shop.settings();
  }
  // A login without a file keeps what stands; the guest has none.
  shop.enter(std::string(kGuest), "whatever");
  EXPECT_EQ(shop.settings(), left["甲乙丙2"]);
  EXPECT_FALSE(shop.has_File(std::string(kGuest)));
  for (const bool leaves : {false, true}) {
    shop.desk.answers = {leaves};
    EXPECT_EQ(exit_Program(shop.at()), leaves);
    EXPECT_EQ(current_User(shop.store), leaves ? "" : kGuest);
  }
}

TEST(Users, WhoComesWithOtherIntervalsLeavesTheirCountsDue) {
  Shop shop;
  shop.enter("甲");
  shop.enter("乙");
  EXPECT_FALSE(interval_CountsDue(shop.store)) << "both have the factory's";
  shop.run(R"(UPDATE "号码特性" SET "区间3"=1 WHERE "号码"=5)");
  for (const char* name : {"甲", "乙", "丙"}) {  // others of their own, the changed ones, a new user
    clear_IntervalMark(shop.store);
    shop.enter(name);
    EXPECT_TRUE(interval_CountsDue(shop.store)) << name;
  }
}

TEST(Users, AMonthWithoutALoginEndsAUser) {
  Shop shop(false);
  const struct {
    const char* name;
    int days;
    bool kept;
  } rows[] = {{"at 31 days", 31, false}, {"at 30 days", 30, false}, {"at 29 days", 29, true},
              {"临时用户", 400, true},   {"who logs in", 99, true}, {"without a file", 60, false}};
  for (const auto& row : rows) {
    shop.enter(row.name);
    ASSERT_TRUE(save_Profile(shop.store, shop.temp.home(), shop.desk, row.name));
    shop.last_Login(row.name, kToday - std::chrono::days{row.days});
  }
  fs::remove(profile_File(shop.temp.home(), "without a file"));
  set_CurrentUser(shop.store, "");
  shop.enter("who logs in");
  for (const auto& row : rows) {
    EXPECT_EQ(find_User(shop.store, row.name).has_value(), row.kept) << row.name;
    EXPECT_EQ(shop.has_File(row.name), row.kept) << row.name;
  }
}

// The clock of the machine may be wrong; 乙 has been idle for a hundred days before 20 August 2026.
TEST(Users, NobodyIsRemovedForAClockThatIsWrong) {
  constexpr Date future{std::chrono::year{2030} / 1 / 1};
  const struct {
    const char* name;
    Date today;
    const char* newest;        // draw; none where empty
    std::optional<Date> last;  // login of the third user
    bool kept;
  } rows[] = {
      {"the clock is right", kToday, "2026-08-18", kToday, false},
      {"a draw of today", kToday, "2026-08-20", kToday, false},
      {"no draw", kToday, "", kToday, true},
      {"a draw without a date", kToday, "yesterday", kToday, true},
      {"behind the newest draw", kToday, "2026-08-21", kToday, true},
      {"behind somebody's login", kToday, "2026-08-18", kToday + std::chrono::days{1}, true},
      {"a year after the newest draw", Date{std::chrono::year{2027} / 8 / 18}, "2026-08-18", kToday, false},
      {"a day more", Date{std::chrono::year{2027} / 8 / 19}, "2026-08-18", kToday, true},
      {"years ahead", future, "2026-08-18", kToday, true},
      {"a login that was never", kToday, "2026-08-18", std::nullopt, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Shop shop;
    shop.enter("丙");
    shop.last_Login("乙", kToday - std::chrono::days{100});
    shop.last_Login("丙", row.last);
    shop.run(R"(DELETE FROM "历史记录")");
    if (*row.newest != 0) put_Draw(shop.store, 2026090, row.newest, {{1, 2, 3, 4, 5, 6}, 7});
    set_CurrentUser(shop.store, "");
    ASSERT_TRUE(log_In(shop.at(real_Files(), row.today), {"甲", "pw"}));
    EXPECT_EQ(find_User(shop.store, "乙").has_value(), row.kept);
    EXPECT_EQ(shop.has_File("乙"), row.kept);
  }
}

TEST(Users, TheLastLoginNeverMovesBackwards) {
  Shop shop;
  for (const int days : {3, -400, 2}) {
    const Date today = kToday + std::chrono::days{days};
    for (const bool resumed : {false, true}) {
      ASSERT_TRUE(resumed ? resume_Session(shop.at(real_Files(), today), {"乙", "pw"})
                          : log_In(shop.at(real_Files(), today), {"乙", "pw"}));
      EXPECT_EQ(find_User(shop.store, "乙")->last_login, kToday + std::chrono::days{3});
    }
  }
  EXPECT_EQ(find_User(shop.store, "甲")->last_login, kToday) << "another user's";
}

TEST(Users, ARefusedLoginChangesNothing) {
  Shop shop;
  shop.enter("甲");
  shop.enter("丙", "Secret");
  shop.scramble(1);
  shop.put_Tickets();
  const std::string before = shop.everything();
  const std::string unusable = "用户名太长，或者含有不能使用的字符，请换一个用户名。";
  const struct {
    Credentials typed;
    NewUser new_user;
    std::string says;
  } rows[] = {
      {{" \t ", "pw"}, NewUser::made, "用户名不能为空！"},
      {{"\u3000\u00a0", "pw"}, NewUser::made, "用户名不能为空！"},
      {{"丙", "secret"}, NewUser::refused, "密码错误！(注意大小写区分)"},
      {{"丙", "pw"}, NewUser::refused, "密码错误！(注意大小写区分)"},
      {{"甲", "Secret"}, NewUser::refused, "密码错误！(注意大小写区分)"},
      {{"甲", ""}, NewUser::refused, "密码错误！(注意大小写区分)"},
      {{"甲", "' OR '1'='1"}, NewUser::refused, "密码错误！(注意大小写区分)"},
      {{"甲", find_User(shop.store, "甲")->password}, NewUser::refused, "密码错误！(注意大小写区分)"},
      {{"甲", "another"}, NewUser::made, "已经有用户“甲”，密码不对。要建立新用户，请换一个用户名。"},
      {{"a\nb", "pw"}, NewUser::made, unusable},
      {{std::string(300, 'x'), "pw"}, NewUser::made, unusable},
      {{"丁", "pw"},
       NewUser::refused,
       "没有用户“丁”。要建立新用户，请点击“我是新用户”（命令行：users login 用户名 --new）。"},
  };
  for (const auto& row : rows) {
    EXPECT_FALSE(log_In(shop.at(), row.typed, row.new_user));
    EXPECT_EQ(shop.told(), row.says);
  }
  shop.desk.answers = {false};
  EXPECT_FALSE(log_In(shop.at(), {"丁", "pw"}, NewUser::asked));
  EXPECT_FALSE(resume_Session(shop.at(), {"丁", "pw"})) << "a slip makes no user";
  EXPECT_FALSE(resume_Session(shop.at(), {"丙", "pw"})) << "another user's password";
  // The tickets of 丙 stand: whoever comes is asked, 丙 too when it is a new login.
  for (const char* name : {"甲", "丁", "丙", "临时用户"})
    for (const std::optional<std::size_t> answer : {std::optional<std::size_t>(1), {}}) {
      shop.desk.choices = {answer};
      const char* password = name == std::string_view("丙") ? "Secret" : "pw";
      EXPECT_FALSE(log_In(shop.at(), {name, password}, NewUser::made));
      EXPECT_EQ(shop.desk.asked.back(), "登录会清空现有的 2 注号码。");
    }
  EXPECT_TRUE(shop.everything() == before);
  EXPECT_TRUE(resume_Session(shop.at(), {" 丙 ", "Secret\t"}));
  EXPECT_EQ(shop.ticket_Count(), 2) << "the same session keeps its tickets";
}

TEST(Users, NamesShowThemselvesAndSteerNothing) {
  const struct {
    const char* name;
    bool good;
  } rows[] = {
      {"甲", true},
      {"投注站 3号", true},
      {"Ångström", true},
      {"😀", true},
      {"中\u3000国", true},
      {"\u00e9\u0301", true},
      {"", false},
      {" \u3000", false},
      {"\u00a0", false},
      {"\u1680\u2003\u202f\u205f", false},
      {"\u200b\u200d", false},
      {"\ufeff", false},
      {"\u3164", false},
      {"\u2800", false},
      {"\ufe0f", false},
      {"a\x07", false},
      {"a\x7f", false},
      {"a\u0085", false},
      {"a\u009b31m", false},
      {"甲\u200e", false},
      {"\u202e甲", false},
      {"甲\u2066乙\u2069", false},
      {"\u061c甲", false},
      {"甲\u00ad乙", false},
      {"甲\u200b乙", false},
      {"甲\u2028乙", false},
      {"甲\u2029", false},
      {"甲\U000e0041", false},
      {"\xff", false},
      {"甲\xe4\xb9", false},                                        // cut short
      {"\xc1\x81", false},                                          // a longer form of A
      {"\xe0\x81\x81", false},                                      // and a still longer one
      {"\xed\xa0\x80", false},                                      // half a pair
      {"\xf4\x90\x80\x80", false},                                  // above the last character
      {"\x80\x80\x80\x80\x80\x80\x80\x80\x80\x80\x80\x80", false},  // nothing that begins one
      {"\xbc\xd7", false},                                          // 甲 in another encoding
  };
  for (const auto& row : rows) EXPECT_EQ(is_UserName(row.name), row.good) << testing::PrintToString(row.name);
}

// Each typed password against what the row holds.
TEST(Users, APasswordIsComparedAsItsColumnSays) {
  const std::string hash = hash_Password("pw", HashLimits::lowest());
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
  EXPECT_NE(hash, hash_Password("pw", HashLimits::lowest())) << "the salt is new each time";
  EXPECT_TRUE(hash.starts_with("$argon2id$"));
}

// What an older version left behind: plain texts in the rows, and one in a page that it gave up.
TEST(Users, PlainPasswordsLeaveNoTraceBehindTheNextLogin) {
  const std::string hash_like = hash_Password("x", HashLimits::lowest());
  const std::pair<const char*, std::string> users[] = {
      {"甲", "first-secret"}, {"乙", hash_like}, {"丙", "third-secret"}};
  for (const bool resumed : {false, true}) {
    Shop shop(false);
    shop.run("PRAGMA secure_delete = OFF");
    for (int i = 0; i < 200; ++i) add_User(shop.store, "filler" + std::to_string(i), "erased-secret");
    for (const auto& [name, password] : users) {
      add_User(shop.store, name, password);
      shop.store.query(R"(UPDATE "用户表" SET "密码形式"=0 WHERE "用户名"=?)").bind(name).run();
    }
    shop.run(R"(DELETE FROM "用户表" WHERE "用户名" LIKE 'filler%')");
    set_CurrentUser(shop.store, resumed ? "甲" : "乙");
    ASSERT_TRUE(copy_Database(shop.temp.home().main_Db(), shop.temp.home().backup_Db(), real_Files()));
    const auto traces = [&] {
      std::string found;
      for (const auto& entry : fs::directory_iterator(shop.temp.path()))
        for (const std::string& secret :
             {users[0].second, users[1].second, users[2].second, std::string("erased-secret")})
          if (read_File(entry.path()).find(secret) != std::string::npos)
            found += entry.path().filename().string() + ' ' + secret + '\n';
      return found;
    };
    for (const char* trace : {"Lotmere.db first", "Lotmere.db erased", "Lotmere.backup.db third"})
      ASSERT_NE(traces().find(trace), std::string::npos) << trace;
    EXPECT_FALSE(resume_Session(shop.at(), {"甲", "wrong"}));
    EXPECT_NE(traces(), "") << "a refused login changes nothing";
    // In the middle of the change the plain texts stand in the journal, which must go as well.
    ASSERT_TRUE(resume_Session(shop.at(), {"甲", "first-secret"}));
    EXPECT_EQ(traces(), "");
    EXPECT_EQ(
        shop.store.value(R"(SELECT count(*) FROM "用户表" WHERE "密码形式"<>1 AND "用户名"<>'临时用户')"), 0);
    EXPECT_TRUE(is_SoundStore(shop.temp.home().backup_Db()));
    for (const auto& [name, password] : users) shop.enter(name, password);
  }
}

TEST(Users, ABackupThatCannotBeRenewedIsToldAndKeepsNobodyOut) {
  Shop shop;
  shop.run(R"(UPDATE "用户表" SET "密码"='plain', "密码形式"=0 WHERE "用户名"='乙')");
  FaultyFiles machine(1);
  ASSERT_TRUE(resume_Session(shop.at(machine), {"乙", "plain"}));
  ASSERT_EQ(shop.desk.tips.size(), 1);
  EXPECT_TRUE(shop.desk.tips[0].text.starts_with("备份没有更新，旧的密码还在其中。"))
      << shop.desk.tips[0].text;
  shop.enter("甲");
}

TEST(Users, ANewPasswordTakesThePlaceOfOneUsersAlone) {
  const struct {
    const char* name;
    const char* user;
    std::optional<std::string> before;
    const char* after;
    std::optional<std::size_t> answer;  // where somebody forgot theirs
    const char* says;                   // empty where it is done
  } rows[] = {
      {"known", "甲", "one", "new", {}, ""},
      {"blanks around", " 甲 ", " one\t", " new\n", {}, ""},
      {"forgotten", "甲", {}, "new", 0, ""},
      {"forgotten, and not wanted", "甲", {}, "new", 1, "?"},
      {"forgotten, and Esc", "甲", {}, "new", {}, "?"},
      {"wrong", "甲", "two", "new", {}, "密码错误！(注意大小写区分)"},
      {"empty", "甲", "", "new", {}, "密码错误！(注意大小写区分)"},
      {"nothing new", "甲", "one", " ", {}, "新密码不能为空！"},
      {"the guest", "临时用户", {}, "new", {}, "临时用户不用密码。"},
      {"nobody", "丙", "one", "new", {}, "没有用户“丙”。"},
      {"no name", "", "one", "new", {}, "用户名不能为空！"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Shop shop(false);
    shop.enter("甲", "one");
    shop.enter("乙", "two");
    const std::string before = shop.everything();
    const bool asked = !row.before && row.says != std::string("临时用户不用密码。");
    if (asked) shop.desk.choices = {row.answer};
    const bool done = *row.says == 0;
    EXPECT_EQ(change_Password(shop.at(), row.user, row.before, row.after), done);
    EXPECT_EQ(shop.everything() == before, !done);
    if (!done && !asked) {
      EXPECT_EQ(shop.told(), row.says);
    }
    EXPECT_EQ(fits(*find_User(shop.store, "甲"), "new"), done);
    EXPECT_EQ(fits(*find_User(shop.store, "甲"), "one"), !done);
    EXPECT_TRUE(fits(*find_User(shop.store, "乙"), "two"));
  }
}

TEST(Users, ARemovedUserIsGoneAndTheOthersStay) {
  const struct {
    const char* name;
    std::optional<std::size_t> answer;
    const char* says;
    bool asked;
  } rows[] = {
      {"乙", 0, "", true},
      {"乙", 1, "", true},
      {"乙", {}, "", true},
      {"丙", 0, "“丙”是当前用户，请先换一个用户登录，再删除。", false},
      {"临时用户", 0, "临时用户不能删除。", false},
      {"丁", 0, "没有用户“丁”。", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Shop shop;
    shop.enter("丙");  // the names before and behind 乙 are others'
    const std::string before = shop.everything();
    shop.desk.choices = {row.answer};
    const bool done = row.asked && row.answer == 0U;
    EXPECT_EQ(remove_User(shop.at(), row.name), done);
    EXPECT_EQ(shop.everything() == before, !done);
    if (!row.asked) {
      EXPECT_EQ(shop.told(), row.says);
    }
    EXPECT_EQ(find_User(shop.store, "乙").has_value(), !done);
    EXPECT_EQ(shop.has_File("乙"), !done);
    EXPECT_TRUE(find_User(shop.store, "甲") && find_User(shop.store, "丙") && shop.has_File("甲"));
  }
}

// The file of somebody who was here before, beside the users of today.
TEST(Users, AProfileThatLiesThereIsTakenOrKeptAsideButNeverLost) {
  const struct {
    std::optional<std::size_t> answer;
    bool made;
    bool taken;
  } rows[] = {{0, true, true}, {1, true, false}, {2, false, false}, {{}, false, false}};
  for (const auto& row : rows) {
    Shop shop;
    const std::string factory = shop.settings();
    shop.enter("丙");
    shop.scramble(3);
    const std::string left = shop.settings();
    shop.enter("乙");
    shop.scramble(4);
    shop.run(R"(DELETE FROM "用户表" WHERE "用户名"='丙')");
    const fs::path file = profile_File(shop.temp.home(), "丙");
    const std::string bytes = read_File(file);
    std::ofstream(fs::path(file) += ".old") << "of an earlier time";
    const std::string before = shop.everything();
    shop.desk.choices = {row.answer};
    EXPECT_EQ(log_In(shop.at(), {"丙", "new"}, NewUser::made), row.made);
    if (!row.made) {
      EXPECT_TRUE(shop.everything() == before);
      EXPECT_EQ(read_File(file), bytes);
      continue;
    }
    EXPECT_TRUE(shop.settings() == (row.taken ? left : factory));
    EXPECT_EQ(read_File(fs::path(file) += ".old"), "of an earlier time");
    EXPECT_EQ(fs::exists(fs::path(file) += ".old2"), !row.taken);
    if (!row.taken) {
      EXPECT_TRUE(read_File(fs::path(file) += ".old2") == bytes);
    }
    EXPECT_TRUE(fits(*find_User(shop.store, "丙"), "new"));
    // A damaged one gives the factory settings, not those of whoever was here before.
    shop.enter("乙");
    shop.run(R"(DELETE FROM "用户表" WHERE "用户名"='丙')");
    std::ofstream(file) << "no profile";
    shop.desk.choices = {0};
    ASSERT_TRUE(log_In(shop.at(), {"丙", "new"}, NewUser::made));
    EXPECT_TRUE(shop.settings() == factory);
  }
}

TEST(Users, WhatTheGuestSetsLastsUntilTheNextLoginAndIsSaid) {
  Shop shop;
  const std::string other = shop.settings();
  shop.enter("临时用户");
  ASSERT_EQ(shop.desk.tips.size(), 1);
  EXPECT_EQ(shop.desk.tips[0].text, "临时用户的设置不保存，只保留到下一次登录。");
  shop.scramble(5);
  const std::string set = shop.settings();
  ASSERT_TRUE(resume_Session(shop.at(), {"临时用户", ""}));
  EXPECT_TRUE(shop.settings() == set);
  shop.enter("甲");
  EXPECT_TRUE(shop.settings() == other);
  EXPECT_EQ(shop.desk.tips.size(), 1) << "said to the guest alone, once a login";
}

TEST(Users, NoNameLeadsOutOfTheFolderOrMeetsAnother) {
  const Home home{"/home/u"};
  std::set<fs::path> files;
  const std::string names[] = {"../x", "a/b", "a'b", ".",     "..",   "x.",   "x",
                               " x",   "甲",  "😀",   "a%2Fb", "CON:", "a\\b", "/"};
  for (const std::string& name : names) {
    const fs::path file = profile_File(home, name);
    EXPECT_EQ(file.parent_path(), home.folder) << file;
    EXPECT_EQ(file.lexically_normal(), file);
    EXPECT_TRUE(files.insert(file).second) << file;
  }
  EXPECT_EQ(profile_File(home, "甲 1.b").filename(), "甲 1.b.uLotmere");
}

TEST(Users, ABrokenProfileIsToldAndKept) {
  const struct {
    const char* name;
    void (*spoil)(const fs::path&);
    bool some;  // of its tables were read
  } rows[] = {
      {"a table is gone",
       [](const fs::path& file) {
         SQLite::Database(file.string(), SQLite::OPEN_READWRITE).exec(R"(DROP TABLE "号码特性")");
       },
       true},
      {"a table has lost columns",
       [](const fs::path& file) {
         SQLite::Database(file.string(), SQLite::OPEN_READWRITE)
             .exec(R"(ALTER TABLE "号码特性" DROP COLUMN "四0")");
       },
       true},
      {"a row is lost", [](const fs::path& file) { lose_Row(file, "过滤条件使用情况"); }, true},
      {"not a database", [](const fs::path& file) { std::ofstream(file) << std::string(9000, 'x'); }, false},
      {"cut short", [](const fs::path& file) { fs::resize_file(file, 5000); }, false},
      {"empty", [](const fs::path& file) { fs::resize_file(file, 0); }, false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Shop shop;
    shop.enter("甲");
    shop.scramble(1);
    const std::string cells = shop.rows_Of("过滤条件");
    shop.enter("乙");
    const std::string before = shop.settings();
    row.spoil(profile_File(shop.temp.home(), "甲"));
    shop.enter("甲");
    EXPECT_EQ(shop.told(), "用户文件丢失或损坏,无法打开！");
    EXPECT_EQ(shop.rows_Of("过滤条件") == cells, row.some);
    EXPECT_EQ(shop.settings() == before, !row.some);
    EXPECT_TRUE(fs::exists(profile_File(shop.temp.home(), "甲") += ".damaged"));
  }
}

TEST(Users, AProfileLockedByAnotherProgramIsNoBrokenOne) {
  Shop shop;
  for (const char* name : {"甲", "乙"}) shop.enter(name), shop.scramble(1);
  const std::string settings = shop.settings();
  const fs::path file = profile_File(shop.temp.home(), "甲");
  SQLite::Database other(file.string(), SQLite::OPEN_READWRITE);
  other.exec("BEGIN EXCLUSIVE");
  EXPECT_THROW((void)log_In(shop.at(), {"甲", "pw"}), SQLite::Exception);
  EXPECT_TRUE(shop.settings() == settings && current_User(shop.store) == "乙");
  EXPECT_FALSE(fs::exists(fs::path(file) += ".damaged"));
}

TEST(Users, AProfileIsWholeWhereverItsSavingBreaksOff) {
  refuse_EachStep([](FaultyFiles& machine) {
    Shop shop;
    shop.enter("甲");
    shop.scramble(1);
    const std::string settings = shop.settings();
    bool entered = false;
    try {
      entered = log_In(shop.at(machine), {"丙", "pw"}, NewUser::made);
    } catch (const fs::filesystem_error&) {
      EXPECT_TRUE(machine.failed());
    }
    EXPECT_EQ(current_User(shop.store), entered ? "丙" : "甲");
    EXPECT_EQ(find_User(shop.store, "丙").has_value(), entered);
    EXPECT_TRUE(entered || shop.settings() == settings);
    EXPECT_TRUE(entered || !shop.has_File("丙")) << "what is left would be taken for somebody else's";
    shop.enter("丙");
    shop.enter("甲");
    EXPECT_TRUE(shop.settings() == settings) << "the settings of a user are lost";
  });
}

TEST(Users, ATemplateThatFallsShortIsMadeAnewAndAMissingOneIsTold) {
  Shop shop;
  shop.enter("甲");
  shop.scramble(1);
  const std::string settings = shop.settings();
  const fs::path form = shop.temp.home().template_File();
  SQLite::Database(form.string(), SQLite::OPEN_READWRITE).exec(R"(DELETE FROM "过滤条件" WHERE "ID">3000)");
  shop.enter("乙");
  SQLite::Database(form.string(), SQLite::OPEN_READWRITE).exec(R"(DROP TABLE "区间定义")");
  shop.enter("甲");
  EXPECT_TRUE(shop.settings() == settings);
  shop.enter("乙");
  std::ofstream(form) << "no template";
  shop.enter("甲");
  EXPECT_TRUE(shop.settings() == settings);
  fs::remove(form);
  EXPECT_FALSE(log_In(shop.at(), {"乙", "pw"}));
  EXPECT_EQ(shop.told(), "数据模板文件丢失无法导出，请重新安装！");
  EXPECT_EQ(current_User(shop.store), "甲") << "nobody takes the place of settings that aren't saved";
}

}  // namespace
}  // namespace lotmere::test

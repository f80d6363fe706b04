// Several people on one machine: their profiles, and what a login changes.
#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "core/desk_script.hpp"
#include "core/store_files.hpp"
#include "support/faulty_files.hpp"
#include "support/test_store.hpp"
#include "users/login.hpp"
#include "users/profile.hpp"

namespace lotmere::test {
namespace {

namespace fs = std::filesystem;

constexpr Date kToday{std::chrono::year{2026} / 8 / 20};

// A home in multi-user mode.
struct Shop {
  TempHome temp;
  Store& store = temp.store();
  ScriptedDesk desk;

  Shop() {
    complete_Home(temp.home());
    EXPECT_TRUE(choose_UserMode(store, UserMode::multi));
  }
  UserDesk at(FileSystem& files = real_Files()) { return {store, temp.home(), desk, kToday, files}; }
  // A new user, current afterwards.
  void enter(const std::string& name, const std::string& password = "pw") {
    if (!find_User(store, name)) desk.answers.push_back(true);
    ASSERT_TRUE(log_In(at(), {name, password})) << name;
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
  [[nodiscard]] bool has_File(const std::string& name) { return fs::exists(profile_File(temp.home(), name)); }
};

TEST(Users, EachFindsTheirOwnSettingsAgain) {
  Shop shop;
  const std::string factory = shop.settings();
  std::map<std::string, std::string> left;
  for (unsigned round = 0; round < 12; ++round) {
    const std::string name = "甲乙丙" + std::to_string(round % 3);
    put_Ticket(shop.store, 1, 1, 2007001, {{1, 2, 3, 4, 5, 6}, 7});
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

TEST(Users, AMonthWithoutALoginEndsAUser) {
  Shop shop;
  const struct {
    const char* name;
    int days;
    bool kept;
  } rows[] = {{"at 31 days", 31, false}, {"at 30 days", 30, false}, {"at 29 days", 29, true},
              {"临时用户", 400, true},   {"who logs in", 99, true}, {"without a file", 60, false}};
  for (const auto& row : rows) {
    shop.enter(row.name);
    ASSERT_TRUE(save_Profile(shop.store, shop.temp.home(), shop.desk, row.name));
  }
  for (const auto& row : rows) renew_Login(shop.store, row.name, kToday - std::chrono::days{row.days});
  fs::remove(profile_File(shop.temp.home(), "without a file"));
  set_CurrentUser(shop.store, "");
  shop.enter("who logs in");
  for (const auto& row : rows) {
    EXPECT_EQ(find_User(shop.store, row.name).has_value(), row.kept) << row.name;
    EXPECT_EQ(shop.has_File(row.name), row.kept) << row.name;
  }
}

TEST(Users, ARefusedLoginChangesNothing) {
  Shop shop;
  shop.enter("甲", "Secret");
  shop.scramble(1);
  put_Ticket(shop.store, 1, 1, 2007001, {{1, 2, 3, 4, 5, 6}, 7});
  const auto state = [&] { return shop.settings() + shop.rows_Of("用户表") + shop.rows_Of("日志表"); };
  const std::string before = state();
  const struct {
    Credentials typed;
    const char* says;
  } rows[] = {{{" \t ", "pw"}, "用户名不能为空！"},
              {{"甲", "secret"}, "密码错误！(注意大小写区分)"},
              {{"甲", "' OR '1'='1"}, "密码错误！(注意大小写区分)"},
              {{"a\nb", "pw"}, "用户名太长，或者含有不能使用的字符，请换一个用户名。"},
              {{std::string(300, 'x'), "pw"}, "用户名太长，或者含有不能使用的字符，请换一个用户名。"}};
  for (const auto& row : rows) {
    EXPECT_FALSE(log_In(shop.at(), row.typed));
    EXPECT_EQ(shop.desk.told.back().text, row.says);
  }
  shop.desk.answers = {false};
  EXPECT_FALSE(log_In(shop.at(), {"乙", "pw"}));
  EXPECT_FALSE(resume_Session(shop.at(), {"乙", "pw"})) << "a slip makes no user";
  EXPECT_TRUE(state() == before);
  EXPECT_TRUE(resume_Session(shop.at(), {" 甲 ", "Secret\t"}));
  EXPECT_EQ(shop.rows_Of("日志表").empty(), false) << "the same session keeps its tickets";
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
    EXPECT_TRUE(is_UserName(name));
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
    EXPECT_EQ(shop.desk.told.back().text, "用户文件丢失或损坏,无法打开！");
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
    shop.desk.answers = {true};
    bool entered = false;
    try {
      entered = log_In(shop.at(machine), {"乙", "pw"});
    } catch (const fs::filesystem_error&) {
      EXPECT_TRUE(machine.failed());
    }
    EXPECT_EQ(current_User(shop.store), entered ? "乙" : "甲");
    EXPECT_EQ(find_User(shop.store, "乙").has_value(), entered);
    EXPECT_TRUE(entered || shop.settings() == settings);
    shop.enter("乙");
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
  EXPECT_EQ(shop.desk.told.back().text, "数据模板文件丢失无法导出，请重新安装！");
  EXPECT_EQ(current_User(shop.store), "甲") << "nobody takes the place of settings that aren't saved";
}

}  // namespace
}  // namespace lotmere::test

#include "users/login.hpp"

#include <fmt/format.h>

#include <array>

#include "core/failure.hpp"
#include "core/row_copy.hpp"
#include "core/store_files.hpp"
#include "core/text.hpp"
#include "users/accounts.hpp"
#include "users/profile.hpp"
#include "users/user_name.hpp"

namespace lotmere {
namespace {

Credentials trimmed(const Credentials& typed) {
  return {std::string(trim(typed.name)), std::string(trim(typed.password))};
}

std::string unknown_Text(const std::string& name) {
  return fmt::format("没有用户{}。要建立新用户，请点击“我是新用户”（命令行：users login 用户名 --new）。",
                     quote_Typed(name));
}

// Whether somebody who isn't in the table may come in and be made a user.
bool admits_New(const UserDesk& at, const std::string& name, NewUser new_user) {
  if (is_BlankName(name)) return refuse_User(at, "用户名不能为空！");
  if (!is_UserName(name)) return refuse_User(at, "用户名太长，或者含有不能使用的字符，请换一个用户名。");
  if (new_user == NewUser::refused) return refuse_User(at, unknown_Text(name));
  return new_user == NewUser::made || at.desk.ask("用户不存在，要以当前的用户名及密码来建立新用户吗？");
}

bool admits_Known(const UserDesk& at, const Credentials& user, const User& row, NewUser new_user) {
  if (fits(row, user.password)) return true;
  return refuse_User(at,
                     new_user == NewUser::refused
                         ? "密码错误！(注意大小写区分)"
                         : fmt::format("已经有用户“{}”，密码不对。要建立新用户，请换一个用户名。", row.name));
}

// Tickets belong to whoever made them; a slip must not cost them.
bool gives_UpTickets(const UserDesk& at) {
  const auto tickets = at.store.value(R"(SELECT count(*) FROM "日志表")");
  if (tickets == 0) return true;
  constexpr std::array<std::string_view, 2> buttons{"清空并登录", "取消"};
  return at.desk.choose(fmt::format("登录会清空现有的 {} 注号码。", tickets), buttons, 1) == 0;
}

// Where the settings of a user come from who is made.
enum class FirstSettings { factory, profile };

// Nothing when the user is not to be made after all.
std::optional<FirstSettings> choose_FirstSettings(const UserDesk& at, const std::string& name) {
  if (!at.files.exists(profile_File(at.home, name))) return FirstSettings::factory;
  constexpr std::array<std::string_view, 3> buttons{"使用其中的设置", "另存该文件，从默认设置开始", "取消"};
  switch (
      at.desk.choose(fmt::format("已经有一个用户“{}”的设置文件，要使用其中的设置吗？", name), buttons, 2)) {
    case 0:
      return FirstSettings::profile;
    case 1:
      return FirstSettings::factory;
    default:
      return std::nullopt;
  }
}

// The row and the settings of a new user, inside one change.
void make_User(const UserDesk& at, const Credentials& user) {
  const bool guest = user.name == kGuest;
  add_User(at.store, user.name, guest ? std::string() : hash_Password(user.password, at.limits));
  restoreTiaojian(at.store);  // also where a profile is read then: it may lack what this version knows
}

// The first profile of a new user. It comes behind the change: a file that lay there before a user does would be
// taken for somebody else's. Until it is written the settings stand in the store, whose current user this is.
void save_FirstProfile(const UserDesk& at, const std::string& name) {
  try {
    static_cast<void>(save_Profile(at.store, at.home, at.desk, name, at.files));
  } catch (const std::exception& failure) {
    at.desk.show_Tip("用户文件没有更新。" + failure_Text(failure), "用户");
  }
}

// The common last step of each way in, inside one change; gives the names of the idle users who went.
std::vector<std::string> user_Login(const UserDesk& at, const std::string& name, FirstSettings settings) {
  renew_Login(at.store, name, at.today);
  if (settings == FirstSettings::profile) restore_Profile(at.store, at.home, at.desk, name, at.files);
  set_CurrentUser(at.store, name);
  auto idle = remove_IdleUsers(at.store, at.today);
  at.store.query(R"(DELETE FROM "日志表")").run();
  return idle;
}

}  // namespace

bool log_In(const UserDesk& at, const Credentials& typed, NewUser new_user) {
  const Credentials user = trimmed(typed);
  const auto row = find_User(at.store, user.name);
  if (row ? !admits_Known(at, user, *row, new_user) : !admits_New(at, user.name, new_user)) return false;
  const auto settings = row ? FirstSettings::profile : choose_FirstSettings(at, user.name);
  if (!settings || !gives_UpTickets(at)) return false;
  if (!save_CurrentUser(at)) return false;
  hash_PlainPasswords(at);

  const auto file = profile_File(at.home, user.name);
  if (settings == FirstSettings::factory && at.files.exists(file)) keep_Copy(file, ".old", at.files);
  StoreChange change(at.store);
  if (!row) make_User(at, user);
  const auto idle = user_Login(at, user.name, *settings);
  change.commit();
  if (settings == FirstSettings::factory) save_FirstProfile(at, user.name);
  remove_Profiles(at, idle);
  if (user.name == kGuest) at.desk.show_Tip("临时用户的设置不保存，只保留到下一次登录。", "用户");
  return true;
}

bool resume_Session(const UserDesk& at, const Credentials& typed) {
  const Credentials user = trimmed(typed);
  if (user.name.empty() || user.name != current_User(at.store)) return log_In(at, user);
  const auto row = find_User(at.store, user.name);
  if (!row) return refuse_User(at, unknown_Text(user.name));
  if (!admits_Known(at, user, *row, NewUser::refused)) return false;
  hash_PlainPasswords(at);
  renew_Login(at.store, user.name, at.today);
  return true;
}

bool save_CurrentUser(const UserDesk& at) {
  const std::string name = current_User(at.store);
  if (name.empty() || name == kGuest || !find_User(at.store, name)) return true;
  return save_Profile(at.store, at.home, at.desk, name, at.files);
}

bool log_Out(const UserDesk& at) {
  if (!save_CurrentUser(at)) return false;
  set_CurrentUser(at.store, {});
  return true;
}

bool exit_Program(const UserDesk& at) {
  if (!at.desk.ask("确认要退出吗？")) return false;
  leave_Program(at);
  return true;
}

void leave_Program(const UserDesk& at) {
  try {
    if (user_Mode(at.store) == UserMode::multi) static_cast<void>(log_Out(at));
  } catch (const std::exception& failure) {
    at.desk.tell(failure_Text(failure), Tone::error);
  }
}

std::string new_UserText() {
  return "请在<用户名>及<密码>栏中输入一个新的用户名称及设置密码；\r\n\r\n"
         "然后再点击<登陆>按钮，系统将为您建立一个相应的新用户...";
}

std::string user_Caption(std::string_view user, std::string_view main_caption) {
  return fmt::format("{}  —— {}", user, main_caption);
}

}  // namespace lotmere

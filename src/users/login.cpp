#include "users/login.hpp"

#include <fmt/format.h>

#include <array>

#include "base/failure.hpp"
#include "base/text.hpp"
#include "store/row_copy.hpp"
#include "store/steps_table.hpp"
#include "store/store_files.hpp"
#include "store/ticket_table.hpp"
#include "users/accounts.hpp"
#include "users/profile.hpp"
#include "users/user_name.hpp"

namespace lotmere {
namespace {

Credentials trimmed(const Credentials& typed) {
  return {std::string(trim(typed.name)), std::string(trim(typed.password))};
}

std::string unknownText(const std::string& name) {
  return fmt::format("没有用户{}。要建立新用户，请点击“我是新用户”（命令行：users login 用户名 --new）。",
                     quoteTyped(name));
}

// Whether somebody who isn't in the table may come in and be made a user.
bool admitsNew(const UserDesk& at, const std::string& name, NewUser new_user) {
  if (isBlankName(name)) return refuseUser(at, "用户名不能为空！") == Outcome::done;
  if (!isUserName(name))
    return refuseUser(at, "用户名太长，或者含有不能使用的字符，请换一个用户名。") == Outcome::done;
  if (new_user == NewUser::refused) return refuseUser(at, unknownText(name)) == Outcome::done;
  return new_user == NewUser::made || at.desk.ask("用户不存在，要以当前的用户名及密码来建立新用户吗？");
}

bool admitsKnown(const UserDesk& at, const Credentials& user, const User& row, NewUser new_user) {
  if (fits(row, user.password)) return true;
  refuseUser(at, new_user == NewUser::refused
                     ? "密码错误！(注意大小写区分)"
                     : fmt::format("已经有用户“{}”，密码不对。要建立新用户，请换一个用户名。", row.name));
  return false;
}

// Tickets belong to whoever made them; a slip must not cost them.
bool givesUpTickets(const UserDesk& at) {
  const auto tickets = countAllTickets(at.store);
  if (tickets == 0) return true;
  constexpr std::array<std::string_view, 2> buttons{"清空并登录", "取消"};
  return at.desk.choose(fmt::format("登录会清空现有的 {} 注号码。", tickets), buttons, 1) == 0;
}

// Where the settings of a user come from who is made.
enum class FirstSettings { factory, profile };

// Nothing when the user is not to be made after all.
std::optional<FirstSettings> chooseFirstSettings(const UserDesk& at, const std::string& name) {
  if (!at.files.exists(profileFile(at.home, name))) return FirstSettings::factory;
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
void makeUser(const UserDesk& at, const Credentials& user) {
  const bool guest = user.name == kGuest;
  addUser(at.store, user.name, guest ? std::string() : hashPassword(user.password, at.limits));
  restoreFactoryRows(at.store);  // also where a profile is read then: it may lack what this version knows
}

// The first profile of a new user. It comes behind the change: a file that lay there before a user does would
// be taken for somebody else's. Until it is written the settings stand in the store, whose current user this
// is.
void saveFirstProfile(const UserDesk& at, const std::string& name) {
  try {
    static_cast<void>(saveProfile(at.store, at.home, at.desk, name, at.files));
  } catch (const std::exception& failure) {
    at.desk.showTip("用户文件没有更新。" + failureText(failure), "用户");
  }
}

// The common last step of each way in, inside one change; gives the names of the idle users who went.
std::vector<std::string> userLogin(const UserDesk& at, const std::string& name, FirstSettings settings) {
  renewLogin(at.store, name, at.today);
  keepSettingStepsOf(at.store, name);
  if (name != currentUser(at.store)) forgetNamedSets(at.store);
  if (settings == FirstSettings::profile) restoreProfile(at.store, at.home, at.desk, name, at.files);
  setCurrentUser(at.store, name);
  auto idle = removeIdleUsers(at.store, at.today);
  deleteAllTickets(at.store);
  forgetTicketSteps(at.store);
  return idle;
}

}  // namespace

Outcome logIn(const UserDesk& at, const Credentials& typed, NewUser new_user) {
  const Credentials user = trimmed(typed);
  const auto row = findUser(at.store, user.name);
  if (row ? !admitsKnown(at, user, *row, new_user) : !admitsNew(at, user.name, new_user))
    return Outcome::refused;
  const auto settings = row ? FirstSettings::profile : chooseFirstSettings(at, user.name);
  if (!settings || !givesUpTickets(at)) return Outcome::refused;
  if (saveCurrentUser(at) != Outcome::done) return Outcome::refused;
  hashPlainPasswords(at);

  const auto file = profileFile(at.home, user.name);
  if (settings == FirstSettings::factory && at.files.exists(file)) keepCopy(file, ".old", at.files);
  StoreChange change(at.store);
  if (!row) makeUser(at, user);
  const auto idle = userLogin(at, user.name, *settings);
  change.commit();
  if (settings == FirstSettings::factory) saveFirstProfile(at, user.name);
  removeProfiles(at, idle);
  if (user.name == kGuest) at.desk.showTip("临时用户的设置不保存，只保留到下一次登录。", "用户");
  return Outcome::done;
}

Outcome resumeSession(const UserDesk& at, const Credentials& typed) {
  const Credentials user = trimmed(typed);
  if (user.name.empty() || user.name != currentUser(at.store)) return logIn(at, user);
  const auto row = findUser(at.store, user.name);
  if (!row) return refuseUser(at, unknownText(user.name));
  if (!admitsKnown(at, user, *row, NewUser::refused)) return Outcome::refused;
  hashPlainPasswords(at);
  renewLogin(at.store, user.name, at.today);
  return Outcome::done;
}

Outcome saveCurrentUser(const UserDesk& at) {
  const std::string name = currentUser(at.store);
  if (name.empty() || name == kGuest || !findUser(at.store, name)) return Outcome::done;
  return doneIf(saveProfile(at.store, at.home, at.desk, name, at.files));
}

Outcome logOut(const UserDesk& at) {
  if (saveCurrentUser(at) != Outcome::done) return Outcome::refused;
  setCurrentUser(at.store, {});
  return Outcome::done;
}

Outcome exitProgram(const UserDesk& at) {
  if (!at.desk.ask(kExitQuestion)) return Outcome::refused;
  leaveProgram(at);
  return Outcome::done;
}

void leaveProgram(const UserDesk& at) {
  try {
    if (userMode(at.store) == UserMode::multi) static_cast<void>(logOut(at));
  } catch (const std::exception& failure) {
    at.desk.tell(failureText(failure), Tone::error);
  }
}

std::string newUserText() {
  return "请在<用户名>及<密码>栏中输入一个新的用户名称及设置密码；\r\n\r\n"
         "然后再点击<登陆>按钮，系统将为您建立一个相应的新用户...";
}

std::string userCaption(std::string_view user, std::string_view main_caption) {
  return fmt::format("{}  —— {}", user, main_caption);
}

}  // namespace lotmere

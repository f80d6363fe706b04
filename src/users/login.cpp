#include "users/login.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "core/failure.hpp"
#include "core/row_copy.hpp"
#include "core/text.hpp"
#include "users/profile.hpp"

namespace lotmere {
namespace {

Credentials trimmed(const Credentials& typed) {
  return {std::string(trim(typed.name)), std::string(trim(typed.password))};
}

bool refuse(const UserDesk& at, std::string_view text) {
  at.desk.tell(text, Tone::error);
  return false;
}

// Whether the name and the password fit: a name that can be used, and the password of its row if there is one.
bool admits(const UserDesk& at, const Credentials& user, const std::optional<User>& row) {
  if (user.name.empty()) return refuse(at, "用户名不能为空！");
  if (!row && !is_UserName(user.name))
    return refuse(at, "用户名太长，或者含有不能使用的字符，请换一个用户名。");
  if (row && user.name != kGuest && user.password != row->password)
    return refuse(at, "密码错误！(注意大小写区分)");
  return true;
}

// The common last step of each way in, inside one change; gives the names of the idle users who went.
std::vector<std::string> user_Login(const UserDesk& at, const std::string& name) {
  renew_Login(at.store, name, at.today);
  restore_Profile(at.store, at.home, at.desk, name, at.files);
  set_CurrentUser(at.store, name);
  auto idle = remove_IdleUsers(at.store, at.today);
  at.store.query(R"(DELETE FROM "日志表")").run();
  return idle;
}

// A file that can't be removed is no reason to keep the others: it is overwritten should its name come back.
void remove_Profiles(const UserDesk& at, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    try {
      at.files.remove(profile_File(at.home, name));
    } catch (const std::filesystem::filesystem_error& failure) {
      at.desk.show_Tip("无法删除文件 " + failure.path1().filename().string() + "。", "用户");
    }
  }
}

}  // namespace

bool log_In(const UserDesk& at, const Credentials& typed) {
  const Credentials user = trimmed(typed);
  const auto row = find_User(at.store, user.name);
  if (!admits(at, user, row)) return false;
  if (!row && !at.desk.ask("用户不存在，要以当前的用户名及密码来建立新用户吗？")) return false;
  if (!save_CurrentUser(at)) return false;

  StoreChange change(at.store);
  if (!row) {
    add_User(at.store, user.name, user.password);
    restoreTiaojian(at.store);
    if (!save_Profile(at.store, at.home, at.desk, user.name, at.files)) return false;
  }
  const auto idle = user_Login(at, user.name);
  change.commit();
  remove_Profiles(at, idle);
  return true;
}

bool resume_Session(const UserDesk& at, const Credentials& typed) {
  const Credentials user = trimmed(typed);
  const auto row = find_User(at.store, user.name);
  if (!admits(at, user, row)) return false;
  if (!row) return refuse(at, fmt::format("没有用户“{}”，请先登录建立。", user.name));
  if (user.name != current_User(at.store)) return log_In(at, user);
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

#include "users/accounts.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "core/failure.hpp"
#include "core/store_files.hpp"
#include "core/text.hpp"
#include "users/profile.hpp"

namespace lotmere {
namespace {

// An empty text in the guest's row protects nobody.
bool is_Exposed(const User& user) { return user.plain && (user.name != kGuest || !user.password.empty()); }

void hash_Rows(const UserDesk& at, const std::vector<User>& users) {
  StoreChange change(at.store);
  for (const User& user : users)
    if (is_Exposed(user))
      set_Password(at.store, user.name,
                   user.name == kGuest ? std::string() : hash_Password(user.password, at.limits));
  change.commit();
}

void renew_Backup(const UserDesk& at) {
  constexpr std::string_view still = "备份没有更新，旧的密码还在其中。";
  try {
    if (!copy_Database(at.home.main_Db(), at.home.backup_Db(), at.files))
      at.desk.show_Tip(std::string(still) + "数据文件已损坏。", "备份");
  } catch (const std::exception& failure) {
    at.desk.show_Tip(std::string(still) + failure_Text(failure), "备份");
  }
}

// The row of a user who can be changed: one that is there, and not the guest.
std::optional<User> find_Account(const UserDesk& at, const std::string& name, std::string_view guest_text) {
  const std::string wanted(trim(name));
  if (wanted == kGuest) {
    refuse_User(at, guest_text);
    return std::nullopt;
  }
  auto user = find_User(at.store, wanted);
  if (!user)
    refuse_User(at, wanted.empty() ? "用户名不能为空！" : fmt::format("没有用户{}。", quote_Typed(wanted)));
  return user;
}

bool says(const UserDesk& at, const std::string& question, std::string_view action) {
  const std::string_view buttons[] = {action, "取消"};
  return at.desk.choose(question, buttons, 1) == 0;
}

}  // namespace

bool refuse_User(const UserDesk& at, std::string_view text) {
  at.desk.tell(text, Tone::error);
  return false;
}

bool fits(const User& user, const std::string& password) {
  if (user.name == kGuest) return true;
  return user.plain ? user.password == password : is_HashOf(user.password, password);
}

void hash_PlainPasswords(const UserDesk& at) {
  const auto users = all_Users(at.store);
  if (std::ranges::none_of(users, is_Exposed)) return;
  at.store.db().exec("PRAGMA secure_delete = ON");
  hash_Rows(at, users);
  // Pages that an older version gave up may still hold a text.
  at.store.db().tryExec("VACUUM");
  renew_Backup(at);
}

void remove_Profiles(const UserDesk& at, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    try {
      at.files.remove(profile_File(at.home, name));
    } catch (const std::filesystem::filesystem_error& failure) {
      at.desk.show_Tip("无法删除文件 " + failure.path1().filename().string() + "。", "用户");
    }
  }
}

bool change_Password(const UserDesk& at, const std::string& name, const std::optional<std::string>& before,
                     const std::string& after) {
  const auto user = find_Account(at, name, "临时用户不用密码。");
  if (!user) return false;
  const std::string fresh(trim(after));
  if (fresh.empty()) return refuse_User(at, "新密码不能为空！");
  if (before && !fits(*user, std::string(trim(*before))))
    return refuse_User(at, "密码错误！(注意大小写区分)");
  if (!before &&
      !says(at, fmt::format("不核对旧密码，直接为用户“{}”设置新密码吗？", user->name), "设置新密码"))
    return false;
  hash_PlainPasswords(at);
  set_Password(at.store, user->name, hash_Password(fresh, at.limits));
  return true;
}

bool remove_User(const UserDesk& at, const std::string& name) {
  const auto user = find_Account(at, name, "临时用户不能删除。");
  if (!user) return false;
  if (user->name == current_User(at.store))
    return refuse_User(at, fmt::format("“{}”是当前用户，请先换一个用户登录，再删除。", user->name));
  if (!says(at, fmt::format("要删除用户“{}”吗？该用户的过滤条件会一起删除，不能恢复。", user->name),
            "删除用户"))
    return false;
  hash_PlainPasswords(at);
  delete_User(at.store, user->name);
  remove_Profiles(at, {user->name});
  return true;
}

}  // namespace lotmere

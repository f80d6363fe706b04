#include "users/accounts.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "base/failure.hpp"
#include "base/text.hpp"
#include "store/store_files.hpp"
#include "users/profile.hpp"

namespace lotmere {
namespace {

// An empty text in the guest's row protects nobody.
bool isExposed(const User& user) { return user.plain && (user.name != kGuest || !user.password.empty()); }

void hashRows(const UserDesk& at, const std::vector<User>& users) {
  StoreChange change(at.store);
  for (const User& user : users)
    if (isExposed(user))
      setPassword(at.store, user.name,
                  user.name == kGuest ? std::string() : hashPassword(user.password, at.limits));
  change.commit();
}

void renewBackup(const UserDesk& at) {
  constexpr std::string_view still = "备份没有更新，旧的密码还在其中。";
  try {
    if (!copyDatabase(at.home.mainDb(), at.home.backupDb(), at.files))
      at.desk.showTip(std::string(still) + "数据文件已损坏。", "备份");
  } catch (const std::exception& failure) {
    at.desk.showTip(std::string(still) + failureText(failure), "备份");
  }
}

// The row of a user who can be changed: one that is there, and not the guest.
std::optional<User> findAccount(const UserDesk& at, const std::string& name, std::string_view guest_text) {
  const std::string wanted(trim(name));
  if (wanted == kGuest) {
    refuseUser(at, guest_text);
    return std::nullopt;
  }
  auto user = findUser(at.store, wanted);
  if (!user)
    refuseUser(at, wanted.empty() ? "用户名不能为空！" : fmt::format("没有用户{}。", quoteTyped(wanted)));
  return user;
}

bool says(const UserDesk& at, const std::string& question, std::string_view action) {
  const std::string_view buttons[] = {action, "取消"};
  return at.desk.choose(question, buttons, 1) == 0;
}

}  // namespace

Outcome refuseUser(const UserDesk& at, std::string_view text) {
  at.desk.tell(text, Tone::error);
  return Outcome::refused;
}

bool fits(const User& user, const std::string& password) {
  if (user.name == kGuest) return true;
  return user.plain ? user.password == password : isHashOf(user.password, password);
}

void hashPlainPasswords(const UserDesk& at) {
  const auto users = allUsers(at.store);
  if (std::ranges::none_of(users, isExposed)) return;
  at.store.db().exec("PRAGMA secure_delete = ON");
  hashRows(at, users);
  // Pages that an older version gave up may still hold a text.
  at.store.db().tryExec("VACUUM");
  renewBackup(at);
}

void removeProfiles(const UserDesk& at, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    try {
      at.files.remove(profileFile(at.home, name));
    } catch (const std::filesystem::filesystem_error& failure) {
      at.desk.showTip("无法删除文件 " + failure.path1().filename().string() + "。", "用户");
    }
  }
}

Outcome changePassword(const UserDesk& at, const std::string& name, const std::optional<std::string>& before,
                       const std::string& after) {
  const auto user = findAccount(at, name, "临时用户不用密码。");
  if (!user) return Outcome::refused;
  const std::string fresh(trim(after));
  if (fresh.empty()) return refuseUser(at, "新密码不能为空！");
  if (before && !fits(*user, std::string(trim(*before)))) return refuseUser(at, "密码错误！(注意大小写区分)");
  if (!before &&
      !says(at, fmt::format("不核对旧密码，直接为用户“{}”设置新密码吗？", user->name), "设置新密码"))
    return Outcome::refused;
  hashPlainPasswords(at);
  setPassword(at.store, user->name, hashPassword(fresh, at.limits));
  return Outcome::done;
}

Outcome removeUser(const UserDesk& at, const std::string& name) {
  const auto user = findAccount(at, name, "临时用户不能删除。");
  if (!user) return Outcome::refused;
  if (user->name == currentUser(at.store))
    return refuseUser(at, fmt::format("“{}”是当前用户，请先换一个用户登录，再删除。", user->name));
  if (!says(at, fmt::format("要删除用户“{}”吗？该用户的过滤条件会一起删除，不能恢复。", user->name),
            "删除用户"))
    return Outcome::refused;
  hashPlainPasswords(at);
  deleteUser(at.store, user->name);
  removeProfiles(at, {user->name});
  return Outcome::done;
}

}  // namespace lotmere

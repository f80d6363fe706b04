#include "users/user_table.hpp"

#include <algorithm>

namespace lotmere {
namespace {

const std::string kUserColumns =
    R"(SELECT "用户名","密码","密码形式",ifnull("最后登陆时间",'') FROM "用户表")";

User readUser(const Query& row) {
  return {row.text(0), row.text(1), row.number(2) != 1, parseDate(row.text(3))};
}

// Whether the day of the machine agrees with what the store knows of the time. The draws tell it best: their
// dates come from outside.
bool isPlausible(Store& store, const std::vector<User>& users, Date today) {
  std::optional<Date> newest;
  Query row = store.query(R"(SELECT ifnull(max("开奖日期"),'') FROM "历史记录")");
  if (row.next()) newest = parseDate(row.text(0));
  if (!newest || *newest > today) return false;
  const Date a_year_on{std::chrono::year_month_day{*newest} + std::chrono::years{1}};
  return today <= a_year_on && std::ranges::none_of(users, [today](const User& user) {
           return user.last_login && *user.last_login > today;
         });
}

}  // namespace

UserMode userMode(Store& store) {
  const auto mode = store.value(R"(SELECT "模式" FROM "用户模式")");
  if (mode >= static_cast<int>(UserMode::multi)) return UserMode::multi;
  return mode == 0 ? UserMode::unchosen : UserMode::single;
}

bool chooseUserMode(Store& store, UserMode mode) {
  const UserMode chosen = userMode(store);
  if (chosen == UserMode::unchosen)
    store.query(R"(UPDATE "用户模式" SET "模式"=?)").bind(static_cast<int>(mode)).run();
  return chosen == UserMode::unchosen || chosen == mode;
}

std::string userModeText() {
  return "如果这台电脑上只有你一个人使用此软件请选择“单用户模式”\r\n\r\n"
         "如果这台电脑上有多个用户使用到此软件请选择“多用户模式”\r\n\r\n"
         "(投注站等可能有多用户使用的情况下请选择“多用户模式”)";
}

std::vector<User> allUsers(Store& store) {
  Query rows = store.query(kUserColumns + R"( ORDER BY "用户名" ASC)");
  std::vector<User> users;
  while (rows.next()) users.push_back(readUser(rows));
  return users;
}

std::optional<User> findUser(Store& store, std::string_view name) {
  Query row = store.query(kUserColumns + R"( WHERE "用户名"=?)");
  row.bind(std::string(name));
  if (!row.next()) return std::nullopt;
  return readUser(row);
}

void addUser(Store& store, std::string_view name, const std::string& hash) {
  store.query(R"(INSERT INTO "用户表" ("用户名","密码","密码形式") VALUES (?,?,1))")
      .bind(std::string(name), hash)
      .run();
}

void setPassword(Store& store, std::string_view name, const std::string& hash) {
  store.query(R"(UPDATE "用户表" SET "密码"=?,"密码形式"=1 WHERE "用户名"=?)")
      .bind(hash, std::string(name))
      .run();
}

void deleteUser(Store& store, std::string_view name) {
  store.query(R"(DELETE FROM "用户表" WHERE "用户名"=?)").bind(std::string(name)).run();
}

void renewLogin(Store& store, std::string_view name, Date today) {
  const auto user = findUser(store, name);
  const Date last = user && user->last_login ? *user->last_login : today;
  store.query(R"(UPDATE "用户表" SET "最后登陆时间"=? WHERE "用户名"=?)")
      .bind(formatDate(std::max(today, last)), std::string(name))
      .run();
}

std::vector<std::string> removeIdleUsers(Store& store, Date today) {
  std::vector<std::string> names;
  const std::vector<User> users = allUsers(store);
  if (!isPlausible(store, users, today)) return names;
  const Date limit = today - std::chrono::days{kIdleDays};
  for (const User& user : users)
    if (user.name != kGuest && user.last_login && *user.last_login <= limit) names.push_back(user.name);
  for (const std::string& name : names) deleteUser(store, name);
  return names;
}

std::string currentUser(Store& store) {
  Query row = store.query(R"(SELECT "当前用户" FROM "用户模式")");
  return row.next() ? row.text(0) : std::string();
}

void setCurrentUser(Store& store, std::string_view name) {
  store.query(R"(UPDATE "用户模式" SET "当前用户"=?)").bind(std::string(name)).run();
}

}  // namespace lotmere

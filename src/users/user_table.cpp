#include "users/user_table.hpp"

#include <fmt/format.h>

namespace lotmere {

UserMode user_Mode(Store& store) {
  const auto mode = store.value(R"(SELECT "模式" FROM "用户模式")");
  if (mode >= static_cast<int>(UserMode::multi)) return UserMode::multi;
  return mode == 0 ? UserMode::unchosen : UserMode::single;
}

bool choose_UserMode(Store& store, UserMode mode) {
  const UserMode chosen = user_Mode(store);
  if (chosen == UserMode::unchosen)
    store.query(R"(UPDATE "用户模式" SET "模式"=?)").bind(static_cast<int>(mode)).run();
  return chosen == UserMode::unchosen || chosen == mode;
}

std::string user_ModeText() {
  return "如果这台电脑上只有你一个人使用此软件请选择“单用户模式”\r\n\r\n"
         "如果这台电脑上有多个用户使用到此软件请选择“多用户模式”\r\n\r\n"
         "(投注站等可能有多用户使用的情况下请选择“多用户模式”)";
}

std::vector<User> all_Users(Store& store) {
  Query rows =
      store.query(R"(SELECT "用户名","密码",ifnull("最后登陆时间",'') FROM "用户表" ORDER BY "用户名" ASC)");
  std::vector<User> users;
  while (rows.next()) users.push_back({rows.text(0), rows.text(1), parse_Date(rows.text(2))});
  return users;
}

std::optional<User> find_User(Store& store, std::string_view name) {
  Query row =
      store.query(R"(SELECT "用户名","密码",ifnull("最后登陆时间",'') FROM "用户表" WHERE "用户名"=?)");
  row.bind(std::string(name));
  if (!row.next()) return std::nullopt;
  return User{row.text(0), row.text(1), parse_Date(row.text(2))};
}

void add_User(Store& store, std::string_view name, std::string_view password) {
  store.query(R"(INSERT INTO "用户表" ("用户名","密码") VALUES (?,?))")
      .bind(std::string(name), std::string(password))
      .run();
}

void renew_Login(Store& store, std::string_view name, Date today) {
  store.query(R"(UPDATE "用户表" SET "最后登陆时间"=? WHERE "用户名"=?)")
      .bind(format_Date(today), std::string(name))
      .run();
}

std::vector<std::string> remove_IdleUsers(Store& store, Date today) {
  const std::string limit = format_Date(today - std::chrono::days{kIdleDays});
  const std::string idle = R"("最后登陆时间"<=? AND "用户名"<>?)";
  std::vector<std::string> names;
  Query rows = store.query(R"(SELECT "用户名" FROM "用户表" WHERE )" + idle);
  rows.bind(limit, std::string(kGuest));
  while (rows.next()) names.push_back(rows.text(0));
  store.query(R"(DELETE FROM "用户表" WHERE )" + idle).bind(limit, std::string(kGuest)).run();
  return names;
}

std::string current_User(Store& store) {
  Query row = store.query(R"(SELECT "当前用户" FROM "用户模式")");
  return row.next() ? row.text(0) : std::string();
}

void set_CurrentUser(Store& store, std::string_view name) {
  store.query(R"(UPDATE "用户模式" SET "当前用户"=?)").bind(std::string(name)).run();
}

}  // namespace lotmere

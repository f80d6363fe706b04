#include "cli/users.hpp"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <ostream>

#include "cli/command.hpp"
#include "core/text.hpp"
#include "files/text_file.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kLongestPasswordFile = 4096;

class ListCommand final : public Command {
 public:
  ListCommand() : Command("users", "list", "列出用户，一人一行：用户名、最后登陆时间、是否当前用户") {}

  [[nodiscard]] bool needs_User() const override { return false; }

  int run(Session& session) override {
    const std::string current = current_User(session.store);
    for (const User& user : all_Users(session.store))
      session.out << fmt::format("{}\t{}\t{}\n", user.name,
                                 user.last_login ? format_Date(*user.last_login) : "—",
                                 user.name == current ? "当前" : "");
    return kExitDone;
  }
};

class LoginCommand final : public Command {
 public:
  LoginCommand() : Command("users", "login", "登录或建立用户（密码用 --password-file），日志表随之清空") {}

  [[nodiscard]] bool needs_User() const override { return false; }
  void add_Options(CLI::App& app) override { app.add_option("NAME", name_, "用户名")->required(); }

  int run(Session& session) override {
    if (user_Mode(session.store) != UserMode::multi)
      return refuse(session.desk, "不是多用户模式，不需要登录；用 users mode multi 设置。");
    const UserDesk at{session.store, session.start.home(), session.desk, real_Clock().today()};
    if (!log_In(at, {name_, session.password})) return kExitRefused;
    session.out << fmt::format("当前用户：{}\n", current_User(session.store));
    return kExitDone;
  }

 private:
  std::string name_;
};

class ModeCommand final : public Command {
 public:
  ModeCommand() : Command("users", "mode", "选择单用户或多用户模式，选定后不能再改") {}

  [[nodiscard]] bool needs_User() const override { return false; }
  void add_Options(CLI::App& app) override {
    app.add_option("MODE", mode_, "single 或 multi")->required()->check(CLI::IsMember({"single", "multi"}));
  }

  int run(Session& session) override {
    const bool multi = mode_ == "multi";
    if (!choose_UserMode(session.store, multi ? UserMode::multi : UserMode::single))
      return refuse(session.desk, "用户模式早已选定，不能再改。");
    session.out << (multi ? "多用户模式\n" : "单用户模式\n");
    return kExitDone;
  }

 private:
  std::string mode_;
};

}  // namespace

std::optional<std::string> read_Password(Desk& desk, const std::string& file) {
  if (file.empty()) return std::string();
  TextFile text_file(file);
  Job job(desk, 1, Job::Stop::impossible);
  auto text =
      text_file.size() <= kLongestPasswordFile ? decode_Bytes(text_file.bytes(job), job) : std::nullopt;
  if (!text) {
    refuse(desk, fmt::format("文件{}不像密码文件：应是一行文字。", quote_Typed(file)));
    return std::nullopt;
  }
  return std::string(trim(text->substr(0, text->find_first_of("\r\n"))));
}

bool enter_AsUser(const ProgramStart& start, Desk& desk, const Credentials& typed) {
  const bool multi = user_Mode(start.store()) == UserMode::multi;
  if (multi && !typed.name.empty())
    return resume_Session({start.store(), start.home(), desk, real_Clock().today()}, typed);
  if (multi) refuse(desk, "现在是多用户模式，请用 --user 和 --password-file 登录。");
  if (!multi && !typed.name.empty()) refuse(desk, "不是多用户模式，不能用 --user。");
  return !multi && typed.name.empty();
}

void add_UserCommands(CommandList& list) {
  list.push_back(std::make_unique<ListCommand>());
  list.push_back(std::make_unique<LoginCommand>());
  list.push_back(std::make_unique<ModeCommand>());
}

}  // namespace lotmere

#include "cli/users.hpp"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <ostream>

#include "base/text.hpp"
#include "base/text_file.hpp"
#include "cli/command.hpp"
#include "users/accounts.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kLongestPassword = 4096;

class ListCommand final : public Command {
 public:
  ListCommand() : Command("users", "list", "列出用户，一人一行：用户名、最后登陆时间、是否当前用户") {}

  [[nodiscard]] bool needsUser() const override { return false; }

  Outcome run(Session& session) override {
    const std::string current = currentUser(session.store);
    for (const User& user : allUsers(session.store))
      session.out << fmt::format("{}\t{}\t{}\n", user.name,
                                 user.last_login ? formatDate(*user.last_login) : "—",
                                 user.name == current ? "当前" : "");
    return Outcome::done;
  }
};

UserDesk userDesk(const Session& session) {
  return {session.store,       session.start.home(), session.desk,
          realClock().today(), realFiles(),          session.password_limits};
}

// A command about the user whose name is its argument, where several people use the program.
class NamedUserCommand : public Command {
 public:
  using Command::Command;

  [[nodiscard]] bool needsUser() const override { return false; }
  [[nodiscard]] bool namesUser() const override { return true; }
  void addOptions(CLI::App& app) override { app.add_option("NAME", name_, "用户名")->required(); }

  Outcome run(Session& session) override {
    if (userMode(session.store) != UserMode::multi)
      return refuse(session.desk, "不是多用户模式，没有用户；用 users mode multi 设置。");
    return doneIf(work(session, name_));
  }

 private:
  // False when it was told why not.
  virtual bool work(Session& session, const std::string& name) = 0;

  std::string name_;
};

class LoginCommand final : public NamedUserCommand {
 public:
  LoginCommand() : NamedUserCommand("users", "login", "登录（密码用 --password-file），日志表随之清空") {}

  void addOptions(CLI::App& app) override {
    NamedUserCommand::addOptions(app);
    app.add_flag("--new", new_, "建立新用户");
  }

 private:
  bool work(Session& session, const std::string& name) override {
    const NewUser unknown = new_ ? NewUser::made : NewUser::refused;
    if (logIn(userDesk(session), {name, session.password.value_or(std::string())}, unknown) != Outcome::done)
      return false;
    session.out << fmt::format("当前用户：{}\n", currentUser(session.store));
    return true;
  }

  bool new_ = false;
};

class PasswordCommand final : public NamedUserCommand {
 public:
  PasswordCommand()
      : NamedUserCommand("users", "password",
                         "更改密码：旧密码用 --password-file；忘记了旧密码时不写，再加 --answer yes") {}

  void addOptions(CLI::App& app) override {
    NamedUserCommand::addOptions(app);
    app.add_option("--new-password-file", new_file_, "写有新密码的文件，密码在第一行；- 是标准输入")
        ->required();
  }

 private:
  bool work(Session& session, const std::string& name) override {
    const auto fresh = readPassword(session.desk, new_file_);
    if (!fresh || changePassword(userDesk(session), name, session.password, *fresh) != Outcome::done)
      return false;
    session.out << "密码已更改。\n";
    return true;
  }

  std::string new_file_;
};

class RemoveCommand final : public NamedUserCommand {
 public:
  RemoveCommand() : NamedUserCommand("users", "remove", "删除用户和该用户的设置") {}

 private:
  bool work(Session& session, const std::string& name) override {
    if (removeUser(userDesk(session), name) != Outcome::done) return false;
    session.out << "用户已删除。\n";
    return true;
  }
};

class ModeCommand final : public Command {
 public:
  ModeCommand() : Command("users", "mode", "选择单用户或多用户模式，选定后不能再改") {}

  [[nodiscard]] bool needsUser() const override { return false; }
  void addOptions(CLI::App& app) override {
    app.add_option("MODE", mode_, "single 或 multi")->required()->check(CLI::IsMember({"single", "multi"}));
  }

  Outcome run(Session& session) override {
    const bool multi = mode_ == "multi";
    if (!chooseUserMode(session.store, multi ? UserMode::multi : UserMode::single))
      return refuse(session.desk, "用户模式早已选定，不能再改。");
    session.out << (multi ? "多用户模式\n" : "单用户模式\n");
    return Outcome::done;
  }

 private:
  std::string mode_;
};

}  // namespace

std::optional<std::string> readPassword(Desk& desk, const std::string& file) {
  const StopScope stop(desk.course());
  std::optional<std::string> text;
  {
    CourseLeg wait(desk.course(), 0, Course::Stop::possible);
    text = readFirstLine(file, kLongestPassword, [&wait] { return wait.advance(0); });
    if (desk.course().stopRequested()) return std::nullopt;
  }
  CourseLeg job(desk.course(), 1, Course::Stop::impossible);
  if (text) text = decodeBytes(std::move(*text), job);
  if (!text) {
    refuse(desk, fmt::format("文件{}不像密码文件：应是一行文字。", quoteTyped(file)));
    return std::nullopt;
  }
  return std::string(trim(text->substr(0, text->find('\r'))));
}

bool enterAsUser(const ProgramStart& start, Desk& desk, const Credentials& typed, HashLimits limits) {
  Store& store = start.store();
  const bool multi = userMode(store) == UserMode::multi;
  if (multi && !typed.name.empty()) {
    const std::string before = currentUser(store);
    if (resumeSession({store, start.home(), desk, realClock().today(), realFiles(), limits}, typed) !=
        Outcome::done)
      return false;
    const std::string name = currentUser(store);
    if (name != before) desk.showTip(fmt::format("已登录为“{}”。", name), "用户");
    return true;
  }
  if (multi) refuse(desk, "现在是多用户模式，请用 --user 和 --password-file 登录。");
  if (!multi && !typed.name.empty()) refuse(desk, "不是多用户模式，不能用 --user。");
  return !multi && typed.name.empty();
}

void addUserCommands(CommandList& list) {
  list.push_back(std::make_unique<ListCommand>());
  list.push_back(std::make_unique<LoginCommand>());
  list.push_back(std::make_unique<ModeCommand>());
  list.push_back(std::make_unique<PasswordCommand>());
  list.push_back(std::make_unique<RemoveCommand>());
}

}  // namespace lotmere

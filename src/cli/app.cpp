#include "cli/app.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <ostream>

#include "base/failure.hpp"
#include "base/text.hpp"
#include "cli/command.hpp"
#include "cli/desk_terminal.hpp"
#include "cli/users.hpp"
#include "history/draw_stats.hpp"
#include "store/store_files.hpp"

namespace lotmere {
namespace {

constexpr int kExitUsage = 2;

int statusOf(Outcome outcome) {
  constexpr int interrupted = 130;  // as a shell tells of a command that Ctrl-C ended
  return outcome == Outcome::done ? 0 : outcome == Outcome::stopped ? interrupted : 1;
}

CommandList allCommands() {
  CommandList list;
  addDrawCommands(list);
  addDrawViewCommands(list);
  addNumberCommands(list);
  addConditionCommands(list);
  addSetCommands(list);
  addTicketCommands(list);
  addTicketFileCommands(list);
  addAnalysisCommands(list);
  addUserCommands(list);
  addStoreCommands(list);
  return list;
}

constexpr std::pair<const char*, const char*> kGroups[] = {
    {"draws", "开奖记录"}, {"numbers", "选号"}, {"conditions", "过滤条件"}, {"sets", "条件方案"},
    {"tickets", "号码"},   {"users", "用户"},   {"store", "数据文件"}};

constexpr std::pair<const char*, const char*> kHelpLabels[] = {{"Usage", "用法"},
                                                               {"OPTIONS", "选项"},
                                                               {"SUBCOMMAND", "命令"},
                                                               {"Positionals", "参数"},
                                                               {"REQUIRED", "（必填）"}};

// The arguments of one call, and the command that they name.
struct Call {
  std::string home;
  std::string answer;
  std::string user;
  std::string password_file;
  bool user_typed = false;
  Command* command = nullptr;
};

void describe(CLI::App& app, Call& call, const CommandList& commands) {
  const auto formatter = std::make_shared<CLI::Formatter>();
  for (const auto& [label, text] : kHelpLabels) formatter->label(label, text);
  app.formatter(formatter);
  app.option_defaults()->group("选项");
  app.set_help_flag("-h,--help", "显示用法");
  app.set_version_flag("--version", LOTMERE_VERSION, "显示版本");
  app.add_option("--home", call.home, "数据所在的文件夹")
      ->check(CLI::Validator([](const std::string& text) { return text.empty() ? "文件夹名为空" : ""; }, ""));
  app.add_option("--answer", call.answer,
                 "对所有是否问题的回答：yes 或 no；不写时，会删除数据的问题不执行，其余的回答 yes")
      ->check(CLI::IsMember({"yes", "no"}));
  app.add_option("--user", call.user, "多用户模式下的用户名")->each([&call](const std::string&) {
    call.user_typed = true;
  });
  app.add_option("--password-file", call.password_file, "写有密码的文件，密码在第一行；- 是标准输入");
  app.require_subcommand(1);
  app.fallthrough();
  std::map<std::string, CLI::App*> groups{{"", &app}};
  for (const auto& [name, description] : kGroups) {
    groups[name] = app.add_subcommand(name, description);
    groups[name]->group("命令");
    groups[name]->set_help_flag("-h,--help", "显示用法");
    groups[name]->require_subcommand(1);
    groups[name]->fallthrough();
  }
  for (const auto& command : commands) {
    CLI::App* sub = groups[command->group()]->add_subcommand(command->name(), command->description());
    sub->group("命令");
    sub->set_help_flag("-h,--help", "显示用法");
    command->addOptions(*sub);
    sub->callback([&call, found = command.get()] { call.command = found; });
  }
}

// The parser's own words are English; what matters in them is the name of the argument in front of the colon
// or the blank.
std::string usageText(const CLI::App& app, const CLI::ParseError& error) {
  constexpr const char* help = "用 --help 查看用法。";
  const auto code = static_cast<CLI::ExitCodes>(error.get_exit_code());
  const std::string detail = error.what();
  // The parser misses a command before it looks at the words that it couldn't place; the user wants to know
  // the word.
  const auto unknown = app.remaining(true);
  if (!unknown.empty() && (code == CLI::ExitCodes::RequiredError || code == CLI::ExitCodes::ExtrasError))
    return fmt::format("有不认识的命令或参数{}。{}", quoteTyped(fmt::format("{}", fmt::join(unknown, " "))),
                       help);
  if (code == CLI::ExitCodes::RequiredError)
    return detail.starts_with("A subcommand")
               ? fmt::format("缺少命令。{}", help)
               : fmt::format("缺少参数 {}。{}", detail.substr(0, detail.find(' ')), help);
  if (code == CLI::ExitCodes::ExcludesError) {
    constexpr std::string_view between = " excludes ";
    const std::size_t at = std::min(detail.find(between), detail.size());
    return fmt::format("参数 {} 和 {} 不能同用。{}", detail.substr(0, at),
                       detail.substr(std::min(at + between.size(), detail.size())), help);
  }
  const std::string name = detail.substr(0, detail.find(':'));
  if (code == CLI::ExitCodes::ArgumentMismatch) return fmt::format("参数 {} 的个数不对。{}", name, help);
  return fmt::format("参数 {} 的值不对。{}", name, help);
}

// The steps of a start that this command needs, in their order.
std::vector<StartStep> startOrder(ProgramStart& start, const Call& call, Desk& desk, const Credentials& typed,
                                  HashLimits limits, Outcome& prepared) {
  const auto prepare = [&start, &call, &desk, &prepared] {
    prepared = call.command->prepare(start.home(), desk);
    return prepared == Outcome::done;
  };
  std::vector<StartStep> order{start.singleInstance(), {"preparation", prepare}, start.databasePresence()};
  if (call.command->compacts()) {
    order.push_back(start.compaction());
    order.push_back(start.sizeGuard());
  }
  order.push_back(start.homeFiles());
  order.push_back(start.mainConnection());
  if (call.command->needsUser())
    order.push_back({"login", [&] { return enterAsUser(start, desk, typed, limits); }});
  return order;
}

// The draws keep counts of the intervals, which a kill, an older version or the command itself may have left
// due. A failure is told and leaves the mark for the next command; this one goes on.
void recountIntervals(Store& store, Desk& desk) {
  try {
    recountDue(store, desk);
  } catch (const std::exception& failure) {
    desk.showTip("各期的区间个数没有重新计算。" + failureText(failure), "区间");
  }
}

// What the exit of the program does: the user's settings go to their profile. The command's own result stands
// already and stays current, so a failure is told and saved at the next chance.
void saveSettings(const ProgramStart& start, Desk& desk) {
  if (userMode(start.store()) != UserMode::multi) return;
  try {
    static_cast<void>(saveCurrentUser({start.store(), start.home(), desk, realClock().today()}));
  } catch (const std::exception& failure) {
    desk.showTip("用户文件没有更新。" + failureText(failure), "用户");
  }
}

// Draws, conditions and users last; tickets and work columns are made anew at will. A copy of what lasts is
// kept beside the store, should its file be lost before the next compaction.
void refreshBackup(const ProgramStart& start, const Command& command, Desk& desk) {
  const std::string_view group = command.group();
  if (group.empty() || group == "tickets" || start.store().db().getTotalChanges() == 0) return;
  try {
    if (!copyDatabase(start.home().mainDb(), start.home().backupDb(), realFiles()))
      desk.showTip("备份没有更新：数据文件已损坏。", "备份");
  } catch (const std::exception& failure) {
    desk.showTip("备份没有更新。" + failureText(failure), "备份");
  }
}

TerminalDesk::Answer typedAnswer(const std::string& text) {
  if (text.empty()) return TerminalDesk::Answer::none;
  return text == "yes" ? TerminalDesk::Answer::yes : TerminalDesk::Answer::no;
}

Outcome runInHome(const Call& call, std::ostream& out, std::ostream& err, const Surroundings& surroundings) {
  TerminalDesk desk(out, err, typedAnswer(call.answer), surroundings.show_bar);
  if (call.home.empty() && surroundings.data_home.empty() && surroundings.user_home.empty())
    return refuse(desk, "不知道数据放在哪里，请用 --home 指定文件夹。");
  std::optional<std::string> password;
  if (!call.password_file.empty() && !(password = readPassword(desk, call.password_file)))
    return desk.course().wasInterrupted() ? Outcome::stopped : Outcome::refused;
  ProgramStart start(call.home.empty() ? findHome(surroundings.program_folder, surroundings.data_home,
                                                  surroundings.user_home)
                                       : Home{std::filesystem::path(call.home)},
                     desk);
  Outcome prepared = Outcome::done;
  const StartOutcome outcome =
      runSteps(startOrder(start, call, desk, {call.user, password.value_or(std::string())},
                          surroundings.password_limits, prepared));
  if (!outcome.messages.empty()) return refuse(desk, outcome.messages.front());
  if (!outcome.ready)
    return prepared != Outcome::done && desk.course().wasInterrupted() ? Outcome::stopped : Outcome::refused;
  Session session{start, start.store(), desk, out, password, surroundings.password_limits};
  recountIntervals(session.store, desk);
  Outcome ended = call.command->run(session);
  if (ended == Outcome::refused && desk.course().wasInterrupted()) ended = Outcome::stopped;
  recountIntervals(session.store, desk);
  if (call.command->needsUser()) saveSettings(start, desk);
  refreshBackup(start, *call.command, desk);
  desk.course().settleInterrupt();
  out.flush();
  if (!out) return refuse(desk, "无法写出结果。");
  return ended;
}

// The one place that catches a failure of the store or of a file: what the operation had not committed is
// rolled back by then.
int runCommand(const Call& call, std::ostream& out, std::ostream& err, const Surroundings& surroundings) {
  try {
    return statusOf(runInHome(call, out, err, surroundings));
  } catch (const std::exception& failure) {
    err << failureText(failure) << '\n';
  }
  return statusOf(Outcome::refused);
}

}  // namespace

int runCli(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
           const Surroundings& surroundings) {
  CLI::App app{"双色球选号、过滤、缩水工具", "lotmere-cli"};
  const CommandList commands = allCommands();
  Call call;
  describe(app, call, commands);
  try {
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::Success& wanted) {
    // --help and --version
    return app.exit(wanted, out, err);
  } catch (const CLI::ParseError& error) {
    err << usageText(app, error) << '\n';
    return kExitUsage;
  }
  if (call.user_typed && call.command->namesUser()) {
    err << fmt::format("{} {} 自己写用户名，不能再加 --user。用 --help 查看用法。\n", call.command->group(),
                       call.command->name());
    return kExitUsage;
  }
  if (const std::string fault = call.command->usageFault(); !fault.empty()) {
    err << fault << '\n';
    return kExitUsage;
  }
  return runCommand(call, out, err, surroundings);
}

}  // namespace lotmere

#include "cli/app.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <CLI/CLI.hpp>
#include <map>
#include <ostream>

#include "cli/command.hpp"
#include "core/desk_terminal.hpp"

namespace lotmere {
namespace {

CommandList all_Commands() {
  CommandList list;
  add_DrawCommands(list);
  add_NumberCommands(list);
  add_ConditionCommands(list);
  add_TicketCommands(list);
  add_AnalysisCommands(list);
  return list;
}

constexpr std::pair<const char*, const char*> kGroups[] = {
    {"draws", "开奖记录"}, {"numbers", "选号"}, {"conditions", "过滤条件"}, {"tickets", "号码"}};

constexpr std::pair<const char*, const char*> kHelpLabels[] = {{"Usage", "用法"},
                                                               {"OPTIONS", "选项"},
                                                               {"SUBCOMMAND", "命令"},
                                                               {"Positionals", "参数"},
                                                               {"REQUIRED", "（必填）"}};

// The arguments of one call, and the command that they name.
struct Call {
  std::string home;
  std::string answer = "yes";
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
  app.add_option("--answer", call.answer, "对所有是否问题的回答：yes 或 no（默认 yes）")
      ->check(CLI::IsMember({"yes", "no"}));
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
    command->add_Options(*sub);
    sub->callback([&call, found = command.get()] { call.command = found; });
  }
}

// The parser's own words are English; what matters in them is the name of the argument in front of the colon or the blank.
std::string usage_Text(const CLI::App& app, const CLI::ParseError& error) {
  constexpr const char* help = "用 --help 查看用法。";
  const auto code = static_cast<CLI::ExitCodes>(error.get_exit_code());
  const std::string detail = error.what();
  // The parser misses a command before it looks at the words that it couldn't place; the person wants to know the word.
  const auto unknown = app.remaining(true);
  if (!unknown.empty() && (code == CLI::ExitCodes::RequiredError || code == CLI::ExitCodes::ExtrasError))
    return fmt::format("有不认识的命令或参数：{}。{}", fmt::join(unknown, " "), help);
  if (code == CLI::ExitCodes::RequiredError)
    return detail.starts_with("A subcommand")
               ? fmt::format("缺少命令。{}", help)
               : fmt::format("缺少参数 {}。{}", detail.substr(0, detail.find(' ')), help);
  const std::string name = detail.substr(0, detail.find(':'));
  if (code == CLI::ExitCodes::ArgumentMismatch) return fmt::format("参数 {} 的个数不对。{}", name, help);
  return fmt::format("参数 {} 的值不对。{}", name, help);
}

std::string reason_Text(const std::error_code& code) {
  if (code == std::errc::no_such_file_or_directory) return "没有这个文件或文件夹";
  if (code == std::errc::permission_denied || code == std::errc::read_only_file_system) return "没有权限";
  if (code == std::errc::no_space_on_device) return "磁盘已满";
  if (code == std::errc::is_a_directory || code == std::errc::not_a_directory) return "文件和文件夹弄混了";
  if (code == std::errc::invalid_argument) return "不是普通文件";
  return code.message();
}

int run_InHome(const Call& call, std::ostream& out, std::ostream& err, const Surroundings& surroundings) {
  TerminalDesk desk(out, err, call.answer == "yes", surroundings.show_bar);
  if (call.home.empty() && surroundings.data_home.empty() && surroundings.user_home.empty())
    return refuse(desk, "不知道数据放在哪里，请用 --home 指定文件夹。");
  const Home home = call.home.empty() ? find_Home(surroundings.program_folder, surroundings.data_home,
                                                  surroundings.user_home)
                                      : Home{std::filesystem::path(call.home)};
  const auto lock = HomeLock::take(home);
  if (!lock) return refuse(desk, "程序已经在运行，请先关闭它再试。");
  const auto store = open_Home(home, desk);
  if (!store) return kExitRefused;
  Session session{home, *store, desk, out};
  const int status = call.command->run(session);
  out.flush();
  if (!out) return refuse(desk, "无法写出结果。");
  return status;
}

// The one place that catches a failure of the store or of a file: what the operation had not committed is
// rolled back by then.
int run_Command(const Call& call, std::ostream& out, std::ostream& err, const Surroundings& surroundings) {
  try {
    return run_InHome(call, out, err, surroundings);
  } catch (const SQLite::Exception& failure) {
    err << fmt::format("数据库操作失败，数据保持原样：{}\n", failure.what());
  } catch (const std::filesystem::filesystem_error& failure) {
    err << fmt::format("文件操作失败：{}（{}）\n", failure.path1().string(), reason_Text(failure.code()));
  } catch (const std::exception& failure) {
    err << fmt::format("操作失败，数据保持原样：{}\n", failure.what());
  }
  return kExitRefused;
}

}  // namespace

int run_Cli(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
            const Surroundings& surroundings) {
  CLI::App app{"双色球选号、过滤、缩水工具", "lotmere-cli"};
  const CommandList commands = all_Commands();
  Call call;
  describe(app, call, commands);
  try {
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::Success& wanted) {
    // --help and --version
    return app.exit(wanted, out, err);
  } catch (const CLI::ParseError& error) {
    err << usage_Text(app, error) << '\n';
    return kExitUsage;
  }
  return run_Command(call, out, err, surroundings);
}

}  // namespace lotmere

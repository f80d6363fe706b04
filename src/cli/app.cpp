#include "cli/app.hpp"

#include <fmt/format.h>

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
  return list;
}

constexpr std::pair<const char*, const char*> kGroups[] = {
    {"draws", "开奖记录"}, {"numbers", "选号"}, {"conditions", "过滤条件"}, {"tickets", "号码"}};

// The arguments of one call, and the command that they name.
struct Call {
  std::string home;
  std::string answer = "yes";
  Command* command = nullptr;
};

void describe(CLI::App& app, Call& call, const CommandList& commands) {
  app.set_version_flag("--version", LOTMERE_VERSION);
  app.add_option("--home", call.home, "数据所在的文件夹");
  app.add_option("--answer", call.answer, "对所有是否问题的回答：yes 或 no（默认 yes）")
      ->check(CLI::IsMember({"yes", "no"}));
  app.require_subcommand(1);
  app.fallthrough();
  std::map<std::string, CLI::App*> groups;
  for (const auto& [name, description] : kGroups) {
    groups[name] = app.add_subcommand(name, description);
    groups[name]->require_subcommand(1);
    groups[name]->fallthrough();
  }
  for (const auto& command : commands) {
    CLI::App* sub = groups[command->group()]->add_subcommand(command->name(), command->description());
    command->add_Options(*sub);
    sub->callback([&call, found = command.get()] { call.command = found; });
  }
}

std::string usage_Text(const CLI::ParseError& error) {
  const std::string name = error.get_name();
  const char* what = "命令写法不对";
  if (name == "RequiredError") what = "缺少命令或参数";
  if (name == "ExtrasError") what = "有不认识的命令或参数";
  if (name == "ConversionError" || name == "ValidationError") what = "参数的值不对";
  if (name == "ArgumentMismatch") what = "参数的个数不对";
  std::string detail = error.what();
  std::replace(detail.begin(), detail.end(), '\n', ' ');
  return fmt::format("{}（{}）。用 --help 查看用法。", what, detail);
}

int run_InHome(const Call& call, std::ostream& out, std::ostream& err, const Surroundings& surroundings) {
  TerminalDesk desk(out, err, call.answer == "yes", surroundings.show_bar);
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
    err << fmt::format("文件操作失败：{}（{}）\n", failure.path1().string(), failure.code().message());
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
    err << usage_Text(error) << '\n';
    return kExitUsage;
  }
  return run_Command(call, out, err, surroundings);
}

}  // namespace lotmere

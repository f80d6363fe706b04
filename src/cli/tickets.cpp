#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <ostream>
#include <thread>

#include "advice/funnel.hpp"
#include "base/text.hpp"
#include "cli/command.hpp"
#include "cli/ticket_commands.hpp"
#include "conditions/condition_store.hpp"
#include "files/export.hpp"
#include "files/import.hpp"
#include "game/game.hpp"
#include "pipeline/run.hpp"
#include "start/home.hpp"
#include "store/periods.hpp"
#include "tickets/init.hpp"
#include "tickets/prize_check.hpp"
#include "tickets/ticket_list.hpp"
#include "tickets/ticket_steps.hpp"
#include "tickets/upkeep.hpp"

namespace lotmere {
namespace {

class InitCommand final : public PeriodCommand {
 public:
  InitCommand() : PeriodCommand("tickets", "init", "把已选的号码展开成一期的全部号码") {}

  void addOptions(CLI::App& app) override {
    PeriodCommand::addOptions(app);
    existing_.add(app);
  }

 protected:
  int runPeriod(Session& session, PeriodNo period) override {
    const InitResult result = initTickets(session.store, session.desk, period, existing_.value());
    if (result.outcome != Outcome::stopped) return statusOf(result.outcome);
    return refuse(session.desk, fmt::format("用户中止,当前记录余：{} 注", toFullWidth(result.rows)));
  }

 private:
  ExistingOption existing_;
};

class RunCommand final : public PeriodCommand {
 public:
  RunCommand() : PeriodCommand("tickets", "run", "过滤缩水，并显示过程") {}

  void addOptions(CLI::App& app) override {
    PeriodCommand::addOptions(app);
    app.add_flag("--funnel", funnel_, "最后列出每个条件去掉了多少注");
  }

 protected:
  int runPeriod(Session& session, PeriodNo period) override {
    const RunResult result =
        runPipeline(session.store, session.desk, period, funnel_ ? WithFunnel::yes : WithFunnel::no);
    if (result.outcome == Outcome::refused)
      return refuse(session.desk, trim(session.desk.runningText().text()));
    printLines(session.out, session.desk.runningText().text());
    if (funnel_) printFunnel(session.out, result.funnel);
    return statusOf(result.outcome);
  }

 private:
  bool funnel_ = false;
};

// What a run would take away step by step; nothing is changed.
class FunnelCommand final : public Command {
 public:
  FunnelCommand()
      : Command("tickets", "funnel",
                "每个条件去掉多少注：条件、之前、之后、去掉的百分比、单独去掉的注数，不改变号码") {}

  void addOptions(CLI::App& app) override {
    app.add_option("PERIOD", period_, "期号，不写为表格中号码的期号或下一期");
    app.add_option("--csv", csv_, "写到这个文件，用逗号分隔");
  }

  int run(Session& session) override {
    if (csv_ && csv_->empty()) return refuse(session.desk, kNoFileName);
    if (csv_ && isOwnFile(session.start.home(), *csv_)) return refuse(session.desk, kOwnFile);
    PeriodNo period = firstTicketPeriod(session.store);
    if (period_) {
      const auto typed = readPeriod(session.desk, *period_);
      if (!typed) return kExitRefused;
      period = *typed;
    }
    const ConditionSet set = loadConditionSet(session.store);
    auto tickets = loadTickets(session.store, period, [](std::size_t) { return false; });
    if (tickets->size() == 0) {
      const NumberSelection selection = selectionOf(set);
      const std::int64_t count = countCombos(selection).tickets;
      if (count == 0) return refuse(session.desk, "还没有投注号，也没有选好号码。");
      if (count > kMaxTickets)
        return refuse(session.desk, fmt::format("已选的号码超过 {} 注。", toFullWidth(kMaxTickets)));
      tickets->period = period_ ? period : latestPeriod(session.store) + 1;
      expandSelection(selection, [&](const Reds& six, const std::vector<int>& blues) {
        for (const int blue : blues) tickets->add(packBalls(six, blue));
        return true;
      });
    }
    const StopScope stop(session.desk.course());
    const FilterPlan plan(compileRules(set), loadDrawTable(session.store), tickets->period);
    const auto rows = foretellFunnel(plan, *std::move(tickets), session.desk.course(),
                                     static_cast<int>(std::thread::hardware_concurrency()));
    if (!rows) return refuse(session.desk, "用户中止，没有算完。");
    if (csv_) realFiles().writeWhole(*csv_, funnelCsv(*rows));
    printFunnel(session.out, *rows);
    return kExitDone;
  }

 private:
  std::optional<std::string> period_;
  std::optional<std::string> csv_;
};

class CheckCommand final : public PeriodCommand {
 public:
  CheckCommand() : PeriodCommand("tickets", "check", "用一期的开奖号码核对号码，按奖级统计") {}

 protected:
  int runPeriod(Session& session, PeriodNo period) override {
    const CheckResult result = checkPrizes(session.store, session.desk, period);
    if (result.outcome == Outcome::refused) return refuse(session.desk, result.refusal);
    printLines(session.out, tallyText(result));
    session.out << '\n' << moneyText(result) << '\n';
    return kExitDone;
  }
};

class ListCommand final : public Command {
 public:
  ListCommand() : Command("tickets", "list", "列出号码，一注一行：期号、序号、号码") {}

  void addOptions(CLI::App& app) override { app.add_option("PERIOD", period_, "只列这一期"); }

  int run(Session& session) override {
    PeriodNo wanted = 0;
    if (period_) {
      const auto period = readPeriod(session.desk, *period_);
      if (!period) return kExitRefused;
      wanted = *period;
    }
    for (const TicketRow& ticket : loadTicketList(session.store))
      if (wanted == 0 || ticket.period == wanted)
        session.out << fmt::format("{} {} {}\n", ticket.period, ticket.seq, numbersText(ticket.numbers));
    return kExitDone;
  }

 private:
  std::optional<std::string> period_;
};

class ClearCommand final : public Command {
 public:
  ClearCommand() : Command("tickets", "clear", "删除全部号码") {}
  int run(Session& session) override { return statusOf(clearAllTickets(session.store, session.desk)); }
};

// `tickets undo` and `redo`.
class StepCommand final : public Command {
 public:
  using Make = Outcome (*)(Store&, Desk&);
  StepCommand(const char* name, const char* description, Make make)
      : Command("tickets", name, description), make_(make) {}
  int run(Session& session) override { return statusOf(make_(session.store, session.desk)); }

 private:
  Make make_;
};

class ExportCommand final : public Command {
 public:
  ExportCommand() : Command("tickets", "export", "把号码写到文本文件，一注一行") {}

  void addOptions(CLI::App& app) override {
    app.add_option("FILE", file_, "文件名")->required();
    app.add_option("--columns", columns_, "内容，用逗号隔开：序号,期号,号码,分隔行（不写时只有号码）");
    app.add_option("--format", switches_.format, "0 淘宝彩票网格式，1 财付通彩票格式")
        ->check(CLI::Range(0, 1));
  }

  int run(Session& session) override {
    if (columns_ && !readColumns())
      return refuse(session.desk,
                    fmt::format("内容{}不对，可用：序号,期号,号码,分隔行。", quoteTyped(*columns_)));
    if (file_.empty()) return refuse(session.desk, kNoFileName);
    const auto [outcome, count] = exportCommand(session.store, session.desk, file_, switches_);
    if (outcome != Outcome::done) return statusOf(outcome);
    session.out << fmt::format("已导出 {} 注到 {}\n", count, file_);
    return kExitDone;
  }

 private:
  bool readColumns() {
    switches_.numbers = false;
    for (std::size_t from = 0; from <= columns_->size();) {
      const std::size_t end = std::min(columns_->find(',', from), columns_->size());
      const std::string_view name = trim(std::string_view(*columns_).substr(from, end - from));
      if (name == "序号")
        switches_.seq = true;
      else if (name == "期号")
        switches_.period = true;
      else if (name == "号码")
        switches_.numbers = true;
      else if (name == "分隔行")
        switches_.separator = true;
      else
        return false;
      from = end + 1;
    }
    return true;
  }

  std::string file_;
  std::optional<std::string> columns_;
  ExportSwitches switches_;
};

class ImportCommand final : public Command {
 public:
  ImportCommand() : Command("tickets", "import", "从文本文件导入号码") {}

  void addOptions(CLI::App& app) override {
    app.add_option("FILE", file_, "文件名")->required();
    app.add_option("--format", format_, "一行的内容：0 只有号码，1 期号＋号码，2 序号＋号码（不写时为 0）")
        ->transform(wholeNumber(0, 2));
    app.add_option("--period", period_, "号码的期号，如 2007001；格式 1 用文件里的期号");
    existing_.add(app);
  }

  int run(Session& session) override {
    if (file_.empty()) return refuse(session.desk, kNoFileName);
    ImportChoice choice{static_cast<ImportFormat>(format_), 0};
    if (choice.format != ImportFormat::period_numbers) {
      if (period_.empty()) return refuse(session.desk, "请用 --period 写上号码的期号，如 2007001。");
      const auto period = readPeriod(session.desk, period_);
      if (!period) return kExitRefused;
      choice.period = *period;
    }
    const ImportResult result = importCommand(session.store, session.desk, file_, choice, existing_.value());
    return statusOf(result.outcome);
  }

 private:
  std::string file_;
  int format_ = 0;
  std::string period_;
  ExistingOption existing_;
};

}  // namespace

void addTicketCommands(CommandList& list) {
  list.push_back(std::make_unique<InitCommand>());
  list.push_back(std::make_unique<RunCommand>());
  addGenerateCommand(list);
  list.push_back(std::make_unique<FunnelCommand>());
  list.push_back(std::make_unique<ListCommand>());
  list.push_back(std::make_unique<ClearCommand>());
  list.push_back(
      std::make_unique<StepCommand>("undo", "撤销上一次初始化、过滤缩水、导入、生成或删除", undoTickets));
  list.push_back(std::make_unique<StepCommand>("redo", "重做撤销了的号码操作", redoTickets));
  list.push_back(std::make_unique<ExportCommand>());
  list.push_back(std::make_unique<ImportCommand>());
  list.push_back(std::make_unique<CheckCommand>());
}

}  // namespace lotmere

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <ostream>
#include <thread>

#include "advice/funnel.hpp"
#include "base/text.hpp"
#include "cli/command.hpp"
#include "cli/ticket_commands.hpp"
#include "conditions/condition_store.hpp"
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
    existing_.add(app, kExistingOfPeriod);
  }

 protected:
  Outcome runPeriod(Session& session, PeriodNo period) override {
    const InitResult result = initTickets(session.store, session.desk, period, existing_.value());
    if (result.outcome != Outcome::stopped) return result.outcome;
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
  Outcome runPeriod(Session& session, PeriodNo period) override {
    const RunResult result =
        runPipeline(session.store, session.desk, period, funnel_ ? WithFunnel::yes : WithFunnel::no);
    if (result.outcome == Outcome::refused)
      return refuse(session.desk, trim(session.desk.runningText().text()));
    printLines(session.out, session.desk.runningText().text());
    if (funnel_) printFunnel(session.out, result.funnel);
    return result.outcome;
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

  Outcome run(Session& session) override {
    if (csv_ && csv_->empty()) return refuse(session.desk, kNoFileName);
    if (csv_ && isOwnFile(session.start.home(), *csv_)) return refuse(session.desk, kOwnFile);
    PeriodNo period = firstTicketPeriod(session.store);
    if (period_) {
      const auto typed = readPeriod(session.desk, *period_);
      if (!typed) return Outcome::refused;
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
    return Outcome::done;
  }

 private:
  std::optional<std::string> period_;
  std::optional<std::string> csv_;
};

class CheckCommand final : public PeriodCommand {
 public:
  CheckCommand() : PeriodCommand("tickets", "check", "用一期的开奖号码核对号码，按奖级统计") {}

 protected:
  Outcome runPeriod(Session& session, PeriodNo period) override {
    const CheckResult result = checkPrizes(session.store, session.desk, period);
    if (result.outcome == Outcome::refused) return refuse(session.desk, result.refusal);
    printLines(session.out, tallyText(result));
    session.out << '\n' << moneyText(result) << '\n';
    printRunNotes(session, period);
    return Outcome::done;
  }
};

class ListCommand final : public Command {
 public:
  ListCommand() : Command("tickets", "list", "列出号码，一注一行：期号、序号、号码") {}

  void addOptions(CLI::App& app) override { app.add_option("PERIOD", period_, "只列这一期"); }

  Outcome run(Session& session) override {
    PeriodNo wanted = 0;
    if (period_) {
      const auto period = readPeriod(session.desk, *period_);
      if (!period) return Outcome::refused;
      wanted = *period;
    }
    for (const TicketRow& ticket : loadTicketList(session.store))
      if (wanted == 0 || ticket.period == wanted)
        session.out << fmt::format("{} {} {}\n", ticket.period, ticket.seq, numbersText(ticket.numbers));
    return Outcome::done;
  }

 private:
  std::optional<std::string> period_;
};

class ClearCommand final : public Command {
 public:
  ClearCommand() : Command("tickets", "clear", "删除全部号码") {}
  Outcome run(Session& session) override { return clearAllTickets(session.store, session.desk); }
};

// `tickets undo` and `redo`.
class StepCommand final : public Command {
 public:
  using Make = Outcome (*)(Store&, Desk&);
  StepCommand(const char* name, const char* description, Make make)
      : Command("tickets", name, description), make_(make) {}
  Outcome run(Session& session) override { return make_(session.store, session.desk); }

 private:
  Make make_;
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
  list.push_back(std::make_unique<CheckCommand>());
  addTicketAdviceCommands(list);
}

}  // namespace lotmere

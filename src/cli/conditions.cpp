#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <ostream>
#include <thread>

#include "advice/backtest.hpp"
#include "advice/backtest_text.hpp"
#include "advice/strength.hpp"
#include "base/text.hpp"
#include "cli/command.hpp"
#include "conditions/condition_store.hpp"
#include "conditions/named_sets.hpp"
#include "conditions/own_sets.hpp"
#include "conditions/values.hpp"
#include "panels/own_pages.hpp"
#include "panels/summary.hpp"
#include "store/periods.hpp"

namespace lotmere {
namespace {

// The condition that a user names; told when there is none.
const Condition* namedCondition(Session& session, const std::string& name) {
  const Condition* condition = findCondition(name);
  if (condition == nullptr) refuse(session.desk, fmt::format("没有名为{}的条件。", quoteTyped(name)));
  return condition;
}

void printCondition(Session& session, const ConditionSet& set, const Condition& condition) {
  session.out << fmt::format("{}\t{}\t{}\t{}\n", condition.usage, condition.name,
                             set.isUsed(condition.usage) ? "on" : "off", currentValue(set, condition));
}

// The match with past draws has a switch of its own and no number.
void printMatchSettings(Session& session, const ConditionSet& set) {
  session.out << fmt::format("-\t{}\t{}\t{}\n", kHistoryMatchName, set.match.used ? "on" : "off",
                             matchText(set.match));
}

// Nor has the search for fewer tickets.
void printFewerSettings(Session& session, const ConditionSet& set) {
  session.out << fmt::format("-\t{}\t{}\t力度 {}\n", kFewerName,
                             set.cells.value(kFewerCell) == 1 ? "on" : "off", set.cells.value(kEffortCell));
}

class ListCommand final : public Command {
 public:
  ListCommand() : Command("conditions", "list", "列出所有条件：编号、名称、开关、当前取值，一行一个") {}

  Outcome run(Session& session) override {
    const ConditionSet set = loadConditionSet(session.store);
    for (const Condition& condition : allConditions()) printCondition(session, set, condition);
    const int tolerance = set.cells.value(kSetToleranceCell);
    session.out << fmt::format("-\t{}\t{}\t{}\n", kSetToleranceName, tolerance > 0 ? "on" : "off", tolerance);
    printFewerSettings(session, set);
    printMatchSettings(session, set);
    return Outcome::done;
  }
};

// How much each condition lets through.
class StrengthCommand final : public Command {
 public:
  StrengthCommand()
      : Command(
            "conditions", "strength",
            "条件的松紧：编号、名称、开关、放行红球组合的百分比、开奖号码符合的期数、对照的期数，一行一个") {}

  void addOptions(CLI::App& app) override {
    app.add_option("NAME", name_, "条件的名称或编号，不写为所有条件");
    app.add_option("--last", last_, "对照最近多少期开奖，1 到 10000，不写为 100")
        ->transform(wholeNumber(1, 10'000));
  }

  Outcome run(Session& session) override {
    const ConditionSet set = loadConditionSet(session.store);
    const DrawTable draws = loadDrawTable(session.store);
    const PeriodNo next = latestPeriod(session.store) + 1;
    if (name_ && trim(*name_) == kHistoryMatchName) {
      printMatch(session, set, draws, next);
      return Outcome::done;
    }
    std::vector<Condition> conditions;
    if (name_) {
      const auto condition = namedCondition(session, *name_);
      if (!condition) return Outcome::refused;
      conditions.push_back(*condition);
    } else {
      conditions = allConditions();
    }
    const StopScope stop(session.desk.course());
    CourseLeg job(session.desk.course(), static_cast<std::int64_t>(conditions.size()),
                  Course::Stop::possible);
    std::int64_t done = 0;
    for (const Condition& condition : conditions) {
      print(session, std::to_string(condition.usage), condition.name, set.isUsed(condition.usage),
            conditionStrength(set, draws, condition, next, last_));
      if (job.advance(++done))
        return refuse(session.desk, fmt::format("用户中止，算完了 {} 个条件。", toFullWidth(done)));
    }
    if (!name_) printMatch(session, set, draws, next);
    return Outcome::done;
  }

 private:
  void printMatch(Session& session, const ConditionSet& set, const DrawTable& draws, PeriodNo next) const {
    print(session, "-", kHistoryMatchName, set.match.used, matchStrength(set, draws, next, last_));
  }

  // "-" where there is no number or no share.
  static void print(Session& session, std::string_view number, std::string_view name, bool used,
                    const std::optional<Strength>& strength) {
    session.out << fmt::format("{}\t{}\t{}\t", number, name, used ? "on" : "off");
    if (strength)
      session.out << fmt::format("{:.2f}\t{}\t{}\n", sharePercent(*strength), strength->passed,
                                 strength->draws);
    else
      session.out << "-\t-\t-\n";
  }

  std::optional<std::string> name_;
  int last_ = kStrengthDraws;
};

// How the whole set would have fared against past draws.
class BackTestCommand final : public Command {
 public:
  BackTestCommand()
      : Command("conditions", "backtest",
                "用打开的全部条件回测过去的开奖：每期的期号、是否符合、不符合的条件，最后与随机对照") {}

  void addOptions(CLI::App& app) override {
    auto* last = app.add_option("--last", last_, "回测最近多少期，1 到 10000，不写为 100")
                     ->transform(wholeNumber(1, 10'000));
    app.add_flag("--all", all_, "回测全部开奖")->excludes(last);
    app.add_option("--set", set_, "用这个方案的条件，不写为现在的条件");
  }

  Outcome run(Session& session) override {
    const DrawTable draws = loadDrawTable(session.store);
    if (draws.all().empty()) return refuse(session.desk, "还没有开奖记录可以回测。");
    ConditionSet set = loadConditionSet(session.store);
    if (set_) {
      const auto named = findNamedSet(session.store, *set_);
      if (!named) return refuse(session.desk, fmt::format("没有名为{}的方案。", quoteTyped(*set_)));
      set = putNamedSet(set, *named, WithPicks::no);
    }
    const StopScope stop(session.desk.course());
    const auto test = backTest(set, draws, all_ ? draws.all().size() : static_cast<std::size_t>(last_),
                               session.desk.course(), static_cast<int>(std::thread::hardware_concurrency()));
    if (!test) return refuse(session.desk, "用户中止，回测没有算完。");
    for (const DrawVerdict& draw : test->draws) session.out << verdictText(draw) << '\n';
    for (const std::string& line : backTestLines(*test)) session.out << line << '\n';
    return Outcome::done;
  }

 private:
  int last_ = kStrengthDraws;
  bool all_ = false;
  std::optional<std::string> set_;
};

class UseCommand final : public Command {
 public:
  UseCommand() : Command("conditions", "use", "打开或关闭一个条件") {}

  void addOptions(CLI::App& app) override {
    app.add_option("NAME", name_, "条件的名称或编号")->required();
    app.add_option("STATE", state_, "on 打开，off 关闭")->required()->check(CLI::IsMember({"on", "off"}));
  }

  Outcome run(Session& session) override {
    if (trim(name_) == kHistoryMatchName) {
      const auto latest = newestPeriods(session.store, kMatchPeriods);
      printMatchSettings(session, changeSettings(session.store, [&](ConditionSet& set) {
                           switchHistoryMatch(set, state_ == "on", latest);
                         }));
      return Outcome::done;
    }
    if (trim(name_) == kFewerName) {
      printFewerSettings(session, changeSettings(session.store, [&](ConditionSet& set) {
                           set.cells.set(kFewerCell, state_ == "on" ? 1 : 0);
                         }));
      return Outcome::done;
    }
    const auto condition = namedCondition(session, name_);
    if (!condition) return Outcome::refused;
    const ConditionSet changed =
        changeSettings(session.store, [&](ConditionSet& set) { set.use(condition->usage, state_ == "on"); });
    printCondition(session, changed, *condition);
    return Outcome::done;
  }

 private:
  std::string name_;
  std::string state_;
};

class AllowCommand final : public Command {
 public:
  AllowCommand() : Command("conditions", "allow", "设置一个条件允许的取值，其余的取值都不允许") {}

  void addOptions(CLI::App& app) override {
    app.add_option("NAME", name_, "条件的名称或编号")->required();
    app.add_option("VALUES", values_, "取值，如 60-140,150；形式用分号隔开，如 2,2,1,1;3,3")->required();
  }

  Outcome run(Session& session) override {
    const auto condition = namedCondition(session, name_);
    if (!condition) return Outcome::refused;
    bool allowed = false;
    const ConditionSet changed = changeSettings(session.store, [&](ConditionSet& set) {
      allowed = allowValues(set, session.desk, *condition, values_);
    });
    if (!allowed) return Outcome::refused;
    printCondition(session, changed, *condition);
    return Outcome::done;
  }

 private:
  std::string name_;
  std::string values_;
};

// Stores one number of the settings.
class NumberSettingCommand final : public Command {
 public:
  NumberSettingCommand(const char* name, std::string_view label, const char* description, ConditionId cell,
                       int last)
      : Command("conditions", name, description), label_(label), cell_(cell), last_(last) {}

  void addOptions(CLI::App& app) override {
    app.add_option("N", number_, fmt::format("0 到 {}", last_))->required()->transform(wholeNumber(0, last_));
  }

  Outcome run(Session& session) override {
    changeSettings(session.store, [&](ConditionSet& set) { set.cells.set(cell_, number_); });
    session.out << fmt::format("{}\t{}\n", label_, number_);
    return Outcome::done;
  }

 private:
  std::string_view label_;
  ConditionId cell_;
  int last_;
  int number_ = 0;
};

class ShrinkCommand final : public Command {
 public:
  ShrinkCommand() : Command("conditions", "shrink", "缩水类型，以及是否精简缩水：同样的保证，更少的注数") {}

  void addOptions(CLI::App& app) override {
    app.add_option("N", type_, "3 保三型 到 7 保七型（不缩水）")
        ->required()
        ->transform(wholeNumber(kSmallestShrink, kLargestShrink));
    app.add_option("--fewer", fewer_, "精简缩水：on 打开，off 关闭，不写为不变")
        ->check(CLI::IsMember({"on", "off"}));
    app.add_option("--effort", effort_,
                   fmt::format("精简缩水的力度，{} 到 {}，每加一级时间约为 1.7 倍，不写为不变", kLeastEffort,
                               kMostEffort))
        ->transform(wholeNumber(kLeastEffort, kMostEffort));
  }

  Outcome run(Session& session) override {
    const ConditionSet changed = changeSettings(session.store, [&](ConditionSet& set) {
      set.cells.set(kShrinkTypeCell, type_);
      if (fewer_) set.cells.set(kFewerCell, *fewer_ == "on" ? 1 : 0);
      if (effort_) set.cells.set(kEffortCell, *effort_);
    });
    session.out << fmt::format("缩水类型\t{}\n", shrinkCaption(type_));
    if (fewer_ || effort_) printFewerSettings(session, changed);
    return Outcome::done;
  }

 private:
  int type_ = 0;
  std::optional<std::string> fewer_;
  std::optional<int> effort_;
};

class MatchCommand final : public Command {
 public:
  MatchCommand()
      : Command("conditions", "match",
                "历史数据过滤：过滤掉与这段期号里任何一期有 N 个或更多相同红球的号码，并打开这个条件") {}

  void addOptions(CLI::App& app) override {
    app.add_option("FROM", from_, "起始期号")->required();
    app.add_option("TO", to_, "结束期号")->required();
    app.add_option("N", match_, "最大匹配值，1 到 6")->required()->transform(wholeNumber(1, kRedsPerTicket));
  }

  Outcome run(Session& session) override {
    const auto range = readRange(session.desk, from_, to_);
    if (!range) return Outcome::refused;
    printMatchSettings(session, changeSettings(session.store, [&](ConditionSet& set) {
                         set.match = {true, range->from, range->to, match_, true};
                       }));
    return Outcome::done;
  }

 private:
  std::string from_;
  std::string to_;
  int match_ = 0;
};

class SummaryCommand final : public Command {
 public:
  SummaryCommand() : Command("conditions", "show", "显示全部设置") {}

  Outcome run(Session& session) override {
    for (const char c : summaryText(loadConditionSet(session.store)))
      if (c != '\r') session.out << c;
    return Outcome::done;
  }
};

class ResetCommand final : public Command {
 public:
  ResetCommand() : Command("conditions", "reset", "还原默认值，并清空已选的号码") {}

  Outcome run(Session& session) override {
    if (!agreesToDefaults(session.desk)) return Outcome::refused;
    changeSettings(session.store, [&](ConditionSet& set) { set = loadFactorySet(session.store); },
                   {.name = "还原默认值"});
    session.desk.tell("完成，过滤条件已经还原为默认值！");
    return Outcome::done;
  }
};

}  // namespace

void addConditionCommands(CommandList& list) {
  list.push_back(std::make_unique<ListCommand>());
  list.push_back(std::make_unique<StrengthCommand>());
  list.push_back(std::make_unique<BackTestCommand>());
  list.push_back(std::make_unique<UseCommand>());
  list.push_back(std::make_unique<AllowCommand>());
  list.push_back(std::make_unique<SummaryCommand>());
  addOwnSetCommands(list);
  list.push_back(std::make_unique<NumberSettingCommand>("tolerance", "号码定位容错值", "号码定位的容错值",
                                                        kToleranceCell, kPlaceCount));
  list.push_back(std::make_unique<NumberSettingCommand>(
      "tolerance-all", kSetToleranceName, "全部条件的容错值：不符合的条件多于 N 个的号码才被过滤掉",
      kSetToleranceCell, kMostSetTolerance));
  list.push_back(std::make_unique<ShrinkCommand>());
  list.push_back(std::make_unique<MatchCommand>());
  list.push_back(std::make_unique<ResetCommand>());
  addSettingStepCommands(list);
}

}  // namespace lotmere

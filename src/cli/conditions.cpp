#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <ostream>

#include "cli/command.hpp"
#include "conditions/condition_store.hpp"
#include "conditions/values.hpp"
#include "core/number_list.hpp"
#include "core/periods.hpp"
#include "core/text.hpp"
#include "history/draw_stats.hpp"

namespace lotmere {
namespace {

// The condition that a person names; told when there is none.
std::optional<Condition> named_Condition(Session& session, const std::string& name) {
  auto condition = find_Condition(session.store, name);
  if (!condition) refuse(session.desk, fmt::format("没有名为“{}”的条件。", name));
  return condition;
}

void print_Condition(Session& session, const Condition& condition) {
  session.out << fmt::format("{}\t{}\t{}\t{}\n", condition.usage, condition.name,
                             is_Used(session.store, condition.usage) ? "on" : "off",
                             current_Value(session.store, condition));
}

class ListCommand final : public Command {
 public:
  ListCommand() : Command("conditions", "list", "列出所有条件：编号、名称、开关、当前取值，一行一个") {}

  int run(Session& session) override {
    for (const Condition& condition : all_Conditions(session.store)) print_Condition(session, condition);
    return kExitDone;
  }
};

class UseCommand final : public Command {
 public:
  UseCommand() : Command("conditions", "use", "打开或关闭一个条件") {}

  void add_Options(CLI::App& app) override {
    app.add_option("NAME", name_, "条件的名称或编号")->required();
    app.add_option("STATE", state_, "on 打开，off 关闭")->required()->check(CLI::IsMember({"on", "off"}));
  }

  int run(Session& session) override {
    const auto condition = named_Condition(session, name_);
    if (!condition) return kExitRefused;
    use_Condition(session.store, *condition, state_ == "on");
    print_Condition(session, *condition);
    return kExitDone;
  }

 private:
  std::string name_;
  std::string state_;
};

class AllowCommand final : public Command {
 public:
  AllowCommand() : Command("conditions", "allow", "设置一个条件允许的取值，其余的取值都不允许") {}

  void add_Options(CLI::App& app) override {
    app.add_option("NAME", name_, "条件的名称或编号")->required();
    app.add_option("VALUES", values_, "取值，如 60-140,150；形式用分号隔开，如 2,2,1,1;3,3")->required();
  }

  int run(Session& session) override {
    const auto condition = named_Condition(session, name_);
    if (!condition) return kExitRefused;
    if (!allow_Values(session.store, session.desk, *condition, values_)) return kExitRefused;
    print_Condition(session, *condition);
    return kExitDone;
  }

 private:
  std::string name_;
  std::string values_;
};

// Sets the members of one of the user's own sets.
class MembersCommand : public Command {
 public:
  MembersCommand(const char* name, const char* description, std::string column, int count)
      : Command("conditions", name, description), column_(std::move(column)), count_(count) {}

  void add_Options(CLI::App& app) override {
    app.add_option("INDEX", index_, fmt::format("1 到 {}", count_))
        ->required()
        ->transform(whole_Number(1, count_));
    app.add_option("L", numbers_, "红球号码，如 1,2,5-9；写“无”清空")->required();
  }

  int run(Session& session) override {
    std::vector<int> members;
    if (numbers_ != "无") {
      auto numbers = parse_NumberList(numbers_, 1, kRedCount);
      if (!numbers)
        return refuse(session.desk, fmt::format("号码“{}”不对，应为 1 到 {} 的不同数字，如 1,2,5-9。",
                                                numbers_, kRedCount));
      members = std::move(*numbers);
    }
    StoreChange change(session.store);
    set_Column(session.store, AttributeTable::first, column_ + std::to_string(index_), members);
    changed(session);
    change.commit();
    return kExitDone;
  }

 protected:
  // What follows from a new division, in the same change.
  virtual void changed(Session& /*session*/) {}

 private:
  std::string column_;
  int count_;
  int index_ = 0;
  std::string numbers_;
};

class IntervalCommand final : public MembersCommand {
 public:
  IntervalCommand() : MembersCommand("interval", "设置区间1到区间4的号码", "区间", 4) {}

 protected:
  void changed(Session& session) override {
    recountQuJian(session.store, session.desk, firstPeriod(session.store), latestPeriod(session.store));
  }
};

class GroupCommand final : public MembersCommand {
 public:
  GroupCommand() : MembersCommand("group", "设置自定义组1到10的号码", "自定义组", 10) {}
};

class ResetCommand final : public Command {
 public:
  ResetCommand() : Command("conditions", "reset", "还原默认值，并清空已选的号码") {}

  int run(Session& session) override {
    restore_Defaults(session.store);
    session.desk.tell("完成，过滤条件已经还原为默认值！");
    return kExitDone;
  }
};

}  // namespace

void add_ConditionCommands(CommandList& list) {
  list.push_back(std::make_unique<ListCommand>());
  list.push_back(std::make_unique<UseCommand>());
  list.push_back(std::make_unique<AllowCommand>());
  list.push_back(std::make_unique<IntervalCommand>());
  list.push_back(std::make_unique<GroupCommand>());
  list.push_back(std::make_unique<ResetCommand>());
}

}  // namespace lotmere

#include "conditions/own_sets.hpp"

#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "base/number_list.hpp"
#include "base/text.hpp"
#include "cli/command.hpp"
#include "conditions/condition_store.hpp"
#include "history/draw_stats.hpp"

namespace lotmere {
namespace {

// Sets the members of one of the user's own sets, in one change with what follows from it.
class MembersCommand : public Command {
 public:
  using Command::Command;

  Outcome run(Session& session) override {
    std::vector<int> members;
    if (numbers_ != "无") {
      auto numbers = parseNumberList(numbers_, 1, largest());
      if (!numbers)
        return refuse(session.desk, fmt::format("号码{}不对，应为 1 到 {} 的不同数字，如 1,2,5-9。",
                                                quoteTyped(numbers_), largest()));
      members = std::move(*numbers);
    }
    StoreChange change(session.store);
    bool known = false;
    changeSettings(session.store, [&](ConditionSet& set) { known = setMembers(set, session.desk, members); });
    if (!known) return Outcome::refused;
    recountDivided(session.store, session.desk);
    change.commit();
    session.out << fmt::format("{}\t{}\n", label(), members.empty() ? "无" : formatNumberList(members));
    return Outcome::done;
  }

 protected:
  void addListOption(CLI::App& app) {
    app.add_option("L", numbers_, "号码，如 1,2,5-9；写“无”清空")->required();
  }
  [[nodiscard]] virtual int largest() const { return kRedCount; }
  // What the set is called where it is told what it holds now.
  [[nodiscard]] virtual std::string label() const = 0;
  // False, told, when there is no such set.
  virtual bool setMembers(ConditionSet& set, Desk& desk, std::span<const int> members) = 0;

 private:
  std::string numbers_;
};

// A set named by its number.
class NumberedSetCommand : public MembersCommand {
 public:
  NumberedSetCommand(const char* name, const char* description, int count)
      : MembersCommand("conditions", name, description), count_(count) {}

  void addOptions(CLI::App& app) override {
    app.add_option("INDEX", index_, fmt::format("1 到 {}", count_))
        ->required()
        ->transform(wholeNumber(1, count_));
    addListOption(app);
  }

 protected:
  [[nodiscard]] int index() const { return index_; }

 private:
  int count_;
  int index_ = 0;
};

class IntervalCommand final : public NumberedSetCommand {
 public:
  IntervalCommand() : NumberedSetCommand("interval", "设置区间1到区间4的号码", 4) {}

 protected:
  [[nodiscard]] std::string label() const override {
    return std::string(conditionOfUsage(usageOfInterval(index())).name);
  }
  bool setMembers(ConditionSet& set, Desk& /*desk*/, std::span<const int> members) override {
    return set.setColumn(AttributeTable::first, label(), membersOf(members));
  }
};

class GroupCommand final : public NumberedSetCommand {
 public:
  GroupCommand() : NumberedSetCommand("group", "设置自定义组1到10的号码", 10) {}

 protected:
  [[nodiscard]] std::string label() const override {
    return std::string(conditionOfUsage(usageOfGroup(index())).name);
  }
  bool setMembers(ConditionSet& set, Desk& /*desk*/, std::span<const int> members) override {
    setGroup(set, index(), members);
    return true;
  }
};

class PositionCommand final : public NumberedSetCommand {
 public:
  PositionCommand()
      : NumberedSetCommand("position", "号码定位：设置每个位置允许的号码，7 是蓝球", kPlaceCount) {}

 protected:
  [[nodiscard]] std::string label() const override {
    return std::string(conditionOfUsage(usageOfPlace(index())).name);
  }
  [[nodiscard]] int largest() const override { return index() == kPlaceCount ? kBlueCount : kRedCount; }
  bool setMembers(ConditionSet& set, Desk& /*desk*/, std::span<const int> members) override {
    setPlace(set, index(), members);
    return true;
  }
};

class DivisionCommand final : public MembersCommand {
 public:
  DivisionCommand() : MembersCommand("conditions", "division", "设置自定义区间的号码，如 六区间1") {}

  void addOptions(CLI::App& app) override {
    app.add_option("NAME", name_, "六区间1 到 十二区间12")->required();
    addListOption(app);
  }

 protected:
  [[nodiscard]] std::string label() const override { return name_; }
  bool setMembers(ConditionSet& set, Desk& desk, std::span<const int> members) override {
    if (setCustomInterval(set, name_, members)) return true;
    refuse(desk, fmt::format("没有名为{}的自定义区间，名称如 六区间1。", quoteTyped(name_)));
    return false;
  }

 private:
  std::string name_;
};

}  // namespace

void addOwnSetCommands(CommandList& list) {
  list.push_back(std::make_unique<IntervalCommand>());
  list.push_back(std::make_unique<GroupCommand>());
  list.push_back(std::make_unique<PositionCommand>());
  list.push_back(std::make_unique<DivisionCommand>());
}

}  // namespace lotmere

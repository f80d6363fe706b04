// Sets with names, and the way back for settings.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <ostream>

#include "base/text.hpp"
#include "cli/command.hpp"
#include "conditions/condition_store.hpp"
#include "conditions/named_sets.hpp"
#include "conditions/setting_steps.hpp"
#include "start/home.hpp"

namespace lotmere {
namespace {

// The set that a user names; told when there is none.
std::optional<NamedSet> namedSet(Session& session, const std::string& name) {
  auto set = findNamedSet(session.store, name);
  if (!set) refuse(session.desk, fmt::format("没有名为{}的方案。", quoteTyped(name)));
  return set;
}

class ListSetsCommand final : public Command {
 public:
  ListSetsCommand()
      : Command("sets", "list", "列出方案，一行一个：名称、含不含选号、与现在的设置有几项不同") {}

  Outcome run(Session& session) override {
    const ConditionSet now = loadConditionSet(session.store);
    for (const NamedSet& set : allNamedSets(session.store)) {
      const auto with_picks = set.with_picks ? WithPicks::yes : WithPicks::no;
      const auto differences = differencesBetween(now, putNamedSet(now, set, with_picks), with_picks);
      session.out << fmt::format(
          "{}\t{}\t{}\n", set.name, set.with_picks ? "含选号" : "-",
          differences.empty() ? std::string("相同") : fmt::format("{} 项不同", differences.size()));
    }
    return Outcome::done;
  }
};

// A command on a set that is named first.
class SetCommand : public Command {
 public:
  using Command::Command;
  void addOptions(CLI::App& app) override { app.add_option("NAME", name_, "方案的名称")->required(); }

 protected:
  [[nodiscard]] const std::string& setName() const { return name_; }

 private:
  std::string name_;
};

// The same with or without the picked numbers.
class PicksCommand : public SetCommand {
 public:
  PicksCommand(const char* name, const char* description, const char* picks_description)
      : SetCommand("sets", name, description), picks_description_(picks_description) {}
  void addOptions(CLI::App& app) override {
    SetCommand::addOptions(app);
    app.add_flag("--with-numbers", with_numbers_, picks_description_);
  }

 protected:
  [[nodiscard]] WithPicks withPicks() const { return with_numbers_ ? WithPicks::yes : WithPicks::no; }

 private:
  const char* picks_description_;
  bool with_numbers_ = false;
};

class SaveSetCommand final : public PicksCommand {
 public:
  SaveSetCommand() : PicksCommand("save", "把现在的条件存为一个方案", "选号也存") {}

  Outcome run(Session& session) override {
    const Outcome outcome = keepNamedSet(
        session.store, session.desk,
        {setName(), withPicks() == WithPicks::yes, setText(loadConditionSet(session.store), withPicks())});
    if (outcome == Outcome::done) session.desk.tell(fmt::format("已保存方案“{}”。", trim(setName())));
    return outcome;
  }
};

class LoadSetCommand final : public PicksCommand {
 public:
  LoadSetCommand()
      : PicksCommand("load", "用一个方案代替现在的条件（可以用 conditions undo 撤销）", "选号也换") {}

  Outcome run(Session& session) override {
    return loadNamedSet(session.store, session.desk, setName(), withPicks());
  }
};

class DeleteSetCommand final : public SetCommand {
 public:
  DeleteSetCommand() : SetCommand("sets", "delete", "删除一个方案") {}

  Outcome run(Session& session) override { return deleteNamedSet(session.store, session.desk, setName()); }
};

class DiffSetCommand final : public SetCommand {
 public:
  DiffSetCommand()
      : SetCommand("sets", "diff",
                   "列出一个方案与另一个（不写时：与现在的设置）的不同，一行一项：名称、前者、后者") {}
  void addOptions(CLI::App& app) override {
    SetCommand::addOptions(app);
    app.add_option("OTHER", other_, "另一个方案的名称");
  }

  Outcome run(Session& session) override {
    const auto set = namedSet(session, setName());
    if (!set) return Outcome::refused;
    std::optional<NamedSet> other;
    if (other_ && !(other = namedSet(session, *other_))) return Outcome::refused;
    // Picked numbers count where both sides have some.
    const bool with_picks = set->with_picks && (!other || other->with_picks);
    const auto picks = with_picks ? WithPicks::yes : WithPicks::no;
    const ConditionSet now = loadConditionSet(session.store);
    const ConditionSet mine = putNamedSet(now, *set, picks);
    const ConditionSet theirs = other ? putNamedSet(now, *other, picks) : now;
    for (const SetDifference& line : differencesBetween(mine, theirs, picks))
      session.out << fmt::format("{}\t{}\t{}\n", line.name, line.before, line.after);
    return Outcome::done;
  }

 private:
  std::optional<std::string> other_;
};

class ExportSetCommand final : public SetCommand {
 public:
  ExportSetCommand() : SetCommand("sets", "export", "把一个方案写到文本文件") {}
  void addOptions(CLI::App& app) override {
    SetCommand::addOptions(app);
    app.add_option("FILE", file_, "文件名")->required();
  }

  Outcome run(Session& session) override {
    if (file_.empty()) return refuse(session.desk, kNoFileName);
    if (isOwnFile(session.start.home(), file_)) return refuse(session.desk, kOwnFile);
    const auto set = namedSet(session, setName());
    if (!set) return Outcome::refused;
    realFiles().writeWhole(file_, set->text);
    session.desk.tell(fmt::format("已把方案“{}”写到 {}。", set->name, file_));
    return Outcome::done;
  }

 private:
  std::string file_;
};

class ImportSetCommand final : public Command {
 public:
  ImportSetCommand() : Command("sets", "import", "从文本文件读入一个方案，现在的设置不变") {}
  void addOptions(CLI::App& app) override {
    app.add_option("FILE", file_, "文件名")->required();
    app.add_option("NAME", name_, "方案的名称，不写为文件名");
  }

  Outcome run(Session& session) override {
    if (file_.empty()) return refuse(session.desk, kNoFileName);
    auto set = readNamedSetFile(session.desk, file_, name_, loadConditionSet(session.store));
    if (!set) return Outcome::refused;
    const std::string name(trim(set->name));
    const Outcome outcome = keepNamedSet(session.store, session.desk, *std::move(set));
    if (outcome == Outcome::done) session.desk.tell(fmt::format("已读入方案“{}”。", name));
    return outcome;
  }

 private:
  std::string file_;
  std::optional<std::string> name_;
};

// `conditions undo` and `redo`.
class StepCommand final : public Command {
 public:
  using Make = std::optional<StepMade> (*)(Store&);
  StepCommand(const char* name, const char* description, Make make, const char* done, const char* none)
      : Command("conditions", name, description), make_(make), done_(done), none_(none) {}

  Outcome run(Session& session) override {
    const auto step = make_(session.store);
    if (!step) return refuse(session.desk, none_);
    session.desk.tell(fmt::format("{}：{}。", done_, step->name));
    return Outcome::done;
  }

 private:
  Make make_;
  const char* done_;
  const char* none_;
};

}  // namespace

void addSettingStepCommands(CommandList& list) {
  list.push_back(std::make_unique<StepCommand>("undo", "撤销上一次设置或选号的改变（最多二十次）",
                                               undoSettings, "已撤销", "没有可以撤销的设置。"));
  list.push_back(std::make_unique<StepCommand>("redo", "重做撤销了的设置或选号", redoSettings, "已重做",
                                               "没有可以重做的设置。"));
}

void addSetCommands(CommandList& list) {
  list.push_back(std::make_unique<ListSetsCommand>());
  list.push_back(std::make_unique<SaveSetCommand>());
  list.push_back(std::make_unique<LoadSetCommand>());
  list.push_back(std::make_unique<DeleteSetCommand>());
  list.push_back(std::make_unique<DiffSetCommand>());
  list.push_back(std::make_unique<ExportSetCommand>());
  list.push_back(std::make_unique<ImportSetCommand>());
}

}  // namespace lotmere

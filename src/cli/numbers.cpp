#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <ostream>

#include "base/number_list.hpp"
#include "base/text.hpp"
#include "cli/command.hpp"
#include "conditions/condition_store.hpp"
#include "game/game.hpp"
#include "reduction/hints.hpp"
#include "store/periods.hpp"
#include "tickets/selection.hpp"

namespace lotmere {
namespace {

std::string ballList(const std::vector<int>& numbers) {
  std::string text;
  for (const int n : numbers) text += " " + formatBall(n);
  return text;
}

void printSelection(Session& session, const NumberSelection& selection) {
  session.out << "红球拖码:" << ballList(pickedReds(selection, PickState::tuo)) << '\n'
              << "红球胆码:" << ballList(pickedReds(selection, PickState::dan)) << '\n'
              << "蓝球拖码:" << ballList(pickedBlues(selection, PickState::tuo)) << '\n'
              << "蓝球胆码:" << ballList(pickedBlues(selection, PickState::dan)) << '\n'
              << fmt::format("注数: {}\n", countCombos(selection).tickets);
}

class PickCommand final : public Command {
 public:
  PickCommand() : Command("numbers", "pick", "选取号码，替换原来的选号；L 如 1,2,5-9") {}

  void addOptions(CLI::App& app) override {
    app.add_option("--red-tuo", lists_[0], "红球拖码");
    app.add_option("--red-dan", lists_[1], "红球胆码");
    app.add_option("--blue-tuo", lists_[2], "蓝球拖码");
    app.add_option("--blue-dan", lists_[3], "蓝球胆码");
  }
  [[nodiscard]] std::string usageFault() const override {
    const bool typed = std::ranges::any_of(lists_, [](const auto& list) { return list.has_value(); });
    return typed ? "" : "没有给出号码，如 --red-tuo 1,2,5-9；清空选号用 numbers clear。";
  }

  Outcome run(Session& session) override {
    NumberSelection selection;
    for (int i = 0; i < 4; ++i) {
      if (!lists_[i]) continue;
      const bool blue = i >= 2;
      const auto numbers = parseNumberList(*lists_[i], 1, blue ? kBlueCount : kRedCount);
      if (!numbers)
        return refuse(session.desk, fmt::format("号码{}不对，应为 1 到 {} 的不同数字，如 1,2,5-9。",
                                                quoteTyped(*lists_[i]), blue ? kBlueCount : kRedCount));
      for (const int n : *numbers) {
        PickState& state = blue ? selection.blue[n] : selection.red[n];
        if (state != PickState::none)
          return refuse(session.desk, fmt::format("号码 {} 不能既是拖码又是胆码。", formatBall(n)));
        state = i % 2 == 0 ? PickState::tuo : PickState::dan;
      }
    }
    bool fits = false;
    changeSettings(session.store,
                   [&](ConditionSet& set) { fits = replaceSelection(set, session.desk, selection); });
    if (!fits) return Outcome::refused;
    printSelection(session, selection);
    return Outcome::done;
  }

 private:
  std::array<std::optional<std::string>, 4> lists_;
};

class ShowCommand final : public Command {
 public:
  ShowCommand() : Command("numbers", "show", "显示已选的号码和注数") {}
  Outcome run(Session& session) override {
    printSelection(session, selectionOf(loadConditionSet(session.store)));
    return Outcome::done;
  }
};

class ClearCommand final : public Command {
 public:
  ClearCommand() : Command("numbers", "clear", "清空已选的号码") {}
  Outcome run(Session& session) override {
    changeSettings(session.store, [](ConditionSet& set) {
      clearReds(set);
      clearBlues(set);
    });
    printSelection(session, {});
    return Outcome::done;
  }
};

class HintsCommand final : public Command {
 public:
  HintsCommand() : Command("numbers", "hints", "标出下期出现几率较低的号码：六个红球、五个蓝球") {}

  void addOptions(CLI::App& app) override { app.add_option("PERIOD", period_, "期号，不写为下一期"); }

  Outcome run(Session& session) override {
    const auto period =
        period_.empty() ? nextPeriod(session.store, realClock().today()) : readPeriod(session.desk, period_);
    if (!period) return Outcome::refused;
    hintGaiLv(session.store, *period);
    const LowChanceNumbers marked = lowChanceNumbers(session.store);
    session.out << "红球" << ballList(marked.reds) << "\n蓝球" << ballList(marked.blues) << '\n';
    return Outcome::done;
  }

 private:
  std::string period_;
};

}  // namespace

void addNumberCommands(CommandList& list) {
  list.push_back(std::make_unique<PickCommand>());
  list.push_back(std::make_unique<ShowCommand>());
  list.push_back(std::make_unique<ClearCommand>());
  list.push_back(std::make_unique<HintsCommand>());
}

}  // namespace lotmere

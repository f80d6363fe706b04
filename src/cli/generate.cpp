#include "pipeline/generate.hpp"

#include <fmt/format.h>

#include "base/number_list.hpp"
#include "base/text.hpp"
#include "cli/ticket_commands.hpp"
#include "conditions/condition_store.hpp"

namespace lotmere {
namespace {

// Initialisation and run in one, in memory, for selections of any size.
class GenerateCommand final : public PeriodCommand {
 public:
  GenerateCommand()
      : PeriodCommand("tickets", "generate", "展开、过滤、缩水一次完成，不限展开的注数，只存储余下的号码") {}

  void addOptions(CLI::App& app) override {
    PeriodCommand::addOptions(app);
    app.add_flag("--all-reds", all_reds_, "用全部 33 个红球，代替已选的红球");
    app.add_option("--blues", blues_, "用这些蓝球，代替已选的蓝球，如 1-16");
    existing_.add(app, kExistingOfPeriod);
  }

 protected:
  Outcome runPeriod(Session& session, PeriodNo period) override {
    NumberSelection selection = selectionOf(loadConditionSet(session.store));
    if (all_reds_) std::fill(selection.red.begin() + 1, selection.red.end(), PickState::tuo);
    if (blues_) {
      const auto numbers = parseNumberList(*blues_, 1, kBlueCount);
      if (!numbers)
        return refuse(session.desk, fmt::format("号码{}不对，应为 1 到 {} 的不同数字，如 1,2,5-9。",
                                                quoteTyped(*blues_), kBlueCount));
      selection.blue.fill(PickState::none);
      for (const int blue : *numbers) selection.blue[blue] = PickState::tuo;
    }
    const GenerateResult result =
        generateTickets(session.store, session.desk, period, selection, existing_.value());
    if (result.outcome == Outcome::done) printLines(session.out, session.desk.runningText().text());
    if (result.outcome == Outcome::refused && !result.funnel.empty()) printFunnel(session.out, result.funnel);
    if (result.outcome != Outcome::stopped) return result.outcome;
    return refuse(session.desk, "用户中止，没有存储任何号码。");
  }

 private:
  bool all_reds_ = false;
  std::optional<std::string> blues_;
  ExistingOption existing_;
};

}  // namespace

void addGenerateCommand(CommandList& list) { list.push_back(std::make_unique<GenerateCommand>()); }

}  // namespace lotmere

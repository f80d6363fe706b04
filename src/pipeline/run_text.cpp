#include "pipeline/run_text.hpp"

#include <fmt/format.h>

#include <utility>

#include "base/text.hpp"

namespace lotmere {
namespace {

// The two heats warn even when no ticket is left.
bool warnsAlways(const Condition& condition) { return std::holds_alternative<HeatOver>(condition.figure); }

std::string placesName(const FilterPlan& plan) {
  return fmt::format("[号码定位,容错值={}]", plan.rules().places.tolerance);
}

std::string setName(const FilterPlan& plan) {
  return fmt::format("[全部条件,容错值={}]", plan.rules().tolerance);
}

}  // namespace

std::string beforeLine(std::int64_t tickets) {
  return fmt::format("过滤缩水之前共：{}注．", toFullWidth(tickets));
}

std::string endLine(std::int64_t tickets, bool stopped) {
  return fmt::format("{}：{} 注", stopped ? "用户中止,当前记录余" : "全部过滤缩水完成,余",
                     toFullWidth(tickets));
}

StepLines linesOf(const FilterPlan& plan, std::size_t step) {
  const FilterStep& info = filterSteps()[step];
  switch (info.kind) {
    case StepKind::places:
      return {info.name + "过滤正在进行中．．．", placesName(plan) + "过滤后余："};
    case StepKind::match:
      return {info.name + "过滤正进行中．．．", info.name + "过滤后余："};
    default:
      return {info.name + "过滤正在进行中．．．", info.name + "过滤后余："};
  }
}

void RunText::stepBegins(std::size_t step, std::int64_t tickets) {
  const FilterStep& info = filterSteps()[step];
  if (info.kind == StepKind::combinations) return;
  if (info.condition != nullptr && info.looks_back && (tickets > 0 || warnsAlways(*info.condition)))
    warn(*info.condition);
  if (plan_.rules().tolerance > 0) return;
  base_ = desk_.runningText().text();
  if (tickets > 0 && plan_.runs(step)) desk_.runningText().setLine(base_, linesOf(plan_, step).start);
}

void RunText::stepEnds(std::size_t step, const StepResult& result) {
  using enum StepResult::State;
  const StepKind kind = filterSteps()[step].kind;
  if (plan_.rules().tolerance > 0) return tellFailing(step, result);
  if (kind == StepKind::combinations) return tellTurns(result);
  if (result.state == unable && kind == StepKind::places)
    return desk_.runningText().appendLine(placesName(plan_) + " <容错值太大无法过滤掉号码.>");
  // 历史数据过滤 tells the tickets that stand even when it looked at none.
  const bool always = kind == StepKind::match && result.state == unable;
  if (always || (result.state == done && (result.before > 0 || kind == StepKind::match)))
    tellResult(step, result.after);
}

void RunText::judgingBegins() {
  base_ = desk_.runningText().text();
  desk_.runningText().setLine(base_, setName(plan_) + "过滤正在进行中．．．");
  judging_ = true;
}

void RunText::judgingEnds(std::int64_t left) {
  if (!desk_.course().stopRequested())
    desk_.runningText().appendLine(fmt::format("{}过滤后余：{} 注", setName(plan_), toFullWidth(left)));
}

// "[连号]不符合：１２ 注"; the first one takes the place of the line that said the judging is under way.
void RunText::tellFailing(std::size_t step, const StepResult& result) {
  using enum StepResult::State;
  const bool places = filterSteps()[step].kind == StepKind::places;
  if (result.state != done && result.state != unable) return;
  if (std::exchange(judging_, false)) desk_.runningText().set(base_);
  const std::string name = places ? placesName(plan_) : filterSteps()[step].name;
  desk_.runningText().appendLine(
      places && result.state == unable
          ? name + " <容错值太大无法过滤掉号码.>"
          : fmt::format("{}不符合：{} 注", name, toFullWidth(result.before - result.after)));
}

void RunText::tellResult(std::size_t step, std::int64_t tickets) const {
  desk_.runningText().setLine(base_, linesOf(plan_, step).result + toFullWidth(tickets) + " 注");
}

void RunText::tellTurns(const StepResult& result) const {
  for (int turn = 0; turn < kTurnCount && !desk_.course().stopRequested(); ++turn)
    if (!plan_.rules().turns[turn])
      desk_.runningText().appendLine(
          fmt::format("[{}（具体）] <未使用这个条件>", familyOfTurn(turn).draw_column));
  desk_.runningText().appendLine(fmt::format("[组合（具体）]过滤后余：{} 注", toFullWidth(result.after)));
}

void RunText::warn(const Condition& condition) const {
  desk_.showTip(fmt::format("注意，本次过滤使用了[{0}]这个过滤条件,[{0}]的设置与历史开奖记录相关！{1}{1}"
                            "在不同的期号中由于对应的历史记录不同,有可能得"
                            "出不同的结果。这是正常情况。{1}{1}【注意，此次过滤结果仅适用于 {2} 期！！！】",
                            condition.name, kLineBreak, toFullWidth(plan_.period())),
                condition.name);
}

}  // namespace lotmere

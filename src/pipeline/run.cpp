#include "pipeline/run.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "conditions/condition_store.hpp"
#include "core/periods.hpp"
#include "core/text.hpp"
#include "pipeline/history_relative.hpp"
#include "pipeline/order.hpp"
#include "reduction/shrink.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kShortText =
    30;  // characters: a running text up to this length stays in front of a run's lines

// The conditions whose switch carries a number of first to last, in that order.
void run_Series(PipelineRun& run, UsageId first, UsageId last) {
  for (const Condition& condition : catalogue()) {
    if (condition.usage < first || condition.usage > last) continue;
    if (run.desk.stop_Requested()) return;
    filter_ByFigure(run, {"[" + condition.name + "]", &condition});
  }
}

void run_CustomIntervals(PipelineRun& run) {
  for (const Condition& condition : all_Conditions(run.store)) {
    if (condition.kind != CellKind::count || condition.turn == 0) continue;
    if (run.desk.stop_Requested()) return;
    filter_ByFigure(run, {"[" + condition.name + "]", &condition});
  }
}

void run_Combinations(PipelineRun& run, const CombinationTurns& turns) {
  for (int turn = 0; turn < static_cast<int>(turns.used.size()) && !run.desk.stop_Requested(); ++turn)
    filter_ZuHeJuTi(run, turns, turn);
  close_Combinations(run);
}

void run_Figure(PipelineRun& run, const PassStep& step) {
  const auto& list = catalogue();
  const auto condition =
      std::find_if(list.begin(), list.end(), [&](const Condition& c) { return c.usage == step.usage; });
  filter_ByFigure(run, {std::string(step.log_name), &*condition});
}

RowsDone serve_Job(Job& job) {
  return [&job](std::size_t rows) { return job.advance(static_cast<std::int64_t>(rows)); };
}

void save_Result(Store& store, Desk& desk, const TicketSet& tickets) {
  Job job(desk, static_cast<std::int64_t>(tickets.size()), Job::Stop::impossible);
  save_Tickets(store, tickets, serve_Job(job));
}

}  // namespace

std::optional<TicketSet> reset_Marks(Store& store, Desk& desk, PeriodNo period) {
  RunningText& text = desk.running_Text();
  const std::size_t rows = count_Tickets(store, period);
  if (rows == 0) {
    if (period > 0) text.append_Line(fmt::format("表格中无[{}]期数据．", to_QuanJiao(period)));
    return std::nullopt;
  }
  Job job(desk, static_cast<std::int64_t>(rows), Job::Stop::possible);
  if (count_Characters(text.text()) > kShortText) text.set({});
  text.append_Line(fmt::format("正读取数据[{}期]．．．", to_QuanJiao(period)));
  auto tickets = load_Tickets(store, period, serve_Job(job));
  if (tickets)
    text.append_Line(
        fmt::format("过滤缩水之前共：{}注．", to_QuanJiao(static_cast<std::int64_t>(tickets->size()))));
  return tickets;
}

void run_Step(PipelineRun& run, const PassStep& step, const CombinationTurns& turns) {
  switch (step.kind) {
    case PassKind::figure:
      run_Figure(run, step);
      break;
    case PassKind::intervals:
      run_Series(run, 16, 19);
      break;
    case PassKind::custom_groups:
      run_Series(run, 20, 29);
      break;
    case PassKind::positions:
      filter_DingWei(run);
      break;
    case PassKind::history_match:
      filter_LiShi(run);
      break;
    case PassKind::combinations:
      run_Combinations(run, turns);
      break;
    case PassKind::sum_families:
      filter_Qian2HeZhi(run);
      break;
    case PassKind::custom_intervals:
      run_CustomIntervals(run);
      break;
    case PassKind::reduction:
      shrink_Cover(run.store, run.desk, run.tickets, condition_Value(run.store, kShrinkTypeCell));
      break;
  }
}

void run_Passes(PipelineRun& run, const CombinationTurns& turns) {
  for (const PassStep& step : pass_Order()) {
    // The closing of the combinations runs after a stop too: it numbers what is left.
    if (!run.desk.stop_Requested() || step.kind == PassKind::combinations) run_Step(run, step, turns);
  }
}

RunResult run_Pipeline(Store& store, Desk& desk, PeriodNo period) {
  const StopScope stop(desk);
  RunResult result;
  // The reference draw's figures and the tickets stand in one change: a crash leaves both as they were.
  StoreChange change(store);
  // First, as it stands on the draws alone: a run without tickets leaves the reference draw up to date too.
  const CombinationTurns turns = prepare_Combinations(store, desk, periodsBack(store, period, 1));
  if (auto tickets = reset_Marks(store, desk, period)) {
    PipelineRun run{store, desk, *tickets, period};
    run_Passes(run, turns);
    result = {true, desk.stop_Requested(), static_cast<std::int64_t>(tickets->size())};
    save_Result(store, desk, *tickets);
  } else {
    result.stopped = desk.stop_Requested() && count_Tickets(store, period) != 0;
    result.tickets = static_cast<std::int64_t>(count_Tickets(store, period));
  }
  change.commit();
  if (!result.ran && !result.stopped) return result;
  desk.running_Text().append_Line(fmt::format("{}：{} 注",
                                              result.stopped ? "用户中止,当前记录余" : "全部过滤缩水完成,余",
                                              to_QuanJiao(result.tickets)));
  desk.serve();
  return result;
}

}  // namespace lotmere

#include "pipeline/run.hpp"

#include <fmt/format.h>

#include <optional>
#include <thread>

#include "core/periods.hpp"
#include "core/text.hpp"
#include "history/draw_stats.hpp"
#include "pipeline/plan.hpp"
#include "pipeline/run_text.hpp"
#include "pipeline/thin.hpp"
#include "reduction/shrink.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kShortText =
    30;  // characters: a running text up to this length stays in front of a run's lines

RowsDone tell_Job(Job& job) {
  return [&job](std::size_t rows) { return job.advance(static_cast<std::int64_t>(rows)); };
}

// The tickets of the period with their marks at 0. Nothing when it has none, which a line says for a period above 0,
// and when the user stops it.
std::optional<TicketSet> readTickets(Store& store, Desk& desk, PeriodNo period) {
  RunningText& text = desk.running_Text();
  const std::size_t rows = count_Tickets(store, period);
  if (rows == 0) {
    if (period > 0) text.append_Line(fmt::format("表格中无[{}]期数据．", to_QuanJiao(period)));
    return std::nullopt;
  }
  Job job(desk, static_cast<std::int64_t>(rows), Job::Stop::possible);
  if (count_Characters(text.text()) > kShortText) text.set({});
  text.append_Line(fmt::format("正读取数据[{}期]．．．", to_QuanJiao(period)));
  auto tickets = load_Tickets(store, period, tell_Job(job));
  if (tickets)
    text.append_Line(
        fmt::format("过滤缩水之前共：{}注．", to_QuanJiao(static_cast<std::int64_t>(tickets->size()))));
  return tickets;
}

void walkSteps(Store& store, Desk& desk, TicketSet& tickets) {
  const FilterPlan plan(compileRules(loadConditionSet(store)), loadDrawTable(store), tickets.period);
  DeskCourse course(desk);
  RunText text(desk, plan);
  thin(plan, tickets, course, text, static_cast<int>(std::thread::hardware_concurrency()));
  if (!desk.stop_Requested()) shrink_Cover(store, desk, tickets, plan.rules().shrink_type);
}

void writeBack(Store& store, Desk& desk, const TicketSet* tickets, PeriodNo period) {
  // The statistics of the draw before the period and the tickets stand in one change: a crash leaves both as they were.
  StoreChange change(store);
  const PeriodNo previous = periodsBack(store, period, 1);
  calc_DrawStats(store, desk, previous, previous);
  if (tickets != nullptr) {
    Job job(desk, static_cast<std::int64_t>(tickets->size()), Job::Stop::impossible);
    save_Tickets(store, *tickets, tell_Job(job));
  }
  change.commit();
}

}  // namespace

RunResult run_Pipeline(Store& store, Desk& desk, PeriodNo period) {
  const StopScope stop(desk);
  auto tickets = readTickets(store, desk, period);
  RunResult result;
  if (tickets) {
    walkSteps(store, desk, *tickets);
    result = {true, desk.stop_Requested(), static_cast<std::int64_t>(tickets->size())};
  } else {
    result.tickets = static_cast<std::int64_t>(count_Tickets(store, period));
    result.stopped = desk.stop_Requested() && result.tickets != 0;
  }
  writeBack(store, desk, tickets ? &*tickets : nullptr, period);
  if (!result.ran && !result.stopped) return result;
  desk.running_Text().append_Line(fmt::format("{}：{} 注",
                                              result.stopped ? "用户中止,当前记录余" : "全部过滤缩水完成,余",
                                              to_QuanJiao(result.tickets)));
  desk.serve();
  return result;
}

}  // namespace lotmere

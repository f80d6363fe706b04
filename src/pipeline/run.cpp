#include "pipeline/run.hpp"

#include <fmt/format.h>

#include <optional>
#include <thread>

#include "base/text.hpp"
#include "conditions/condition_store.hpp"
#include "history/draw_stats.hpp"
#include "pipeline/plan.hpp"
#include "pipeline/run_text.hpp"
#include "pipeline/thin.hpp"
#include "reduction/shrink.hpp"
#include "store/periods.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kShortText =
    30;  // characters: a running text up to this length stays in front of a run's lines

RowsDone tellJob(CourseLeg& job) {
  return [&job](std::size_t rows) { return job.advance(static_cast<std::int64_t>(rows)); };
}

// The tickets of the period with their marks at 0. Nothing when it has none, which a line says for a period
// above 0, and when the user stops it.
std::optional<TicketSet> readTickets(Store& store, Desk& desk, PeriodNo period) {
  RunningText& text = desk.runningText();
  const std::size_t rows = countTickets(store, period);
  if (rows == 0) {
    if (period > 0) text.appendLine(fmt::format("表格中无[{}]期数据．", toFullWidth(period)));
    return std::nullopt;
  }
  CourseLeg job(desk.course(), static_cast<std::int64_t>(rows), Course::Stop::possible);
  if (countCharacters(text.text()) > kShortText) text.set({});
  text.appendLine(fmt::format("正读取数据[{}期]．．．", toFullWidth(period)));
  auto tickets = loadTickets(store, period, tellJob(job));
  if (tickets)
    text.appendLine(
        fmt::format("过滤缩水之前共：{}注．", toFullWidth(static_cast<std::int64_t>(tickets->size()))));
  return tickets;
}

std::vector<FunnelRow> walkSteps(Store& store, Desk& desk, TicketSet& tickets, WithFunnel with_funnel) {
  const FilterPlan plan(compileRules(loadConditionSet(store)), loadDrawTable(store), tickets.period);
  const bool tells = with_funnel == WithFunnel::yes;
  const auto alone = tells ? countFailingAlone(plan, tickets.balls) : std::vector<std::int64_t>{};
  const auto whole = static_cast<std::int64_t>(tickets.size());
  const std::int64_t centres = tells ? countCentres(plan, tickets.balls) : 0;
  RunText text(desk, plan);
  const Funnel funnel =
      thin(plan, tickets, desk.course(), text, static_cast<int>(std::thread::hardware_concurrency()));
  auto rows = tells ? funnelRows(plan, funnel, alone) : std::vector<FunnelRow>{};
  if (desk.course().stopRequested()) return rows;
  const FilterRules& rules = plan.rules();
  shrinkCover(store, desk, tickets, rules.shrink_type, rules.smart, rules.effort);
  if (tells)
    rows.push_back(shrinkRow(plan, funnel.left, static_cast<std::int64_t>(tickets.size()), whole - centres));
  return rows;
}

void writeBack(Store& store, Desk& desk, const TicketSet* tickets, PeriodNo period) {
  // The statistics of the draw before the period and the tickets stand in one change: a crash leaves both as
  // they were.
  StoreChange change(store);
  const PeriodNo previous = periodsBack(store, period, 1);
  computeDrawStatistics(store, desk, previous, previous);
  if (tickets != nullptr) {
    CourseLeg job(desk.course(), static_cast<std::int64_t>(tickets->size()), Course::Stop::impossible);
    saveTickets(store, *tickets, tellJob(job));
  }
  change.commit();
}

}  // namespace

RunResult runPipeline(Store& store, Desk& desk, PeriodNo period, WithFunnel with_funnel) {
  const StopScope stop(desk.course());
  auto tickets = readTickets(store, desk, period);
  RunResult result;
  if (tickets) result.funnel = walkSteps(store, desk, *tickets, with_funnel);
  result.outcome = Outcome::done;
  result.tickets = static_cast<std::int64_t>(tickets ? tickets->size() : countTickets(store, period));
  if (result.tickets == 0 && !tickets)
    result.outcome = Outcome::refused;
  else if (desk.course().stopRequested())
    result.outcome = Outcome::stopped;
  writeBack(store, desk, tickets ? &*tickets : nullptr, period);
  if (result.outcome == Outcome::refused) return result;
  desk.runningText().appendLine(fmt::format(
      "{}：{} 注", result.outcome == Outcome::stopped ? "用户中止,当前记录余" : "全部过滤缩水完成,余",
      toFullWidth(result.tickets)));
  return result;
}

}  // namespace lotmere

#include "pipeline/run.hpp"

#include <fmt/format.h>

#include <optional>
#include <thread>

#include "base/text.hpp"
#include "conditions/condition_store.hpp"
#include "conditions/named_sets.hpp"
#include "conditions/set_text.hpp"
#include "history/draw_stats.hpp"
#include "pipeline/plan.hpp"
#include "pipeline/run_text.hpp"
#include "pipeline/thin.hpp"
#include "reduction/shrink.hpp"
#include "store/periods.hpp"
#include "tickets/ticket_steps.hpp"

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
  if (tickets) text.appendLine(beforeLine(static_cast<std::int64_t>(tickets->size())));
  return tickets;
}

std::vector<FunnelRow> walkSteps(Store& store, Desk& desk, const ConditionSet& set, TicketSet& tickets,
                                 BeforeRun& before, WithFunnel with_funnel) {
  const FilterPlan plan(compileRules(set), loadDrawTable(store), tickets.period);
  const bool tells = with_funnel == WithFunnel::yes;
  const auto alone = tells ? countFailingAlone(plan, tickets.balls) : std::vector<std::int64_t>{};
  const auto whole = static_cast<std::int64_t>(tickets.size());
  const std::int64_t centres = tells ? countCentres(plan, tickets.balls) : 0;
  RunText text(desk, plan);
  const Funnel funnel =
      thin(plan, tickets, desk.course(), text, static_cast<int>(std::thread::hardware_concurrency()));
  before.markBeforeShrink(tickets);
  auto rows = tells ? funnelRows(plan, funnel, alone) : std::vector<FunnelRow>{};
  if (desk.course().stopRequested()) return rows;
  const FilterRules& rules = plan.rules();
  shrinkCover(store, desk, tickets, rules.shrink_type, rules.smart, rules.effort);
  if (tells)
    rows.push_back(shrinkRow(plan, funnel.left, static_cast<std::int64_t>(tickets.size()), whole - centres));
  return rows;
}

// The tickets that a run is to judge, and what it needs to be taken back.
struct Work {
  TicketSet tickets;
  ConditionSet set;
  BeforeRun before;
};

void writeBack(Store& store, Desk& desk, const Work* work, PeriodNo period) {
  // The statistics of the draw before the period, the tickets and the way back stand in one change: a crash
  // leaves all as they were.
  StoreChange change(store);
  const PeriodNo previous = periodsBack(store, period, 1);
  computeDrawStatistics(store, desk, previous, previous);
  if (work != nullptr) {
    const auto rows = static_cast<std::int64_t>(work->tickets.size());
    CourseLeg job(desk.course(), rows, Course::Stop::impossible);
    work->before.keep(store, nameOfSet(store, work->set).value_or(std::string()),
                      setText(work->set, WithPicks::no));
    saveTickets(store, work->tickets, tellJob(job));
  }
  change.commit();
}

}  // namespace

RunResult runPipeline(Store& store, Desk& desk, PeriodNo period, WithFunnel with_funnel) {
  const StopScope stop(desk.course());
  std::optional<Work> work;
  if (auto tickets = readTickets(store, desk, period)) {
    BeforeRun before(store, *tickets);
    work = Work{*std::move(tickets), loadConditionSet(store), std::move(before)};
  }
  RunResult result;
  if (work) result.funnel = walkSteps(store, desk, work->set, work->tickets, work->before, with_funnel);
  result.outcome = Outcome::done;
  result.tickets = static_cast<std::int64_t>(work ? work->tickets.size() : countTickets(store, period));
  if (result.tickets == 0 && !work)
    result.outcome = Outcome::refused;
  else if (desk.course().stopRequested())
    result.outcome = Outcome::stopped;
  writeBack(store, desk, work ? &*work : nullptr, period);
  if (result.outcome == Outcome::refused) return result;
  desk.runningText().appendLine(endLine(result.tickets, result.outcome == Outcome::stopped));
  return result;
}

}  // namespace lotmere

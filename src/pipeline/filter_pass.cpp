#include "pipeline/filter_pass.hpp"

#include <algorithm>
#include <numeric>

#include "conditions/condition_store.hpp"
#include "core/text.hpp"
#include "pipeline/history_relative.hpp"
#include "pipeline/metric.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kBlock = 8192;  // some hundred microseconds of any pass

JudgeBlock make_Judge(const Verdicts& verdicts, const Metric& metric) {
  return with_Figure(metric, [&](auto figure) {
    return judge_ByReds(
        [verdicts, metric, figure](Balls balls) { return allows(verdicts, figure(metric, reds_Of(balls))); });
  });
}

// Behind a walk: the first `passed` tickets were kept, those from `row` on weren't reached and keep their
// marks and numbers.
void settle_Rows(TicketSet& tickets, std::size_t passed, std::size_t row) {
  std::size_t kept = passed;
  for (; row < tickets.size(); ++row, ++kept) {
    keep_Row(tickets, row, kept);
    tickets.mark[kept] = tickets.mark[row];
    tickets.seq[kept] = tickets.seq[row];
  }
  tickets.truncate(kept);
  std::fill_n(tickets.mark.begin(), passed, std::int8_t{1});
  std::iota(tickets.seq.begin(), tickets.seq.begin() + static_cast<std::ptrdiff_t>(passed), 1);
  tickets.recall_Scores();
}

}  // namespace

PassLines lines_Of(std::string_view log_name) {
  return {std::string(log_name) + "过滤正在进行中．．．", std::string(log_name) + "过滤后余："};
}

std::int64_t walk_Tickets(PipelineRun& run, const PassLines& lines, const JudgeBlock& judge) {
  TicketSet& tickets = run.tickets;
  if (tickets.size() == 0) return 0;
  RunningText& text = run.desk.running_Text();
  const std::string base = text.text();
  Job job(run.desk, static_cast<std::int64_t>(tickets.size()), Job::Stop::possible);
  text.set_Line(base, lines.start);

  std::size_t kept = 0;
  std::size_t row = 0;
  while (row < tickets.size()) {
    const std::size_t end = std::min(row + kBlock, tickets.size());
    kept = judge(tickets, row, end, kept);
    row = end;
    if (job.advance(static_cast<std::int64_t>(row))) break;
  }
  const std::size_t passed = kept;
  settle_Rows(tickets, passed, row);
  if (!run.desk.stop_Requested())
    text.set_Line(base, lines.result + to_QuanJiao(static_cast<std::int64_t>(passed)) + " 注");
  return static_cast<std::int64_t>(passed);
}

std::int64_t filter_ByFigure(PipelineRun& run, const FigurePass& pass) {
  const Condition& condition = *pass.condition;
  if (!is_Used(run.store, condition.usage)) return 0;
  warn_IfHistoryRelative(run, condition);
  if (run.tickets.size() == 0) return 0;
  const auto metric = prepare_Metric(run.store, condition, run.period);
  if (!metric) return 0;
  return walk_Tickets(run, lines_Of(pass.log_name), make_Judge(load_Verdicts(run.store, condition), *metric));
}

}  // namespace lotmere

#include "pipeline/filter_pass.hpp"

#include <algorithm>
#include <array>
#include <numeric>

#include "conditions/condition_store.hpp"
#include "core/text.hpp"
#include "pipeline/history_relative.hpp"
#include "pipeline/metric.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kBlock = 8192;  // some hundred microseconds of any pass

// The verdict for each figure: cells hold at most 171 values, and a figure beyond the last row of its range
// has no cell.
using Verdicts = std::array<bool, 256>;

Verdicts load_Verdicts(Store& store, const Condition& condition) {
  const ValueArray cells = load_ConditionRange(store, condition.first, condition.last);
  Verdicts verdicts{};
  for (ConditionId id = condition.first; id <= condition.last; ++id) {
    const auto k = static_cast<std::size_t>(id - condition.first);
    if (k < cells.size()) verdicts[k] = cells[k] >= 1;
  }
  return verdicts;
}

template <class Figure>
JudgeBlock judge_ByFigure(const Verdicts& verdicts, Figure figure) {
  return judge_ByReds([verdicts, figure](Balls balls) {
    const int value = figure(reds_Of(balls));
    // A figure below 0 has no cell either.
    return value >= 0 && verdicts[static_cast<std::size_t>(value)];
  });
}

// The counts of all groups are six additions; the shape follows from the word by bit operations.
JudgeBlock judge_ByShape(const Verdicts& verdicts, const Metric& metric) {
  const Family& family = *metric.family;
  return judge_ByReds([verdicts, groups = metric.groups, &family](Balls balls) {
    const auto shape = shape_Number(family, count_Groups(groups, reds_Of(balls)));
    return shape && verdicts[static_cast<std::size_t>(*shape)];
  });
}

JudgeBlock make_Judge(const Verdicts& verdicts, const Metric& metric) {
  switch (metric.kind) {
    case Metric::Kind::table_sum:
      return judge_ByFigure(verdicts,
                            [table = metric.table](const Reds& reds) { return sum_Of(table, reds); });
    case Metric::Kind::largest_gap:
      return judge_ByFigure(verdicts, calc_JianJuMax);
    case Metric::Kind::span:
      return judge_ByFigure(verdicts, calc_KuaDu);
    case Metric::Kind::run_shape:
      return judge_ByFigure(verdicts, calc_LianHaoMax);
    case Metric::Kind::ac:
      return judge_ByFigure(verdicts, calc_AC);
    case Metric::Kind::shape:
      break;
  }
  return judge_ByShape(verdicts, metric);
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

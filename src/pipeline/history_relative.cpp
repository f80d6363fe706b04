#include "pipeline/history_relative.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "conditions/condition_store.hpp"
#include "conditions/own_sets.hpp"
#include "core/text.hpp"
#include "pipeline/metric.hpp"
#include "pipeline/past_draws.hpp"

namespace lotmere {
namespace {

constexpr UsageId kQian2HeZhi = 266;

bool is_Temperature(UsageId usage) { return usage == 301 || usage == 302; }

}  // namespace

void warn_IfHistoryRelative(PipelineRun& run, const Condition& condition) {
  if (!looks_Back(condition)) return;
  if (run.tickets.size() == 0 && !is_Temperature(condition.usage)) return;
  run.desk.show_Tip(
      fmt::format("注意，本次过滤使用了[{0}]这个过滤条件,[{0}]的设置与历史开奖记录相关！{1}{1}"
                  "在不同的期号中由于对应的历史记录不同,有可能得"
                  "出不同的结果。这是正常情况。{1}{1}【注意，此次过滤结果仅适用于 {2} 期！！！】",
                  condition.name, kLineBreak, to_QuanJiao(run.period)),
      condition.name);
}

std::int64_t filter_Qian2HeZhi(PipelineRun& run) {
  const Condition& condition = condition_OfUsage(kQian2HeZhi);
  if (!is_Used(run.store, kQian2HeZhi)) return 0;
  warn_IfHistoryRelative(run, condition);
  if (run.tickets.size() == 0) return 0;
  const SumFamilies families(load_ConditionRange(run.store, condition.first, condition.last),
                             load_SummedDraws(run.store, run.period, 2));
  return walk_Tickets(run, lines_Of("[前2期和值相同组]"),
                      judge_ByReds([&families](Balls balls) { return families.keeps(reds_Of(balls)); }));
}

std::int64_t filter_LiShi(PipelineRun& run) {
  const HistoryMatch settings = load_HistoryMatch(run.store);
  if (!settings.used) return 0;
  const PassLines lines{"[历史数据过滤]过滤正进行中．．．", "[历史数据过滤]过滤后余："};
  const auto draws = load_DrawnReds(run.store, settings.first, std::min(settings.last, run.period - 1));
  if (draws.empty() || run.tickets.size() == 0) {
    // Nothing is filtered, so the marks stay too; the line tells the tickets that stand, none as well.
    const auto standing = static_cast<std::int64_t>(run.tickets.size());
    run.desk.running_Text().append_Line(lines.result + to_QuanJiao(standing) + " 注");
    return standing;
  }
  DrawMatch match(settings.match);
  for (const Balls draw : draws) match.add(draw);
  return walk_Tickets(run, lines, judge_ByReds([&match](Balls balls) { return !match.matches(balls); }));
}

}  // namespace lotmere

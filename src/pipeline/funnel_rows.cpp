#include "pipeline/funnel_rows.hpp"

#include <algorithm>

#include "pipeline/judge_block.hpp"
#include "reduction/cover.hpp"

namespace lotmere {

std::vector<std::int64_t> countFailingAlone(const FilterPlan& plan, std::span<const Balls> tickets) {
  std::vector<std::int64_t> failing(filterSteps().size());
  for (std::size_t step = 0; step < failing.size(); ++step)
    if (plan.runs(step)) failing[step] = addFailures(plan, step, tickets, nullptr);
  return failing;
}

std::int64_t countCentres(const FilterPlan& plan, std::span<const Balls> tickets) {
  if (plan.rules().shrink_type == kLargestShrink) return static_cast<std::int64_t>(tickets.size());
  using enum OverlapMarks::Repeats;
  Cover cover(plan.rules().shrink_type, std::ranges::all_of(tickets, isRegular) ? no : yes);
  return std::ranges::count_if(tickets, [&](Balls ticket) { return cover.take(ticket); });
}

std::vector<FunnelRow> funnelRows(const FilterPlan& plan, const Funnel& funnel,
                                  std::span<const std::int64_t> alone) {
  std::vector<FunnelRow> rows;
  for (std::size_t step = 0; step < funnel.steps.size(); ++step) {
    const StepResult& result = funnel.steps[step];
    if (plan.isOn(step))
      rows.push_back({filterSteps()[step].plainName(), result.before, result.after, alone[step]});
  }
  if (plan.rules().tolerance > 0) {
    const std::int64_t whole = funnel.steps.front().before;
    rows.push_back({toleranceRowName(plan), whole, funnel.left, whole - funnel.left});
  }
  return rows;
}

std::string toleranceRowName(const FilterPlan& plan) {
  return std::string(kSetToleranceName) + std::to_string(plan.rules().tolerance);
}

FunnelRow shrinkRow(const FilterPlan& plan, std::int64_t before, std::int64_t after, std::int64_t alone) {
  return {shrinkCaption(plan.rules().shrink_type), before, after, alone};
}

}  // namespace lotmere

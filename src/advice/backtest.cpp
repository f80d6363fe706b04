#include "advice/backtest.hpp"

#include <algorithm>
#include <numeric>

#include "advice/set_share.hpp"

namespace lotmere {
namespace {

std::span<const PastDraw> newest(const DrawTable& draws, std::size_t last) {
  return draws.all().last(std::min(last, draws.all().size()));
}

}  // namespace

std::vector<DrawVerdict> judgeDraws(const std::shared_ptr<const FilterRules>& rules, const DrawTable& draws,
                                    std::size_t last) {
  std::vector<DrawVerdict> verdicts;
  PlanSeries plans(rules, draws);
  for (const PastDraw& draw : newest(draws, last)) {
    const FilterPlan plan = plans.at(draw.period);
    const StepBits failed = plan.failures(packBalls(draw.numbers.reds, draw.numbers.blue));
    verdicts.push_back({draw.period, failed, !plan.rejects(failed)});
  }
  return verdicts;
}

VerdictCounts countVerdicts(std::span<const DrawVerdict> draws, int tolerance) {
  VerdictCounts counts;
  counts.stopped_alone.resize(filterSteps().size());
  std::vector<int> failing;  // by the number of conditions
  for (const DrawVerdict& draw : draws) {
    counts.passed += draw.passed;
    StepBits others = draw.failed;
    others.reset(matchStep());
    const std::size_t fails = others.count();
    const bool tolerated = fails <= static_cast<std::size_t>(tolerance);
    if (draw.failed[matchStep()]) {
      ++counts.rejected_by_match;
      if (tolerated) ++counts.stopped_alone[matchStep()];
      continue;
    }
    failing.resize(std::max(failing.size(), fails + 1));
    ++failing[fails];
    if (fails != static_cast<std::size_t>(tolerance) + 1) continue;
    for (std::size_t step = 0; step < counts.stopped_alone.size(); ++step)
      counts.stopped_alone[step] += others[step];
  }
  counts.failing_at_most.resize(failing.size());
  std::partial_sum(failing.begin(), failing.end(), counts.failing_at_most.begin());
  return counts;
}

std::optional<ChanceOfSet> chanceOfSet(const std::shared_ptr<const FilterRules>& rules,
                                       const DrawTable& draws, std::size_t last, Course& course,
                                       int threads) {
  const auto share = SetShare::make(rules, course, threads);
  if (!share) return std::nullopt;
  ChanceOfSet chance;
  chance.all = share->all();
  const auto judged = newest(draws, last);
  if (share->looksBack()) chance.every = static_cast<int>((judged.size() + kMostShares - 1) / kMostShares);
  std::vector<double> chances(judged.size());
  CourseLeg leg(course, static_cast<std::int64_t>(judged.size()), Course::Stop::possible);
  PlanSeries plans(rules, draws);
  // From the newest back, so that the newest is always among those counted; the plans need the oldest first.
  const std::size_t every = share->looksBack() ? static_cast<std::size_t>(chance.every) : judged.size();
  std::size_t first = 0;  // of the draws that the share counted next stands for
  for (std::size_t place = 0; place < judged.size(); ++place) {
    if ((judged.size() - 1 - place) % every != 0) continue;
    const std::int64_t passing = share->count(plans.at(judged[place].period));
    chance.passing.push_back(passing);
    std::fill(chances.begin() + static_cast<std::ptrdiff_t>(first),
              chances.begin() + static_cast<std::ptrdiff_t>(place) + 1,
              static_cast<double>(passing) / static_cast<double>(chance.all));
    first = place + 1;
    if (leg.advance(static_cast<std::int64_t>(first))) return std::nullopt;
  }
  chance.expected = std::accumulate(chances.begin(), chances.end(), 0.0);
  if (!judged.empty()) chance.share = chance.expected / static_cast<double>(judged.size());
  chance.range = centralRange(successDistribution(chances));
  return chance;
}

std::optional<BackTest> backTest(const ConditionSet& set, const DrawTable& draws, std::size_t last,
                                 Course& course, int threads) {
  const auto rules = compileRules(set);
  BackTest test{rules->tolerance, judgeDraws(rules, draws, last), {}, {}};
  test.counts = countVerdicts(test.draws, test.tolerance);
  auto chance = chanceOfSet(rules, draws, last, course, threads);
  if (!chance) return std::nullopt;
  test.chance = *std::move(chance);
  return test;
}

}  // namespace lotmere

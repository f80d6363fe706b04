#include "advice/strength.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <vector>

#include "base/text.hpp"
#include "pipeline/metric.hpp"
#include "pipeline/past_draws.hpp"

namespace lotmere {
namespace {

// How many of all red sixes a rule keeps.
template <class Keeps>
std::int64_t countSixes(Keeps&& keeps) {
  std::int64_t kept = 0;
  for (int a = 1; a <= kRedCount - 5; ++a)
    for (int b = a + 1; b <= kRedCount - 4; ++b)
      for (int c = b + 1; c <= kRedCount - 3; ++c)
        for (int d = c + 1; d <= kRedCount - 2; ++d)
          for (int e = d + 1; e <= kRedCount - 1; ++e)
            for (int f = e + 1; f <= kRedCount; ++f) kept += keeps(Reds{a, b, c, d, e, f});
  return kept;
}

// Counts the newest `last` of the draws before a period that a rule keeps; it gets a draw and those before
// it, ascending.
template <class Keeps>
Strength countDraws(std::span<const PastDraw> before, int last, Keeps&& keeps) {
  Strength strength;
  strength.draws = static_cast<int>(std::min(before.size(), static_cast<std::size_t>(last)));
  for (std::size_t place = before.size() - strength.draws; place < before.size(); ++place)
    strength.passed += keeps(before[place], before.first(place));
  return strength;
}

using Draws = std::span<const PastDraw>;

std::optional<Strength> figureStrength(const ConditionSet& set, Draws before, const Condition& condition,
                                       int last) {
  const auto metric = prepareMetric(set, condition, before);
  if (!metric) return std::nullopt;
  const FigureTest test{*metric, verdictsOf(set, condition)};
  const bool relative = looksBack(condition);
  Strength strength = countDraws(before, last, [&](const PastDraw& draw, Draws earlier) {
    const Reds& reds = draw.numbers.reds;
    return relative ? allows(test.verdicts, metricValue(*prepareMetric(set, condition, earlier), reds))
                    : test.passes(reds);
  });
  strength.sixes = withFigure(*metric, [&](auto figure) {
    return countSixes([&](const Reds& six) { return allows(test.verdicts, figure(*metric, six)); });
  });
  return strength;
}

Strength turnStrength(const ConditionSet& set, Draws before, const Condition& condition, int last) {
  const Family& family = *condition.family;
  const GroupTable groups = groupTable(set, family, family.draw_groups);
  Strength strength = countDraws(before, last, [&](const PastDraw& draw, Draws earlier) {
    return earlier.empty() ||
           countGroups(groups, draw.numbers.reds) != countGroups(groups, earlier.back().numbers.reds);
  });
  if (before.empty()) {
    strength.sixes = kAllRedSixes;
    return strength;
  }
  const GroupCounts reference = countGroups(groups, before.back().numbers.reds);
  strength.sixes = countSixes([&](const Reds& six) { return countGroups(groups, six) != reference; });
  return strength;
}

Strength sumStrength(const ConditionSet& set, Draws before, const Condition& condition, int last) {
  const ValueArray cells = set.cellRange(condition.first, condition.last);
  Strength strength = countDraws(before, last, [&](const PastDraw& draw, Draws earlier) {
    return SumFamilies(cells, earlier).keeps(draw.numbers.reds);
  });
  const SumFamilies families(cells, before);
  strength.sixes = countSixes([&](const Reds& six) { return families.keeps(six); });
  return strength;
}

// One decimal, but only all is 100 and only none is 0.
std::string shareText(const Strength& strength) {
  if (strength.sixes == 0) return "0";
  if (strength.sixes == kAllRedSixes) return "100";
  const double percent = sharePercent(strength);
  if (percent < 0.1) return "不到 0.1";
  if (percent > 99.9) return "超过 99.9";
  return fmt::format("{:.1f}", percent);
}

}  // namespace

std::optional<Strength> conditionStrength(const ConditionSet& set, const DrawTable& draws,
                                          const Condition& condition, PeriodNo next_period, int last) {
  const Draws before = draws.before(next_period);
  switch (condition.kind) {
    case CellKind::combination:
      return turnStrength(set, before, condition, last);
    case CellKind::sum_family:
      return sumStrength(set, before, condition, last);
    default:
      return figureStrength(set, before, condition, last);
  }
}

Strength matchStrength(const ConditionSet& set, const DrawTable& draws, PeriodNo next_period, int last) {
  const Draws before = draws.before(next_period);
  Strength strength;
  strength.draws = static_cast<int>(std::min(before.size(), static_cast<std::size_t>(last)));
  DrawMatch match(set.match.match);
  // From the oldest on, so that each meets the draws of the range that stand before it.
  for (std::size_t place = 0; place < before.size(); ++place) {
    const PastDraw& draw = before[place];
    const Balls reds = packBalls(draw.numbers.reds, 0);
    if (place + strength.draws >= before.size() && !match.matches(reds)) ++strength.passed;
    if (draw.period >= set.match.first && draw.period <= set.match.last) match.add(reds);
  }
  strength.sixes = countSixes([&](const Reds& six) { return !match.matches(packBalls(six, 0)); });
  return strength;
}

std::string strengthText(const Strength& strength) {
  const std::string share = fmt::format("放行全部红球组合的 {}％", shareText(strength));
  const std::string drawn = strength.draws == 0 ? "还没有开奖记录可以对照"
                                                : fmt::format("最近 {} 期中有 {} 期的开奖号码符合",
                                                              strength.draws, strength.passed);
  return toFullWidth(share + "，" + drawn);
}

}  // namespace lotmere

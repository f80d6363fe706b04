#include "pipeline/strength.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <span>
#include <vector>

#include "conditions/condition_store.hpp"
#include "conditions/own_sets.hpp"
#include "core/periods.hpp"
#include "core/text.hpp"
#include "pipeline/metric.hpp"
#include "pipeline/past_draws.hpp"

namespace lotmere {
namespace {

// How many of all red sixes a rule keeps.
template <class Keeps>
std::int64_t count_Sixes(Keeps&& keeps) {
  std::int64_t kept = 0;
  for (int a = 1; a <= kRedCount - 5; ++a)
    for (int b = a + 1; b <= kRedCount - 4; ++b)
      for (int c = b + 1; c <= kRedCount - 3; ++c)
        for (int d = c + 1; d <= kRedCount - 2; ++d)
          for (int e = d + 1; e <= kRedCount - 1; ++e)
            for (int f = e + 1; f <= kRedCount; ++f) kept += keeps(Reds{a, b, c, d, e, f});
  return kept;
}

// Counts the newest `last` of `draws`, newest first, that a rule keeps; it gets a draw and those before it.
template <class Draw, class Keeps>
Strength count_Draws(const std::vector<Draw>& draws, int last, Keeps&& keeps) {
  Strength strength;
  strength.draws = static_cast<int>(std::min(draws.size(), static_cast<std::size_t>(last)));
  const std::span all(draws);
  for (std::size_t i = 0; i < static_cast<std::size_t>(strength.draws); ++i)
    strength.passed += keeps(all[i], all.subspan(i + 1));
  return strength;
}

std::optional<Strength> figure_Strength(Store& store, const Condition& condition, PeriodNo next_period,
                                        int last) {
  const auto draws = drawsBefore(store, next_period, last + kDrawsLookedBack);
  const auto metric = prepare_Metric(store, condition, std::span(draws));
  if (!metric) return std::nullopt;
  const Verdicts verdicts = load_Verdicts(store, condition);
  const bool relative = looks_Back(condition);
  using Before = std::span<const StoredDraw>;
  Strength strength = count_Draws(draws, last, [&](const StoredDraw& draw, Before before) {
    const Reds& reds = draw.numbers.reds;
    return allows(verdicts,
                  metric_Value(relative ? *prepare_Metric(store, condition, before) : *metric, reds));
  });
  strength.sixes = with_Figure(*metric, [&](auto figure) {
    return count_Sixes([&](const Reds& six) { return allows(verdicts, figure(*metric, six)); });
  });
  return strength;
}

Strength turn_Strength(Store& store, const Condition& condition, PeriodNo next_period, int last) {
  const Family& family = *condition.family;
  const GroupTable groups = load_GroupTable(store, family, family.draw_groups);
  const auto draws = drawsBefore(store, next_period, last + 1);
  using Before = std::span<const StoredDraw>;
  Strength strength = count_Draws(draws, last, [&](const StoredDraw& draw, Before before) {
    return before.empty() ||
           count_Groups(groups, draw.numbers.reds) != count_Groups(groups, before.front().numbers.reds);
  });
  if (draws.empty()) {
    strength.sixes = kAllRedSixes;
    return strength;
  }
  const GroupCounts reference = count_Groups(groups, draws.front().numbers.reds);
  strength.sixes = count_Sixes([&](const Reds& six) { return count_Groups(groups, six) != reference; });
  return strength;
}

Strength sum_Strength(Store& store, const Condition& condition, PeriodNo next_period, int last) {
  const ValueArray cells = load_ConditionRange(store, condition.first, condition.last);
  const auto draws = load_SummedDraws(store, next_period, last + 2);
  using Before = std::span<const SummedDraw>;
  Strength strength = count_Draws(draws, last, [&](const SummedDraw& draw, Before before) {
    return SumFamilies(cells, before).keeps(draw.reds);
  });
  const SumFamilies families(cells, draws);
  strength.sixes = count_Sixes([&](const Reds& six) { return families.keeps(six); });
  return strength;
}

// One decimal, but only all is 100 and only none is 0.
std::string share_Text(const Strength& strength) {
  if (strength.sixes == 0) return "0";
  if (strength.sixes == kAllRedSixes) return "100";
  const double percent = share_Percent(strength);
  if (percent < 0.1) return "不到 0.1";
  if (percent > 99.9) return "超过 99.9";
  return fmt::format("{:.1f}", percent);
}

}  // namespace

std::optional<Strength> condition_Strength(Store& store, const Condition& condition, PeriodNo next_period,
                                           int last) {
  switch (condition.kind) {
    case CellKind::combination:
      return turn_Strength(store, condition, next_period, last);
    case CellKind::sum_family:
      return sum_Strength(store, condition, next_period, last);
    default:
      return figure_Strength(store, condition, next_period, last);
  }
}

Strength match_Strength(Store& store, PeriodNo next_period, int last) {
  const HistoryMatch settings = load_HistoryMatch(store);
  const auto draws = drawsBefore(store, next_period, std::numeric_limits<int>::max());
  const std::size_t judged = std::min(draws.size(), static_cast<std::size_t>(last));
  Strength strength{0, 0, static_cast<int>(judged)};
  DrawMatch match(settings.match);
  // From the oldest on, so that each meets the draws of the range that stand before it.
  for (std::size_t left = draws.size(); left > 0; --left) {
    const StoredDraw& draw = draws[left - 1];
    const Balls reds = pack_Balls(draw.numbers.reds, 0);
    if (left <= judged && !match.matches(reds)) ++strength.passed;
    if (draw.period >= settings.first && draw.period <= settings.last) match.add(reds);
  }
  strength.sixes = count_Sixes([&](const Reds& six) { return !match.matches(pack_Balls(six, 0)); });
  return strength;
}

std::string strength_Text(const Strength& strength) {
  const std::string share = fmt::format("放行全部红球组合的 {}％", share_Text(strength));
  const std::string drawn = strength.draws == 0 ? "还没有开奖记录可以对照"
                                                : fmt::format("最近 {} 期中有 {} 期的开奖号码符合",
                                                              strength.draws, strength.passed);
  return to_QuanJiao(share + "，" + drawn);
}

}  // namespace lotmere

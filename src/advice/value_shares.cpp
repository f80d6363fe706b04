#include "advice/value_shares.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <span>

#include "pipeline/past_draws.hpp"

namespace lotmere {
namespace {

using Draws = std::span<const PastDraw>;

std::size_t countedDraws(Draws before, int last) {
  return std::min(before.size(), static_cast<std::size_t>(last));
}

// By the red at a place of a sorted six: how many sixes have it there.
ValueShares placeShares(const Condition& condition, Draws before, int last) {
  const int place = condition.turn;
  ValueShares shares;
  shares.sixes.resize(static_cast<std::size_t>(condition.last_item) + 1);
  shares.draws.resize(shares.sixes.size());
  if (place == kPlaceCount) {
    for (int n = 1; n <= kBlueCount; ++n) shares.sixes[n] = kAllRedSixes / kBlueCount;
  } else {
    const auto choose = [](int of, int count) {
      std::int64_t ways = 1;
      for (int i = 1; i <= count; ++i) ways = ways * (of - count + i) / i;
      return of < count ? 0 : ways;
    };
    for (int n = 1; n <= kRedCount; ++n)
      shares.sixes[n] = choose(n - 1, place - 1) * choose(kRedCount - n, kRedsPerTicket - place);
  }
  for (const PastDraw& draw : before.last(countedDraws(before, last))) {
    const int n = place == kPlaceCount ? draw.numbers.blue : draw.numbers.reds[place - 1];
    if (n > 0) ++shares.draws[n];
  }
  return shares;
}

bool sameFigure(const Metric& a, const Metric& b) {
  return a.kind == b.kind && a.table == b.table && a.function == b.function && a.family == b.family &&
         a.groups.word == b.groups.word;
}

}  // namespace

std::optional<ValueShares> valueShares(const ConditionSet& set, const DrawTable& draws,
                                       const Condition& condition, PeriodNo next_period, int last) {
  const Draws before = draws.before(next_period);
  if (condition.kind == CellKind::position) {
    ValueShares shares = placeShares(condition, before, last);
    shares.draws_looked_at = static_cast<int>(countedDraws(before, last));
    return shares;
  }
  const auto metric = prepareMetric(set, condition, before);
  if (!metric) return std::nullopt;
  ValueShares shares;
  shares.metric = *metric;
  // A figure beyond the table lands in its last field, which is cut off.
  std::array<std::int64_t, 258> counted{};
  const auto field_of = [](int figure) { return figure < 0 || figure > 255 ? 256 : figure; };
  withFigure(*metric, [&](auto figure) {
    for (int a = 1; a <= kRedCount - 5; ++a)
      for (int b = a + 1; b <= kRedCount - 4; ++b)
        for (int c = b + 1; c <= kRedCount - 3; ++c)
          for (int d = c + 1; d <= kRedCount - 2; ++d)
            for (int e = d + 1; e <= kRedCount - 1; ++e)
              for (int f = e + 1; f <= kRedCount; ++f)
                ++counted[field_of(figure(*metric, Reds{a, b, c, d, e, f}))];
  });
  const auto cells = static_cast<std::size_t>(cellCount(condition));
  shares.sixes.assign(counted.begin(), counted.begin() + static_cast<std::ptrdiff_t>(cells));
  shares.draws.resize(cells);
  shares.draws_looked_at = static_cast<int>(countedDraws(before, last));
  const bool relative = looksBack(condition);
  for (std::size_t place = before.size() - countedDraws(before, last); place < before.size(); ++place) {
    const Reds& reds = before[place].numbers.reds;
    const int figure = relative ? metricValue(*prepareMetric(set, condition, before.first(place)), reds)
                                : metricValue(*metric, reds);
    if (figure >= 0 && figure < static_cast<int>(cells)) ++shares.draws[figure];
  }
  return shares;
}

bool holdsFor(const ValueShares& shares, const ConditionSet& set, const DrawTable& draws,
              const Condition& condition, PeriodNo next_period) {
  if (condition.kind == CellKind::position) return true;
  const auto metric = prepareMetric(set, condition, draws.before(next_period));
  return metric && sameFigure(*metric, shares.metric);
}

Strength strengthOf(const ValueShares& shares, const ConditionSet& set, const Condition& condition) {
  Strength strength;
  strength.draws = shares.draws_looked_at;
  const Verdicts verdicts = condition.kind == CellKind::position ? Verdicts{} : verdictsOf(set, condition);
  const Members members = condition.kind == CellKind::position
                              ? set.column(AttributeTable::first, placeColumn(condition.turn))
                              : 0;
  for (std::size_t k = 0; k < shares.sixes.size(); ++k) {
    const bool allowed =
        condition.kind == CellKind::position ? holds(members, static_cast<int>(k)) : verdicts[k];
    if (!allowed) continue;
    strength.sixes += shares.sixes[k];
    strength.passed += shares.draws[k];
  }
  return strength;
}

std::optional<int> figureOfDraw(const ConditionSet& set, const DrawTable& draws, const Condition& condition,
                                PeriodNo period) {
  const Draws drawn = draws.range(period, period);
  if (drawn.empty()) return std::nullopt;
  const DrawNumbers& numbers = drawn.front().numbers;
  if (condition.kind == CellKind::position)
    return condition.turn == kPlaceCount ? numbers.blue : numbers.reds[condition.turn - 1];
  const auto metric = prepareMetric(set, condition, draws.before(period));
  if (!metric) return std::nullopt;
  return metricValue(*metric, numbers.reds);
}

CountRange chanceRange(const Strength& strength) {
  const std::vector<double> chances(static_cast<std::size_t>(strength.draws), sharePercent(strength) / 100);
  return centralRange(successDistribution(chances));
}

std::string percentText(std::int64_t sixes) {
  if (sixes == 0) return "0%";
  if (sixes == kAllRedSixes) return "100%";
  const double percent = 100.0 * static_cast<double>(sixes) / static_cast<double>(kAllRedSixes);
  if (percent < 0.1) return "<0.1%";
  if (percent > 99.9) return ">99.9%";
  return fmt::format("{:.1f}%", percent);
}

std::string strengthSentence(const Strength& strength, bool looks_back) {
  const std::string share =
      fmt::format("{}放行全部红球组合的 {}", looks_back ? "对下一期" : "", percentText(strength.sixes));
  if (strength.draws == 0) return share + "；还没有开奖记录可以对照。";
  const CountRange range = chanceRange(strength);
  return fmt::format("{}；最近 {} 期中 {} 期符合，按机会应有 {}～{} 期：{}。", share, strength.draws,
                     strength.passed, range.low, range.high,
                     range.holds(strength.passed)  ? "与随机相当"
                     : strength.passed < range.low ? "比随机少"
                                                   : "比随机多");
}

}  // namespace lotmere

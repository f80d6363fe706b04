#include "analysis/trend.hpp"

#include <algorithm>

#include "analysis/draw_range.hpp"
#include "game/metrics.hpp"

namespace lotmere {
namespace {

std::array<bool, kCodeCount> placesOf(const DrawNumbers& numbers) {
  std::array<bool, kCodeCount> places{};
  forEachBall(BallColour::red, numbers, [&](int red) { places[red - 1] = true; });
  forEachBall(BallColour::blue, numbers, [&](int blue) { places[kRedCount + blue - 1] = true; });
  return places;
}

template <NumberValue Value>
int sumOfValue(const DrawNumbers& numbers) {
  return sumOf(numberTable(Value), numbers.reds);
}

constexpr TrendStatistic kStatistics[] = {
    {"和值", sumOfValue<NumberValue::number>},
    {"跨度", [](const DrawNumbers& numbers) { return spanOf(numbers.reds); }},
    {"奇数个数", sumOfValue<NumberValue::is_odd>},
    {"偶数个数", sumOfValue<NumberValue::is_even>},
    {"尾数和值", sumOfValue<NumberValue::tail>},
    {"最大间距", [](const DrawNumbers& numbers) { return largestGap(numbers.reds); }},
    {"AC值", [](const DrawNumbers& numbers) { return acValue(numbers.reds); }}};

}  // namespace

Trend trendOf(const DrawTable& history, PeriodNo to, std::size_t count) {
  const auto all = history.range(history.all().empty() ? to : history.all().front().period, to);
  const std::size_t first = all.size() - std::min(all.size(), count);
  Trend trend;
  trend.gaps.reserve(all.size() - first);
  std::array<int, kCodeCount> gap{};
  std::array<int, kCodeCount> run{};
  for (std::size_t i = 0; i < all.size(); ++i) {
    const auto drawn = placesOf(all[i].numbers);
    for (int place = 0; place < kCodeCount; ++place) {
      gap[place] = drawn[place] ? 0 : gap[place] + 1;
      if (i < first) continue;
      TrendFoot& foot = trend.foot[place];
      run[place] = drawn[place] ? run[place] + 1 : 0;
      foot.hits += drawn[place] ? 1 : 0;
      foot.largest_gap = std::max(foot.largest_gap, gap[place]);
      foot.longest_run = std::max(foot.longest_run, run[place]);
    }
    if (i < first) continue;
    trend.gaps.push_back(gap);
    trend.draws.push_back(all[i].numbers);
  }
  const auto rows = static_cast<double>(trend.gaps.size());
  for (TrendFoot& foot : trend.foot) foot.average_gap = (rows - foot.hits) / (foot.hits + 1);
  return trend;
}

std::span<const TrendStatistic> trendStatistics() { return kStatistics; }

}  // namespace lotmere

#include "advice/backtest_text.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "base/text.hpp"
#include "game/game.hpp"

namespace lotmere {
namespace {

// "总和值 ５ 期，AC值 ２ 期", the most often first; empty where none did.
std::string stoppedAloneText(const std::vector<int>& stopped_alone) {
  std::vector<std::size_t> order;
  for (std::size_t step = 0; step < stopped_alone.size(); ++step)
    if (stopped_alone[step] > 0) order.push_back(step);
  std::ranges::stable_sort(order, std::ranges::greater{},
                           [&](std::size_t step) { return stopped_alone[step]; });
  std::string text;
  for (const std::size_t step : order)
    text += fmt::format("{}{} {} 期", text.empty() ? "" : "，", filterSteps()[step].plainName(),
                        toFullWidth(stopped_alone[step]));
  return text;
}

std::string failingText(const std::vector<int>& at_most) {
  std::string text;
  const std::size_t most = std::min<std::size_t>(at_most.size(), kMostSetTolerance + 1);
  for (std::size_t n = 1; n < most; ++n)
    text += fmt::format("{}至多 {} 个的有 {} 期", n == 1 ? "不符合的条件" : "，",
                        toFullWidth(static_cast<std::int64_t>(n)), toFullWidth(at_most[n]));
  return text;
}

// How the share was counted; nothing needs to be said where it is the same at every draw.
std::string countedText(const ChanceOfSet& chance) {
  if (chance.every > 1)
    return fmt::format("（按每 {} 期取 1 期计算，共取 {} 期）", chance.every, chance.passing.size());
  return chance.passing.size() > 1 ? "（逐期计算的平均值）" : "";
}

std::string chanceText(const BackTest& test) {
  const ChanceOfSet& chance = test.chance;
  return toFullWidth(fmt::format(
      "随机的号码：这些条件放行全部 {} {}的 {:.2f}％{}，{} 期中应有 {:.1f} 期符合，95％ 的情形在 {} 到 {} "
      "期之间。",
      chance.all, chance.all == kAllRedSixes ? "个红球组合" : "注号码", 100 * chance.share,
      countedText(chance), test.draws.size(), chance.expected, chance.range.low, chance.range.high));
}

std::string verdictOnAll(const BackTest& test) {
  const int passed = test.counts.passed;
  if (test.chance.range.holds(passed))
    return fmt::format("实际 {} 期，与随机相当：看不出这些条件偏向或避开过开奖号码。", toFullWidth(passed));
  return fmt::format("实际 {} 期，{}随机的范围；这只说明过去，不能预测以后的开奖。", toFullWidth(passed),
                     passed < test.chance.range.low ? "少于" : "多于");
}

}  // namespace

std::string verdictText(const DrawVerdict& draw) {
  std::string failed;
  for (std::size_t step = 0; step < filterSteps().size(); ++step)
    if (draw.failed[step]) failed += (failed.empty() ? "\t" : ",") + filterSteps()[step].plainName();
  return fmt::format("{}\t{}{}", draw.period, draw.passed ? "符合" : "不符合", failed);
}

std::vector<std::string> backTestLines(const BackTest& test) {
  std::vector<std::string> lines;
  const auto draws = static_cast<std::int64_t>(test.draws.size());
  const auto passed = toFullWidth(test.counts.passed);
  if (test.tolerance == 0)
    lines.push_back(fmt::format("回测 {} 期，符合全部条件的有 {} 期。", toFullWidth(draws), passed));
  else
    lines.push_back(fmt::format("回测 {} 期，{} {}，符合的有 {} 期。", toFullWidth(draws), kSetToleranceName,
                                toFullWidth(test.tolerance), passed));
  if (test.counts.rejected_by_match > 0)
    lines.push_back(
        fmt::format("被历史数据过滤排除的有 {} 期。", toFullWidth(test.counts.rejected_by_match)));
  if (const std::string text = failingText(test.counts.failing_at_most); !text.empty())
    lines.push_back(text + "。");
  if (const std::string text = stoppedAloneText(test.counts.stopped_alone); !text.empty())
    lines.push_back((test.tolerance == 0 ? "只因一个条件而不符合的：" : "少一个条件就符合的：") + text +
                    "。");
  lines.push_back(chanceText(test));
  lines.push_back(verdictOnAll(test));
  return lines;
}

}  // namespace lotmere

#include "analysis/omission_text.hpp"

#include <fmt/format.h>

#include "base/text.hpp"
#include "game/game.hpp"

namespace lotmere {
namespace {

constexpr int kHitsWorthAReport = 4;
constexpr int kRuleLength = 21;

std::string wideBall(int number) { return toFullWidth(formatBall(number)); }

std::string hitsLine(const OmissionFigures& figures) {
  return fmt::format("总共开出：{} 期", toFullWidth(figures.hits));
}

std::string lastLine(const OmissionFigures& figures) {
  return fmt::format("最近一次的遗漏值：{} 期", toFullWidth(gapText(figures, &ClosedGaps::last)));
}

// Every line with an empty one before it.
std::string figureLines(const Omission& omission, int number) {
  const OmissionFigures& figures = omission.of(number);
  std::string text;
  for (const std::string& line :
       {hitsLine(figures) + " ", largestTip(omission, number), averageTip(omission, number),
        lastLine(figures), runningTip(omission, number)})
    text += fmt::format("{0}{0}{1}", kLineBreak, line);
  return text;
}

std::string tellFigures(const Omission& omission, int number, const std::string& head,
                        const std::string& rule) {
  const OmissionFigures& figures = omission.of(number);
  if (figures.hits < kHitsWorthAReport) return fmt::format("({})  {}", head, hitsLine(figures));
  return head + rule + figureLines(omission, number);
}

}  // namespace

std::string omissionReport(const Omission& omission, int number) {
  const std::string until = fmt::format("截止 {} 期", toFullWidth(omission.period));
  const std::string head = fmt::format("{}号码{} {}", ballName(omission.balls), wideBall(number),
                                       omission.balls == BallColour::red ? "(" + until + ")" : until);
  return tellFigures(omission, number, head, std::string(kLineBreak) + std::string(kRuleLength, '_'));
}

std::string omissionTip(const Omission& omission, int number) {
  return tellFigures(omission, number, fmt::format("{}号码 {}", ballName(omission.balls), wideBall(number)),
                     "");
}

std::string largestTip(const Omission& omission, int number) {
  return fmt::format("历史遗漏最大值：{} 期",
                     toFullWidth(gapText(omission.of(number), &ClosedGaps::largest)));
}

std::string averageTip(const Omission& omission, int number) {
  return fmt::format("历史遗漏平均值：{} 期",
                     toFullWidth(gapText(omission.of(number), &ClosedGaps::average)));
}

std::string runningTip(const Omission& omission, int number) {
  return fmt::format("第{}期遗漏值：{} 期", toFullWidth(omission.period),
                     toFullWidth(omission.of(number).running));
}

std::string gapText(const OmissionFigures& figures, int ClosedGaps::*gap) {
  return figures.closed ? std::to_string((*figures.closed).*gap) : "—";
}

}  // namespace lotmere

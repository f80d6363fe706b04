#include "analysis/omission_text.hpp"

#include <fmt/format.h>

#include "core/text.hpp"

namespace lotmere {
namespace {

constexpr int kHitsWorthAReport = 4;
constexpr int kRuleLength = 21;

std::string wide_Ball(int number) { return to_QuanJiao(format_Ball(number)); }

std::string hits_Line(const OmissionFigures& figures) {
  return fmt::format("总共开出：{} 期", to_QuanJiao(figures.hits));
}

std::string last_Line(const OmissionFigures& figures) {
  return fmt::format("最近一次的遗漏值：{} 期", to_QuanJiao(gap_Text(figures, &ClosedGaps::last)));
}

// Every line with an empty one before it.
std::string figure_Lines(const Omission& omission, int number) {
  const OmissionFigures& figures = omission.of(number);
  std::string text;
  for (const std::string& line :
       {hits_Line(figures) + " ", largest_Tip(omission, number), average_Tip(omission, number),
        last_Line(figures), running_Tip(omission, number)})
    text += fmt::format("{0}{0}{1}", kLineBreak, line);
  return text;
}

std::string tell_Figures(const Omission& omission, int number, const std::string& head,
                         const std::string& rule) {
  const OmissionFigures& figures = omission.of(number);
  if (figures.hits < kHitsWorthAReport) return fmt::format("({})  {}", head, hits_Line(figures));
  return head + rule + figure_Lines(omission, number);
}

}  // namespace

std::string omission_Report(const Omission& omission, int number) {
  const std::string until = fmt::format("截止 {} 期", to_QuanJiao(omission.period));
  const std::string head = fmt::format("{}号码{} {}", ball_Name(omission.balls), wide_Ball(number),
                                       omission.balls == BallColour::red ? "(" + until + ")" : until);
  return tell_Figures(omission, number, head, std::string(kLineBreak) + std::string(kRuleLength, '_'));
}

std::string omission_Tip(const Omission& omission, int number) {
  return tell_Figures(omission, number,
                      fmt::format("{}号码 {}", ball_Name(omission.balls), wide_Ball(number)), "");
}

std::string largest_Tip(const Omission& omission, int number) {
  return fmt::format("历史遗漏最大值：{} 期",
                     to_QuanJiao(gap_Text(omission.of(number), &ClosedGaps::largest)));
}

std::string average_Tip(const Omission& omission, int number) {
  return fmt::format("历史遗漏平均值：{} 期",
                     to_QuanJiao(gap_Text(omission.of(number), &ClosedGaps::average)));
}

std::string running_Tip(const Omission& omission, int number) {
  return fmt::format("第{}期遗漏值：{} 期", to_QuanJiao(omission.period),
                     to_QuanJiao(omission.of(number).running));
}

std::string gap_Text(const OmissionFigures& figures, int ClosedGaps::*gap) {
  return figures.closed ? std::to_string((*figures.closed).*gap) : "—";
}

}  // namespace lotmere

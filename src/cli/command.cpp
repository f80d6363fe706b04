#include "cli/command.hpp"

#include <fmt/format.h>

#include "core/text.hpp"

namespace lotmere {

std::optional<PeriodNo> read_Period(Desk& desk, const std::string& text) {
  const PeriodNo period = parse_Period(text);
  if (period >= kDefaultPeriod && period % 1000 != 0) return period;
  refuse(desk, fmt::format("期号“{}”不对，应为7位数字，如 2007001。", text));
  return std::nullopt;
}

int refuse(Desk& desk, std::string_view text) {
  desk.tell(text, Tone::warning);
  return kExitRefused;
}

std::string numbers_Text(const DrawNumbers& numbers) {
  std::string text;
  for (const int red : numbers.reds) text += (text.empty() ? "" : " ") + format_Ball(red);
  return text + "+" + format_Ball(numbers.blue);
}

}  // namespace lotmere

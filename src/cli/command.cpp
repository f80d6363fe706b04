#include "cli/command.hpp"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>

#include "core/text.hpp"

namespace lotmere {

std::optional<PeriodNo> read_Period(Desk& desk, const std::string& text) {
  // A prompt would cut what is too long; here a slip must not name another draw, so it is refused.
  const bool digits =
      text.size() == 7 && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
  if (const PeriodNo period = digits ? parse_Period(text) : 0; is_Period(period)) return period;
  refuse(desk, fmt::format("期号{}不对，应为年份加三位期次的7位数字，如 2007001。", quote_Typed(text)));
  return std::nullopt;
}

std::optional<PeriodRange> read_Range(Desk& desk, const std::string& from, const std::string& to) {
  const auto first = read_Period(desk, from);
  const auto last = first ? read_Period(desk, to) : std::nullopt;
  if (!last) return std::nullopt;
  if (*first <= *last) return PeriodRange{*first, *last};
  refuse(desk, "起始期号不能大于结束期号。");
  return std::nullopt;
}

CLI::Validator whole_Number(int first, int last) {
  const auto check = [=](std::string& text) -> std::string {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc{} || end != text.data() + text.size() || value < first ||
        value > last)
      return fmt::format("“{}”应为 {} 到 {} 的整数", text, first, last);
    text = std::to_string(value);  // the parser itself would take a leading zero for octal
    return {};
  };
  return CLI::Validator(check, "");
}

int refuse(Desk& desk, std::string_view text) {
  desk.tell(text, Tone::warning);
  return kExitRefused;
}

std::string numbers_Text(const DrawNumbers& numbers) {
  const auto& [a, b, c, d, e, f] = numbers.reds;
  return fmt::format("{:02} {:02} {:02} {:02} {:02} {:02}+{:02}", a, b, c, d, e, f, numbers.blue);
}

}  // namespace lotmere

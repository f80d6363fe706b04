#include "cli/command.hpp"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>

#include "base/text.hpp"

namespace lotmere {

std::optional<PeriodRange> readRange(Desk& desk, const std::string& from, const std::string& to) {
  const auto first = readPeriod(desk, from);
  const auto last = first ? readPeriod(desk, to) : std::nullopt;
  if (!last) return std::nullopt;
  if (*first <= *last) return PeriodRange{*first, *last};
  refuse(desk, "起始期号不能大于结束期号。");
  return std::nullopt;
}

CLI::Validator wholeNumber(int first, int last) {
  const auto check = [=](std::string& text) -> std::string {
    const auto value = parseWhole(plainDigits(text));
    if (!value || *value < first || *value > last)
      return fmt::format("“{}”应为 {} 到 {} 的整数", text, first, last);
    text = std::to_string(*value);  // the parser itself would take a leading zero for octal
    return {};
  };
  return CLI::Validator(check, "");
}

Outcome refuse(Desk& desk, std::string_view text) {
  desk.tell(text, Tone::warning);
  return Outcome::refused;
}

}  // namespace lotmere

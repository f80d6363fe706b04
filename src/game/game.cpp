#include "game/game.hpp"

#include <fmt/format.h>

#include "base/text.hpp"

namespace lotmere {

bool isPeriod(PeriodNo period) {
  constexpr PeriodNo last_year = 2099;
  constexpr PeriodNo most_draws = 366;
  const PeriodNo draw = period % 1000;
  return period >= kDefaultPeriod && period / 1000 <= last_year && draw >= 1 && draw <= most_draws;
}

bool isDraw(const DrawNumbers& numbers) {
  int before = 0;
  for (const int red : numbers.reds) {
    if (red <= before || red > kRedCount) return false;
    before = red;
  }
  return numbers.blue >= 1 && numbers.blue <= kBlueCount;
}

std::string formatBall(int number) { return fmt::format("{:02}", number); }

std::string numbersText(const DrawNumbers& numbers) {
  const auto& [a, b, c, d, e, f] = numbers.reds;
  return fmt::format("{:02} {:02} {:02} {:02} {:02} {:02}+{:02}", a, b, c, d, e, f, numbers.blue);
}

std::optional<PeriodNo> parsePeriod(std::string_view text) {
  constexpr std::size_t length = 7;
  const std::string plain = plainDigits(text);
  const auto value = plain.size() == length ? parseWhole(plain) : std::nullopt;
  if (!value || !isPeriod(static_cast<PeriodNo>(*value))) return std::nullopt;
  return static_cast<PeriodNo>(*value);
}

}  // namespace lotmere

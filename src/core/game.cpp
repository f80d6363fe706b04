#include "core/game.hpp"

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

}  // namespace lotmere

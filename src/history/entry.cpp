#include "history/entry.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "game/game.hpp"

namespace lotmere {

CheckedEntry checkManualEntry(const DrawEntry& entry) {
  CheckedEntry checked;
  for (const std::string& text : entry.reds) {
    const auto red = leadingNumber(plainDigits(text));
    if (red < 1 || red > kRedCount) break;
    checked.counted.push_back(static_cast<int>(red));
  }
  std::sort(checked.counted.begin(), checked.counted.end());
  checked.counted.erase(std::unique(checked.counted.begin(), checked.counted.end()), checked.counted.end());

  checked.period = parsePeriod(entry.period);
  const auto blue = leadingNumber(plainDigits(entry.blue));
  if (checked.counted.size() != kRedsPerTicket || blue < 1 || blue > kBlueCount) return checked;
  DrawNumbers& numbers = checked.numbers.emplace();
  std::copy(checked.counted.begin(), checked.counted.end(), numbers.reds.begin());
  numbers.blue = static_cast<int>(blue);
  return checked;
}

}  // namespace lotmere

#include "history/entry.hpp"

#include <algorithm>

#include "core/text.hpp"

namespace lotmere {

CheckedEntry checkManualEntry(const DrawEntry& entry) {
  CheckedEntry checked;
  for (const std::string& text : entry.reds) {
    const auto red = leading_Number(text);
    if (red < 1 || red > kRedCount) break;
    checked.counted.push_back(static_cast<int>(red));
  }
  std::sort(checked.counted.begin(), checked.counted.end());
  checked.counted.erase(std::unique(checked.counted.begin(), checked.counted.end()), checked.counted.end());

  const auto blue = leading_Number(entry.blue);
  checked.period = parse_Period(entry.period);
  checked.ok =
      checked.counted.size() == kRedsPerTicket && blue >= 1 && blue <= kBlueCount && checked.period >= 1;
  if (!checked.ok) return checked;
  std::copy(checked.counted.begin(), checked.counted.end(), checked.numbers.reds.begin());
  checked.numbers.blue = static_cast<int>(blue);
  return checked;
}

}  // namespace lotmere

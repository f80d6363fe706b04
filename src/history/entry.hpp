// A draw typed by hand.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "core/game.hpp"

namespace lotmere {

// The texts of the entry strip.
struct DrawEntry {
  std::string period;
  std::array<std::string, kRedsPerTicket> reds;
  std::string blue;
};

struct CheckedEntry {
  bool ok = false;  // every number in its range, no red twice, a period given
  PeriodNo period = 0;
  DrawNumbers numbers;       // reds ascending, whatever the order they were typed in; meaningful only when ok
  std::vector<int> counted;  // the reds that were read up to the first bad one, ascending, each once: what
                             // the strip shows then
};

// Checks and sorts an entry. Neither the shape of the period nor the date nor whether the period is stored
// already is looked at.
[[nodiscard]] CheckedEntry checkManualEntry(const DrawEntry& entry);

}  // namespace lotmere

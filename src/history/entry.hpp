// A draw typed by hand.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "game/game.hpp"

namespace lotmere {

// The texts of the entry strip.
struct DrawEntry {
  std::string period;
  std::array<std::string, kRedsPerTicket> reds;
  std::string blue;
};

struct CheckedEntry {
  std::optional<PeriodNo> period;  // nothing where the text names none (parsePeriod)
  // The reds ascending, whatever the order they were typed in; nothing where a number lies outside its range
  // or a red stands twice.
  std::optional<DrawNumbers> numbers;
  std::vector<int> counted;  // the reds that were read up to the first bad one, ascending, each once: what
                             // the strip shows then
};

// Reads and sorts an entry. Neither the date nor whether the period is stored already is looked at.
[[nodiscard]] CheckedEntry checkManualEntry(const DrawEntry& entry);

}  // namespace lotmere

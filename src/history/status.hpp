// The status line below the history: which draw comes next, and whether one is missing.
#pragma once

#include <string>

#include "base/dates.hpp"
#include "store/store.hpp"

namespace lotmere {

struct HistoryStatus {
  std::string history;      // panel 1: up to date or not
  std::string next_draw;    // panel 3: the next period, its date, and today
  std::string missing;      // a line about the first draw that is missing between two stored ones, else empty
  bool incomplete = false;  // a draw is missing at the end or between
  bool outdated = false;    // one is missing at the end, so the download is worth offering
};

// `entry_date` is the value of the date field of the entry, which the next period may take its year from. A
// draw that is due today isn't missing yet; in an empty history one always is. A date after today is a
// mistake and doesn't hide that newer draws are missing. Between two stored draws the numbers tell: they
// follow one another within a year, and a year begins with 1; how many draws a year had nobody knows.
[[nodiscard]] HistoryStatus updateHistoryStatus(Store& store, Date today, Date entry_date);

}  // namespace lotmere

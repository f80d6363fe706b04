// A list of draws in whatever form a user can save or copy: a line a draw with period, date and numbers,
// among other columns and lines.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

#include "base/dates.hpp"
#include "history/listed_draw.hpp"

namespace lotmere {

struct AnyDrawList {
  // The lines that mean a draw, in their order, each period at most once as a draw. Reds are ascending,
  // whatever their order in the list.
  std::vector<ListedRow> rows;
  bool dated = false;  // whether any of them has a date
};

// Called with the number of bytes read; true ends the reading.
using BytesRead = std::function<bool(std::size_t)>;

// Reads a text of UTF-8, its lines as readDrawLine() reads them. Where columns stand in front of the
// numbers, the numbers begin where most lines have six ascending reds and a blue. An entry isn't a draw
// where its period, date or numbers are missing or impossible, its date lies behind `today` or in another
// year than its period, or another line says something else of the same period: then neither counts. Where
// no line is a draw, period, date and numbers in this order may stand in lines of their own. Linear in the
// size of the text; ended early it is what was read so far.
[[nodiscard]] AnyDrawList readAnyDrawList(std::string_view text, Date today, const BytesRead& read = {});

}  // namespace lotmere

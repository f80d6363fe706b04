// One line of a list of draws in whatever form: what in it is the period, the date, and a row of numbers.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "base/dates.hpp"
#include "game/game.hpp"

namespace lotmere {

// A date or a period of a line: missing, readable, or one that no draw can have.
template <class Value>
struct LineField {
  bool stands = false;
  std::optional<Value> value;  // nothing where it isn't readable
};

struct DrawLine {
  LineField<PeriodNo> period;
  LineField<Date> date;
  // The first seven or more numbers of one or two digits in a row, with nothing but separators between them:
  // the numbers of the draw, columns in front of them and behind them. Empty where no seven stand together.
  std::vector<int> numbers;
  // The place of the first red where a single "+" or "|" shows the blue; nothing without one.
  std::optional<std::size_t> first_red;
  // Whether it says two of the three, or begins with a period. Other lines are headings, titles and blank
  // lines.
  bool means_draw = false;
};

// Reads one line of UTF-8. A date is YYYY-MM-DD with "-", "/", ".", or 年 月 日 between its parts, leading
// zeros or not, or eight digits; a time of day behind it is passed over. A period has seven digits, or five
// without the century. Where several numbers could be the period, the one of the date's year is. Six or
// seven numbers of two digits without anything between them (010203040506) count as so many. Full-width
// characters are read as plain ones.
[[nodiscard]] DrawLine readDrawLine(std::string_view line);

}  // namespace lotmere

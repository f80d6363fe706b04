// What a list of draws says of one draw, in whatever form the list came.
#pragma once

#include <optional>
#include <string>

#include "base/dates.hpp"
#include "game/game.hpp"

namespace lotmere {

struct ListedDraw {
  Date date;
  DrawNumbers numbers;

  friend bool operator==(const ListedDraw&, const ListedDraw&) = default;
};

// One entry of a list: a draw, or why it is none.
struct ListedEntry {
  std::optional<ListedDraw> draw;
  std::string fault;  // in a few words for the user: "红球 35 不对"; empty with a draw
  int line = 0;       // of the list, from 1
};

// An entry with the period that it names; 0 where it names none.
struct ListedRow {
  PeriodNo period = 0;
  ListedEntry entry;
};

// The line of a report about an entry that is no draw: "第 5 行（2024004 期）：红球 35 不对".
[[nodiscard]] std::string faultText(const ListedRow& row);

// How many of these a report tells; a line "……" stands for the others.
inline constexpr int kFaultsTold = 3;

}  // namespace lotmere

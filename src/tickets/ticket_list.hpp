// The tickets as the grid lists them.
#pragma once

#include <vector>

#include "game/game.hpp"
#include "store/store.hpp"

namespace lotmere {

struct TicketRow {
  int seq = 0;          // `序号`
  PeriodNo period = 0;  // `期号`
  DrawNumbers numbers;
  int red_hits = 0;   // `红球中`
  int blue_hits = 0;  // `蓝球中`

  friend bool operator==(const TicketRow&, const TicketRow&) = default;
};

// Every ticket of every period, by period, then running number, then creation. An empty field reads as 0.
[[nodiscard]] std::vector<TicketRow> loadTicketList(Store& store);

}  // namespace lotmere

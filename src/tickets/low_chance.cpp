#include "tickets/low_chance.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "base/text.hpp"
#include "game/game.hpp"

namespace lotmere {

LowChanceNumbers lowChanceNumbers(Store& store) {
  LowChanceNumbers marked;
  Query rows = store.query(R"(SELECT "号码" FROM "概率表" WHERE "概率"<0 ORDER BY "号码" ASC)");
  while (rows.next()) {
    const int code = rows.number(0);
    if (code > kBlueCodeBase)
      marked.blues.push_back(code - kBlueCodeBase);
    else
      marked.reds.push_back(code);
  }
  return marked;
}

bool LowChanceNumbers::holds(int code) const {
  return code > kBlueCodeBase ? std::ranges::binary_search(blues, code - kBlueCodeBase)
                              : std::ranges::binary_search(reds, code);
}

std::string lowChanceWarning(int code, PeriodNo period) {
  return fmt::format("根据概率统计,号码: {} 在第 {} 期出现的几率较低！", formatBall(code % kBlueCodeBase),
                     period);
}

}  // namespace lotmere

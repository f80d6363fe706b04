#include "history/listed_draw.hpp"

#include <fmt/format.h>

namespace lotmere {

std::string faultText(const ListedRow& row) {
  const std::string period = row.period == 0 ? "" : fmt::format("（{} 期）", row.period);
  return fmt::format("第 {} 行{}：{}", row.entry.line, period, row.entry.fault);
}

}  // namespace lotmere

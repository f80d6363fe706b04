#include "store/draw_table.hpp"

#include <algorithm>

#include "store/periods.hpp"

namespace lotmere {
DrawTable::DrawTable(std::vector<PastDraw> draws) : draws_(std::move(draws)) {
  std::ranges::sort(draws_, {}, &PastDraw::period);
}

std::span<const PastDraw> DrawTable::before(PeriodNo period) const {
  const auto end = std::ranges::lower_bound(draws_, period, {}, &PastDraw::period);
  return {draws_.begin(), end};
}

std::span<const PastDraw> DrawTable::before(PeriodNo period, std::size_t count) const {
  const auto draws = before(period);
  return draws.last(std::min(count, draws.size()));
}

std::span<const PastDraw> DrawTable::range(PeriodNo first, PeriodNo last) const {
  const auto begin = std::ranges::lower_bound(draws_, first, {}, &PastDraw::period);
  const auto end = std::ranges::upper_bound(draws_, last, {}, &PastDraw::period);
  return begin < end ? std::span<const PastDraw>(begin, end) : std::span<const PastDraw>{};
}

DrawTable loadDrawTable(Store& store) {
  std::vector<PastDraw> draws;
  Query rows = store.query(
      R"(SELECT "期号","红球1","红球2","红球3","红球4","红球5","红球6","蓝球","尾数和值","合数和值",
         "大数和值",
         "小数和值","奇数和值","偶数和值","和值" FROM "历史记录" ORDER BY "期号" ASC)");
  while (rows.next()) {
    PastDraw& draw = draws.emplace_back();
    draw.period = rows.number(0);
    draw.numbers = readNumbers(rows, 1);
    for (int k = 0; k < kKeptSums; ++k) draw.sums[k] = rows.number(2 + kRedsPerTicket + k);
  }
  return DrawTable(std::move(draws));
}

}  // namespace lotmere

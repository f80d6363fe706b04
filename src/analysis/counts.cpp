#include "analysis/counts.hpp"

#include <fmt/format.h>

#include "base/text.hpp"
#include "game/game.hpp"
#include "store/periods.hpp"

namespace lotmere {
namespace {

std::vector<CountRow> emptyRows(BallColour balls) {
  std::vector<CountRow> rows;
  for (int n = 1; n <= ballCount(balls); ++n)
    rows.push_back({n, 0, fmt::format("{}:{}", ballName(balls), formatBall(n))});
  return rows;
}

std::vector<CountRow> countDraws(Store& store, Desk& desk, BallColour balls, PeriodNo from, PeriodNo to) {
  std::vector<CountRow> counts = emptyRows(balls);
  WalkProgress progress(
      desk, store.value(R"(SELECT count(*) FROM "历史记录" WHERE "期号">=? AND "期号"<=?)", from, to));
  Query rows = store.query(
      R"(SELECT "红球1","红球2","红球3","红球4","红球5","红球6","蓝球" FROM "历史记录"
         WHERE "期号">=? AND "期号"<=?)");
  rows.bind(from, to);
  while (rows.next()) {
    forEachBall(balls, readNumbers(rows, 0), [&](int number) { ++counts[number - 1].count; });
    progress.step();
  }
  return counts;
}

}  // namespace

std::vector<CountRow> countRedDraws(Store& store, Desk& desk, PeriodNo from, PeriodNo to) {
  return countDraws(store, desk, BallColour::red, from, to);
}

std::vector<CountRow> countBlueDraws(Store& store, Desk& desk, PeriodNo from, PeriodNo to) {
  return countDraws(store, desk, BallColour::blue, from, to);
}

ChartPeriods loadChartPeriods(Store& store) {
  constexpr std::size_t tenth_newest = 9;
  constexpr std::size_t enough = 11;
  ChartPeriods list;
  Query rows = store.query(R"(SELECT "期号" FROM "历史记录" ORDER BY "期号" DESC)");
  while (rows.next()) list.periods.push_back(rows.number(0));
  if (list.periods.size() >= enough) list.from = tenth_newest;
  if (!list.periods.empty()) list.to = 0;
  return list;
}

}  // namespace lotmere

#include "analysis/distribution.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <string>
#include <vector>

#include "analysis/draw_range.hpp"
#include "base/text.hpp"
#include "game/game.hpp"
#include "store/periods.hpp"

namespace lotmere {
namespace {

std::string insertSql() {
  const std::vector<char> marks(kDistributionColumns, '?');
  return fmt::format(R"(INSERT INTO "号码分布" VALUES ({}))", fmt::join(marks, ","));
}

void addRow(SQLite::Statement& insert, PeriodNo period, const DrawNumbers& numbers) {
  insert.clearBindings();
  insert.bind(1, period);
  // Parameters count from 1, columns from 0.
  forEachBall(BallColour::red, numbers, [&](int red) { insert.bind(1 + red, formatBall(red)); });
  forEachBall(BallColour::blue, numbers,
              [&](int blue) { insert.bind(1 + kRedCount + blue, formatBall(blue)); });
  insert.exec();
  insert.reset();
}

}  // namespace

std::int64_t buildHaoMaFenBu(Store& store, Desk& desk, PeriodNo to, DistributionSpan span) {
  const PeriodNo oldest = periodsUpTo(store, to, static_cast<int>(span));
  StoreChange change(store);
  store.query(R"(DELETE FROM "号码分布")").run();
  const auto count =
      store.value(R"(SELECT count(*) FROM "历史记录" WHERE "期号">=? AND "期号"<=?)", oldest, to);
  {
    WalkProgress progress(desk, count);
    Query rows = store.query(
        R"(SELECT "期号","红球1","红球2","红球3","红球4","红球5","红球6","蓝球" FROM "历史记录"
           WHERE "期号">=? AND "期号"<=? ORDER BY "期号" ASC)");
    rows.bind(oldest, to);
    Query insert = store.query(insertSql());
    while (rows.next()) {
      addRow(insert.statement(), rows.number(0), readNumbers(rows, 1));
      progress.step();
    }
  }
  change.commit();
  return count;
}

std::vector<DistributionRow> loadDistribution(Store& store) {
  std::vector<DistributionRow> table;
  table.reserve(static_cast<std::size_t>(store.value(R"(SELECT count(*) FROM "号码分布")")));
  Query rows = store.query(R"(SELECT * FROM "号码分布" ORDER BY "期号" ASC)");
  while (rows.next()) {
    DistributionRow& row = table.emplace_back();
    row.period = rows.number(0);
    for (int i = 0; i < kCodeCount; ++i) row.drawn[i] = !rows.statement().isColumnNull(1 + i);
  }
  return table;
}

}  // namespace lotmere

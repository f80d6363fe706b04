#include "pipeline/random_store.hpp"

#include <algorithm>
#include <numeric>

#include "catalogue/attributes.hpp"
#include "history/draw_stats.hpp"
#include "store/periods.hpp"
#include "support/desk_script.hpp"
#include "support/random_numbers.hpp"
#include "support/test_store.hpp"

namespace lotmere::test {

void putHistory(Store& store, std::mt19937& random, int count) {
  StoreChange change(store);
  store.query(R"(DELETE FROM "历史记录")").run();
  // Gaps and a change of the year stand between the draws, and with an odd count a gap in front of the
  // period.
  const PeriodNo newest = kPeriod - 1 - 4 * (count % 2);
  for (int i = 0; i < count; ++i)
    putDraw(store, i < 3 ? newest - 2 * i : 2025150 - 3 * i, "2026-01-01", randomNumbers(random));
  ScriptedDesk desk;
  computeDrawStatistics(store, desk, 2003001, kPeriod);
  for (const char* sum : {"尾数和值", "合数和值", "大数和值", "小数和值", "奇数和值", "偶数和值", "和值"})
    setRows(store, "历史记录", sum, "\"期号\"<" + std::to_string(newest),
            [&](int old) { return old + pick(random, -1, 1); });
  putDraw(store, kPeriod, "2026-05-01", randomNumbers(random));
  change.commit();
}

void putTickets(Store& store, std::mt19937& random, int count) {
  std::vector<Reds> edges = {{28, 29, 30, 31, 32, 33}, {1, 2, 3, 10, 11, 20},   {1, 2, 4, 8, 16, 32},
                             {7, 7, 7, 7, 7, 9},       {8, 9, 18, 19, 28, 29},  {8, 9, 17, 18, 26, 27},
                             {1, 5, 9, 13, 17, 33},    {22, 23, 28, 30, 31, 32}};
  for (const StoredDraw& draw : drawsBefore(store, kPeriod, 12)) edges.push_back(draw.numbers.reds);
  std::vector<Row> rows;
  std::vector<int> seq(static_cast<std::size_t>(count));
  std::iota(seq.begin(), seq.end(), 1);
  if (pick(random, 0, 3) > 0) std::shuffle(seq.begin(), seq.end(), random);
  int id = 0;
  for (int i = 0; i < count; ++i) {
    const DrawNumbers numbers = randomNumbers(random);
    Row row{id += pick(random, 1, 2), seq[i], kPeriod, numbers.reds, numbers.blue};
    if (i % 11 == 3) std::shuffle(row.reds.begin(), row.reds.end(), random);
    if (i % 13 == 5) row.reds[pick(random, 1, 5)] = row.reds[0];
    if (i % 4 == 1) row.reds = edges[i / 4 % edges.size()];
    // The same six with several blues, as an expansion has them.
    if (i % 3 != 0 && rows.back().period == kPeriod) row.reds = rows.back().reds;
    for (int* mark : {&row.mark, &row.shrink, &row.pick, &row.score}) *mark = pick(random, 0, 5);
    rows.push_back(row);
    if (i % 17 != 8) continue;
    row.id = ++id;
    row.period = kPeriod + (i % 2 ? 1 : -1);
    rows.push_back(row);
  }
  writeRows(store, rows);
}

void putConditions(Store& store, std::mt19937& random, int used, int allowed) {
  StoreChange change(store);
  const auto chance = [&](int percent) { return pick(random, 1, 100) <= percent; };
  setRows(store, "过滤条件使用情况", "使用情况", "\"条件\"<>300", [&](int) {
    return chance(used) ? 1 : chance(20) ? 2 : 0;
  });
  // The search for fewer tickets (3902, 3903) and the tolerance over the whole set (3904) stay off: the model
  // of a run knows neither.
  setRows(store, "过滤条件", "Value", "\"ID\">=1000 AND \"ID\" NOT IN (3902,3903,3904)",
          [&](int) { return chance(allowed) ? 1 : 0; });
  for (const std::string& column : attributeColumns(AttributeTable::first)) {
    const bool place = column.starts_with("第");
    if (place || column.starts_with("自定义组") || column.starts_with("区间"))
      setRows(store, "号码特性", column, "1", [&](int) { return chance(place ? 75 : 35) ? 1 : 0; });
  }
  setRows(store, "过滤条件", "Value", "\"ID\"=3900", [&](int) { return std::min(7, pick(random, 3, 9)); });
  setRows(store, "过滤条件", "Value", "\"ID\"=3901", [&](int) { return pick(random, 0, 4); });
  store.query(R"(UPDATE "历史数据过滤" SET "使用状态"=?,"最小值"=?,"最大值"=?,"匹配值"=?)")
      .bind(pick(random, 0, 2), pick(random, 0, 3) ? 2025117 + 3 * pick(random, 0, 8) : kPeriod,
            kPeriod + pick(random, -3, 5), pick(random, 3, 7))
      .run();
  change.commit();
}

}  // namespace lotmere::test

#include "pipeline/run_scene.hpp"

#include <algorithm>
#include <numeric>

#include "core/attributes.hpp"

namespace lotmere::test {
namespace {

int pick(std::mt19937& random, int first, int last) {
  return std::uniform_int_distribution<int>(first, last)(random);
}

// Sets a whole-number column of a table, row by row.
template <class Value>
void set_Rows(Store& store, const std::string& table, const std::string& column, const std::string& where,
              Value value) {
  std::vector<int> rows;
  Query keys = store.query("SELECT rowid FROM \"" + table + "\" WHERE " + where);
  while (keys.next()) rows.push_back(keys.number(0));
  Query update = store.query("UPDATE \"" + table + "\" SET \"" + column + "\"=? WHERE rowid=?");
  for (const int row : rows) {
    update.bind(value(), row);
    update.run();
  }
}

void put_Sums(Store& store, const PastDraw& draw) {
  const auto& s = draw.sums;
  store
      .query(R"(UPDATE "历史记录" SET "尾数和值"=?,"合数和值"=?,"大数和值"=?,"小数和值"=?,"奇数和值"=?,
                "偶数和值"=?,"和值"=? WHERE "期号"=?)")
      .bind(s[0], s[1], s[2], s[3], s[4], s[5], s[6], draw.period)
      .run();
}

void set_HistoryMatch(Store& store, int used, PeriodNo first, PeriodNo last, int match) {
  store.query(R"(UPDATE "历史数据过滤" SET "使用状态"=?,"最小值"=?,"最大值"=?,"匹配值"=?)")
      .bind(used, first, last, match)
      .run();
}

}  // namespace

DrawNumbers random_Numbers(std::mt19937& random) {
  std::array<int, kRedCount> numbers{};
  std::iota(numbers.begin(), numbers.end(), 1);
  std::shuffle(numbers.begin(), numbers.end(), random);
  DrawNumbers draw;
  std::copy_n(numbers.begin(), kRedsPerTicket, draw.reds.begin());
  std::sort(draw.reds.begin(), draw.reds.end());
  draw.blue = pick(random, 1, kBlueCount);
  return draw;
}

std::vector<PastDraw> put_History(Store& store, std::mt19937& random, int count) {
  StoreChange change(store);
  store.query(R"(DELETE FROM "历史记录")").run();
  std::vector<PastDraw> before;
  for (int i = 0; i < count; ++i) {
    // Gaps and a change of the year stand between the draws.
    PastDraw draw{i < 3 ? kPeriod - 1 - 2 * i : 2025150 - 3 * i, random_Numbers(random), {}};
    draw.sums = true_Sums(draw.numbers.reds);
    put_Draw(store, draw.period, "2026-01-01", draw.numbers);
    if (i > 0) {
      for (int& sum : draw.sums) sum += pick(random, -1, 1);
      put_Sums(store, draw);
    }
    before.push_back(draw);
  }
  put_Draw(store, kPeriod, "2026-05-01", random_Numbers(random));
  put_Draw(store, kPeriod + 3, "2026-05-08", random_Numbers(random));
  change.commit();
  return before;
}

void put_Tickets(Store& store, std::mt19937& random, int count) {
  std::vector<Row> rows;
  std::vector<int> seq(static_cast<std::size_t>(count));
  std::iota(seq.begin(), seq.end(), 1);
  if (pick(random, 0, 1) == 0) std::shuffle(seq.begin(), seq.end(), random);
  int id = 0;
  for (int i = 0; i < count; ++i) {
    const DrawNumbers numbers = random_Numbers(random);
    Row row{id += pick(random, 1, 2), seq[static_cast<std::size_t>(i)], kPeriod, numbers.reds, numbers.blue};
    if (i % 11 == 3) std::shuffle(row.reds.begin(), row.reds.end(), random);
    if (i % 13 == 5) row.reds[pick(random, 1, 5)] = row.reds[0];
    // The same six with several blues, as an expansion has them.
    if (i % 3 != 0 && !rows.empty() && rows.back().period == kPeriod) row.reds = rows.back().reds;
    row.mark = pick(random, 0, 1);
    row.shrink = pick(random, 0, 5);
    row.pick = pick(random, 0, 1);
    row.score = pick(random, 0, 99);
    rows.push_back(row);
    if (i % 17 == 8) {
      row.id = ++id;
      row.period = kPeriod + (i % 2 ? 1 : -1);
      rows.push_back(row);
    }
  }
  write_Rows(store, rows);
}

void put_Conditions(Store& store, std::mt19937& random, int used, int allowed) {
  StoreChange change(store);
  const auto chance = [&](int percent) { return pick(random, 1, 100) <= percent; };
  set_Rows(store, "过滤条件使用情况", "使用情况", "\"条件\"<>300", [&] {
    return chance(used) ? 1 : chance(20) ? 2 : 0;
  });
  set_Rows(store, "过滤条件", "Value", "\"ID\">=1000", [&] { return chance(allowed) ? 1 : 0; });
  for (const std::string& column : attribute_Columns(AttributeTable::first)) {
    const bool place = column.starts_with("第");
    if (!place && !column.starts_with("自定义组") && !column.starts_with("区间")) continue;
    set_Rows(store, "号码特性", column, "1", [&] { return chance(place ? 75 : 35) ? 1 : 0; });
  }
  const auto set_Setting = [&](int id, int value) {
    store.query(R"(UPDATE "过滤条件" SET "Value"=? WHERE "ID"=?)").bind(value, id).run();
  };
  set_Setting(3900, pick(random, 3, 7));
  set_Setting(3901, pick(random, 0, 4));
  set_HistoryMatch(store, pick(random, 0, 2), pick(random, 0, 3) ? 2025001 : kPeriod,
                   kPeriod + pick(random, -3, 5), pick(random, 3, 6));
  change.commit();
}

void open_Conditions(Store& store) {
  StoreChange change(store);
  store.query(R"(UPDATE "过滤条件使用情况" SET "使用情况"=0)").run();
  store.query(R"(UPDATE "过滤条件" SET "Value"=1 WHERE "ID">=1000)").run();
  store.query(R"(UPDATE "过滤条件" SET "Value"=7 WHERE "ID"=3900)").run();
  store.query(R"(UPDATE "过滤条件" SET "Value"=0 WHERE "ID"=3901)").run();
  set_HistoryMatch(store, 0, 2003001, 2003001, 6);
  change.commit();
}

}  // namespace lotmere::test

#include "floors.hpp"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "conditions/condition_store.hpp"
#include "pipeline/metric.hpp"
#include "reduction/cover.hpp"
#include "store/periods.hpp"

namespace lotmere::bench {
namespace {

void walkPass(Store& store, const ValueArray& cells, const Metric& metric, PeriodNo period) {
  StoreChange change(store);
  {
    Query rows = store.query(
        R"(SELECT "ID","红球1","红球2","红球3","红球4","红球5","红球6" FROM "日志表" WHERE "期号"=? AND
           "过滤标记">=0
           ORDER BY "ID")");
    rows.bind(period);
    int kept = 0;
    while (rows.next()) {
      const int value = metricValue(metric, readReds(rows, 1));
      const std::int64_t id = rows.whole(0);
      if (value >= 0 && value < static_cast<int>(cells.size()) && cells[static_cast<std::size_t>(value)] >= 1)
        store.query(R"(UPDATE "日志表" SET "过滤标记"=1,"序号"=? WHERE "ID"=?)").bind(++kept, id).run();
      else
        store.query(R"(UPDATE "日志表" SET "过滤标记"=-1 WHERE "ID"=?)").bind(id).run();
    }
  }
  store.query(R"(DELETE FROM "日志表" WHERE "期号"=? AND "过滤标记"<0)").bind(period).run();
  change.commit();
}

}  // namespace

void insertPlainly(Store& store, const TicketSet& tickets) {
  StoreChange change(store);
  Query insert = store.query(
      R"(INSERT INTO "日志表" ("ID","序号","期号","红球1","红球2","红球3","红球4","红球5",
         "红球6","蓝球")
         VALUES (?,?,?,?,?,?,?,?,?,?))");
  for (std::size_t row = 0; row < tickets.size(); ++row) {
    const auto& [r1, r2, r3, r4, r5, r6] = redsOf(tickets.balls[row]);
    insert.bind(static_cast<std::int64_t>(row + 1), tickets.seq[row], tickets.period, r1, r2, r3, r4, r5, r6,
                blueOf(tickets.balls[row]));
    insert.run();
  }
  change.commit();
}

std::vector<PlainRow> readPlainly(Store& store, PeriodNo period) {
  Query rows = store.query(
      R"(SELECT "ID","序号","过滤标记","缩水标记","临时数据","红球1","红球2","红球3",
         "红球4","红球5","红球6",
         "蓝球"
         FROM "日志表" WHERE "期号"=? ORDER BY "ID")");
  rows.bind(period);
  std::vector<PlainRow> table;
  std::int64_t numbers = 0;
  while (rows.next()) {
    table.push_back({rows.whole(0), rows.whole(1), rows.whole(2), rows.whole(3), rows.whole(4)});
    for (int i = 5; i < 12; ++i) numbers += rows.number(i);
  }
  benchmark::DoNotOptimize(numbers);
  return table;
}

void writePlainly(Store& store, const std::vector<PlainRow>& before, const std::vector<PlainRow>& after) {
  StoreChange change(store);
  Query remove = store.query(R"(DELETE FROM "日志表" WHERE "ID"=?)");
  Query update = store.query(R"(UPDATE "日志表" SET "序号"=?,"过滤标记"=?,"缩水标记"=?,"临时数据"=?
                     WHERE "ID"=?)");
  auto left = after.begin();
  for (const PlainRow& row : before) {
    if (left == after.end() || left->id != row.id) {
      remove.bind(row.id);
      remove.run();
      continue;
    }
    update.bind(left->seq, left->mark, left->shrink, left->score, left->id);
    update.run();
    ++left;
  }
  change.commit();
}

int walkPasses(Store& store, PeriodNo period) {
  store.query(R"(UPDATE "日志表" SET "过滤标记"=0,"缩水标记"=0,"精选标记"=0 WHERE "期号"=?)")
      .bind(period)
      .run();
  int passes = 0;
  const ConditionSet set = loadConditionSet(store);
  const DrawTable draws = loadDrawTable(store);
  for (const Condition& condition : allConditions()) {
    if (!set.isUsed(condition.usage)) continue;
    const auto metric = prepareMetric(set, condition, draws.before(period));
    if (!metric) continue;
    walkPass(store, set.cellRange(condition.first, condition.last), *metric, period);
    ++passes;
  }
  return passes;
}

std::vector<std::uint32_t> shrinkLiterally(const TicketSet& tickets, int shared) {
  std::vector<std::uint32_t> centres;
  std::vector<bool> gone(tickets.size());
  for (std::uint32_t centre = 0; centre < tickets.size(); ++centre) {
    if (gone[centre]) continue;
    centres.push_back(centre);
    // The mark table of the centre's seven numbers: an overlap costs seven reads.
    std::array<std::uint8_t, 256> marks{};
    for (const int red : redsOf(tickets.balls[centre])) marks[red] = 1;
    marks[kBlueCodeBase + blueOf(tickets.balls[centre])] = 1;
    for (std::size_t row = centre + 1; row < tickets.size(); ++row) {
      if (gone[row]) continue;
      int sum = marks[kBlueCodeBase + blueOf(tickets.balls[row])];
      for (const int red : redsOf(tickets.balls[row])) sum += marks[red];
      if (sum >= shared) gone[row] = true;
    }
  }
  return centres;
}

void countTemperatures(Store& store, int rows) {
  std::vector<PeriodNo> periods;
  {
    Query query = store.query(R"(SELECT "期号" FROM "历史记录" ORDER BY "期号" DESC LIMIT ?)");
    query.bind(rows);
    while (query.next()) periods.push_back(query.number(0));
  }
  Query count = store.query(
      R"(SELECT count(*) FROM "历史记录" WHERE "期号"<? AND "期号">=? AND ("红球1"=?3 OR "红球2"=?3 OR
         "红球3"=?3 OR
         "红球4"=?3 OR "红球5"=?3 OR "红球6"=?3))");
  std::int64_t heat = 0;
  for (const PeriodNo period : periods) {
    for (const int window : {5, 10}) {
      const PeriodNo from = periodsBack(store, period, window);
      for (int n = 1; n <= kRedCount; ++n) {
        count.bind(period, from, n);
        while (count.next()) heat += count.whole(0);
        count.statement().reset();
      }
    }
  }
  benchmark::DoNotOptimize(heat);
}

}  // namespace lotmere::bench

#include "history/status.hpp"

#include <fmt/format.h>

#include "store/periods.hpp"

namespace lotmere {
namespace {

// The first period behind a draw that the next stored one leaves out.
PeriodNo firstBetween(PeriodNo before, PeriodNo next) {
  const bool same_year = next / 1000 == before / 1000;
  const PeriodNo expected = same_year ? before + 1 : (before / 1000 + 1) * 1000 + 1;
  return expected < next ? expected : 0;
}

// 0 where no draw is missing between the stored ones.
PeriodNo firstMissing(Store& store) {
  Query rows = store.query(R"(SELECT "期号" FROM "历史记录" ORDER BY "期号" ASC)");
  PeriodNo before = 0;
  while (rows.next()) {
    const PeriodNo period = rows.number(0);
    if (!isPeriod(period)) continue;
    if (const PeriodNo missing = before == 0 ? 0 : firstBetween(before, period); missing != 0) return missing;
    before = period;
  }
  return 0;
}

// The newest date that a draw can have; nothing where no row has one.
std::optional<Date> newestPast(Store& store, Date today) {
  Query rows = store.query(R"(SELECT max("开奖日期") FROM "历史记录" WHERE "开奖日期"<=?)");
  rows.bind(formatDate(today));
  return rows.next() ? parseDate(rows.text(0)) : std::nullopt;
}

}  // namespace

HistoryStatus updateHistoryStatus(Store& store, Date today, Date entry_date) {
  const auto newest = newestPast(store, today);
  const PeriodNo missing = firstMissing(store);
  HistoryStatus status;
  status.outdated = !newest || nextDrawDate(*newest) < today;
  status.incomplete = status.outdated || missing != 0;
  if (missing != 0) status.missing = fmt::format("历史记录中间缺少 {} 期", missing);
  status.history = status.incomplete ? " ◆◇◆→  历史记录： 不完整，请下载或手工添加开奖记录  ←◆◇◆  "
                                     : "  ☆☆☆  历史记录： 已更新！  ☆☆☆  ";
  status.next_draw =
      fmt::format("     ※※※  {} 期 于 {} 开奖     今天是： {}  ※※※     ", nextPeriod(store, entry_date),
                  formatDate(upcomingDrawDate(store, today)), formatDate(today));
  return status;
}

}  // namespace lotmere

#include "store/periods.hpp"

#include <fmt/format.h>

#include "base/text.hpp"
#include "game/game.hpp"

namespace lotmere {
namespace {

// The last row of a query that names periods.
PeriodNo lastPeriod(Query&& rows) {
  PeriodNo period = kDefaultPeriod;
  while (rows.next()) period = rows.number(0);
  return period;
}

constexpr const char* kNumbers = R"("期号","红球1","红球2","红球3","红球4","红球5","红球6","蓝球")";

StoredDraw readDraw(const Query& row) {
  StoredDraw draw;
  draw.period = row.number(0);
  draw.numbers = readNumbers(row, 1);
  return draw;
}

}  // namespace

std::optional<PeriodNo> readPeriod(Desk& desk, std::string_view text) {
  const auto period = parsePeriod(text);
  if (!period)
    desk.tell(fmt::format("期号{}不对，应为年份加三位期次的7位数字，如 2007001。", quoteTyped(text)),
              Tone::warning);
  return period;
}

Reds readReds(const Query& row, int first) {
  Reds reds{};
  for (int i = 0; i < kRedsPerTicket; ++i) reds[i] = row.numberUpTo(first + i, kRedCount);
  return reds;
}

DrawNumbers readNumbers(const Query& row, int first) {
  return {readReds(row, first), row.numberUpTo(first + kRedsPerTicket, kBlueCount)};
}

PeriodNo latestPeriod(Store& store) {
  return lastPeriod(store.query(R"(SELECT "期号" FROM "历史记录" ORDER BY "期号" DESC LIMIT 1)"));
}

PeriodNo firstPeriod(Store& store) {
  return lastPeriod(store.query(R"(SELECT "期号" FROM "历史记录" ORDER BY "期号" ASC LIMIT 1)"));
}

PeriodNo periodsBack(Store& store, PeriodNo period, int n) {
  Query rows = store.query(R"(SELECT "期号" FROM "历史记录" WHERE "期号"<? ORDER BY "期号" DESC LIMIT ?)");
  rows.bind(period, n);
  PeriodNo last = kDefaultPeriod;
  while (rows.next()) last = rows.number(0);
  return last;
}

PeriodNo periodsUpTo(Store& store, PeriodNo period, int n) { return periodsBack(store, period + 1, n); }

Date latestDrawDate(Store& store) {
  Query rows = store.query(R"(SELECT max("开奖日期") FROM "历史记录")");
  if (!rows.next()) return kNoDrawDate;
  return parseDate(rows.text(0)).value_or(kNoDrawDate);
}

Date upcomingDrawDate(Store& store, Date today) {
  const Date latest = latestDrawDate(store);
  return nextDrawDate(latest == kNoDrawDate ? today - std::chrono::days{1} : latest);
}

PeriodNo nextPeriod(Store& store, Date entry_date) {
  const PeriodNo last = latestPeriod(store);
  if (yearOf(latestDrawDate(store)) > last / 1000) return yearOf(entry_date) * 1000 + 1;
  return last + 1;
}

std::vector<StoredDraw> drawsBefore(Store& store, PeriodNo period, int count) {
  Query rows = store.query(std::string("SELECT ") + kNumbers +
                           R"( FROM "历史记录" WHERE "期号"<? ORDER BY "期号" DESC LIMIT ?)");
  rows.bind(period, count);
  std::vector<StoredDraw> draws;
  while (rows.next()) draws.push_back(readDraw(rows));
  return draws;
}

std::vector<PeriodNo> newestPeriods(Store& store, int count) {
  Query rows = store.query(R"(SELECT "期号" FROM "历史记录" ORDER BY "期号" DESC LIMIT ?)");
  rows.bind(count);
  std::vector<PeriodNo> periods;
  while (rows.next()) periods.push_back(rows.number(0));
  return periods;
}

std::optional<StoredDraw> findDraw(Store& store, PeriodNo period) {
  Query rows = store.query(std::string("SELECT ") + kNumbers + R"( FROM "历史记录" WHERE "期号"=?)");
  rows.bind(period);
  if (!rows.next()) return std::nullopt;
  return readDraw(rows);
}

std::int64_t countDraws(Store& store, const PeriodRange& range) {
  return store.value(R"(SELECT count(*) FROM "历史记录" WHERE "期号">=? AND "期号"<=?)", range.from,
                     range.to);
}

}  // namespace lotmere

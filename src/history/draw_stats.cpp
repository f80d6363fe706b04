#include "history/draw_stats.hpp"

#include <algorithm>
#include <optional>
#include <span>
#include <vector>

#include "history/draw_writer.hpp"
#include "store/interval_mark.hpp"
#include "store/periods.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kLongWindow = 10;
constexpr std::size_t kShortWindow = 5;
constexpr std::size_t kThreeDraws = 3;

// A row takes some hundredths of a millisecond.
constexpr std::size_t kRowsBetweenLooks = 64;
// Shorter jobs are over before a bar could be seen.
constexpr std::size_t kRowsWorthABar = 200;

constexpr std::string_view kHeatColumns[] = {"温度5", "温度10"};
constexpr std::string_view kIntervalColumns[] = {"区间1", "区间2", "区间3", "区间4"};
constexpr std::string_view kRecountText = "区间重新划分之后，各区间的开出号码个数需要重新计算。。。";

// Draws in ascending order. Those from place `first` on lie in the range asked for; before them stand as many
// as a figure looks back.
struct DrawSeries {
  std::vector<StoredDraw> draws;
  std::size_t first = 0;

  [[nodiscard]] std::span<const StoredDraw> before(std::size_t place, std::size_t count) const {
    count = std::min(count, place);
    return std::span(draws).subspan(place - count, count);
  }
};

DrawSeries readSeries(Store& store, PeriodNo from, PeriodNo to) {
  DrawSeries series;
  Query rows = store.query(
      R"(SELECT "期号","红球1","红球2","红球3","红球4","红球5","红球6" FROM "历史记录"
         WHERE "期号">=? AND "期号"<=? ORDER BY "期号" ASC)");
  rows.bind(std::min(from, periodsBack(store, from, kLongWindow)), to);
  while (rows.next()) {
    StoredDraw& draw = series.draws.emplace_back();
    draw.period = rows.number(0);
    draw.numbers.reds = readReds(rows, 1);
    if (draw.period < from) ++series.first;
  }
  return series;
}

DrawView viewDraw(const DrawSeries& series, std::size_t place) {
  DrawView view;
  view.reds = series.draws[place].numbers.reds;
  if (place > 0) view.previous = series.draws[place - 1].numbers.reds;
  const auto three = series.before(place, kThreeDraws);
  if (three.size() == kThreeDraws) view.repeats_of_three = sumOf(markDrawn(three), view.reds);
  view.heat5 = sumOf(countHeat(series.before(place, kShortWindow)), view.reds);
  view.heat10 = sumOf(countHeat(series.before(place, kLongWindow)), view.reds);
  return view;
}

// Writes the draws from place `first` on, with a bar over a long series.
void writeDraws(Desk& desk, DrawWriter& writer, const DrawSeries& series, std::size_t first) {
  const std::size_t count = series.draws.size() - first;
  std::optional<CourseLeg> job;
  if (count >= kRowsWorthABar)
    job.emplace(desk.course(), static_cast<std::int64_t>(count), Course::Stop::impossible);
  for (std::size_t done = 0; done < count; ++done) {
    const std::size_t place = first + done;
    writer.write(series.draws[place].period, viewDraw(series, place));
    if (job && done % kRowsBetweenLooks == 0) job->advance(static_cast<std::int64_t>(done));
  }
  if (job) job->advance(static_cast<std::int64_t>(count));
}

// Some columns of every draw of the range.
void rewriteColumns(Store& store, Desk& desk, PeriodNo from, PeriodNo to,
                    std::span<const std::string_view> names) {
  const DrawSeries series = readSeries(store, from, to);
  if (series.first == series.draws.size()) return;
  StoreChange change(store);
  DrawWriter writer(store, names);
  writeDraws(desk, writer, series, series.first);
  change.commit();
}

void recountAll(Store& store, Desk& desk) {
  StoreChange change(store);
  std::vector<std::string_view> columns(std::begin(kIntervalColumns), std::end(kIntervalColumns));
  if (newFiguresDue(store))
    for (const DrawColumn& column : drawColumns())
      if (column.since > 1 && column.hasRule()) columns.emplace_back(column.name);
  rewriteColumns(store, desk, firstPeriod(store), latestPeriod(store), columns);
  clearIntervalMark(store);
  change.commit();
}

}  // namespace

void computeDrawStatistics(Store& store, Desk& desk, PeriodNo from, PeriodNo to) {
  const DrawSeries series = readSeries(store, from, to);
  std::size_t first = series.first;
  const std::size_t count = series.draws.size() - first;
  if (count == 0) return;
  StoreChange change(store);
  if (first == 0 && count > 1) {
    // With nothing before it the earliest draw only serves as the previous draw of the second.
    DrawWriter(store, kHeatColumns).write(series.draws.front().period, viewDraw(series, 0));
    first = 1;
  }
  DrawWriter writer(store);
  writeDraws(desk, writer, series, first);
  change.commit();
}

void updateHeat(Store& store, Desk& desk, PeriodNo from, PeriodNo to) {
  rewriteColumns(store, desk, from, to, kHeatColumns);
}

void recountIntervals(Store& store, Desk& desk, PeriodNo from, PeriodNo to) {
  desk.tell(kRecountText);
  rewriteColumns(store, desk, from, to, kIntervalColumns);
}

bool recountDivided(Store& store, Desk& desk) {
  if (!intervalCountsDue(store)) return false;
  desk.tell(kRecountText);
  recountAll(store, desk);
  return true;
}

bool recountDue(Store& store, Desk& desk) {
  if (!intervalCountsDue(store)) return false;
  const StatusScope status(desk);
  desk.showStatus("正在重新计算各区间的开出号码个数．．．");
  recountAll(store, desk);
  return true;
}

int heatOf(Store& store, PeriodNo period, int window) {
  const DrawSeries series = readSeries(store, period, period);
  if (series.first == series.draws.size()) return 0;
  const auto before = drawsBefore(store, period, window);
  return sumOf(countHeat(before), series.draws.back().numbers.reds);
}

int repeatsOfThree(Store& store, PeriodNo period) {
  const DrawSeries series = readSeries(store, period, period);
  if (series.draws.size() <= kThreeDraws) return 0;
  const std::size_t newest = series.draws.size() - 1;
  return sumOf(markDrawn(series.before(newest, kThreeDraws)), series.draws[newest].numbers.reds);
}

}  // namespace lotmere

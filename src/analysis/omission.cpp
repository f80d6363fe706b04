#include "analysis/omission.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "store/periods.hpp"
#include "store/row_function.hpp"

namespace lotmere {
namespace {

// The gaps of one number while the draws go by.
class GapTally {
 public:
  void addHit(int place) {
    gap_ = place - last_place_ - 1;
    largest_ = std::max(largest_, gap_);
    sum_ += gap_;
    last_place_ = place;
    ++hits_;
  }

  [[nodiscard]] OmissionFigures figures(int draws) const {
    OmissionFigures figures{hits_, draws - 1 - last_place_, std::nullopt};
    if (hits_ > 1) figures.closed = ClosedGaps{largest_, divideHalfToEven(sum_, hits_ - 1), gap_};
    return figures;
  }

 private:
  int hits_ = 0;
  int last_place_ = -1;
  int gap_ = 0;
  int largest_ = 0;
  int sum_ = 0;
};

// Marking every number in turn leaves the largest red in the mark; blues are found without marks.
int lastMark(BallColour balls, const DrawNumbers& numbers) {
  int mark = 0;
  if (balls == BallColour::red) forEachBall(balls, numbers, [&](int red) { mark = std::max(mark, red); });
  return mark;
}

// A draw, by its place in the history, and what its work columns get.
struct WorkRow {
  PeriodNo period = 0;
  DrawNumbers numbers;
  int mark = 0;          // `遗漏数据`
  bool changes = false;  // the row holds another place or mark
};

std::vector<WorkRow> readRows(Store& store, WalkProgress& progress, BallColour balls, PeriodNo period) {
  Query row = store.query(
      R"(SELECT "期号","红球1","红球2","红球3","红球4","红球5","红球6","蓝球",
         ifnull("总期号",-1),ifnull("遗漏数据",-1) FROM "历史记录" WHERE "期号"<=? ORDER BY "期号" ASC)");
  row.bind(period);
  std::vector<WorkRow> rows;
  for (int place = 0; row.next(); ++place) {
    WorkRow& draw = rows.emplace_back(WorkRow{row.number(0), readNumbers(row, 1)});
    draw.mark = lastMark(balls, draw.numbers);
    draw.changes = row.number(8) != place || row.number(9) != draw.mark;
    progress.step();
  }
  return rows;
}

// What the engine asks about a draw.
enum Question : int { changes, new_place, new_mark };

// Most rows hold already what they get: the numbering changes behind a hole only, the marks with the colour.
// A row has 83 columns, all of them read and built anew by a write, so those that change are written by one
// statement in one scan: a statement each costs as much again.
void writeWorkColumns(Store& store, WalkProgress& progress, const std::vector<WorkRow>& rows) {
  if (std::none_of(rows.begin(), rows.end(), [](const WorkRow& row) { return row.changes; })) return;
  auto row = rows.begin();
  RowFunction draw(store, "lotmere_draw", 2, [&](std::span<const std::int32_t> values) {
    const PeriodNo period = values[1];
    const auto found = [&] { return row != rows.end() && row->period == period; };
    if (!found()) row = std::ranges::lower_bound(rows, period, {}, &WorkRow::period);
    if (!found()) return 0;
    switch (static_cast<Question>(values[0])) {
      case changes:
        progress.step();
        return row->changes ? 1 : 0;
      case new_place:
        return static_cast<int>(row - rows.begin());
      case new_mark:
        return row->mark;
    }
    return 0;
  });
  draw.run(R"(UPDATE "历史记录" SET "总期号"=lotmere_draw(1,"期号"),"遗漏数据"=lotmere_draw(2,"期号")
              WHERE "期号"<=? AND lotmere_draw(0,"期号"))",
           rows.back().period);
}

Omission tallyGaps(BallColour balls, PeriodNo period, const std::vector<WorkRow>& rows) {
  std::vector<GapTally> tallies(ballCount(balls));
  int place = 0;
  for (const WorkRow& row : rows) {
    forEachBall(balls, row.numbers, [&](int number) { tallies[number - 1].addHit(place); });
    ++place;
  }
  Omission omission{balls, period, {}, 0};
  for (const GapTally& tally : tallies) {
    const OmissionFigures& figures = omission.numbers.emplace_back(tally.figures(place));
    if (figures.closed) omission.largest = std::max(omission.largest, figures.closed->largest);
  }
  return omission;
}

void tellMissing(Store& store, Desk& desk, PeriodNo period) {
  const bool any = store.value(R"(SELECT EXISTS (SELECT 1 FROM "历史记录"))") != 0;
  desk.tell(
      any ? fmt::format("历史记录里没有 {} 期，无法统计遗漏。", period) : "历史记录是空的，无法统计遗漏。",
      Tone::warning);
}

std::optional<Omission> analyseOmission(Store& store, Desk& desk, BallColour balls, PeriodNo period) {
  period = std::min(period, latestPeriod(store));
  if (!findDraw(store, period)) {
    tellMissing(store, desk, period);
    return std::nullopt;
  }
  StoreChange change(store);
  const auto count = store.value(R"(SELECT count(*) FROM "历史记录" WHERE "期号"<=?)", period);
  WalkProgress progress(desk, 2 * count);
  const auto rows = readRows(store, progress, balls, period);
  writeWorkColumns(store, progress, rows);
  change.commit();
  return tallyGaps(balls, period, rows);
}

}  // namespace

std::optional<Omission> analyseRedOmission(Store& store, Desk& desk, PeriodNo period) {
  return analyseOmission(store, desk, BallColour::red, period);
}

std::optional<Omission> analyseBlueOmission(Store& store, Desk& desk, PeriodNo period) {
  return analyseOmission(store, desk, BallColour::blue, period);
}

std::vector<PeriodNo> loadOmissionPeriods(Store& store) {
  constexpr int listed = 50;
  Query rows = store.query(R"(SELECT "期号" FROM "历史记录" ORDER BY "期号" DESC LIMIT ?)");
  rows.bind(listed);
  std::vector<PeriodNo> periods;
  while (rows.next()) periods.push_back(rows.number(0));
  return periods;
}

}  // namespace lotmere

#include "pipeline/past_draws.hpp"

#include <algorithm>

#include "core/metrics.hpp"
#include "core/periods.hpp"
#include "reduction/cover.hpp"

namespace lotmere {
namespace {

constexpr int kToleratedHits = 2;

// How a ticket's sums are made, in the order of the cells; the columns of load_SummedDraws follow it.
constexpr std::array<NumberValue, kSumFamilies> kSums = {
    NumberValue::tail, NumberValue::digit_root, NumberValue::big,   NumberValue::small,
    NumberValue::odd,  NumberValue::even,       NumberValue::number};

}  // namespace

std::vector<SummedDraw> load_SummedDraws(Store& store, PeriodNo period, int count) {
  Query rows = store.query(
      R"(SELECT "期号","红球1","红球2","红球3","红球4","红球5","红球6","尾数和值","合数和值","大数和值","小数和值",
         "奇数和值","偶数和值","和值" FROM "历史记录" WHERE "期号"<? ORDER BY "期号" DESC LIMIT ?)");
  rows.bind(period, count);
  std::vector<SummedDraw> draws;
  while (rows.next()) {
    SummedDraw& draw = draws.emplace_back();
    draw.period = rows.number(0);
    draw.reds = read_Reds(rows, 1);
    for (int k = 0; k < kSumFamilies; ++k) draw.sums[k] = rows.number(1 + kRedsPerTicket + k);
  }
  return draws;
}

SumFamilies::SumFamilies(const ValueArray& cells, std::span<const SummedDraw> before) {
  for (std::size_t k = 0; k < kSums.size(); ++k) {
    if (cells[k] <= 0) continue;
    Active& family = families_.emplace_back(Active{&number_Table(kSums[k])});
    if (!before.empty()) family.sums[0] = sum_Of(*family.table, before[0].reds);
    if (before.size() > 1) family.sums[1] = before[1].sums[k];
  }
}

bool SumFamilies::keeps(const Reds& reds) const {
  int hits = 0;
  for (const Active& family : families_) {
    const int sum = sum_Of(*family.table, reds);
    hits += sum == family.sums[0] || sum == family.sums[1];
  }
  return hits <= kToleratedHits;
}

std::vector<Balls> load_DrawnReds(Store& store, PeriodNo first, PeriodNo last) {
  Query rows = store.query(
      R"(SELECT "红球1","红球2","红球3","红球4","红球5","红球6" FROM "历史记录" WHERE "期号">=? AND "期号"<=?
         ORDER BY "期号" ASC)");
  rows.bind(first, last);
  std::vector<Balls> draws;
  while (rows.next()) draws.push_back(pack_Balls(read_Reds(rows, 0), 0));
  return draws;
}

DrawMatch::DrawMatch(int match)
    : match_(match), marks_(kRedCount, std::clamp(match, 1, kRedsPerTicket), OverlapMarks::Repeats::yes) {}

void DrawMatch::add(Balls draw) {
  marks_.mark(red_Codes(draw));
  is_empty_ = false;
}

bool DrawMatch::matches(Balls ticket) const {
  if (match_ > kRedsPerTicket) return false;
  if (match_ < 1) return !is_empty_;
  const CodeList reds = red_Codes(ticket);
  return reds.count == kRedsPerTicket ? marks_.any(reds) : marks_.any(reds, times_InTicket(reds, ticket));
}

}  // namespace lotmere

#include "pipeline/history_relative.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "conditions/condition_store.hpp"
#include "conditions/own_sets.hpp"
#include "core/metrics.hpp"
#include "core/periods.hpp"
#include "core/text.hpp"
#include "reduction/cover.hpp"

namespace lotmere {
namespace {

constexpr UsageId kQian2HeZhi = 266;
constexpr UsageId kHistoryRelative[] = {7, 8, 263, 264, 265, kQian2HeZhi, 301, 302};
constexpr int kToleratedHits = 2;

bool is_Temperature(UsageId usage) { return usage == 301 || usage == 302; }

// The columns of the sum families and how a ticket's sum is made, in the order of the cells.
struct SumFamily {
  const char* column;
  NumberValue value;
};
constexpr std::array<SumFamily, 7> kSumFamilies = {{{"尾数和值", NumberValue::tail},
                                                    {"合数和值", NumberValue::digit_root},
                                                    {"大数和值", NumberValue::big},
                                                    {"小数和值", NumberValue::small},
                                                    {"奇数和值", NumberValue::odd},
                                                    {"偶数和值", NumberValue::even},
                                                    {"和值", NumberValue::number}}};

// A family switched on, with the sums of the draws before.
struct ActiveFamily {
  const RedTable* table;
  std::vector<int> sums;
};

std::vector<ActiveFamily> load_Families(Store& store, PeriodNo period, const ValueArray& cells) {
  std::vector<ActiveFamily> active;
  std::vector<std::size_t> places;
  for (std::size_t k = 0; k < kSumFamilies.size(); ++k) {
    if (cells[k] <= 0) continue;
    active.push_back({&number_Table(kSumFamilies[k].value), {}});
    places.push_back(k);
  }
  Query rows = store.query(
      R"(SELECT "尾数和值","合数和值","大数和值","小数和值","奇数和值","偶数和值","和值" FROM "历史记录" WHERE "期号"<?
         ORDER BY "期号" DESC LIMIT 2)");
  rows.bind(period);
  while (rows.next())
    for (std::size_t i = 0; i < active.size(); ++i)
      active[i].sums.push_back(rows.number(static_cast<int>(places[i])));
  return active;
}

int count_Hits(const std::vector<ActiveFamily>& families, const Reds& reds) {
  int hits = 0;
  for (const ActiveFamily& family : families)
    hits +=
        std::find(family.sums.begin(), family.sums.end(), sum_Of(*family.table, reds)) != family.sums.end();
  return hits;
}

// The reds of the draws of a range.
std::vector<Balls> load_Draws(Store& store, PeriodNo first, PeriodNo last) {
  Query rows = store.query(
      R"(SELECT "红球1","红球2","红球3","红球4","红球5","红球6" FROM "历史记录" WHERE "期号">=? AND "期号"<=?
         ORDER BY "期号" ASC)");
  rows.bind(first, last);
  std::vector<Balls> draws;
  while (rows.next()) {
    Reds reds{};
    for (int i = 0; i < kRedsPerTicket; ++i) reds[i] = rows.number(i);
    draws.push_back(pack_Balls(reds, 0));
  }
  return draws;
}

// Whether a ticket shares at least `match` reds with any of the draws. Once all subsets of that size of every
// draw are marked, a ticket of six different reds needs a look at its own at most twenty subsets.
class DrawMatch {
 public:
  DrawMatch(std::vector<Balls> draws, int match)
      : draws_(std::move(draws)), match_(match), marks_(kRedCount, std::clamp(match, 1, kRedsPerTicket)) {
    for (const Balls draw : draws_) marks_.mark(red_Codes(draw));
  }

  [[nodiscard]] bool matches(Balls ticket) const {
    const CodeList reds = red_Codes(ticket);
    const bool bitmap_answers = reds.count == kRedsPerTicket && match_ >= 1 && match_ <= kRedsPerTicket;
    if (bitmap_answers) return marks_.any(reds);
    return std::any_of(draws_.begin(), draws_.end(),
                       [&](Balls draw) { return count_Shared(draw, ticket & kRedBytes) >= match_; });
  }

 private:
  std::vector<Balls> draws_;
  int match_;
  SubsetMarks marks_;
};

}  // namespace

void warn_IfHistoryRelative(PipelineRun& run, const Condition& condition) {
  if (std::find(std::begin(kHistoryRelative), std::end(kHistoryRelative), condition.usage) ==
      std::end(kHistoryRelative))
    return;
  if (run.tickets.size() == 0 && !is_Temperature(condition.usage)) return;
  run.desk.show_Tip(
      fmt::format("注意，本次过滤使用了[{0}]这个过滤条件,[{0}]的设置与历史开奖记录相关！{1}{1}"
                  "在不同的期号中由于对应的历史记录不同,有可能得"
                  "出不同的结果。这是正常情况。{1}{1}【注意，此次过滤结果仅适用于 {2} 期！！！】",
                  condition.name, kLineBreak, to_QuanJiao(run.period)),
      condition.name);
}

std::int64_t filter_Qian2HeZhi(PipelineRun& run) {
  const auto condition = find_Condition(run.store, "266");
  if (!condition || !is_Used(run.store, kQian2HeZhi)) return 0;
  warn_IfHistoryRelative(run, *condition);
  if (run.tickets.size() == 0) return 0;
  const ValueArray cells = load_ConditionRange(run.store, condition->first, condition->last);
  const auto families = load_Families(run.store, run.period, cells);
  return walk_Tickets(run, lines_Of("[前2期和值相同组]"), judge_ByReds([&families](Balls balls) {
                        return count_Hits(families, reds_Of(balls)) <= kToleratedHits;
                      }));
}

std::int64_t filter_LiShi(PipelineRun& run) {
  const HistoryMatch settings = load_HistoryMatch(run.store);
  if (!settings.used) return 0;
  const PeriodNo last = settings.last >= run.period ? periodsBack(run.store, run.period, 1) : settings.last;
  const PassLines lines{"[历史数据过滤]过滤正进行中．．．", "[历史数据过滤]过滤后余："};
  auto draws = load_Draws(run.store, settings.first, last);
  if (draws.empty()) {
    // Nothing is filtered, so the marks stay too; the line tells the tickets that stand.
    if (run.tickets.size() != 0)
      run.desk.running_Text().append_Line(lines.result +
                                          to_QuanJiao(static_cast<std::int64_t>(run.tickets.size())) + " 注");
    return static_cast<std::int64_t>(run.tickets.size());
  }
  const DrawMatch match(std::move(draws), settings.match);
  return walk_Tickets(run, lines, judge_ByReds([&match](Balls balls) { return !match.matches(balls); }));
}

}  // namespace lotmere

#include "pipeline/position.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

#include "conditions/catalogue.hpp"
#include "conditions/condition_store.hpp"
#include "core/periods.hpp"
#include "core/text.hpp"
#include "history/combination_list.hpp"
#include "history/draw_stats.hpp"

namespace lotmere {
namespace {

constexpr int kLowestMark = -1;
constexpr std::size_t kBlock = 8192;

// 1 where a number is wrong at a place.
using ErrorTable = std::array<std::array<std::int8_t, kRedCount + 1>, kPlaceCount>;

struct Places {
  ErrorTable wrong{};
  int used = 0;
};

Places load_Places(Store& store) {
  Places places;
  for (int p = 0; p < kPlaceCount; ++p) {
    if (!is_Used(store, usage_OfPlace(p + 1))) continue;
    ++places.used;
    const RedTable allowed = read_AttributeColumn(store, AttributeTable::first, place_Column(p + 1));
    for (int n = 0; n <= kRedCount; ++n) places.wrong[p][n] = allowed[n] == 0;
  }
  return places;
}

int count_Wrong(const ErrorTable& wrong, Balls balls) {
  int errors = 0;
  for (int p = 0; p < kPlaceCount; ++p) errors += wrong[p][balls >> (8 * p) & 0xFF];
  return errors;
}

}  // namespace

std::int64_t filter_DingWei(PipelineRun& run) {
  const Places places = load_Places(run.store);
  if (places.used == 0) return 0;
  const int tolerance = condition_Value(run.store, kToleranceCell);
  const std::string name = fmt::format("[号码定位,容错值={}]", tolerance);
  if (tolerance >= places.used) {
    run.desk.running_Text().append_Line(name + " <容错值太大无法过滤掉号码.>");
    return 0;
  }
  const PassLines lines{lines_Of("[号码定位]").start, name + "过滤后余："};
  return walk_Tickets(run, lines,
                      [&](TicketSet& tickets, std::size_t first, std::size_t end, std::size_t kept) {
                        for (std::size_t row = first; row < end; ++row)
                          if (count_Wrong(places.wrong, tickets.balls[row]) <= tolerance)
                            keep_Row(tickets, row, kept++);
                        return kept;
                      });
}

CombinationTurns load_Combinations(Store& store, PeriodNo previous) {
  CombinationTurns turns{load_UsedTurns(store), {}};
  if (const auto draw = findDraw(store, previous)) turns.reference = draw->numbers.reds;
  return turns;
}

CombinationTurns prepare_Combinations(Store& store, Desk& desk, PeriodNo previous) {
  calc_DrawStats(store, desk, previous, previous);
  return load_Combinations(store, previous);
}

std::int64_t filter_ZuHeJuTi(PipelineRun& run, const CombinationTurns& turns, int turn) {
  const Family& family = family_OfTurn(turn);
  if (!turns.used[static_cast<std::size_t>(turn)]) {
    run.desk.running_Text().append_Line(fmt::format("[{}（具体）] <未使用这个条件>", family.draw_column));
    return 0;
  }
  TicketSet& tickets = run.tickets;
  const GroupTable groups = load_GroupTable(run.store, family, family.draw_groups);
  Job job(run.desk, static_cast<std::int64_t>(tickets.size()), Job::Stop::possible);
  std::int64_t kept = 0;
  for (std::size_t row = 0; row < tickets.size(); ++row) {
    if (row % kBlock == 0 && row != 0 && job.advance(static_cast<std::int64_t>(row))) break;
    // A ticket that a turn has pushed below the bound waits for the closing and isn't looked at again.
    if (tickets.mark[row] < kLowestMark) continue;
    const bool hit = turns.reference && count_Groups(groups, reds_Of(tickets.balls[row])) ==
                                            count_Groups(groups, *turns.reference);
    if (hit)
      --tickets.mark[row];
    else
      ++kept;
  }
  return kept;
}

void close_Combinations(PipelineRun& run) {
  TicketSet& tickets = run.tickets;
  std::size_t kept = 0;
  for (std::size_t row = 0; row < tickets.size(); ++row) {
    if (tickets.mark[row] < kLowestMark) continue;
    if (row != kept) tickets.move_Row(row, kept);
    tickets.mark[kept++] = 1;
  }
  tickets.truncate(kept);
  std::vector<std::uint32_t> order(kept);
  std::iota(order.begin(), order.end(), 0U);
  if (!std::is_sorted(tickets.seq.begin(), tickets.seq.end()))
    std::stable_sort(order.begin(), order.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return tickets.seq[a] < tickets.seq[b]; });
  for (std::size_t place = 0; place < kept; ++place)
    tickets.seq[order[place]] = static_cast<std::int32_t>(place + 1);
  run.desk.running_Text().append_Line(
      fmt::format("[组合（具体）]过滤后余：{} 注", to_QuanJiao(static_cast<std::int64_t>(kept))));
}

}  // namespace lotmere

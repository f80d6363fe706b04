#include "tickets/ticket_set.hpp"

#include <algorithm>
#include <numeric>

namespace lotmere {
namespace {

constexpr std::size_t kBlock = 4096;

}  // namespace

void TicketSet::reserve(std::size_t rows) {
  balls.reserve(rows);
  origin.reserve(rows);
  seq.reserve(rows);
  mark.reserve(rows);
  shrink.reserve(rows);
  score.reserve(rows);
}

void TicketSet::add(Balls numbers) {
  balls.push_back(numbers);
  origin.push_back(static_cast<std::uint32_t>(origin.size()));
  seq.push_back(static_cast<std::int32_t>(seq.size()) + 1);
  mark.push_back(0);
  shrink.push_back(0);
  score.push_back(0);
}

void TicketSet::truncate(std::size_t rows) {
  balls.resize(rows);
  origin.resize(rows);
  seq.resize(rows);
  mark.resize(rows);
  shrink.resize(rows);
  score.resize(rows);
}

void TicketSet::renumber() {
  std::vector<std::uint32_t> order(size());
  std::iota(order.begin(), order.end(), 0U);
  if (!std::ranges::is_sorted(seq))
    std::ranges::stable_sort(order, {}, [&](std::uint32_t row) { return seq[row]; });
  for (std::size_t place = 0; place < order.size(); ++place)
    seq[order[place]] = static_cast<std::int32_t>(place + 1);
}

void TicketSet::recallScores() {
  if (!stored.scored) return;
  for (std::size_t row = 0; row < size(); ++row)
    if (origin[row] < stored.score.size()) score[row] = stored.score[origin[row]];
}

std::size_t countTickets(Store& store, PeriodNo period) {
  return static_cast<std::size_t>(store.value(R"(SELECT count(*) FROM "日志表" WHERE "期号"=?)", period));
}

std::optional<TicketSet> loadTickets(Store& store, PeriodNo period, const RowsDone& done) {
  TicketSet tickets;
  tickets.period = period;
  Query query = store.query(
      R"(SELECT "ID","序号","红球1","红球2","红球3","红球4","红球5","红球6","蓝球","过滤标记","缩水标记",
         "临时数据","精选标记","红球中","蓝球中"
         FROM "日志表" WHERE "期号"=? ORDER BY "ID")");
  query.bind(period);
  while (query.next()) {
    if (tickets.size() % kBlock == 0 && done(tickets.size())) return std::nullopt;
    Reds reds{};
    for (int i = 0; i < kRedsPerTicket; ++i) reds[i] = query.number(2 + i);
    tickets.add(packBalls(reds, query.number(8)));
    tickets.seq.back() = query.number(1);
    tickets.score.back() = query.number(11);
    tickets.stored.id.push_back(query.number(0));
    tickets.stored.seq.push_back(query.number(1));
    tickets.stored.mark.push_back(static_cast<std::int8_t>(query.number(9)));
    tickets.stored.shrink.push_back(static_cast<std::int8_t>(query.number(10)));
    tickets.stored.score.push_back(query.number(11));
    tickets.stored.chosen.push_back(static_cast<std::int8_t>(query.number(12)));
    tickets.stored.red_hits.push_back(static_cast<std::int8_t>(query.number(13)));
    tickets.stored.blue_hits.push_back(static_cast<std::int8_t>(query.number(14)));
    tickets.stored.scored = tickets.stored.scored || query.number(11) != 0;
  }
  if (done(tickets.size())) return std::nullopt;
  return tickets;
}

}  // namespace lotmere

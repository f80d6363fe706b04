#include "tickets/ticket_set.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kBlock = 4096;

void reserve_Stored(TicketSet::Stored& stored, std::size_t rows) {
  stored.id.reserve(rows);
  stored.seq.reserve(rows);
  stored.mark.reserve(rows);
  stored.shrink.reserve(rows);
  stored.score.reserve(rows);
}

// Deletes the stored rows from place `first` to before `end`: all rows of the period in that span of IDs.
void delete_Span(Store& store, const TicketSet& tickets, std::size_t first, std::size_t end) {
  if (first == end) return;
  store.query(R"(DELETE FROM "日志表" WHERE "ID">=? AND "ID"<=? AND "期号"=?)")
      .bind(tickets.stored.id[first], tickets.stored.id[end - 1], tickets.period)
      .run();
}

bool has_Changed(const TicketSet& tickets, std::size_t row) {
  const TicketSet::Stored& stored = tickets.stored;
  const std::size_t place = tickets.origin[row];
  return tickets.seq[row] != stored.seq[place] || tickets.mark[row] != stored.mark[place] ||
         tickets.shrink[row] != stored.shrink[place] || tickets.score[row] != stored.score[place];
}

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

std::size_t count_Tickets(Store& store, PeriodNo period) {
  return static_cast<std::size_t>(store.value(R"(SELECT count(*) FROM "日志表" WHERE "期号"=?)", period));
}

std::optional<TicketSet> load_Tickets(Store& store, PeriodNo period, const RowsDone& done) {
  TicketSet tickets;
  tickets.period = period;
  const std::size_t rows = count_Tickets(store, period);
  tickets.reserve(rows);
  reserve_Stored(tickets.stored, rows);
  Query query = store.query(
      R"(SELECT "ID","序号","红球1","红球2","红球3","红球4","红球5","红球6","蓝球","过滤标记","缩水标记","临时数据"
         FROM "日志表" WHERE "期号"=? ORDER BY "ID")");
  query.bind(period);
  while (query.next()) {
    if (tickets.size() % kBlock == 0 && done(tickets.size())) return std::nullopt;
    Reds reds{};
    for (int i = 0; i < kRedsPerTicket; ++i) reds[i] = query.number(2 + i);
    tickets.add(pack_Balls(reds, query.number(8)));
    tickets.seq.back() = query.number(1);
    tickets.score.back() = query.number(11);
    tickets.stored.id.push_back(query.number(0));
    tickets.stored.seq.push_back(query.number(1));
    tickets.stored.mark.push_back(static_cast<std::int8_t>(query.number(9)));
    tickets.stored.shrink.push_back(static_cast<std::int8_t>(query.number(10)));
    tickets.stored.score.push_back(query.number(11));
  }
  if (done(tickets.size())) return std::nullopt;
  return tickets;
}

void save_Tickets(Store& store, const TicketSet& tickets, const RowsDone& done) {
  StoreChange change(store);
  std::size_t place = 0;
  for (std::size_t row = 0; row < tickets.size(); ++row) {
    if (row % kBlock == 0) done(row);
    delete_Span(store, tickets, place, tickets.origin[row]);
    place = tickets.origin[row] + std::size_t{1};
  }
  delete_Span(store, tickets, place, tickets.stored.id.size());

  store.query(R"(UPDATE "日志表" SET "精选标记"=0 WHERE "期号"=? AND "精选标记"<>0)")
      .bind(tickets.period)
      .run();
  Query update =
      store.query(R"(UPDATE "日志表" SET "序号"=?,"过滤标记"=?,"缩水标记"=?,"临时数据"=? WHERE "ID"=?)");
  for (std::size_t row = 0; row < tickets.size(); ++row) {
    if (row % kBlock == 0) done(row);
    if (!has_Changed(tickets, row)) continue;
    update.bind(tickets.seq[row], int{tickets.mark[row]}, int{tickets.shrink[row]}, tickets.score[row],
                tickets.stored.id[tickets.origin[row]]);
    update.run();
  }
  change.commit();
}

}  // namespace lotmere

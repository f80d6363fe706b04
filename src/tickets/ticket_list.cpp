#include "tickets/ticket_list.hpp"

#include <algorithm>
#include <tuple>

namespace lotmere {
namespace {

TicketRow readRow(const Query& row) {
  TicketRow ticket{row.number(0), row.number(1), {}, row.number(9), row.number(10)};
  for (int i = 0; i < kRedsPerTicket; ++i) ticket.numbers.reds[i] = row.number(2 + i);
  ticket.numbers.blue = row.number(8);
  return ticket;
}

bool standsBefore(const TicketRow& a, const TicketRow& b) {
  return std::tie(a.period, a.seq) < std::tie(b.period, b.seq);
}

}  // namespace

std::vector<TicketRow> loadTicketList(Store& store) {
  std::vector<TicketRow> list;
  list.reserve(static_cast<std::size_t>(store.value(R"(SELECT count(*) FROM "日志表")")));
  Query rows = store.query(
      R"(SELECT "序号","期号","红球1","红球2","红球3","红球4","红球5","红球6","蓝球","红球中","蓝球中"
         FROM "日志表" ORDER BY "ID")");
  while (rows.next()) list.push_back(readRow(rows));
  // Tickets are mostly made in the order of the list: sorting in the store would cost more than the reading.
  if (!std::ranges::is_sorted(list, standsBefore)) std::ranges::stable_sort(list, standsBefore);
  return list;
}

}  // namespace lotmere

#include "files/export_rows.hpp"

#include <algorithm>

namespace lotmere {

// They nearly always stand in the order of their running numbers already, and reading them in the order of
// the table lets the desk be served on the way, which a sort inside the engine would not.
std::vector<ExportRow> readExportRows(Store& store, PeriodNo period, std::size_t count, CourseLeg& job) {
  std::vector<ExportRow> tickets;
  tickets.reserve(count);
  Query rows = store.query(
      R"(SELECT "序号","红球1","红球2","红球3","红球4","红球5","红球6","蓝球" FROM "日志表" WHERE "期号"=?
         ORDER BY "ID")");
  rows.bind(period);
  while (rows.next()) {
    ExportRow& ticket = tickets.emplace_back();
    ticket.seq = rows.number(0);
    for (int i = 0; i < kRedsPerTicket; ++i) ticket.numbers.reds[i] = rows.number(1 + i);
    ticket.numbers.blue = rows.number(1 + kRedsPerTicket);
    if (tickets.size() % kRowsPerServe == 0 && job.advance(0)) break;
  }
  const auto by_seq = [](const ExportRow& a, const ExportRow& b) { return a.seq < b.seq; };
  if (!std::is_sorted(tickets.begin(), tickets.end(), by_seq))
    std::stable_sort(tickets.begin(), tickets.end(), by_seq);
  return tickets;
}

}  // namespace lotmere

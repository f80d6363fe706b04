#include "advice/funnel.hpp"

#include <fmt/format.h>

#include "base/text.hpp"

namespace lotmere {

std::optional<std::vector<FunnelRow>> foretellFunnel(const FilterPlan& plan, TicketSet tickets,
                                                     Course& course, int threads) {
  const auto alone = countFailingAlone(plan, tickets.balls);
  const auto whole = static_cast<std::int64_t>(tickets.size());
  const std::int64_t centres = countCentres(plan, tickets.balls);
  StepWatcher nobody;
  const Funnel funnel = thin(plan, tickets, course, nobody, threads);
  if (funnel.stopped) return std::nullopt;
  auto rows = funnelRows(plan, funnel, alone);
  rows.push_back(shrinkRow(plan, static_cast<std::int64_t>(tickets.size()), countCentres(plan, tickets.balls),
                           whole - centres));
  return rows;
}

std::string funnelHeading(char separator) {
  return fmt::format("条件{0}之前{0}之后{0}去掉％{0}单独去掉", separator);
}

std::string funnelLine(const FunnelRow& row, char separator) {
  const double lost =
      row.before == 0 ? 0
                      : 100.0 * static_cast<double>(row.before - row.after) / static_cast<double>(row.before);
  return fmt::format("{1}{0}{2}{0}{3}{0}{4:.2f}{0}{5}", separator, row.name, row.before, row.after, lost,
                     row.alone);
}

std::string funnelCsv(const std::vector<FunnelRow>& rows) {
  std::string text = "\xEF\xBB\xBF" + funnelHeading(',') + std::string(kLineBreak);
  for (const FunnelRow& row : rows) text += funnelLine(row, ',') + std::string(kLineBreak);
  return text;
}

}  // namespace lotmere

#include "files/export_compound.hpp"

#include <fmt/format.h>

#include <string>
#include <vector>

#include "base/text.hpp"
#include "files/compound_line.hpp"
#include "files/export_rows.hpp"
#include "start/home.hpp"
#include "tickets/compound_bets.hpp"
#include "tickets/upkeep.hpp"

namespace lotmere {
namespace {

// The lines of a period's tickets; `result` counts them and says whether the user stopped the work.
std::string fileText(Store& store, Desk& desk, PeriodNo period, CompoundExport& result) {
  const auto count = store.value(R"(SELECT count(*) FROM "日志表" WHERE "期号"=?)", period);
  CourseLeg job(desk.course(), count, Course::Stop::possible);
  std::vector<DrawNumbers> tickets;
  tickets.reserve(static_cast<std::size_t>(count));
  for (const ExportRow& row : readExportRows(store, period, static_cast<std::size_t>(count), job))
    tickets.push_back(row.numbers);
  const auto bets = joinTickets(tickets, [&job](std::int64_t settled) { return job.advance(settled); });
  std::string text;
  for (const CompoundBet& bet : bets) text.append(compoundLine(bet)).append(kLineBreak);
  const bool stopped = job.advance(count);
  result = {stopped ? Outcome::stopped : Outcome::done, static_cast<int>(tickets.size()),
            static_cast<int>(bets.size())};
  return text;
}

}  // namespace

CompoundExport exportCompound(Store& store, Desk& desk, const std::filesystem::path& target,
                              FileSystem& files) {
  const StopScope stop(desk.course());
  if (isOwnFile(Home{store.path().parent_path()}, target)) {
    desk.tell(kOwnFile, Tone::warning);
    return {};
  }
  const PeriodNo period = firstTicketPeriod(store);
  if (period == 0) {
    desk.tell("表格中还没有号码！", Tone::warning);
    return {};
  }
  CompoundExport result;
  const std::string text = fileText(store, desk, period, result);
  if (result.outcome == Outcome::stopped) {
    desk.tell("用户中止，号码没有导出。", Tone::warning);
    return {Outcome::stopped};
  }
  files.writeWhole(target, text);
  desk.runningText().appendLine("号码导出完成．");
  return result;
}

}  // namespace lotmere

#include "files/export.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <vector>

#include "base/text.hpp"
#include "files/export_rows.hpp"
#include "start/home.hpp"
#include "tickets/upkeep.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kGroupLength = 5;  // tickets between two separator lines
constexpr std::size_t kLongestLine = 48;

// Keeps its storage over all lines of a file.
using Line = fmt::memory_buffer;

void putLine(Line& line, int seq, PeriodNo period, const DrawNumbers& numbers,
             const ExportSwitches& switches) {
  line.clear();
  const auto out = std::back_inserter(line);
  if (switches.seq) fmt::format_to(out, "{:<8}", seq);
  if (switches.period) fmt::format_to(out, "{}   ", period);
  if (switches.numbers) {
    const auto& [a, b, c, d, e, f] = numbers.reds;
    fmt::format_to(out, "{:02} {:02} {:02} {:02} {:02} {:02}+{:02}", a, b, c, d, e, f, numbers.blue);
  }
  while (line.size() > 0 && line[line.size() - 1] == ' ') line.resize(line.size() - 1);
  if (switches.format != 1) return;
  std::replace(line.begin(), line.end(), ' ', ',');
  std::replace(line.begin(), line.end(), '+', '|');
}

std::string fileText(const std::vector<ExportRow>& tickets, PeriodNo period, const ExportSwitches& switches,
                     CourseLeg& job) {
  std::string text;
  text.reserve(tickets.size() * kLongestLine);
  Line line;
  std::size_t written = 0;
  for (const ExportRow& ticket : tickets) {
    putLine(line, ticket.seq, period, ticket.numbers, switches);
    text.append(line.data(), line.size()).append(kLineBreak);
    ++written;
    if (switches.separator && written % kGroupLength == 0) text += kLineBreak;
    if (written % kRowsPerServe == 0) job.advance(static_cast<std::int64_t>(written));
  }
  return text;
}

}  // namespace

std::string exportLine(int seq, PeriodNo period, const DrawNumbers& numbers, const ExportSwitches& switches) {
  Line line;
  putLine(line, seq, period, numbers, switches);
  return fmt::to_string(line);
}

int exportTickets(Store& store, Desk& desk, PeriodNo period, const std::filesystem::path& target,
                  const ExportSwitches& switches, FileSystem& files) {
  const auto count = store.value(R"(SELECT count(*) FROM "日志表" WHERE "期号"=?)", period);
  if (count == 0) return 0;
  CourseLeg job(desk.course(), count + 1, Course::Stop::impossible);
  const auto tickets = readExportRows(store, period, static_cast<std::size_t>(count), job);
  const std::string text = fileText(tickets, period, switches, job);
  job.advance(count);
  files.writeWhole(target, text);
  desk.runningText().appendLine("号码导出完成．");
  return static_cast<int>(tickets.size());
}

Exported exportCommand(Store& store, Desk& desk, const std::filesystem::path& target,
                       const ExportSwitches& switches, FileSystem& files) {
  if (isOwnFile(Home{store.path().parent_path()}, target)) {
    desk.tell(kOwnFile, Tone::warning);
    return {};
  }
  const int count = exportTickets(store, desk, firstTicketPeriod(store), target, switches, files);
  if (count == 0) desk.tell("表格中还没有号码！", Tone::warning);
  return {doneIf(count > 0), count};
}

}  // namespace lotmere

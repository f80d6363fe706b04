#include "files/export.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <vector>

#include "base/text.hpp"
#include "files/export_rows.hpp"
#include "sheets/table_file.hpp"
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

std::vector<std::string> headsOf(const ExportSwitches& switches) {
  std::vector<std::string> heads;
  if (switches.seq) heads.emplace_back("序号");
  if (switches.period) heads.emplace_back("期号");
  if (!switches.numbers) return heads;
  for (int i = 1; i <= kRedsPerTicket; ++i) heads.push_back(fmt::format("红球{}", i));
  heads.emplace_back("蓝球");
  return heads;
}

// Nothing when the user asked to stop.
std::optional<std::string> tableBytes(const std::vector<ExportRow>& tickets, PeriodNo period,
                                      const ExportSwitches& switches, CourseLeg& job) {
  TableFile table(switches.file == TicketFile::csv ? TableForm::csv : TableForm::spreadsheet,
                  headsOf(switches));
  std::vector<TableField> fields;
  std::size_t written = 0;
  for (const ExportRow& ticket : tickets) {
    fields.clear();
    if (switches.seq) fields.emplace_back(std::int64_t{ticket.seq});
    if (switches.period) fields.emplace_back(std::int64_t{period});
    if (switches.numbers) {
      for (const int red : ticket.numbers.reds) fields.emplace_back(BallField{red});
      fields.emplace_back(BallField{ticket.numbers.blue});
    }
    table.addRow(fields);
    if (++written % kRowsPerServe == 0 && job.advance(static_cast<std::int64_t>(written)))
      return std::nullopt;
  }
  std::string bytes = table.finish();
  if (job.advance(static_cast<std::int64_t>(written))) return std::nullopt;
  return bytes;
}

Exported exportTable(Store& store, Desk& desk, PeriodNo period, const std::filesystem::path& target,
                     const ExportSwitches& switches, FileSystem& files) {
  const auto count = store.value(R"(SELECT count(*) FROM "日志表" WHERE "期号"=?)", period);
  if (count == 0) return {};
  if (switches.file == TicketFile::spreadsheet && count > kMostSheetRows) {
    desk.tell(
        fmt::format("表格文件最多 {} 行，号码有 {} 注：请导出为文本或 CSV 文件。", kMostSheetRows, count),
        Tone::warning);
    return {Outcome::refused, static_cast<int>(count)};
  }
  const StopScope stop(desk.course());
  CourseLeg job(desk.course(), count + 1, Course::Stop::possible);
  const auto tickets = readExportRows(store, period, static_cast<std::size_t>(count), job);
  const auto bytes = tableBytes(tickets, period, switches, job);
  if (!bytes) {
    desk.tell("用户中止，号码没有导出。", Tone::warning);
    return {Outcome::stopped, static_cast<int>(count)};
  }
  files.writeWhole(target, *bytes);
  desk.runningText().appendLine("号码导出完成．");
  return {Outcome::done, static_cast<int>(count)};
}

}  // namespace

TicketFile ticketFileOf(const std::filesystem::path& file) {
  const auto form = tableFormOf(file);
  if (!form) return TicketFile::text;
  return *form == TableForm::csv ? TicketFile::csv : TicketFile::spreadsheet;
}

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
  const PeriodNo period = firstTicketPeriod(store);
  Exported result;
  if (switches.file == TicketFile::text) {
    result.rows = exportTickets(store, desk, period, target, switches, files);
    result.outcome = doneIf(result.rows > 0);
  } else {
    result = exportTable(store, desk, period, target, switches, files);
  }
  if (result.rows == 0) desk.tell("表格中还没有号码！", Tone::warning);
  return result.outcome == Outcome::done ? result : Exported{result.outcome};
}

}  // namespace lotmere

#include "history/export_sheet.hpp"

#include <fmt/format.h>

#include <chrono>
#include <future>
#include <optional>

#include "core/draw_columns.hpp"
#include "core/home.hpp"
#include "core/schema.hpp"
#include "core/text.hpp"
#include "history/spreadsheet.hpp"

namespace lotmere {
namespace {

constexpr int kRowsBetweenServes = 64;  // some milliseconds
constexpr auto kBetweenServes = std::chrono::milliseconds{10};
constexpr double kFirstWidth = 9;
constexpr int kFirstYear = 1900;  // of the calendar of spreadsheets

std::vector<DrawColumn> exported_Columns() {
  std::vector<DrawColumn> columns = draw_Columns();
  std::erase_if(columns, [](const DrawColumn& column) { return column.is_work; });
  return columns;
}

std::string names_Of(const std::vector<DrawColumn>& columns) {
  std::vector<std::string> names;
  for (const DrawColumn& column : columns) names.push_back(column.name);
  return column_List(names);
}

void put_Head(Spreadsheet& sheet, const std::vector<DrawColumn>& columns) {
  int place = 0;
  for (const DrawColumn& column : columns) sheet.put_Head(place++, column.name);
  sheet.freeze_Head();
  sheet.set_Width(0, kFirstWidth);
  sheet.set_Width(1, 2 * kFirstWidth);
}

void put_Field(Spreadsheet& sheet, int row, int column, DrawColumnType type, const SQLite::Column& field) {
  if (field.isInteger() || field.isFloat()) {
    sheet.put_Number(row, column, field.getDouble());
    return;
  }
  const std::string text = field.getString();
  const auto date = type == DrawColumnType::date ? parse_Date(text) : std::optional<Date>();
  if (date && year_Of(*date) >= kFirstYear)
    sheet.put_Date(row, column, *date);
  else
    sheet.put_Text(row, column, text);
}

// False when the person asked to stop.
bool put_Draws(Store& store, Spreadsheet& sheet, const std::vector<DrawColumn>& columns, Job& job) {
  Query rows =
      store.query(fmt::format(R"(SELECT {} FROM "历史记录" ORDER BY "期号" ASC)", names_Of(columns)));
  for (int row = 1; rows.next(); ++row) {
    for (int column = 0; column < int(columns.size()); ++column)
      put_Field(sheet, row, column, columns[column].type, rows.statement().getColumn(column));
    if (row % kRowsBetweenServes == 0 && job.advance(row)) return false;
  }
  return true;
}

// The bytes of the file; nothing when the person asked to stop.
std::optional<std::string> sheet_Bytes(Store& store, Desk& desk, std::int64_t draws) {
  Job job(desk, draws, Job::Stop::possible);
  Spreadsheet sheet("sheet1");
  const auto columns = exported_Columns();
  put_Head(sheet, columns);
  if (!put_Draws(store, sheet, columns, job)) return std::nullopt;
  // One call of some tenths of a second, so it runs beside the thread that serves the person.
  auto finished = std::async(std::launch::async, &Spreadsheet::finish, &sheet);
  while (finished.wait_for(kBetweenServes) != std::future_status::ready) job.advance(draws);
  std::string bytes = finished.get();
  if (job.advance(draws)) return std::nullopt;
  return bytes;
}

}  // namespace

int exportHistory(Store& store, Desk& desk, const std::filesystem::path& target, FileSystem& files) {
  const auto draws = store.value(R"(SELECT count(*) FROM "历史记录")");
  if (draws == 0) {
    desk.tell("历史记录是空的，没有可导出的数据。", Tone::warning);
    return 0;
  }
  const StopScope stoppable(desk);
  try {
    if (is_OwnFile(Home{store.path().parent_path()}, target)) {
      desk.tell(kOwnFile, Tone::warning);
      return 0;
    }
    const auto bytes = sheet_Bytes(store, desk, draws);
    if (bytes) {
      files.write_Whole(target, *bytes);
      return static_cast<int>(draws);
    }
    desk.tell("用户中止，数据没有导出。", Tone::warning);
  } catch (const std::filesystem::filesystem_error& failure) {
    desk.tell(fmt::format("无法正常导出数据！{}{}", kLineBreak, reason_Text(failure.code())), Tone::error);
  }
  return 0;
}

}  // namespace lotmere

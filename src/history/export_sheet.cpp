#include "history/export_sheet.hpp"

#include <fmt/format.h>

#include <optional>

#include "base/text.hpp"
#include "catalogue/draw_columns.hpp"
#include "history/spreadsheet.hpp"
#include "start/home.hpp"
#include "store/schema.hpp"

namespace lotmere {
namespace {

constexpr int kRowsBetweenLooks = 64;  // some milliseconds
constexpr double kFirstWidth = 9;
constexpr int kFirstYear = 1900;  // of the calendar of spreadsheets

std::vector<DrawColumn> exportedColumns() {
  std::vector<DrawColumn> columns = drawColumns();
  std::erase_if(columns, [](const DrawColumn& column) { return column.is_work; });
  return columns;
}

std::string namesOf(const std::vector<DrawColumn>& columns) {
  std::vector<std::string> names;
  names.reserve(columns.size());
  for (const DrawColumn& column : columns) names.push_back(column.name);
  return columnList(names);
}

void putHead(Spreadsheet& sheet, const std::vector<DrawColumn>& columns) {
  int place = 0;
  for (const DrawColumn& column : columns) sheet.putHead(place++, column.name);
  sheet.freezeHead();
  sheet.setWidth(0, kFirstWidth);
  sheet.setWidth(1, 2 * kFirstWidth);
}

void putField(Spreadsheet& sheet, int row, int column, DrawColumnType type, const SQLite::Column& field) {
  if (field.isInteger() || field.isFloat()) {
    sheet.putNumber(row, column, field.getDouble());
    return;
  }
  const std::string text = field.getString();
  const auto date = type == DrawColumnType::date ? parseDate(text) : std::optional<Date>();
  if (date && yearOf(*date) >= kFirstYear)
    sheet.putDate(row, column, *date);
  else
    sheet.putText(row, column, text);
}

// False when the person asked to stop.
bool putDraws(Store& store, Spreadsheet& sheet, const std::vector<DrawColumn>& columns, CourseLeg& job) {
  Query rows = store.query(fmt::format(R"(SELECT {} FROM "历史记录" ORDER BY "期号" ASC)", namesOf(columns)));
  for (int row = 1; rows.next(); ++row) {
    for (int column = 0; column < int(columns.size()); ++column)
      putField(sheet, row, column, columns[column].type, rows.statement().getColumn(column));
    if (row % kRowsBetweenLooks == 0 && job.advance(row)) return false;
  }
  return true;
}

// The bytes of the file; nothing when the person asked to stop.
std::optional<std::string> sheetBytes(Store& store, Desk& desk, std::int64_t draws) {
  CourseLeg job(desk.course(), draws, Course::Stop::possible);
  Spreadsheet sheet("sheet1");
  const auto columns = exportedColumns();
  putHead(sheet, columns);
  if (!putDraws(store, sheet, columns, job)) return std::nullopt;
  std::string bytes = sheet.finish();
  if (job.advance(draws)) return std::nullopt;
  return bytes;
}

// Fields are quoted where they hold a comma; a mark in front makes spreadsheets read UTF-8.
std::optional<std::string> listBytes(Store& store, Desk& desk, std::int64_t draws) {
  CourseLeg job(desk.course(), draws, Course::Stop::possible);
  const auto columns = exportedColumns();
  std::string text = "\xEF\xBB\xBF";
  const auto put = [&text](std::string_view field, bool is_last) {
    const bool quoted = field.find(',') != std::string_view::npos;
    text += fmt::format("{0}{1}{0}{2}", quoted ? "\"" : "", field, is_last ? "\r\n" : ",");
  };
  const std::size_t last = columns.size() - 1;
  for (std::size_t column = 0; column <= last; ++column) put(columns[column].name, column == last);
  Query rows = store.query(fmt::format(R"(SELECT {} FROM "历史记录" ORDER BY "期号" ASC)", namesOf(columns)));
  for (int row = 1; rows.next(); ++row) {
    for (std::size_t column = 0; column <= last; ++column)
      put(rows.text(static_cast<int>(column)), column == last);
    if (row % kRowsBetweenLooks == 0 && job.advance(row)) return std::nullopt;
  }
  return text;
}

}  // namespace

Exported exportHistory(Store& store, Desk& desk, const std::filesystem::path& target, FileSystem& files) {
  const auto draws = store.value(R"(SELECT count(*) FROM "历史记录")");
  if (draws == 0) {
    desk.tell("历史记录是空的，没有可导出的数据。", Tone::warning);
    return {};
  }
  const StopScope stoppable(desk.course());
  try {
    if (isOwnFile(Home{store.path().parent_path()}, target)) {
      desk.tell(kOwnFile, Tone::warning);
      return {};
    }
    const auto bytes =
        target.extension() == ".csv" ? listBytes(store, desk, draws) : sheetBytes(store, desk, draws);
    if (bytes) {
      files.writeWhole(target, *bytes);
      return {Outcome::done, static_cast<int>(draws)};
    }
    desk.tell("用户中止，数据没有导出。", Tone::warning);
    return {Outcome::stopped};
  } catch (const std::filesystem::filesystem_error& failure) {
    desk.tell(fmt::format("无法正常导出数据！{}{}", kLineBreak, reasonText(failure.code())), Tone::error);
  }
  return {};
}

}  // namespace lotmere

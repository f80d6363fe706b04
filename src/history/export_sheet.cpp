#include "history/export_sheet.hpp"

#include <fmt/format.h>

#include <optional>

#include "base/text.hpp"
#include "catalogue/draw_columns.hpp"
#include "sheets/table_file.hpp"
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

std::vector<std::string> headsOf(const std::vector<DrawColumn>& columns) {
  std::vector<std::string> names;
  names.reserve(columns.size());
  for (const DrawColumn& column : columns) names.push_back(column.name);
  return names;
}

TableField fieldOf(DrawColumnType type, const SQLite::Column& field) {
  if (field.isNull()) return {};
  if (field.isInteger()) return std::int64_t{field.getInt64()};
  if (field.isFloat()) return field.getDouble();
  std::string text = field.getString();
  const auto date = type == DrawColumnType::date ? parseDate(text) : std::optional<Date>();
  if (date && yearOf(*date) >= kFirstYear) return *date;
  return text;
}

// The bytes of the file; nothing when the user asked to stop.
std::optional<std::string> tableBytes(Store& store, Desk& desk, std::int64_t draws, TableForm form) {
  CourseLeg job(desk.course(), draws, Course::Stop::possible);
  const auto columns = exportedColumns();
  const auto heads = headsOf(columns);
  TableFile table(form, heads);
  table.setWidth(0, kFirstWidth);
  table.setWidth(1, 2 * kFirstWidth);
  std::vector<TableField> fields(columns.size());
  Query rows =
      store.query(fmt::format(R"(SELECT {} FROM "历史记录" ORDER BY "期号" ASC)", columnList(heads)));
  for (int row = 1; rows.next(); ++row) {
    for (int column = 0; column < int(columns.size()); ++column)
      fields[column] = fieldOf(columns[column].type, rows.statement().getColumn(column));
    table.addRow(fields);
    if (row % kRowsBetweenLooks == 0 && job.advance(row)) return std::nullopt;
  }
  std::string bytes = table.finish();
  if (job.advance(draws)) return std::nullopt;
  return bytes;
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
    const auto bytes = tableBytes(store, desk, draws, tableFormOf(target).value_or(TableForm::spreadsheet));
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

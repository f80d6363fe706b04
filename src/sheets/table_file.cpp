#include "sheets/table_file.hpp"

#include <fmt/format.h>
#include <strings.h>

#include <string_view>

#include "base/overload.hpp"
#include "base/text.hpp"

namespace lotmere {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

std::string quoted(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string field = "\"";
  for (const char c : text) field.append(c == '"' ? 2 : 1, c);
  return field + '"';
}

}  // namespace

std::optional<TableForm> tableFormOf(const std::filesystem::path& file) {
  const std::string ending = file.extension().string();
  if (::strcasecmp(ending.c_str(), ".xlsx") == 0) return TableForm::spreadsheet;
  if (::strcasecmp(ending.c_str(), ".csv") == 0) return TableForm::csv;
  return std::nullopt;
}

TableFile::TableFile(TableForm form, const std::vector<std::string>& heads) {
  if (form == TableForm::csv) {
    text_ = kUtf8Mark;
    addLine(std::vector<TableField>(heads.begin(), heads.end()));
    return;
  }
  sheet_.emplace("sheet1");
  int column = 0;
  for (const std::string& head : heads) sheet_->putHead(column++, head);
  sheet_->freezeHead();
}

void TableFile::addRow(std::span<const TableField> fields) {
  if (!sheet_) return addLine(fields);
  ++rows_;
  int column = 0;
  for (const TableField& field : fields) {
    std::visit(
        Overload{[](std::monostate) {},
                 [&](std::int64_t number) { sheet_->putNumber(rows_, column, static_cast<double>(number)); },
                 [&](double number) { sheet_->putNumber(rows_, column, number); },
                 [&](const std::string& text) { sheet_->putText(rows_, column, text); },
                 [&](Date day) { sheet_->putDate(rows_, column, day); },
                 [&](BallField ball) { sheet_->putBall(rows_, column, ball.number); }},
        field);
    ++column;
  }
}

void TableFile::addLine(std::span<const TableField> fields) {
  std::string_view between;
  for (const TableField& field : fields) {
    text_ += between;
    between = ",";
    std::visit(Overload{[](std::monostate) {}, [&](const std::string& text) { text_ += quoted(text); },
                        [&](Date day) { text_ += formatDate(day); },
                        [&](BallField ball) { text_ += fmt::format("{:02}", ball.number); },
                        [&](auto number) { text_ += fmt::format("{}", number); }},
               field);
  }
  text_ += kLineBreak;
}

void TableFile::setWidth(int column, double width) {
  if (sheet_) sheet_->setWidth(column, width);
}

std::string TableFile::finish() { return sheet_ ? sheet_->finish() : std::move(text_); }

}  // namespace lotmere

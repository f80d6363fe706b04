// A table as a file that spreadsheets open: a row of heads and rows of fields, as .xlsx or as CSV.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "base/dates.hpp"
#include "sheets/spreadsheet.hpp"

namespace lotmere {

enum class TableForm { spreadsheet, csv };

// What the name of a file asks for, large or small letters: ".xlsx" or ".csv"; nothing for another one.
[[nodiscard]] std::optional<TableForm> tableFormOf(const std::filesystem::path& file);

// The rows that a spreadsheet takes at most beside its heads; CSV has no such end.
inline constexpr std::int64_t kMostSheetRows = 1'048'575;

struct BallField {
  int number = 0;  // shown with two digits
};
// Nothing, a whole number, another one, a text, a day from 1900 on, or the number of a ball.
using TableField = std::variant<std::monostate, std::int64_t, double, std::string, Date, BallField>;

// CSV is UTF-8 with the mark that makes spreadsheets read it so, fields between commas, lines ended by CR LF;
// a field with a comma, a quote or a line break is quoted. Every function throws
// std::filesystem::filesystem_error when the machine or the library refuses.
class TableFile {
 public:
  TableFile(TableForm form, const std::vector<std::string>& heads);

  // As many fields as there are heads.
  void addRow(std::span<const TableField> fields);
  // Of a column of a spreadsheet, in characters.
  void setWidth(int column, double width);
  // The bytes of the file; nothing may be added any more.
  [[nodiscard]] std::string finish();

 private:
  void addLine(std::span<const TableField> fields);

  std::optional<Spreadsheet> sheet_;
  std::string text_;
  int rows_ = 0;
};

}  // namespace lotmere

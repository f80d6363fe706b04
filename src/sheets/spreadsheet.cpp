#include "sheets/spreadsheet.hpp"

#include <fmt/format.h>
#include <minizip/unzip.h>
#include <xlsxwriter.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace lotmere {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::error_code& code) {
  std::error_code unknown;
  throw fs::filesystem_error("spreadsheet", fs::temp_directory_path(unknown), code);
}

void check(lxw_error error) {
  if (error != LXW_NO_ERROR) fail(std::make_error_code(std::errc::io_error));
}

lxw_row_t rowOf(int row) { return static_cast<lxw_row_t>(row); }
lxw_col_t columnOf(int column) { return static_cast<lxw_col_t>(column); }

// The parts of a finished file, which are XML texts in a zip archive.
class Archive {
 public:
  explicit Archive(const std::string& name) : zip_(::unzOpen64(name.c_str())) {}

  // Whether every part ends with the end of its outermost element.
  [[nodiscard]] bool isWhole() {
    if (!zip_) return false;
    int step = ::unzGoToFirstFile(zip_.get());
    for (; step == UNZ_OK; step = ::unzGoToNextFile(zip_.get()))
      if (!isWholePart(readPart())) return false;
    return step == UNZ_END_OF_LIST_OF_FILE;
  }

 private:
  struct Close {
    void operator()(void* zip) const { ::unzClose(zip); }
  };

  // Empty where the part can't be read.
  std::string readPart() {
    if (::unzOpenCurrentFile(zip_.get()) != UNZ_OK) return {};
    std::string text;
    std::array<char, std::size_t{64} * 1024> block;
    int size = 0;
    while ((size = ::unzReadCurrentFile(zip_.get(), block.data(), block.size())) > 0)
      text.append(block.data(), static_cast<std::size_t>(size));
    return ::unzCloseCurrentFile(zip_.get()) == UNZ_OK && size == 0 ? text : std::string();
  }

  static bool isWholePart(std::string_view text) {
    const auto declaration = text.find("?>");
    const auto element = text.find('<', declaration);
    if (declaration == std::string_view::npos || element == std::string_view::npos) return false;
    const auto name = text.substr(element + 1, text.find_first_of(" >", element) - element - 1);
    return text.substr(0, text.find_last_not_of('\n') + 1).ends_with(fmt::format("</{}>", name));
  }

  std::unique_ptr<void, Close> zip_;
};

}  // namespace

void Spreadsheet::Free::operator()(lxw_workbook* book) const { ::lxw_workbook_free(book); }

Spreadsheet::Spreadsheet(const char* sheet_name)
    : book_(::workbook_new(file_.name().c_str())),
      sheet_(::workbook_add_worksheet(book_.get(), sheet_name)),
      date_format_(::workbook_add_format(book_.get())),
      ball_format_(::workbook_add_format(book_.get())),
      head_format_(::workbook_add_format(book_.get())) {
  if (!book_ || sheet_ == nullptr || date_format_ == nullptr || ball_format_ == nullptr ||
      head_format_ == nullptr)
    fail(std::make_error_code(std::errc::not_enough_memory));
  ::format_set_num_format(date_format_, "yyyy-mm-dd");
  ::format_set_num_format(ball_format_, "00");
  ::format_set_bold(head_format_);
}

void Spreadsheet::putNumber(int row, int column, double number) {
  check(::worksheet_write_number(sheet_, rowOf(row), columnOf(column), number, nullptr));
}

void Spreadsheet::putBall(int row, int column, int number) {
  check(::worksheet_write_number(sheet_, rowOf(row), columnOf(column), number, ball_format_));
}

void Spreadsheet::putText(int row, int column, const std::string& text) {
  check(::worksheet_write_string(sheet_, rowOf(row), columnOf(column), text.c_str(), nullptr));
}

void Spreadsheet::putDate(int row, int column, Date date) {
  const std::chrono::year_month_day day{date};
  lxw_datetime value{int(day.year()), int(unsigned(day.month())), int(unsigned(day.day())), 0, 0, 0};
  check(::worksheet_write_datetime(sheet_, rowOf(row), columnOf(column), &value, date_format_));
}

void Spreadsheet::putHead(int column, const std::string& text) {
  check(::worksheet_write_string(sheet_, 0, columnOf(column), text.c_str(), head_format_));
}

void Spreadsheet::setWidth(int column, double width) {
  check(::worksheet_set_column(sheet_, columnOf(column), columnOf(column), width, nullptr));
}

void Spreadsheet::freezeHead() { ::worksheet_freeze_panes(sheet_, 1, 0); }

std::string Spreadsheet::finish() {
  check(::workbook_close(book_.release()));
  // The library doesn't look whether the disk took all that it wrote to its intermediate files.
  if (!Archive(file_.name()).isWhole()) fail(std::make_error_code(std::errc::no_space_on_device));
  return file_.bytes();
}

}  // namespace lotmere

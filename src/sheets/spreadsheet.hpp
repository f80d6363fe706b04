// A spreadsheet file (.xlsx) with one sheet, made in memory.
#pragma once

#include <memory>
#include <string>

#include "base/dates.hpp"
#include "base/platform.hpp"

struct lxw_format;
struct lxw_workbook;
struct lxw_worksheet;

namespace lotmere {

// Rows and columns count from 0. Every function throws std::filesystem::filesystem_error when the machine
// or the library refuses, and nothing of the file is left then.
class Spreadsheet {
 public:
  explicit Spreadsheet(const char* sheet_name);

  void putNumber(int row, int column, double number);
  // Shown with at least two digits, as the numbers of balls are.
  void putBall(int row, int column, int number);
  // An empty text leaves the cell empty.
  void putText(int row, int column, const std::string& text);
  // A day from the year 1900 on, as a date of the sheet and shown as 2026-08-20.
  void putDate(int row, int column, Date date);
  // The text of a column's head, in bold.
  void putHead(int column, const std::string& text);
  // In characters.
  void setWidth(int column, double width);
  // The first row stays in sight while the others are scrolled.
  void freezeHead();

  // The bytes of the file; nothing may be put into it any more. Takes some tenths of a second for a long
  // history and touches nothing but this object, so that it can run beside the thread that serves the
  // user. Its intermediate files have no name in the temporary folder; a full one is a failure.
  [[nodiscard]] std::string finish();

 private:
  struct Free {
    void operator()(lxw_workbook* book) const;
  };

  MemoryFile file_;
  std::unique_ptr<lxw_workbook, Free> book_;
  lxw_worksheet* sheet_;
  lxw_format* date_format_;
  lxw_format* ball_format_;
  lxw_format* head_format_;
};

}  // namespace lotmere

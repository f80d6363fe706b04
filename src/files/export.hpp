// The ticket file: one line a ticket, in one of two layouts that bet sites read, or a table for spreadsheets.
#pragma once

#include <filesystem>
#include <string>

#include "base/desk.hpp"
#include "base/outcome.hpp"
#include "base/platform.hpp"
#include "game/game.hpp"
#include "store/store.hpp"

namespace lotmere {

enum class TicketFile { text, spreadsheet, csv };

// What the name of a file asks for: a table where it ends in ".xlsx" or ".csv", else text.
[[nodiscard]] TicketFile ticketFileOf(const std::filesystem::path& file);

// What a line holds, and how it is written. A table has a column for each number and no empty lines;
// `separator` and `format` are those of text alone.
struct ExportSwitches {
  bool seq = false;        // the running number
  bool period = false;     // the period
  bool numbers = true;     // the six reds and the blue
  bool separator = false;  // an empty line behind every fifth ticket
  int format = 0;          // 0: blanks and "+"; 1: every blank a comma, "+" a "|"
  TicketFile file = TicketFile::text;
};

// The line of one ticket, without a line end: "12      2007001   01 02 03 04 05 06+07" with everything on.
// The running number is filled up with blanks to eight places, three blanks follow the period, blanks at both
// ends are cut off; format 1 turns those in between into commas. An empty text when nothing is switched on.
[[nodiscard]] std::string exportLine(int seq, PeriodNo period, const DrawNumbers& numbers,
                                     const ExportSwitches& switches);

// Writes the tickets of a period to `target` in the order of their running numbers, lines ended by CR LF, and
// returns how many there were. Appends "号码导出完成．" to the running text. A period without tickets writes
// nothing. The file is written whole or not at all: throws std::filesystem::filesystem_error when the machine
// refuses (as FileSystem::writeWhole does), SQLite::Exception when the store does; an earlier file then
// stands as it was.
int exportTickets(Store& store, Desk& desk, PeriodNo period, const std::filesystem::path& target,
                  const ExportSwitches& switches, FileSystem& files = realFiles());

// The command "导出": exports the period of the first ticket of the table. With no ticket at all nothing is
// written and a warning says so. A target that leads to one of the program's own files (isOwnFile) is
// refused, and so are more tickets than a spreadsheet has rows. A table can be stopped, which writes nothing.
// Throws as exportTickets does.
Exported exportCommand(Store& store, Desk& desk, const std::filesystem::path& target,
                       const ExportSwitches& switches, FileSystem& files = realFiles());

}  // namespace lotmere

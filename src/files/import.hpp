// Tickets from a text file, a line a ticket, in whatever separators other programs write.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "base/desk.hpp"
#include "base/outcome.hpp"
#include "game/game.hpp"
#include "store/store.hpp"
#include "tickets/upkeep.hpp"

namespace lotmere {

// What stands in a line in front of the seven numbers.
enum class ImportFormat : int {
  numbers = 0,         // nothing
  period_numbers = 1,  // anything up to the first seven digits in a row, which are the period
  seq_numbers = 2,     // one field, which is passed over
  compound = 3         // nothing; the line is a compound bet of many tickets (readCompoundLine)
};

// The tickets of compound bets that one import takes at most: a slip of the hand can't fill the disk.
inline constexpr std::int64_t kMostCompoundTickets = 1'000'000;

// The period is that of all tickets, but for lines that hold their own.
struct ImportChoice {
  ImportFormat format = ImportFormat::numbers;
  PeriodNo period = 0;
};

// What the dialog's two fields say: the index of the format and the period as typed. Where the lines hold no
// period of their own the text must name one (parsePeriod); else tells so and gives nothing. The dialog
// proposes nextPeriod() with today as the date.
[[nodiscard]] std::optional<ImportChoice> readImportChoice(Desk& desk, int format, std::string_view period);

struct ImportTicket {
  PeriodNo period = 0;
  DrawNumbers numbers;
  bool more = false;  // further numbers follow the seventh, as with a line of another format

  friend bool operator==(const ImportTicket&, const ImportTicket&) = default;
};

// Reads one line of UTF-8 of any format but compound, without its line end. Nothing where the trimmed line
// has fewer than 15 characters, its period is missing or 0, or its first seven numbers aren't six of 1 to 33
// and one of 1 to 16. Numbers are runs of digits; blank, tab, "-", "+", ",", "|" and the full-width blank,
// "，", "＋" and "｜" stand between them; full-width digits are digits; anything else behind a number is passed
// over up to the next separator. Order and repeated reds don't matter.
[[nodiscard]] std::optional<ImportTicket> importLine(std::string_view line, const ImportChoice& choice);

struct ImportResult {
  Outcome outcome = Outcome::refused;
  int count = 0;                   // tickets added
  int skipped = 0;                 // lines that aren't empty and hold no ticket
  std::int64_t first_skipped = 0;  // number of the first of them, from 1; 0 without one
  std::string refusal{};           // why the whole file was refused, in a line for the user; else empty
  bool cancelled = false;          // by an answer of the user, which needs no reason
};

// Adds the tickets of a file of UTF-8 or GB18030 to `日志表`, in one change, in the order of the lines. The
// whole file is read before anything is asked, and all is asked before anything is changed: whether to go on
// where lines hold more numbers than the format takes, and, with tickets there already and unless `existing`
// says it, whether they stay. New rows then go on behind the highest `ID` and the highest `序号`, else both
// begin at 1 and the old rows of all periods are gone. Refused whole are what is no text, compound bets in
// another format than theirs, and too many of them. A cancel, a failure, or a file without a single ticket
// leaves everything as it was, the old rows as well; such a file asks nothing. Only the end of the file ends
// it: it can't be stopped. Linear in the size of the file; serves the desk. Throws
// std::filesystem::filesystem_error when the file can't be read, SQLite::Exception when the store refuses.
[[nodiscard]] ImportResult importTickets(Store& store, Desk& desk, const std::filesystem::path& file,
                                         const ImportChoice& choice, Existing existing = Existing::ask);

// The command "导入": imports, and tells the number of tickets and of lines skipped, or why there are none,
// in the running text as well; after a cancelled question it tells nothing. Without a choice the dialog was
// cancelled, and the number is 0. Throws as importTickets does.
ImportResult importCommand(Store& store, Desk& desk, const std::filesystem::path& file,
                           const std::optional<ImportChoice>& choice, Existing existing = Existing::ask);

}  // namespace lotmere

// Draws from a text that the user has: a file, or what another program writes into the standard input.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "base/dates.hpp"
#include "base/desk.hpp"
#include "base/outcome.hpp"
#include "game/game.hpp"
#include "store/store.hpp"

namespace lotmere {

// What becomes of a stored draw of which the list says something else.
enum class Conflicts { ask, keep, replace };

struct DrawImport {
  Outcome outcome = Outcome::refused;  // done: the list holds at least one draw, new or not
  std::string cause{};  // of a refusal, in a few words; empty when the user thought better of it

  int read = 0;                       // draws of the list
  int added = 0;                      // of them: draws that the history didn't have
  int changed = 0;                    // stored draws that got another date or other numbers
  int kept = 0;                       // stored draws that differ and stay
  int skipped = 0;                    // lines that mean a draw and are none
  std::vector<std::string> faults{};  // of the first few of these
  PeriodNo newest = 0;                // of the history behind the import
};

// Adds the draws of a text in any form (see readAnyDrawList) and any encoding (see decodeBytes) to the
// history; "-" is the standard input. Where stored draws differ the user is asked, once for all of them, the
// first few shown with both rows; a cancel changes nothing. Draws and the statistics of the earliest of them
// and of all behind it stand in one change: a failure, a stop or a crash leaves the history as it was.
// Refused are what is no text, a list without dates, and one without a single draw. Tells nothing: see
// importReport. Throws std::filesystem::filesystem_error when the file can't be read, SQLite::Exception when
// the store refuses.
[[nodiscard]] DrawImport importDraws(Store& store, Desk& desk, const std::filesystem::path& file, Date today,
                                     Conflicts conflicts = Conflicts::ask);

// The same from a text that the user has copied.
[[nodiscard]] DrawImport importDrawText(Store& store, Desk& desk, std::string_view text, Date today,
                                        Conflicts conflicts = Conflicts::ask);

// What an import that is done comes to, in lines.
[[nodiscard]] std::vector<std::string> importReport(const DrawImport& result);

// Tells why an import was refused or that it was stopped; nothing after a question that the user cancelled.
void tellNoImport(Desk& desk, const DrawImport& result);

}  // namespace lotmere

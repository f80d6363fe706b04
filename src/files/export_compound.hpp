// The ticket file as compound bets: one line a bet, many tickets in a line.
#pragma once

#include <filesystem>

#include "base/desk.hpp"
#include "base/outcome.hpp"
#include "base/platform.hpp"
#include "store/store.hpp"

namespace lotmere {

struct CompoundExport {
  Outcome outcome = Outcome::refused;
  int tickets = 0;
  int bets = 0;
};

// Writes the tickets of the period of the first ticket of the table to `target` as the bets that
// joinTickets() makes of them, a line each (compoundLine), lines ended by CR LF: together exactly these
// tickets. Appends a line to the running text. With no ticket nothing is written and a warning says so; a
// target that leads to one of the program's own files is refused; a stop writes nothing and is told. The
// file is written whole or not at all: throws std::filesystem::filesystem_error when the machine refuses (as
// FileSystem::writeWhole does), SQLite::Exception when the store does.
CompoundExport exportCompound(Store& store, Desk& desk, const std::filesystem::path& target,
                              FileSystem& files = realFiles());

}  // namespace lotmere

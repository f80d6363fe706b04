// A compound bet as a line of a ticket file.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tickets/compound_bets.hpp"

namespace lotmere {

// What a slip takes at most: 20 reds are 38,760 sixes.
inline constexpr int kMostRedsOfLine = 20;

// A bet as a line without its end: "01 02 03 05 08 13 21 + 04 09 (14注)".
[[nodiscard]] std::string compoundLine(const CompoundBet& bet);

// Reads such a line of UTF-8: reds, a "+" or "|", blues, and the number of tickets, which may be missing.
// Numbers stand between blanks, tabs, commas, semicolons or "-"; full-width characters are plain ones. Seven
// to twenty reds and the blues come in any order. Nothing where a number is outside its range or, but for
// one of six reds, repeats, where anything else stands in the line, or where the number of tickets is
// another one.
[[nodiscard]] std::optional<CompoundBet> readCompoundLine(std::string_view line);

// Whether a line of UTF-8 has at least seven numbers and ends with a number of tickets, "(14注)", as a line of
// compound bets.
[[nodiscard]] bool hasTicketCount(std::string_view line);

}  // namespace lotmere

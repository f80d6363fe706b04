// How numbers are written and read, and the scrambler of stored names.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/game.hpp"

namespace lotmere {

inline constexpr std::string_view kLineBreak = "\r\n";

// A ball: two digits with a leading zero, "05".
[[nodiscard]] std::string format_Ball(int number);

// Replaces each ASCII digit by its full-width form and leaves every other character: counts and periods in
// messages use it.
[[nodiscard]] std::string to_QuanJiao(std::string_view text);
[[nodiscard]] std::string to_QuanJiao(std::int64_t number);

// Removes blanks, tabs and line ends on both sides.
[[nodiscard]] std::string_view trim(std::string_view text);

// The leading decimal number of a text, blanks skipped; 0 where no digit stands. Never overflows: it stops at
// ten digits.
[[nodiscard]] std::int64_t leading_Number(std::string_view text);

// A period as a person types it: the number value of the first seven characters of the trimmed text. Letters
// end the number; an empty or senseless text gives 0, and a value below 1 means that no period was given.
[[nodiscard]] PeriodNo parse_Period(std::string_view text);

// The number of characters (code points) of a UTF-8 text.
[[nodiscard]] std::size_t count_Characters(std::string_view text);

// A text that somebody typed as a refusal shows it, in quotation marks: cut behind so many characters, and
// nothing in it that steers a terminal.
[[nodiscard]] std::string quote_Typed(std::string_view text, std::size_t longest = 40);

// Scrambles (mode other than 0: reversed, each byte raised by 5) or unscrambles (mode 0: each byte lowered by
// 5, then reversed) a stored name. Unscrambling asks for a key of exactly eight characters and gives an empty
// text with any other.
[[nodiscard]] std::string decode_Text(std::string_view text, int mode, std::string_view key);

}  // namespace lotmere

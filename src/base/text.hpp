// How numbers are written and read, and the scrambler of stored names.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace lotmere {

inline constexpr std::string_view kLineBreak = "\r\n";

// Replaces each ASCII digit by its full-width form and leaves every other character: counts and periods in
// messages use it.
[[nodiscard]] std::string toFullWidth(std::string_view text);
[[nodiscard]] std::string toFullWidth(std::int64_t number);

// Removes blanks, tabs and line ends on both sides.
[[nodiscard]] std::string_view trim(std::string_view text);

// The leading decimal number of a text, blanks skipped; 0 where no digit stands. Never overflows: it stops at
// ten digits.
[[nodiscard]] std::int64_t leadingNumber(std::string_view text);

// A number as a user types it, without the blanks around it, full-width ones as well, and with ASCII digits
// in the place of full-width ones. Other characters stay.
[[nodiscard]] std::string plainDigits(std::string_view text);

// A text whose full-width characters are the ASCII ones that they mean, the full-width blank as well. Others
// stay.
[[nodiscard]] std::string halfWidth(std::string_view text);

// A whole number as typed, with a minus in front or not; nothing for any other text and beyond 64 bits.
[[nodiscard]] std::optional<std::int64_t> parseWhole(std::string_view text);

// The number of characters (code points) of a UTF-8 text.
[[nodiscard]] std::size_t countCharacters(std::string_view text);

// A text that somebody typed as a refusal shows it, in quotation marks: cut behind so many characters, and
// nothing in it that steers a terminal.
[[nodiscard]] std::string quoteTyped(std::string_view text, std::size_t longest = 40);

// Scrambles (mode other than 0: reversed, each byte raised by 5) or unscrambles (mode 0: each byte lowered by
// 5, then reversed) a stored name. Unscrambling asks for a key of exactly eight characters and gives an empty
// text with any other.
[[nodiscard]] std::string decodeText(std::string_view text, int mode, std::string_view key);

}  // namespace lotmere

// One line of a ticket file, read in a single walk over its bytes. Separators and digits are what matters; the
// bytes of all other characters are passed over, and none of them can be taken for a digit in UTF-8.
#include <algorithm>

#include "core/text.hpp"
#include "files/import.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kShortestLine = 15;  // characters
constexpr std::size_t kPeriodDigits = 7;
constexpr std::string_view kWideComma = "，";
constexpr std::string_view kWideBlank = "\u3000";

constexpr bool is_Digit(char c) { return c >= '0' && c <= '9'; }

constexpr bool starts_WithSeparator(std::string_view text) {
  switch (text.front()) {
    case ' ':
    case ',':
    case '-':
    case '+':
    case '|':
      return true;
    case kWideComma.front():
    case kWideBlank.front():
      return text.starts_with(kWideComma) || text.starts_with(kWideBlank);
    default:
      return false;
  }
}

bool is_TooShort(std::string_view line) {
  if (line.size() < kShortestLine) return true;
  // A character has four bytes at most: a look at the front tells.
  constexpr std::size_t most_bytes = 4;
  return count_Characters(line.substr(0, most_bytes * kShortestLine)) < kShortestLine;
}

// Goes on to the first digit, or to the end.
void skip_ToDigit(std::string_view& text) {
  std::size_t at = 0;
  while (at < text.size() && !is_Digit(text[at])) ++at;
  text.remove_prefix(at);
}

// Goes on to the first separator, or to the end.
void skip_ToSeparator(std::string_view& text) {
  while (!text.empty() && !starts_WithSeparator(text)) text.remove_prefix(1);
}

// Takes the digits that the text begins with; 0 where it begins with none. A value beyond every number of the
// game stays one.
int take_Number(std::string_view& text) {
  constexpr int beyond = 1000;
  int value = 0;
  std::size_t at = 0;
  for (; at < text.size() && is_Digit(text[at]); ++at)
    value = std::min(beyond, 10 * value + (text[at] - '0'));
  text.remove_prefix(at);
  return value;
}

// Takes everything up to the end of the first seven digits in a row, and gives their value; 0 without them.
PeriodNo take_Period(std::string_view& text) {
  std::size_t digits = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    digits = is_Digit(text[at]) ? digits + 1 : 0;
    if (digits < kPeriodDigits) continue;
    const PeriodNo period = parse_Period(text.substr(at + 1 - kPeriodDigits, kPeriodDigits));
    text.remove_prefix(at + 1);
    return period;
  }
  return 0;
}

// The next seven numbers, 0 where there are fewer.
DrawNumbers take_Numbers(std::string_view text) {
  std::array<int, kRedsPerTicket + 1> values{};
  for (int& value : values) {
    value = take_Number(text);
    skip_ToSeparator(text);
    skip_ToDigit(text);
    if (text.empty()) break;
  }
  DrawNumbers numbers;
  std::copy_n(values.begin(), kRedsPerTicket, numbers.reds.begin());
  numbers.blue = values.back();
  return numbers;
}

bool in_Range(const DrawNumbers& numbers) {
  return std::all_of(numbers.reds.begin(), numbers.reds.end(),
                     [](int red) { return red >= 1 && red <= kRedCount; }) &&
         numbers.blue >= 1 && numbers.blue <= kBlueCount;
}

}  // namespace

std::optional<ImportTicket> import_Line(std::string_view line, const ImportChoice& choice) {
  line = trim(line);
  if (is_TooShort(line)) return std::nullopt;
  ImportTicket ticket{choice.period, {}};
  if (choice.format == ImportFormat::period_numbers) {
    ticket.period = take_Period(line);
    if (ticket.period < 1) return std::nullopt;
  }
  if (choice.format == ImportFormat::seq_numbers) skip_ToSeparator(line);
  if (choice.format != ImportFormat::numbers) skip_ToDigit(line);
  ticket.numbers = take_Numbers(line);
  if (!in_Range(ticket.numbers)) return std::nullopt;
  return ticket;
}

}  // namespace lotmere

// One line of a ticket file, read in a single walk over its bytes. Separators and digits are what matters;
// the bytes of all other characters are passed over, and none of them can be taken for a digit in UTF-8.
#include <algorithm>
#include <string>
#include <utility>

#include "base/text.hpp"
#include "files/import.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kShortestLine = 15;  // characters
constexpr std::size_t kPeriodDigits = 7;

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

constexpr bool isSeparator(char c) {
  return c == ' ' || c == '\t' || c == ',' || c == '-' || c == '+' || c == '|';
}

// The plain character that a full-width one at the front of a text means; 0 where it means none.
char plainCharacter(std::string_view text) {
  constexpr std::pair<std::string_view, char> separators[] = {
      {"，", ','}, {"＋", '+'}, {"｜", '|'}, {"\u3000", ' '}};
  for (const auto& [wide, plain] : separators)
    if (text.starts_with(wide)) return plain;
  // U+FF10 is EF BC 90 in UTF-8, and the ten digits follow one another.
  constexpr std::string_view front = "\xEF\xBC";
  const int digit =
      text.size() > 2 && text.starts_with(front) ? static_cast<unsigned char>(text[2]) - 0x90 : -1;
  return digit >= 0 && digit <= 9 ? static_cast<char>('0' + digit) : '\0';
}

// The line with every full-width digit and separator as the plain one that it means.
std::string plainLine(std::string_view line) {
  constexpr std::size_t wide_bytes = 3;
  std::string plain;
  plain.reserve(line.size());
  while (!line.empty()) {
    const char meant = static_cast<unsigned char>(line.front()) < 0x80 ? '\0' : plainCharacter(line);
    plain += meant != '\0' ? meant : line.front();
    line.remove_prefix(meant != '\0' ? wide_bytes : 1);
  }
  return plain;
}

bool isTooShort(std::string_view line) {
  if (line.size() < kShortestLine) return true;
  // A character has four bytes at most: a look at the front tells.
  constexpr std::size_t most_bytes = 4;
  return countCharacters(line.substr(0, most_bytes * kShortestLine)) < kShortestLine;
}

// Goes on to the first digit, or to the end.
void skipToDigit(std::string_view& text) {
  std::size_t at = 0;
  while (at < text.size() && !isDigit(text[at])) ++at;
  text.remove_prefix(at);
}

// Goes on to the first separator, or to the end.
void skipToSeparator(std::string_view& text) {
  std::size_t at = 0;
  while (at < text.size() && !isSeparator(text[at])) ++at;
  text.remove_prefix(at);
}

// Takes the digits that the text begins with; 0 where it begins with none. A value beyond every number of the
// game stays one.
int takeNumber(std::string_view& text) {
  constexpr int beyond = 1000;
  int value = 0;
  std::size_t at = 0;
  for (; at < text.size() && isDigit(text[at]); ++at) value = std::min(beyond, 10 * value + (text[at] - '0'));
  text.remove_prefix(at);
  return value;
}

// Takes everything up to the end of the first seven digits in a row, and gives their value; 0 without them.
PeriodNo takePeriod(std::string_view& text) {
  std::size_t digits = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    digits = isDigit(text[at]) ? digits + 1 : 0;
    if (digits < kPeriodDigits) continue;
    const PeriodNo period =
        static_cast<PeriodNo>(leadingNumber(text.substr(at + 1 - kPeriodDigits, kPeriodDigits)));
    text.remove_prefix(at + 1);
    return period;
  }
  return 0;
}

// Takes the next seven numbers, 0 where there are fewer.
DrawNumbers takeNumbers(std::string_view& text) {
  std::array<int, kRedsPerTicket + 1> values{};
  for (int& value : values) {
    value = takeNumber(text);
    skipToSeparator(text);
    skipToDigit(text);
    if (text.empty()) break;
  }
  DrawNumbers numbers;
  std::copy_n(values.begin(), kRedsPerTicket, numbers.reds.begin());
  numbers.blue = values.back();
  return numbers;
}

bool inRange(const DrawNumbers& numbers) {
  return std::all_of(numbers.reds.begin(), numbers.reds.end(),
                     [](int red) { return red >= 1 && red <= kRedCount; }) &&
         numbers.blue >= 1 && numbers.blue <= kBlueCount;
}

// A line whose full-width characters are plain ones.
std::optional<ImportTicket> readLine(std::string_view line, const ImportChoice& choice) {
  ImportTicket ticket{choice.period, {}};
  if (choice.format == ImportFormat::period_numbers) {
    ticket.period = takePeriod(line);
    if (ticket.period < 1) return std::nullopt;
  }
  if (choice.format == ImportFormat::seq_numbers) skipToSeparator(line);
  if (choice.format != ImportFormat::numbers) skipToDigit(line);
  ticket.numbers = takeNumbers(line);
  if (!inRange(ticket.numbers)) return std::nullopt;
  ticket.more = !line.empty();
  return ticket;
}

}  // namespace

std::optional<ImportTicket> importLine(std::string_view line, const ImportChoice& choice) {
  line = trim(line);
  if (isTooShort(line)) return std::nullopt;
  const bool plain = std::all_of(line.begin(), line.end(), [](unsigned char c) { return c < 0x80; });
  return plain ? readLine(line, choice) : readLine(plainLine(line), choice);
}

}  // namespace lotmere

#include "files/compound_line.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cstdint>

#include "base/text.hpp"

namespace lotmere {
namespace {

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kSeparators = " \t,;-";
constexpr std::size_t kNumbersOfTicket = kRedsPerTicket + 1;
constexpr std::size_t kLongestCount = 9;  // digits

// A line, its number of tickets taken off the end.
struct SplitLine {
  std::string numbers;
  std::optional<std::int64_t> count;
};

SplitLine splitLine(std::string_view line) {
  SplitLine split{halfWidth(line), std::nullopt};
  std::string_view rest = trim(split.numbers);
  if (rest.ends_with(')')) rest = trim(rest.substr(0, rest.size() - 1));
  constexpr std::string_view word = "注";
  if (!rest.ends_with(word)) return split;
  rest = trim(rest.substr(0, rest.size() - word.size()));
  const std::size_t end = rest.find_last_not_of(kDigits);
  const std::string_view digits = rest.substr(end == std::string_view::npos ? 0 : end + 1);
  if (digits.empty() || digits.size() > kLongestCount) return split;
  rest = trim(rest.substr(0, rest.size() - digits.size()));
  if (rest.ends_with('(')) rest.remove_suffix(1);
  split.count = leadingNumber(digits);
  split.numbers = trim(rest);
  return split;
}

// Numbers of 1 to `most` in any order; nothing where anything else stands there.
std::optional<std::vector<int>> readNumbers(std::string_view text, int most) {
  std::vector<int> numbers;
  while (!text.empty()) {
    const std::size_t digits = std::min(text.find_first_not_of(kDigits), text.size());
    if (digits == 0) {
      if (kSeparators.find(text.front()) == std::string_view::npos) return std::nullopt;
      text.remove_prefix(1);
      continue;
    }
    const std::int64_t number = leadingNumber(text.substr(0, digits));
    if (number < 1 || number > most) return std::nullopt;
    numbers.push_back(static_cast<int>(number));
    text.remove_prefix(digits);
  }
  return numbers;
}

// Sorts; false where a number stands twice.
bool settle(std::vector<int>& numbers) {
  std::ranges::sort(numbers);
  return std::ranges::adjacent_find(numbers) == numbers.end();
}

}  // namespace

std::string compoundLine(const CompoundBet& bet) {
  return fmt::format("{:02} + {:02} ({}注)", fmt::join(bet.reds, " "), fmt::join(bet.blues, " "),
                     countTickets(bet));
}

std::optional<CompoundBet> readCompoundLine(std::string_view line) {
  const auto [text, count] = splitLine(line);
  const std::size_t mark = text.find_first_of("+|");
  if (mark == std::string::npos) return std::nullopt;
  auto reds = readNumbers(std::string_view(text).substr(0, mark), kRedCount);
  auto blues = readNumbers(std::string_view(text).substr(mark + 1), kBlueCount);
  if (!reds || !blues || reds->size() < kRedsPerTicket || reds->size() > kMostRedsOfLine || blues->empty())
    return std::nullopt;
  if (!settle(*blues) || (reds->size() > kRedsPerTicket && !settle(*reds))) return std::nullopt;
  CompoundBet bet{*std::move(reds), *std::move(blues)};
  if (count && *count != countTickets(bet)) return std::nullopt;
  return bet;
}

bool hasTicketCount(std::string_view line) {
  const auto [text, count] = splitLine(line);
  if (!count) return false;
  std::size_t numbers = 0;
  bool in_number = false;
  for (const char c : text) {
    const bool digit = kDigits.find(c) != std::string_view::npos;
    numbers += digit && !in_number ? 1 : 0;
    in_number = digit;
  }
  return numbers >= kNumbersOfTicket;
}

}  // namespace lotmere

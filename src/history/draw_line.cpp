#include "history/draw_line.hpp"

#include <algorithm>
#include <span>
#include <string>
#include <utility>

#include "base/text.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kPeriodDigits = 7;
constexpr std::size_t kShortPeriodDigits = 5;
constexpr PeriodNo kCentury = 2'000'000;  // of a period
constexpr std::size_t kNumbersOfDraw = kRedsPerTicket + 1;

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::size_t countDigits(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::find_if_not(text, isDigit) - text.begin());
}

int valueOf(std::string_view digits) { return static_cast<int>(leadingNumber(digits)); }

enum class Kind { number, period, date, other };

struct Token {
  Kind kind = Kind::other;
  bool marked = false;  // a "+" or "|" stands in front of it
  int value = 0;        // of a number or a period, the latter as it stands
  std::size_t digits = 0;
  std::optional<Date> date{};
};

std::optional<Date> calendarDay(int year, int month, int day) {
  const std::chrono::year_month_day date{std::chrono::year{year}, std::chrono::month(unsigned(month)),
                                         std::chrono::day(unsigned(day))};
  return date.ok() ? std::optional<Date>(date) : std::nullopt;
}

// Takes a text off the front, with the blanks around it where `blanks` says so. False, and nothing is taken,
// where it isn't there.
bool take(std::string_view& text, std::string_view wanted, bool blanks) {
  std::string_view rest = text;
  while (blanks && rest.starts_with(' ')) rest.remove_prefix(1);
  if (!rest.starts_with(wanted)) return false;
  rest.remove_prefix(wanted.size());
  while (blanks && rest.starts_with(' ')) rest.remove_prefix(1);
  text = rest;
  return true;
}

// Takes one or two digits; nothing where more stand there, or none.
std::optional<int> takeTwoDigits(std::string_view& text) {
  const std::size_t digits = countDigits(text);
  if (digits == 0 || digits > 2) return std::nullopt;
  const int value = valueOf(text.substr(0, digits));
  text.remove_prefix(digits);
  return value;
}

// A year, a month and a day from the front of a text; the token is of another kind where they don't stand
// there.
Token takeDate(std::string_view& text) {
  constexpr std::size_t year_digits = 4, compact_digits = 8;
  const std::size_t digits = countDigits(text);
  if (digits == compact_digits) {
    const int value = valueOf(text.substr(0, digits));
    text.remove_prefix(digits);
    return {.kind = Kind::date,
            .digits = digits,
            .date = calendarDay(value / 10'000, value / 100 % 100, value % 100)};
  }
  if (digits != year_digits) return {};
  constexpr std::pair<std::string_view, std::string_view> separators[] = {
      {"-", "-"}, {"/", "/"}, {".", "."}, {"年", "月"}};
  for (const auto& [first, second] : separators) {
    const bool words = first == "年";
    std::string_view rest = text.substr(digits);
    if (!take(rest, first, words)) continue;
    const auto month = takeTwoDigits(rest);
    if (!month || !take(rest, second, words)) continue;
    const auto day = takeTwoDigits(rest);
    if (!day) continue;
    const int year = valueOf(text.substr(0, digits));
    text = rest;
    return {.kind = Kind::date, .date = calendarDay(year, *month, *day)};
  }
  return {};
}

// Takes a time of day, as 21:15 or 21:15:00.
bool takeTime(std::string_view& text) {
  std::string_view rest = text;
  if (!takeTwoDigits(rest) || !take(rest, ":", false) || !takeTwoDigits(rest)) return false;
  if (take(rest, ":", false)) static_cast<void>(takeTwoDigits(rest));
  text = rest;
  return true;
}

// Takes a number with a decimal point in it, which no number of a draw has.
bool takeDecimal(std::string_view& text) {
  const std::size_t digits = countDigits(text);
  if (text.size() <= digits + 1 || text[digits] != '.' || !isDigit(text[digits + 1])) return false;
  while (!text.empty() && (isDigit(text.front()) || text.front() == '.')) text.remove_prefix(1);
  return true;
}

// Six reds, with the blue or without, that nothing stands between.
bool isGlued(std::string_view run) {
  if (run.size() != 2 * kRedsPerTicket && run.size() != 2 * kNumbersOfDraw) return false;
  for (std::size_t at = 0; at < run.size(); at += 2)
    if (const int number = valueOf(run.substr(at, 2)); number < 1 || number > kRedCount) return false;
  return true;
}

void takeToken(std::string_view& text, bool marked, std::vector<Token>& tokens) {
  if (Token date = takeDate(text); date.kind == Kind::date) {
    tokens.push_back(date);
    return;
  }
  if (takeTime(text) || takeDecimal(text)) {
    tokens.emplace_back();
    return;
  }
  const std::string_view run = text.substr(0, countDigits(text));
  text.remove_prefix(run.size());
  if (isGlued(run)) {
    for (std::size_t at = 0; at < run.size(); at += 2)
      tokens.push_back({Kind::number, marked && at == 0, valueOf(run.substr(at, 2)), 2});
    return;
  }
  Token token{Kind::other, marked, valueOf(run), run.size()};
  if (run.size() <= 2) token.kind = Kind::number;
  if (run.size() == kPeriodDigits || run.size() == kShortPeriodDigits) token.kind = Kind::period;
  tokens.push_back(token);
}

std::vector<Token> tokensOf(std::string_view text) {
  std::vector<Token> tokens;
  bool marked = false;
  while (!text.empty()) {
    if (isDigit(text.front())) {
      takeToken(text, std::exchange(marked, false), tokens);
      continue;
    }
    marked = marked || text.front() == '+' || text.front() == '|';
    text.remove_prefix(1);
  }
  return tokens;
}

struct Run {
  std::size_t first = 0;
  std::size_t count = 0;
};

// The first numbers in a row that are enough for a draw; none at the end of the line.
Run findNumbers(const std::vector<Token>& tokens) {
  Run run;
  for (; run.first < tokens.size(); run.first += run.count + 1) {
    run.count = 0;
    while (run.first + run.count < tokens.size() && tokens[run.first + run.count].kind == Kind::number)
      ++run.count;
    if (run.count >= kNumbersOfDraw) return run;
  }
  return {tokens.size(), 0};
}

PeriodNo periodOf(const Token& token) {
  return token.digits == kPeriodDigits ? token.value : kCentury + token.value;
}

// How well a token serves as the period of a line, the lower the better: in front of the numbers, of the
// date's year, in full.
int rankOf(const Token& token, bool in_front, const LineField<Date>& date) {
  const bool same_year =
      isPeriod(periodOf(token)) && date.value && periodOf(token) / 1000 == yearOf(*date.value);
  return (in_front ? 0 : 4) + (same_year ? 0 : 2) + (token.digits == kPeriodDigits ? 0 : 1);
}

LineField<PeriodNo> findPeriod(const std::vector<Token>& tokens, std::size_t numbers,
                               const LineField<Date>& date) {
  const Token* best = nullptr;
  int best_rank = 0;
  for (std::size_t place = 0; place < tokens.size(); ++place) {
    if (tokens[place].kind != Kind::period) continue;
    const int rank = rankOf(tokens[place], place < numbers, date);
    if (best && rank >= best_rank) continue;
    best = &tokens[place];
    best_rank = rank;
  }
  if (!best) return {};
  const PeriodNo period = periodOf(*best);
  return {true, isPeriod(period) ? std::optional(period) : std::nullopt};
}

// The first date with separators, else the first of eight digits: a sum of money may look like one.
LineField<Date> findDate(const std::vector<Token>& tokens) {
  const Token* best = nullptr;
  const auto rank = [](const Token& token) { return (token.date ? 0 : 2) + (token.digits == 0 ? 0 : 1); };
  for (const Token& token : tokens)
    if (token.kind == Kind::date && (!best || rank(token) < rank(*best))) best = &token;
  return best ? LineField<Date>{true, best->date} : LineField<Date>{};
}

// A mark that no other of the six stands beside: where "|" stands between all numbers it shows nothing.
std::optional<std::size_t> findFirstRed(std::span<const Token> run) {
  for (std::size_t blue = kRedsPerTicket; blue < run.size(); ++blue) {
    const auto reds = run.subspan(blue - kRedsPerTicket + 1, kRedsPerTicket - 1);
    if (run[blue].marked && std::ranges::none_of(reds, &Token::marked)) return blue - kRedsPerTicket;
  }
  return std::nullopt;
}

}  // namespace

DrawLine readDrawLine(std::string_view line) {
  const std::vector<Token> tokens = tokensOf(halfWidth(line));
  const Run run = findNumbers(tokens);
  DrawLine result;
  result.date = findDate(tokens);
  result.period = findPeriod(tokens, run.first, result.date);
  const auto numbers = std::span(tokens).subspan(run.first, run.count);
  for (const Token& token : numbers) result.numbers.push_back(token.value);
  result.first_red = findFirstRed(numbers);
  const int said = int(result.period.stands) + int(result.date.stands) + int(run.count > 0);
  const bool begins = !tokens.empty() && tokens[0].digits == kPeriodDigits && isPeriod(tokens[0].value);
  result.means_draw = said > 1 || begins;
  return result;
}

}  // namespace lotmere

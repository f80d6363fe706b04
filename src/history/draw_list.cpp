#include "history/draw_list.hpp"

#include <algorithm>
#include <array>

namespace lotmere {
namespace {

constexpr std::size_t kPeriodLength = 7;
constexpr std::size_t kDatePlace = 8;
constexpr std::size_t kDateLength = 10;
constexpr std::size_t kFirstNumber = 19;
constexpr std::size_t kNumberStep = 3;
constexpr std::size_t kEntryLength = 39;

constexpr bool is_Digit(char c) { return c >= '0' && c <= '9'; }

// A number of two digits; -1 for anything else.
constexpr int two_Digits(std::string_view text) {
  if (!is_Digit(text[0]) || !is_Digit(text[1])) return -1;
  return (text[0] - '0') * 10 + (text[1] - '0');
}

}  // namespace

std::string compactDrawText(std::string_view raw) {
  std::string text;
  text.reserve(raw.size());
  for (const char c : raw) {
    if (is_Digit(c) || c == '/')
      text += c;
    else if (text.empty() || text.back() != '#')
      text += '#';
  }
  return text;
}

DrawList::DrawList(std::string compacted) : text_(std::move(compacted)) {
  std::size_t digits = 0;  // length of the run of digits that ends here
  PeriodNo value = 0;
  for (std::size_t i = 0; i < text_.size(); ++i) {
    if (is_Digit(text_[i])) {
      if (++digits <= kPeriodLength) value = value * 10 + (text_[i] - '0');
      continue;
    }
    // A longer run of digits is no period, even where its end looks like one.
    if (digits == kPeriodLength && text_[i] == '#') place_.try_emplace(value, i - kPeriodLength);
    digits = 0;
    value = 0;
  }
}

std::optional<ListedDraw> DrawList::parseDraw(PeriodNo period) const {
  const auto found = place_.find(period);
  if (found == place_.end() || !is_Period(period) || text_.size() < found->second + kEntryLength)
    return std::nullopt;
  const std::string_view rest = std::string_view(text_).substr(found->second);
  if (rest.size() > kEntryLength && is_Digit(rest[kEntryLength])) return std::nullopt;

  const auto date = parse_Date(rest.substr(kDatePlace, kDateLength), '/');
  std::array<int, kRedsPerTicket + 1> number{};
  for (std::size_t i = 0; i < number.size(); ++i) {
    const std::size_t place = kFirstNumber + i * kNumberStep;
    if (is_Digit(rest[place - 1])) return std::nullopt;
    number[i] = two_Digits(rest.substr(place, 2));
  }
  ListedDraw draw;
  std::copy_n(number.begin(), kRedsPerTicket, draw.numbers.reds.begin());
  draw.numbers.blue = number.back();
  if (!date || !is_Draw(draw.numbers)) return std::nullopt;
  draw.date = *date;
  return draw;
}

PeriodNo DrawList::newest() const {
  PeriodNo newest = 0;
  for (const auto& [period, place] : place_)
    if (period > newest && parseDraw(period)) newest = period;
  return newest;
}

}  // namespace lotmere

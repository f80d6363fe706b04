#include "history/draw_list.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>

#include "base/text_file.hpp"
#include "history/any_draw_list.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kPeriodLength = 7;
constexpr std::size_t kDatePlace = 8;
constexpr std::size_t kDateLength = 10;
constexpr std::size_t kFirstNumber = 19;
constexpr std::size_t kNumberStep = 3;
constexpr std::size_t kEntryLength = 39;

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

// A number of two digits; -1 for anything else.
constexpr int twoDigits(std::string_view text) {
  if (!isDigit(text[0]) || !isDigit(text[1])) return -1;
  return (text[0] - '0') * 10 + (text[1] - '0');
}

// Adds what stays of one character.
void addCompacted(std::string& text, char c) {
  if (isDigit(c) || c == '/')
    text += c;
  else if (text.empty() || text.back() != '#')
    text += '#';
}

// The seven numbers of an entry, or why they can't be read.
std::string readFields(std::string_view entry, std::array<int, kRedsPerTicket + 1>& numbers) {
  if (entry.size() < kEntryLength) return "这一条不完整";
  if (entry.size() > kEntryLength && isDigit(entry[kEntryLength])) return "号码不是两位数";
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const std::size_t place = kFirstNumber + i * kNumberStep;
    numbers[i] = isDigit(entry[place - 1]) ? -1 : twoDigits(entry.substr(place, 2));
    if (numbers[i] < 0) return "号码不是两位数";
  }
  return {};
}

// Why numbers aren't those of a draw; empty where they are.
std::string numberFault(const DrawNumbers& numbers) {
  if (isDraw(numbers)) return {};
  for (const int red : numbers.reds)
    if (red < 1 || red > kRedCount) return fmt::format("红球 {:02} 不对", red);
  if (numbers.blue < 1 || numbers.blue > kBlueCount) return fmt::format("蓝球 {:02} 不对", numbers.blue);
  return "红球没有从小到大排列";
}

std::optional<std::string> textOf(std::string_view bytes) {
  FreeCourse course;
  CourseLeg job(course, 0, Course::Stop::impossible);
  return decodeBytes(std::string(bytes), job);
}

}  // namespace

std::string compactDrawText(std::string_view raw) {
  std::string text;
  text.reserve(raw.size());
  for (const char c : raw) addCompacted(text, c);
  return text;
}

DrawList::DrawList(std::string_view reply, Date today) : today_(today) {
  std::optional<std::string> decoded;
  if (isUtf16(reply) && (decoded = textOf(reply))) reply = *decoded;
  text_.reserve(reply.size());
  for (std::size_t i = 0; i < reply.size(); ++i) {
    const bool last = i + 1 == reply.size() || reply[i + 1] != '\n';
    if (reply[i] == '\n' || (reply[i] == '\r' && last)) line_ends_.push_back(text_.size());
    addCompacted(text_, reply[i]);
  }
  std::size_t digits = 0;  // length of the run of digits that ends here
  PeriodNo value = 0;
  for (std::size_t i = 0; i < text_.size(); ++i) {
    if (isDigit(text_[i])) {
      if (++digits <= kPeriodLength) value = value * 10 + (text_[i] - '0');
      continue;
    }
    // A longer run of digits is no period, even where its end looks like one.
    if (digits == kPeriodLength && text_[i] == '#') place_.try_emplace(value, i - kPeriodLength);
    digits = 0;
    value = 0;
  }
  if (isDrawList()) takeOtherForm(reply);
}

void DrawList::takeOtherForm(std::string_view reply) {
  const auto decoded = textOf(reply);
  if (!decoded) return;
  const AnyDrawList any = readAnyDrawList(*decoded, today_);
  const auto draws =
      std::ranges::count_if(any.rows, [](const ListedRow& row) { return row.entry.draw.has_value(); });
  if (2 * countDraws() >= static_cast<std::size_t>(draws)) return;
  for (const ListedRow& row : any.rows)
    if (const auto [known, is_new] = rows_.try_emplace(row.period, row.entry); !is_new && row.entry.draw)
      known->second = row.entry;
}

std::size_t DrawList::countDraws() const {
  return static_cast<std::size_t>(std::ranges::count_if(
      place_, [this](const auto& entry) { return parseDraw(entry.first).draw.has_value(); }));
}

int DrawList::lineOf(std::size_t place) const {
  return static_cast<int>(std::ranges::upper_bound(line_ends_, place) - line_ends_.begin()) + 1;
}

ListedEntry DrawList::parseDraw(PeriodNo period) const {
  if (const auto row = rows_.find(period); row != rows_.end()) return row->second;
  const auto found = place_.find(period);
  if (found == place_.end()) return {};
  ListedEntry entry{std::nullopt, {}, lineOf(found->second)};
  const std::string_view text = std::string_view(text_).substr(found->second);
  const auto date = parseDate(text.substr(std::min(text.size(), kDatePlace), kDateLength), '/');
  std::array<int, kRedsPerTicket + 1> fields{};
  ListedDraw draw;
  if (!isPeriod(period)) {
    entry.fault = "期号不对";
  } else if (text.size() >= kEntryLength && !date) {
    entry.fault = "日期不对";
  } else {
    entry.fault = readFields(text, fields);
    std::copy_n(fields.begin(), kRedsPerTicket, draw.numbers.reds.begin());
    draw.numbers.blue = fields.back();
  }
  if (entry.fault.empty()) entry.fault = *date > today_ ? "日期在今天之后" : numberFault(draw.numbers);
  if (!entry.fault.empty()) return entry;
  draw.date = *date;
  entry.draw = draw;
  return entry;
}

PeriodNo DrawList::newest() const {
  PeriodNo newest = 0;
  const auto look = [&](const auto& entry) {
    if (entry.first > newest && parseDraw(entry.first).draw) newest = entry.first;
  };
  if (isOfAnotherForm())
    std::ranges::for_each(rows_, look);
  else
    std::ranges::for_each(place_, look);
  return newest;
}

PeriodNo DrawList::first() const {
  const auto first = std::ranges::min_element(place_, {}, [](const auto& entry) { return entry.second; });
  return first == place_.end() ? 0 : first->first;
}

}  // namespace lotmere

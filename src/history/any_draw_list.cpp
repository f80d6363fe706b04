#include "history/any_draw_list.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <string>
#include <unordered_map>

#include "base/text_file.hpp"
#include "history/draw_line.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kNumbersOfDraw = kRedsPerTicket + 1;
constexpr std::size_t kBytesBetweenLooks = std::size_t{64} * 1024;
constexpr std::size_t kMostColumns = 64;  // in front of the numbers that are looked at

// A line that means a draw.
struct Candidate {
  int line = 0;
  DrawLine content;
};

// The seven numbers from a place of the row on, as they stand.
DrawNumbers numbersAt(std::span<const int> row, std::size_t place) {
  DrawNumbers numbers;
  std::copy_n(row.begin() + place, kRedsPerTicket, numbers.reds.begin());
  numbers.blue = row[place + kRedsPerTicket];
  return numbers;
}

// Where the numbers begin in most lines that leave it open; 0 where no place serves more than half of them:
// such a list has its reds in the order in which they were drawn.
std::size_t commonPlace(std::span<const Candidate> candidates) {
  std::vector<std::size_t> votes(kMostColumns);
  std::size_t open = 0;
  for (const auto& [line, content] : candidates) {
    if (content.first_red || content.numbers.empty()) continue;
    ++open;
    const std::size_t places = std::min(kMostColumns, content.numbers.size() - kNumbersOfDraw + 1);
    for (std::size_t place = 0; place < places; ++place)
      votes[place] += isDraw(numbersAt(content.numbers, place)) ? 1 : 0;
  }
  const auto found = std::ranges::find_if(votes, [open](std::size_t count) { return 2 * count > open; });
  return found == votes.end() ? 0 : static_cast<std::size_t>(found - votes.begin());
}

// Where the numbers of a line begin. A mark counts where the common place doesn't serve as it stands: columns
// behind the numbers may have signs of their own.
std::size_t placeOf(const DrawLine& content, std::size_t common) {
  if (!content.first_red) return common;
  const bool serves =
      common + kNumbersOfDraw <= content.numbers.size() && isDraw(numbersAt(content.numbers, common));
  return serves ? common : *content.first_red;
}

// Why numbers aren't those of a draw; empty where they are. The reds are ascending.
std::string numberFault(const DrawNumbers& numbers) {
  for (const int red : numbers.reds)
    if (red < 1 || red > kRedCount) return fmt::format("红球 {:02} 不对", red);
  if (numbers.blue < 1 || numbers.blue > kBlueCount) return fmt::format("蓝球 {:02} 不对", numbers.blue);
  const auto twice = std::ranges::adjacent_find(numbers.reds);
  return twice == numbers.reds.end() ? "" : fmt::format("红球 {:02} 重复", *twice);
}

std::string fieldFault(const DrawLine& content, Date today) {
  const auto& [period, date, numbers, first_red, means_draw] = content;
  if (!period.stands) return "没有期号";
  if (!period.value) return "期号不对";
  if (!date.stands) return "没有日期";
  if (!date.value) return "日期不对";
  if (*period.value / 1000 != yearOf(*date.value)) return "期号和日期的年份不同";
  if (*date.value > today) return "日期在今天之后";
  return numbers.empty() ? "号码不完整" : "";
}

ListedRow rowOf(const Candidate& candidate, std::size_t common, Date today) {
  const DrawLine& content = candidate.content;
  ListedRow row{content.period.value.value_or(0), {std::nullopt, fieldFault(content, today), candidate.line}};
  if (!row.entry.fault.empty()) return row;
  const std::size_t place = placeOf(content, common);
  DrawNumbers numbers;
  if (place + kNumbersOfDraw <= content.numbers.size()) numbers = numbersAt(content.numbers, place);
  std::ranges::sort(numbers.reds);
  row.entry.fault = numbers.blue == 0 && numbers.reds.back() == 0 ? "号码不完整" : numberFault(numbers);
  if (row.entry.fault.empty()) row.entry.draw = ListedDraw{*content.date.value, numbers};
  return row;
}

bool hasDraw(const std::vector<ListedRow>& rows) {
  return std::ranges::any_of(rows, [](const ListedRow& row) { return row.entry.draw.has_value(); });
}

void refute(ListedEntry& entry, int other_line) {
  entry.draw.reset();
  entry.fault = fmt::format("和第 {} 行的不同", other_line);
}

// Leaves each period once, and none of which the lines say different things.
void settleRepeats(std::vector<ListedRow>& rows) {
  std::unordered_map<PeriodNo, std::size_t> first;  // by period, the place of the row that stays
  std::unordered_map<PeriodNo, ListedDraw> said;
  std::vector<ListedRow> settled;
  settled.reserve(rows.size());
  for (ListedRow& row : rows) {
    if (!row.entry.draw) {
      settled.push_back(std::move(row));
      continue;
    }
    const auto [place, is_new] = first.try_emplace(row.period, settled.size());
    if (is_new) {
      said.emplace(row.period, *row.entry.draw);
      settled.push_back(std::move(row));
      continue;
    }
    if (said.at(row.period) == *row.entry.draw) continue;
    ListedEntry& before = settled[place->second].entry;
    if (before.draw) refute(before, row.entry.line);
    refute(row.entry, before.line);
    settled.push_back(std::move(row));
  }
  rows = std::move(settled);
}

// Walks over the lines of a text; false when `read` ended it.
template <class Use>
bool walkLines(std::string_view text, const BytesRead& read, Use&& use) {
  const std::size_t size = text.size();
  std::size_t look_at = kBytesBetweenLooks;
  for (int line = 1; !text.empty(); ++line) {
    use(takeLine(text), line);
    if (size - text.size() < look_at) continue;
    if (read && read(size - text.size())) return false;
    look_at = size - text.size() + kBytesBetweenLooks;
  }
  return true;
}

// A draw over several lines, as a page gives it that has a box around each number: it begins at the line with
// its period and ends at the one with its seventh number. Its date must stand in between: what stands behind
// the numbers may belong to the next draw.
class SpreadDraws {
 public:
  void add(std::string_view line, int number) {
    constexpr int most_lines = 40;  // of a draw
    if (readDrawLine(line).period.value) {
      open_ = {number, {}};
      text_.clear();
      lines_ = 0;
    }
    if (open_.line == 0 || ++lines_ > most_lines) return;
    text_.append(line) += '\t';
    open_.content = readDrawLine(text_);
    if (open_.content.numbers.empty()) return;
    found_.push_back(std::move(open_));
    open_ = {};
  }
  [[nodiscard]] std::vector<Candidate>& found() { return found_; }

 private:
  std::vector<Candidate> found_;
  Candidate open_;  // line 0: none
  std::string text_;
  int lines_ = 0;
};

std::vector<ListedRow> rowsOf(std::span<const Candidate> candidates, Date today) {
  const std::size_t common = commonPlace(candidates);
  std::vector<ListedRow> rows;
  rows.reserve(candidates.size());
  for (const Candidate& candidate : candidates) rows.push_back(rowOf(candidate, common, today));
  settleRepeats(rows);
  return rows;
}

}  // namespace

AnyDrawList readAnyDrawList(std::string_view text, Date today, const BytesRead& read) {
  AnyDrawList list;
  std::vector<Candidate> candidates;
  const bool is_whole = walkLines(text, read, [&](std::string_view line, int number) {
    DrawLine content = readDrawLine(line);
    if (!content.means_draw) return;
    list.dated = list.dated || content.date.stands;
    candidates.push_back({number, std::move(content)});
  });
  list.rows = rowsOf(candidates, today);
  if (!is_whole || hasDraw(list.rows)) return list;

  SpreadDraws spread;
  walkLines(text, read, [&](std::string_view line, int number) { spread.add(line, number); });
  if (auto rows = rowsOf(spread.found(), today); hasDraw(rows)) return {std::move(rows), true};
  return list;
}

}  // namespace lotmere

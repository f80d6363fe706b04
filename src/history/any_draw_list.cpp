#include "history/any_draw_list.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <span>
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
  const std::size_t place = content.first_red.value_or(common);
  DrawNumbers numbers;
  if (place + kNumbersOfDraw <= content.numbers.size()) numbers = numbersAt(content.numbers, place);
  std::ranges::sort(numbers.reds);
  row.entry.fault = numbers.blue == 0 && numbers.reds.back() == 0 ? "号码不完整" : numberFault(numbers);
  if (row.entry.fault.empty()) row.entry.draw = ListedDraw{*content.date.value, numbers};
  return row;
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

}  // namespace

AnyDrawList readAnyDrawList(std::string_view text, Date today, const BytesRead& read) {
  AnyDrawList list;
  std::vector<Candidate> candidates;
  const std::size_t size = text.size();
  std::size_t look_at = kBytesBetweenLooks;
  for (int line = 1; !text.empty(); ++line) {
    DrawLine content = readDrawLine(takeLine(text));
    if (content.means_draw) {
      list.dated = list.dated || content.date.stands;
      candidates.push_back({line, std::move(content)});
    }
    if (size - text.size() < look_at) continue;
    if (read && read(size - text.size())) break;
    look_at = size - text.size() + kBytesBetweenLooks;
  }
  const std::size_t common = commonPlace(candidates);
  list.rows.reserve(candidates.size());
  for (const Candidate& candidate : candidates) list.rows.push_back(rowOf(candidate, common, today));
  settleRepeats(list.rows);
  return list;
}

}  // namespace lotmere

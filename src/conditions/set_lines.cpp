#include "conditions/set_lines.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "base/number_list.hpp"
#include "base/text.hpp"
#include "conditions/own_sets.hpp"
#include "conditions/values.hpp"

namespace lotmere {
namespace {

constexpr std::string_view kOn = "开";
constexpr std::string_view kOff = "关";
constexpr std::string_view kNone = "无";
constexpr std::string_view kOwnRange = "自选";

std::optional<int> readWhole(std::string_view text) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::string switchText(int value) {
  if (value == 0) return std::string(kOff);
  return value == 1 ? std::string(kOn) : std::to_string(value);
}

std::optional<int> readSwitch(std::string_view text) {
  if (text == kOn) return 1;
  if (text == kOff) return 0;
  return readWhole(text);
}

std::string membersText(Members members, int last = kRedCount) {
  std::vector<int> numbers;
  for (int n = 1; n <= last; ++n)
    if (holds(members, n)) numbers.push_back(n);
  return numbers.empty() ? std::string(kNone) : formatNumberList(numbers);
}

std::optional<Members> readMembers(std::string_view text, int last = kRedCount) {
  if (text == kNone) return Members{0};
  const auto numbers = parseNumberList(text, 1, last);
  if (!numbers) return std::nullopt;
  return membersOf(*numbers);
}

SetLine picksLine(std::string name, int first, int last, int base, PickState state) {
  return {std::move(name),
          [=](const ConditionSet& set) {
            Members members = 0;
            for (int n = first; n <= last; ++n)
              if (set.cells.value(base + n) == static_cast<int>(state)) members |= Members{1} << n;
            return membersText(members, last);
          },
          [=](std::string_view text, ConditionSet& set) {
            const auto members = readMembers(text, last);
            for (int n = first; members && n <= last; ++n) {
              const bool held = set.cells.value(base + n) == static_cast<int>(state);
              if (holds(*members, n))
                set.cells.set(base + n, static_cast<int>(state));
              else if (held)
                set.cells.set(base + n, 0);
            }
            return members.has_value();
          },
          true};
}

// The cells of a condition that can be set, as parseValues reads them.
std::string cellsText(const ConditionSet& set, const Condition& condition) {
  std::vector<int> cells;
  for (int k = 0; k < cellCount(condition); ++k)
    if (set.cells.value(condition.first + k) >= 1) cells.push_back(k);
  return cells.empty() ? std::string(kNone) : formatValues(condition, cells);
}

bool readCells(std::string_view text, const Condition& condition, ConditionSet& set) {
  std::vector<int> cells;
  if (text != kNone) {
    auto read = parseValues(condition, text);
    if (!read) return false;
    cells = std::move(*read);
  }
  for (int k = 0; k < cellCount(condition); ++k)
    set.cells.set(condition.first + k, std::ranges::find(cells, k) != cells.end() ? 1 : 0);
  return true;
}

// Switch and allowed values of a condition: "开 60-140,150".
SetLine conditionLine(const Condition& condition) {
  const auto has_cells = cellCount(condition) > 0;
  const bool is_place = condition.kind == CellKind::position;
  return {condition.name,
          [=, &condition](const ConditionSet& set) {
            std::string text = switchText(set.switches.value(condition.usage));
            if (has_cells) text += ' ' + cellsText(set, condition);
            if (is_place)
              text += ' ' + membersText(set.column(AttributeTable::first, placeColumn(condition.turn)));
            return text;
          },
          [=, &condition](std::string_view text, ConditionSet& set) {
            const std::size_t blank = std::min(text.find(' '), text.size());
            const auto on = readSwitch(text.substr(0, blank));
            const std::string_view values = trim(text.substr(blank));
            if (!on || values.empty() != (!has_cells && !is_place)) return false;
            if (has_cells && !readCells(values, condition, set)) return false;
            if (is_place) {
              const auto members = readMembers(values);
              if (!members) return false;
              set.setColumn(AttributeTable::first, placeColumn(condition.turn), *members);
            }
            return set.switches.set(condition.usage, *on);
          }};
}

SetLine columnLine(std::string name, AttributeTable table, const std::string& column) {
  return {std::move(name), [=](const ConditionSet& set) { return membersText(set.column(table, column)); },
          [=](std::string_view text, ConditionSet& set) {
            const auto members = readMembers(text);
            return members && set.setColumn(table, column, *members);
          }};
}

SetLine numberLine(std::string name, ConditionId cell, int first, int last) {
  return {std::move(name), [=](const ConditionSet& set) { return std::to_string(set.cells.value(cell)); },
          [=](std::string_view text, ConditionSet& set) {
            const auto value = readWhole(text);
            return value && *value >= first && *value <= last && set.cells.set(cell, *value);
          }};
}

// The division into the four intervals, from which the members of each follow.
SetLine intervalLine(int interval) {
  return {fmt::format("区间{}的号码", interval),
          [=](const ConditionSet& set) {
            Members members = 0;
            for (int n = 1; n <= kRedCount; ++n)
              if (set.interval[n] == interval) members |= Members{1} << n;
            return membersText(members);
          },
          [=](std::string_view text, ConditionSet& set) {
            const auto members = readMembers(text);
            if (!members) return false;
            for (int n = 1; n <= kRedCount; ++n)
              if (holds(*members, n)) set.interval[n] = static_cast<std::int8_t>(interval);
            for (int other = 1; other <= kIntervalCount; ++other) {
              const std::string column = fmt::format("区间{}", other);
              const Members left = set.column(AttributeTable::first, column) & ~*members;
              set.setColumn(AttributeTable::first, column, other == interval ? *members : left);
            }
            return true;
          }};
}

SetLine matchLine() {
  return {
      std::string(kHistoryMatchName),
      [](const ConditionSet& set) {
        return fmt::format("{} {}-{} {}{}{}", set.match.used ? kOn : kOff, set.match.first, set.match.last,
                           set.match.match, set.match.chosen ? " " : "", set.match.chosen ? kOwnRange : "");
      },
      [](std::string_view text, ConditionSet& set) {
        std::vector<std::string_view> parts;
        for (std::size_t from = 0; from < text.size();) {
          const std::size_t end = std::min(text.find(' ', from), text.size());
          if (end > from) parts.push_back(text.substr(from, end - from));
          from = end + 1;
        }
        if (parts.size() < 3 || parts.size() > 4 || (parts.size() == 4 && parts[3] != kOwnRange))
          return false;
        const std::size_t dash = parts[1].find('-');
        if (dash == std::string_view::npos) return false;
        const auto on = readSwitch(parts[0]);
        const auto first = readWhole(parts[1].substr(0, dash)), last = readWhole(parts[1].substr(dash + 1));
        const auto match = readWhole(parts[2]);
        if (!on || !first || !last || *first > *last || !match || *match < 1 || *match > kRedsPerTicket)
          return false;
        set.match = {*on == 1, *first, *last, *match, parts.size() == 4};
        return true;
      }};
}

// The search for fewer tickets: its switch and its effort.
SetLine fewerLine() {
  return {std::string(kFewerName),
          [](const ConditionSet& set) {
            return fmt::format("{} {}", switchText(set.cells.value(kFewerCell)),
                               set.cells.value(kEffortCell));
          },
          [](std::string_view text, ConditionSet& set) {
            const std::size_t blank = text.find(' ');
            if (blank == std::string_view::npos) return false;
            const auto on = readSwitch(text.substr(0, blank));
            const auto effort = readWhole(trim(text.substr(blank)));
            return on && effort && *effort >= kLeastEffort && *effort <= kMostEffort &&
                   set.cells.set(kFewerCell, *on) && set.cells.set(kEffortCell, *effort);
          }};
}

std::vector<SetLine> makeLines() {
  std::vector<SetLine> lines;
  lines.push_back(picksLine("红球拖码", 1, kRedCount, 0, PickState::tuo));
  lines.push_back(picksLine("红球胆码", 1, kRedCount, 0, PickState::dan));
  lines.push_back(picksLine("蓝球拖码", 1, kBlueCount, kBlueCodeBase, PickState::tuo));
  lines.push_back(picksLine("蓝球胆码", 1, kBlueCount, kBlueCodeBase, PickState::dan));
  for (const Condition& condition : allConditions()) lines.push_back(conditionLine(condition));
  for (int i = 1; i <= kIntervalCount; ++i) lines.push_back(intervalLine(i));
  for (int i = 1; i <= kGroupCount; ++i) {
    const std::string column = fmt::format("自定义组{}", i);
    lines.push_back(columnLine(column + "的号码", AttributeTable::first, column));
  }
  for (const CustomInterval& interval : factoryCustomIntervals())
    lines.push_back(columnLine(interval.name + "的号码", AttributeTable::third, interval.name));
  lines.push_back(matchLine());
  lines.push_back(numberLine("号码定位容错值", kToleranceCell, 0, kPlaceCount));
  lines.push_back(numberLine(std::string(kSetToleranceName), kSetToleranceCell, 0, kMostSetTolerance));
  lines.push_back(numberLine("缩水类型", kShrinkTypeCell, kSmallestShrink, kLargestShrink));
  lines.push_back(fewerLine());
  return lines;
}

}  // namespace

const std::vector<SetLine>& setLines() {
  static const auto lines = makeLines();
  return lines;
}

}  // namespace lotmere

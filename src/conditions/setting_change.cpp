#include "conditions/setting_change.hpp"

#include <fmt/format.h>

#include <sstream>

namespace lotmere {
namespace {

constexpr AttributeTable kTables[] = {AttributeTable::first, AttributeTable::second, AttributeTable::third};

std::vector<SettingChange::Value> changedValues(const KeyedValues& before, const KeyedValues& after) {
  std::vector<SettingChange::Value> changed;
  for (const auto& [key, value] : after.rows())
    if (before.value(key) != value) changed.push_back({key, before.value(key), value});
  return changed;
}

int valueOf(const SettingChange::Value& row, Direction direction) {
  return direction == Direction::forward ? row.after : row.before;
}

std::string matchFields(const HistoryMatch& match) {
  return fmt::format("{:d} {} {} {} {:d}", match.used, match.first, match.last, match.match, match.chosen);
}

std::istream& operator>>(std::istream& in, HistoryMatch& match) {
  return in >> match.used >> match.first >> match.last >> match.match >> match.chosen;
}

bool readValue(std::istream& in, std::vector<SettingChange::Value>& values) {
  SettingChange::Value value;
  if (!(in >> value.key >> value.before >> value.after)) return false;
  values.push_back(value);
  return true;
}

bool readColumn(std::istream& in, std::vector<SettingChange::Column>& columns) {
  SettingChange::Column column;
  int table = 0;
  if (!(in >> table >> column.before >> column.after >> column.name) || table < 0 ||
      table >= static_cast<int>(std::size(kTables)))
    return false;
  column.table = kTables[table];
  columns.push_back(std::move(column));
  return true;
}

bool readMatch(std::istream& in, SettingChange& change) {
  std::pair<HistoryMatch, HistoryMatch> match;
  if (!(in >> match.first >> match.second)) return false;
  change.match = match;
  return true;
}

bool readRow(const std::string& line, SettingChange& change) {
  std::istringstream in(line);
  std::string kind;
  in >> kind;
  if (kind == "cell") return readValue(in, change.cells);
  if (kind == "switch") return readValue(in, change.switches);
  if (kind == "interval") return readValue(in, change.intervals);
  if (kind == "column") return readColumn(in, change.columns);
  return kind == "match" && readMatch(in, change);
}

}  // namespace

bool SettingChange::isEmpty() const { return *this == SettingChange{}; }

SettingChange changeBetween(const ConditionSet& before, const ConditionSet& after) {
  SettingChange change{.cells = changedValues(before.cells, after.cells),
                       .switches = changedValues(before.switches, after.switches),
                       .columns = {},
                       .intervals = {},
                       .match = {}};
  for (const AttributeTable table : kTables) {
    const auto& was = before.columns[static_cast<std::size_t>(table)];
    const auto& is = after.columns[static_cast<std::size_t>(table)];
    if (was == is) continue;
    const std::vector<std::string> names = attributeColumns(table);
    for (std::size_t place = 0; place < is.size(); ++place)
      if (was[place] != is[place]) change.columns.push_back({table, names[place], was[place], is[place]});
  }
  for (int n = 1; n <= kRedCount; ++n)
    if (before.interval[n] != after.interval[n])
      change.intervals.push_back({n, before.interval[n], after.interval[n]});
  if (before.match != after.match) change.match = {before.match, after.match};
  return change;
}

ConditionSet applyChange(ConditionSet set, const SettingChange& change, Direction direction) {
  const bool forward = direction == Direction::forward;
  for (const SettingChange::Value& row : change.cells) set.cells.set(row.key, valueOf(row, direction));
  for (const SettingChange::Value& row : change.switches) set.switches.set(row.key, valueOf(row, direction));
  for (const SettingChange::Column& column : change.columns)
    set.setColumn(column.table, column.name, forward ? column.after : column.before);
  for (const SettingChange::Value& row : change.intervals)
    if (row.key >= 1 && row.key <= kRedCount)
      set.interval[row.key] = static_cast<std::int8_t>(valueOf(row, direction));
  if (change.match) set.match = forward ? change.match->second : change.match->first;
  return set;
}

std::string packChange(const SettingChange& change) {
  std::string text;
  const auto add = [&text](const char* kind, const std::vector<SettingChange::Value>& rows) {
    for (const SettingChange::Value& row : rows)
      text += fmt::format("{} {} {} {}\n", kind, row.key, row.before, row.after);
  };
  add("cell", change.cells);
  add("switch", change.switches);
  add("interval", change.intervals);
  for (const SettingChange::Column& column : change.columns)
    text += fmt::format("column {} {} {} {}\n", static_cast<int>(column.table), column.before, column.after,
                        column.name);
  if (change.match)
    text += fmt::format("match {} {}\n", matchFields(change.match->first), matchFields(change.match->second));
  return text;
}

std::optional<SettingChange> unpackChange(std::string_view text) {
  SettingChange change;
  std::istringstream lines{std::string(text)};
  for (std::string line; std::getline(lines, line);)
    if (!readRow(line, change)) return std::nullopt;
  return change;
}

}  // namespace lotmere

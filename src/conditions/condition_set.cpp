#include "conditions/condition_set.hpp"

#include <algorithm>
#include <optional>
#include <string>
#include <unordered_map>

namespace lotmere {
namespace {

using Places = std::unordered_map<std::string_view, std::size_t>;

// The place of each column of a table by its name, made once in the life of the process.
struct TableColumns {
  std::vector<std::string> names;
  Places places;

  explicit TableColumns(AttributeTable table) : names(attributeColumns(table)) {
    for (std::size_t place = 0; place < names.size(); ++place) places.emplace(names[place], place);
  }
};

const TableColumns& columnsOf(AttributeTable table) {
  static const TableColumns tables[] = {TableColumns(AttributeTable::first),
                                        TableColumns(AttributeTable::second),
                                        TableColumns(AttributeTable::third)};
  return tables[static_cast<std::size_t>(table)];
}

std::optional<std::size_t> placeOf(AttributeTable table, std::string_view name) {
  const Places& places = columnsOf(table).places;
  const auto found = places.find(name);
  if (found == places.end()) return std::nullopt;
  return found->second;
}

}  // namespace

int KeyedValues::value(int key) const {
  const auto found = std::ranges::lower_bound(rows_, key, {}, &Row::first);
  return found == rows_.end() || found->first != key ? 0 : found->second;
}

bool KeyedValues::set(int key, int value) {
  const auto found = std::ranges::lower_bound(rows_, key, {}, &Row::first);
  if (found == rows_.end() || found->first != key) return false;
  found->second = value;
  return true;
}

std::span<const KeyedValues::Row> KeyedValues::range(int first, int last) const {
  const auto begin = std::ranges::lower_bound(rows_, first, {}, &Row::first);
  const auto end = std::ranges::upper_bound(rows_, last, {}, &Row::first);
  return begin < end ? std::span<const Row>(begin, end) : std::span<const Row>{};
}

RedTable tableOf(Members members) {
  RedTable table{};
  for (int n = 1; n <= kRedCount; ++n) table[n] = holds(members, n);
  return table;
}

Members membersOf(std::span<const int> numbers) {
  Members members = 0;
  for (const int number : numbers)
    if (number >= 1 && number <= kRedCount) members |= Members{1} << number;
  return members;
}

Members ConditionSet::column(AttributeTable table, std::string_view name) const {
  const auto place = placeOf(table, name);
  const auto& held = columns[static_cast<std::size_t>(table)];
  return place && *place < held.size() ? held[*place] : 0;
}

bool ConditionSet::setColumn(AttributeTable table, std::string_view name, Members members) {
  const auto place = placeOf(table, name);
  auto& held = columns[static_cast<std::size_t>(table)];
  if (!place || *place >= held.size()) return false;
  held[*place] = members;
  return true;
}

bool ConditionSet::setMember(AttributeTable table, std::string_view name, int number, bool member) {
  if (number < 1 || number > kRedCount) return false;
  const Members one = Members{1} << number, others = column(table, name) & ~one;
  return setColumn(table, name, member ? others | one : others);
}

ValueArray ConditionSet::cellRange(ConditionId first, ConditionId last) const {
  ValueArray values{};
  std::size_t index = first % 10;
  for (const auto& row : cells.range(first, last)) {
    if (index >= values.size()) break;
    values[index++] = row.second;
  }
  return values;
}

GroupTable groupTable(const ConditionSet& set, const Family& family, int groups) {
  GroupTable table;
  for (int g = 0; g < groups; ++g) {
    const Members members =
        set.column(family.table, std::string(family.column) + std::to_string(family.first_suffix + g));
    for (int n = 1; n <= kRedCount; ++n)
      if (holds(members, n)) table.word[n] |= GroupCounts{1} << (g * kGroupBits);
  }
  return table;
}

}  // namespace lotmere

#include "conditions/condition_set.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <unordered_map>

#include "store/schema.hpp"

namespace lotmere {
namespace {

constexpr AttributeTable kTables[] = {AttributeTable::first, AttributeTable::second, AttributeTable::third};

using Places = std::unordered_map<std::string_view, std::size_t>;

// The columns of a table and the place of each by its name, made once in the life of the process.
struct TableColumns {
  std::vector<std::string> names;
  Places places;

  explicit TableColumns(AttributeTable table) : names(attributeColumns(table)) {
    for (std::size_t place = 0; place < names.size(); ++place) places.emplace(names[place], place);
  }
};

const TableColumns& columnsOf(AttributeTable table) {
  static const TableColumns tables[] = {TableColumns(kTables[0]), TableColumns(kTables[1]),
                                        TableColumns(kTables[2])};
  return tables[static_cast<std::size_t>(table)];
}

std::optional<std::size_t> placeOf(AttributeTable table, std::string_view name) {
  const Places& places = columnsOf(table).places;
  const auto found = places.find(name);
  if (found == places.end()) return std::nullopt;
  return found->second;
}

KeyedValues loadValues(Store& store, const char* sql) {
  KeyedValues values;
  Query rows = store.query(sql);
  while (rows.next()) values.append(rows.number(0), rows.number(1));
  return values;
}

std::vector<Members> loadColumns(Store& store, AttributeTable table) {
  const auto& names = columnsOf(table).names;
  std::vector<Members> columns(names.size());
  Query rows =
      store.query(fmt::format("SELECT \"号码\",{} FROM {}", columnList(names), sqlName(tableName(table))));
  while (rows.next()) {
    const int number = rows.number(0);
    if (number < 1 || number > kRedCount) continue;
    for (std::size_t place = 0; place < names.size(); ++place)
      if (rows.number(1 + static_cast<int>(place)) != 0) columns[place] |= Members{1} << number;
  }
  return columns;
}

void loadIntervals(Store& store, ConditionSet& set) {
  Query rows = store.query(R"(SELECT "号码","区间" FROM "区间定义")");
  while (rows.next()) {
    const int number = rows.number(0);
    if (number >= 1 && number <= kRedCount) set.interval[number] = static_cast<std::int8_t>(rows.number(1));
  }
}

// The rows of `after` that `before` holds otherwise.
void saveValues(Store& store, const char* sql, const KeyedValues& before, const KeyedValues& after) {
  for (const auto& [key, value] : after.rows())
    if (before.value(key) != value) store.query(sql).bind(value, key).run();
}

void saveColumns(Store& store, AttributeTable table, const std::vector<Members>& before,
                 const std::vector<Members>& after) {
  const auto& names = columnsOf(table).names;
  for (std::size_t place = 0; place < after.size(); ++place) {
    const Members changed = before[place] ^ after[place];
    for (int number = 1; changed != 0 && number <= kRedCount; ++number)
      if (holds(changed, number))
        writeAttribute(store, table, names[place], number, holds(after[place], number));
  }
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

ValueArray ConditionSet::cellRange(ConditionId first, ConditionId last) const {
  ValueArray values{};
  std::size_t index = first % 10;
  for (const auto& row : cells.range(first, last)) {
    if (index >= values.size()) break;
    values[index++] = row.second;
  }
  return values;
}

ConditionSet loadConditionSet(Store& store) {
  ConditionSet set;
  set.cells = loadValues(store, R"(SELECT "ID","Value" FROM "过滤条件" ORDER BY "ID" ASC)");
  set.switches = loadValues(store, R"(SELECT "条件","使用情况" FROM "过滤条件使用情况" ORDER BY "条件" ASC)");
  for (const AttributeTable table : kTables)
    set.columns[static_cast<std::size_t>(table)] = loadColumns(store, table);
  loadIntervals(store, set);
  set.match = loadHistoryMatch(store);
  return set;
}

void saveConditionSet(Store& store, const ConditionSet& before, const ConditionSet& after) {
  if (before == after) return;
  StoreChange change(store);
  saveValues(store, R"(UPDATE "过滤条件" SET "Value"=? WHERE "ID"=?)", before.cells, after.cells);
  saveValues(store, R"(UPDATE "过滤条件使用情况" SET "使用情况"=? WHERE "条件"=?)", before.switches,
             after.switches);
  for (const AttributeTable table : kTables) {
    const auto place = static_cast<std::size_t>(table);
    saveColumns(store, table, before.columns[place], after.columns[place]);
  }
  for (int n = 1; n <= kRedCount; ++n)
    if (before.interval[n] != after.interval[n])
      store.query(R"(UPDATE "区间定义" SET "区间"=? WHERE "号码"=?)").bind(after.interval[n], n).run();
  if (!(before.match == after.match)) saveHistoryMatch(store, after.match);
  change.commit();
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

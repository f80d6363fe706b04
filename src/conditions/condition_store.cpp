#include "conditions/condition_store.hpp"

#include <fmt/format.h>

#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "conditions/set_text.hpp"
#include "conditions/setting_change.hpp"
#include "conditions/setting_steps.hpp"
#include "store/schema.hpp"

namespace lotmere {
namespace {

constexpr AttributeTable kTables[] = {AttributeTable::first, AttributeTable::second, AttributeTable::third};
constexpr std::string_view kFactory = "默认";

// The tables that have a factory twin are read from it with its prefix.

KeyedValues loadValues(Store& store, std::string_view prefix, std::string_view table, std::string_view key,
                       std::string_view value) {
  KeyedValues values;
  Query rows = store.query(fmt::format(R"(SELECT "{1}","{2}" FROM "{0}" ORDER BY "{1}" ASC)",
                                       std::string(prefix) + std::string(table), key, value));
  while (rows.next()) values.append(rows.number(0), rows.number(1));
  return values;
}

KeyedValues loadCells(Store& store, std::string_view prefix) {
  return loadValues(store, prefix, "过滤条件", "ID", "Value");
}

KeyedValues loadSwitches(Store& store, std::string_view prefix) {
  return loadValues(store, prefix, "过滤条件使用情况", "条件", "使用情况");
}

std::vector<Members> loadColumns(Store& store, std::string_view prefix, AttributeTable table) {
  const std::vector<std::string> names = attributeColumns(table);
  std::vector<Members> columns(names.size());
  Query rows = store.query(
      fmt::format(R"(SELECT "号码",{} FROM "{}{}")", columnList(names), prefix, tableName(table)));
  while (rows.next()) {
    const int number = rows.number(0);
    if (number < 1 || number > kRedCount) continue;
    for (std::size_t place = 0; place < names.size(); ++place)
      if (rows.number(1 + static_cast<int>(place)) != 0) columns[place] |= Members{1} << number;
  }
  return columns;
}

void loadIntervals(Store& store, std::string_view prefix, ConditionSet& set) {
  Query rows = store.query(fmt::format(R"(SELECT "号码","区间" FROM "{}区间定义")", prefix));
  while (rows.next()) {
    const int number = rows.number(0);
    if (number >= 1 && number <= kRedCount) set.interval[number] = static_cast<std::int8_t>(rows.number(1));
  }
}

HistoryMatch loadHistoryMatch(Store& store) {
  Query row =
      store.query(R"(SELECT "使用状态","最小值","最大值","匹配值","自选范围" FROM "历史数据过滤" LIMIT 1)");
  if (!row.next()) return {};
  return {row.number(0) == 1, row.number(1), row.number(2), row.number(3), row.number(4) == 1};
}

// The values of the rows that both have.
void putOver(KeyedValues& values, const KeyedValues& wanted) {
  for (const auto& [key, value] : wanted.rows()) values.set(key, value);
}

void saveValues(Store& store, const char* sql, const std::vector<SettingChange::Value>& rows) {
  for (const SettingChange::Value& row : rows) store.query(sql).bind(row.after, row.key).run();
}

void saveColumn(Store& store, const SettingChange::Column& column) {
  const Members changed = column.before ^ column.after;
  for (int number = 1; number <= kRedCount; ++number)
    if (holds(changed, number))
      store
          .query(fmt::format("UPDATE {} SET {}=? WHERE \"号码\"=?", sqlName(tableName(column.table)),
                             sqlName(column.name)))
          .bind(holds(column.after, number) ? 1 : 0, number)
          .run();
}

void saveHistoryMatch(Store& store, const HistoryMatch& match) {
  store.query(R"(UPDATE "历史数据过滤" SET "使用状态"=?,"最小值"=?,"最大值"=?,"匹配值"=?,"自选范围"=?)")
      .bind(match.used ? 1 : 0, match.first, match.last, match.match, match.chosen ? 1 : 0)
      .run();
}

std::string stepName(const ConditionSet& before, const ConditionSet& after) {
  const std::string names = differenceNames(differencesBetween(before, after));
  return names.empty() ? "设置" : names;
}

}  // namespace

ConditionSet loadConditionSet(Store& store) {
  ConditionSet set;
  set.cells = loadCells(store, "");
  set.switches = loadSwitches(store, "");
  for (const AttributeTable table : kTables)
    set.columns[static_cast<std::size_t>(table)] = loadColumns(store, "", table);
  loadIntervals(store, "", set);
  set.match = loadHistoryMatch(store);
  return set;
}

ConditionSet loadFactorySet(Store& store) {
  ConditionSet set = loadConditionSet(store);
  putOver(set.cells, loadCells(store, kFactory));
  putOver(set.switches, loadSwitches(store, kFactory));
  set.columns[0] = loadColumns(store, kFactory, AttributeTable::first);
  loadIntervals(store, kFactory, set);
  for (const CustomInterval& interval : factoryCustomIntervals()) {
    Members members = 0;
    for (int n = 1; n <= kRedCount; ++n)
      if (divisionHolds(interval.division, interval.index, n)) members |= Members{1} << n;
    set.setColumn(AttributeTable::third, interval.name, members);
  }
  for (int n = 1; n <= kRedCount; ++n) set.cells.set(n, 0);
  for (int n = 1; n <= kBlueCount; ++n) set.cells.set(kBlueCodeBase + n, 0);
  set.match = {false, kDefaultPeriod, kDefaultPeriod, kRedsPerTicket, false};
  return set;
}

void saveConditionSet(Store& store, const ConditionSet& before, const ConditionSet& after,
                      const StepNote& note) {
  if (before == after) return;
  const SettingChange difference = changeBetween(before, after);
  StoreChange change(store);
  saveValues(store, R"(UPDATE "过滤条件" SET "Value"=? WHERE "ID"=?)", difference.cells);
  saveValues(store, R"(UPDATE "过滤条件使用情况" SET "使用情况"=? WHERE "条件"=?)", difference.switches);
  for (const SettingChange::Column& column : difference.columns) saveColumn(store, column);
  saveValues(store, R"(UPDATE "区间定义" SET "区间"=? WHERE "号码"=?)", difference.intervals);
  if (difference.match) saveHistoryMatch(store, difference.match->second);
  if (note.kept) keepStep(store, difference, note.name.empty() ? stepName(before, after) : note.name);
  change.commit();
}

ConditionSet changeSettings(Store& store, const std::function<void(ConditionSet&)>& edit,
                            const StepNote& note) {
  const ConditionSet before = loadConditionSet(store);
  ConditionSet after = before;
  edit(after);
  saveConditionSet(store, before, after, note);
  return after;
}

}  // namespace lotmere

#include "store/row_copy.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "store/schema.hpp"

namespace lotmere {
namespace {

constexpr KeyedTable kProfileTables[] = {
    {"过滤条件", "ID"}, {"过滤条件使用情况", "条件"}, {"号码特性", "号码"}, {"区间定义", "号码"}};

CellValue readValue(const SQLite::Column& column) {
  if (column.isNull()) return {};
  if (column.isText()) return column.getString();
  return column.getInt64();
}

// Where a table keeps the columns of another: its place of each, -1 for none.
std::vector<int> placesOf(const std::vector<std::string>& columns, const TableRows& rows) {
  std::vector<int> places;
  for (const std::string& column : columns) {
    const auto found = std::ranges::find(rows.columns, column);
    places.push_back(found == rows.columns.end() ? -1 : static_cast<int>(found - rows.columns.begin()));
  }
  return places;
}

// The value of a field, nullptr where the rows lack it.
const CellValue* findValue(const TableRows& rows, std::int64_t key, int place) {
  if (place < 0) return nullptr;
  const auto row = rows.rows.find(key);
  return row == rows.rows.end() ? nullptr : &row->second[static_cast<std::size_t>(place)];
}

}  // namespace

std::span<const KeyedTable> profileTables() { return kProfileTables; }

std::string factoryTwin(const KeyedTable& table) { return "默认" + std::string(table.name); }

TableRows readRows(SQLite::Database& source, std::string_view table, std::string_view key) {
  SQLite::Statement row(source, fmt::format("SELECT {}, * FROM {}", sqlName(key), sqlName(table)));
  TableRows rows;
  std::vector<int> places;
  for (int i = 1; i < row.getColumnCount(); ++i) {
    const std::string name = row.getColumnName(i);
    if (name == key || name == "INDEX") continue;
    rows.columns.push_back(name);
    places.push_back(i);
  }
  while (row.executeStep()) {
    auto& values = rows.rows[row.getColumn(0).getInt64()];
    values.clear();
    for (const int i : places) values.push_back(readValue(row.getColumn(i)));
  }
  return rows;
}

void writeRows(SQLite::Database& target, const KeyedTable& table, const TableRows& rows,
               const TableRows& fallback) {
  const TableRows present = readRows(target, table.name, table.key);
  const auto own_places = placesOf(present.columns, rows);
  const auto fallback_places = placesOf(present.columns, fallback);
  std::string list;
  for (const std::string& column : present.columns)
    list += fmt::format("{}{}=?", list.empty() ? "" : ",", sqlName(column));
  SQLite::Statement update(
      target, fmt::format("UPDATE {} SET {} WHERE {}=?", sqlName(table.name), list, sqlName(table.key)));
  for (const auto& [key, stored] : present.rows) {
    std::vector<CellValue> wanted = stored;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      const CellValue* value = findValue(rows, key, own_places[i]);
      if (value == nullptr) value = findValue(fallback, key, fallback_places[i]);
      if (value != nullptr) wanted[i] = *value;
    }
    if (wanted == stored) continue;
    int place = 0;
    for (const CellValue& value : wanted) {
      ++place;
      if (const auto* number = std::get_if<std::int64_t>(&value))
        update.bind(place, *number);
      else if (const auto* text = std::get_if<std::string>(&value))
        update.bind(place, *text);
      else
        update.bind(place);
    }
    update.bind(++place, key);
    update.exec();
    update.reset();
  }
}

void copyNamedSets(SQLite::Database& source, SQLite::Database& target) {
  target.exec(R"(DELETE FROM "命名方案")");
  if (!source.tableExists("命名方案")) return;
  SQLite::Statement row(source, R"(SELECT "名称","含选号","内容" FROM "命名方案")");
  SQLite::Statement add(target, R"(INSERT INTO "命名方案" ("名称","含选号","内容") VALUES (?,?,?))");
  while (row.executeStep()) {
    add.bind(1, row.getColumn(0).getString());
    add.bind(2, row.getColumn(1).getInt());
    add.bind(3, row.getColumn(2).getString());
    add.exec();
    add.reset();
  }
}

void restoreFactoryRows(Store& store) {
  StoreChange change(store);
  for (const KeyedTable& table : profileTables())
    writeRows(store.db(), table, readRows(store.db(), factoryTwin(table), table.key));
  change.commit();
}

}  // namespace lotmere

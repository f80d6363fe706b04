#include "core/row_copy.hpp"

#include <fmt/format.h>
#include <sqlite3.h>

#include <algorithm>

#include "core/schema.hpp"

namespace lotmere {
namespace {

// The target's columns from `first` on, as "a"=?, "b"=?; and how many there are.
std::pair<std::string, int> assignments(SQLite::Statement& columns, int first, int most) {
  std::string list;
  int count = 0;
  for (int i = first; i < columns.getColumnCount() && (most == 0 || count < most); ++i, ++count)
    list += fmt::format("{}{}=?", list.empty() ? "" : ",", sql_Name(columns.getColumnName(i)));
  return {list, count};
}

TwinValue read_Value(const SQLite::Column& column) {
  if (column.isText()) return column.getString();
  return column.getInt64();
}

}  // namespace

TwinRows read_Rows(SQLite::Database& source, const TwinTables& twins) {
  SQLite::Statement row(
      source, fmt::format("SELECT * FROM {} ORDER BY {}", sql_Name(twins.source), sql_Name(twins.key)));
  TwinRows rows;
  while (row.executeStep()) {
    auto& values = rows.emplace_back();
    for (int i = twins.first_column; i < row.getColumnCount(); ++i)
      values.push_back(read_Value(row.getColumn(i)));
  }
  return rows;
}

int write_Rows(SQLite::Database& target, const TwinTables& twins, const TwinRows& rows) {
  const std::string name = sql_Name(twins.target);
  SQLite::Statement layout(target, fmt::format("SELECT * FROM {} LIMIT 0", name));
  const auto [list, count] = assignments(layout, twins.first_column, twins.columns);

  // The places are read first: a copied column may be the one that the order goes by.
  std::vector<std::int64_t> places;
  SQLite::Statement order(target, fmt::format("SELECT rowid FROM {} ORDER BY {}", name, sql_Name(twins.key)));
  while (order.executeStep()) places.push_back(order.getColumn(0).getInt64());

  SQLite::Statement update(target, fmt::format("UPDATE {} SET {} WHERE rowid=?", name, list));
  const std::size_t copied = std::min(places.size(), rows.size());
  for (std::size_t row = 0; row < copied; ++row) {
    if (rows[row].size() < static_cast<std::size_t>(count))
      throw SQLite::Exception("the tables to copy differ in their columns", SQLITE_MISMATCH);
    for (int i = 0; i < count; ++i)
      std::visit([&](const auto& value) { update.bind(i + 1, value); }, rows[row][i]);
    update.bind(count + 1, places[row]);
    update.exec();
    update.reset();
  }
  return static_cast<int>(copied);
}

const std::vector<TwinTables>& profile_Twins() {
  static const std::vector<TwinTables> twins = {{"过滤条件", "过滤条件", "ID", 1, 1},
                                                {"过滤条件使用情况", "过滤条件使用情况", "条件", 1, 1},
                                                {"号码特性", "号码特性", "号码", 2},
                                                {"区间定义", "区间定义", "号码", 0}};
  return twins;
}

void restoreTiaojian(Store& store) {
  StoreChange change(store);
  for (TwinTables twins : profile_Twins()) {
    twins.source = "默认" + twins.source;
    write_Rows(store.db(), twins, read_Rows(store.db(), twins));
  }
  change.commit();
}

}  // namespace lotmere

#include "core/row_copy.hpp"

#include <fmt/format.h>

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

}  // namespace

int copy_Rows(Store& store, const TwinTables& twins) {
  SQLite::Statement source(store.db(),
                           fmt::format("SELECT * FROM {} ORDER BY {}", twins.source, sql_Name(twins.key)));
  SQLite::Statement layout(store.db(), fmt::format("SELECT * FROM {} LIMIT 0", twins.target));
  const auto [list, count] = assignments(layout, twins.first_column, twins.columns);
  if (source.getColumnCount() < twins.first_column + count)
    throw SQLite::Exception("the tables to copy differ in their columns");

  // The row numbers are read first: a copied column may be the one that the order goes by.
  std::vector<std::int64_t> rows;
  SQLite::Statement order(store.db(),
                          fmt::format("SELECT rowid FROM {} ORDER BY {}", twins.target, sql_Name(twins.key)));
  while (order.executeStep()) rows.push_back(order.getColumn(0).getInt64());

  SQLite::Statement update(store.db(), fmt::format("UPDATE {} SET {} WHERE rowid=?", twins.target, list));
  int copied = 0;
  for (const std::int64_t row : rows) {
    if (!source.executeStep()) break;
    for (int i = 0; i < count; ++i) {
      const SQLite::Column value = source.getColumn(twins.first_column + i);
      if (value.isText())
        update.bind(i + 1, value.getString());
      else
        update.bind(i + 1, value.getInt64());
    }
    update.bind(count + 1, row);
    update.exec();
    update.reset();
    ++copied;
  }
  return copied;
}

void restoreTiaojian(Store& store) {
  StoreChange change(store);
  copy_Rows(store, {sql_Name("默认过滤条件"), sql_Name("过滤条件"), "ID", 1, 1});
  copy_Rows(store, {sql_Name("默认过滤条件使用情况"), sql_Name("过滤条件使用情况"), "条件", 1, 1});
  copy_Rows(store, {sql_Name("默认区间定义"), sql_Name("区间定义"), "号码", 0});
  copy_Rows(store, {sql_Name("默认号码特性"), sql_Name("号码特性"), "号码", 2});
  change.commit();
}

}  // namespace lotmere

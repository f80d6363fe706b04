#include "conditions/condition_store.hpp"

#include <fmt/format.h>

#include "store/schema.hpp"

namespace lotmere {

ValueArray loadConditionRange(Store& store, ConditionId first, ConditionId last) {
  Query rows = store.query(R"(SELECT "Value" FROM "过滤条件" WHERE "ID">=? AND "ID"<=? ORDER BY "ID" ASC)");
  rows.bind(first, last);
  ValueArray cells{};
  for (std::size_t index = first % 10; index < cells.size() && rows.next(); ++index)
    cells[index] = rows.number(0);
  return cells;
}

int conditionValue(Store& store, ConditionId id) {
  return static_cast<int>(store.value(R"(SELECT "Value" FROM "过滤条件" WHERE "ID"=?)", id));
}

namespace {

std::int64_t usageValue(Store& store, UsageId usage) {
  return store.value(R"(SELECT "使用情况" FROM "过滤条件使用情况" WHERE "条件"=?)", usage);
}

}  // namespace

bool isUsed(Store& store, UsageId usage) { return usageValue(store, usage) == 1; }
bool isTicked(Store& store, UsageId usage) { return usageValue(store, usage) > 0; }

bool setCell(Store& store, ConditionId id, bool allowed) {
  return setConditionValue(store, id, allowed ? 1 : 0);
}

bool setConditionValue(Store& store, ConditionId id, int value) {
  return store.query(R"(UPDATE "过滤条件" SET "Value"=? WHERE "ID"=?)").bind(value, id).run() > 0;
}

bool setUsage(Store& store, UsageId usage, bool on) {
  return store.query(R"(UPDATE "过滤条件使用情况" SET "使用情况"=? WHERE "条件"=?)")
             .bind(on ? 1 : 0, usage)
             .run() > 0;
}

void clearRedPicks(Store& store) { store.query(R"(UPDATE "过滤条件" SET "Value"=0 WHERE "ID"<40)").run(); }

void clearBluePicks(Store& store) {
  store.query(R"(UPDATE "过滤条件" SET "Value"=0 WHERE "ID">100 AND "ID"<200)").run();
}

RedTable readAttributeColumn(Store& store, AttributeTable table, std::string_view column) {
  Query rows = store.query(fmt::format("SELECT \"号码\",{} FROM {} ORDER BY \"号码\" ASC", sqlName(column),
                                       sqlName(tableName(table))));
  RedTable members{};
  while (rows.next()) {
    const int number = rows.number(0);
    if (number >= 1 && number <= kRedCount) members[number] = rows.number(1) != 0;
  }
  return members;
}

void writeAttribute(Store& store, AttributeTable table, std::string_view column, int number, bool member) {
  store.query(fmt::format("UPDATE {} SET {}=? WHERE \"号码\"=?", sqlName(tableName(table)), sqlName(column)))
      .bind(member ? 1 : 0, number)
      .run();
}

void toggleAttribute(Store& store, std::string_view column, int number) {
  const bool member = readAttributeColumn(store, AttributeTable::first, column)[number] != 0;
  writeAttribute(store, AttributeTable::first, column, number, !member);
}

void setColumn(Store& store, AttributeTable table, std::string_view column, std::span<const int> numbers) {
  StoreChange change(store);
  store.query(fmt::format("UPDATE {} SET {}=0", sqlName(tableName(table)), sqlName(column))).run();
  for (const int number : numbers) writeAttribute(store, table, column, number, true);
  change.commit();
}

GroupTable loadGroupTable(Store& store, const Family& family, int groups) {
  std::vector<std::string> columns;
  columns.reserve(static_cast<std::size_t>(groups));
  for (int g = 0; g < groups; ++g)
    columns.push_back(std::string(family.column) + std::to_string(family.first_suffix + g));
  Query rows = store.query(fmt::format("SELECT \"号码\",{} FROM {} ORDER BY \"INDEX\" ASC",
                                       columnList(columns), sqlName(tableName(family.table))));
  GroupTable table;
  while (rows.next()) {
    const int number = rows.number(0);
    if (number < 1 || number > kRedCount) continue;
    for (int g = 0; g < groups; ++g)
      if (rows.number(1 + g) != 0) table.word[number] |= GroupCounts{1} << (g * kGroupBits);
  }
  return table;
}

}  // namespace lotmere

#include "store/schema.hpp"

#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/format.h>

#include <algorithm>
#include <initializer_list>

#include "catalogue/attributes.hpp"
#include "catalogue/catalogue.hpp"
#include "catalogue/draw_columns.hpp"
#include "catalogue/families.hpp"

namespace lotmere {
namespace {

constexpr int kBaseVersion = 5;  // of the tables themselves

const char* sqlType(DrawColumnType type) { return type == DrawColumnType::whole ? "INTEGER" : "TEXT"; }

void createHistory(SQLite::Database& db) {
  std::string columns;
  for (const DrawColumn& column : drawColumns()) {
    columns +=
        fmt::format("{}{} {}", columns.empty() ? "" : ", ", sqlName(column.name), sqlType(column.type));
    if (column.name == "期号") columns += " PRIMARY KEY";
  }
  db.exec(fmt::format("CREATE TABLE \"历史记录\" ({})", columns));
}

void createTickets(SQLite::Database& db) {
  // ID is the row's own key, so that reading in row order is reading in the order of creation.
  db.exec(
      "CREATE TABLE \"日志表\" (\"ID\" INTEGER PRIMARY KEY, \"序号\" INTEGER, \"期号\" INTEGER, \"红球1\" "
      "INTEGER, "
      "\"红球2\" INTEGER, \"红球3\" INTEGER, \"红球4\" INTEGER, \"红球5\" INTEGER, \"红球6\" INTEGER, "
      "\"蓝球\" INTEGER, "
      "\"过滤标记\" INTEGER DEFAULT 0, \"缩水标记\" INTEGER DEFAULT 0, \"精选标记\" INTEGER DEFAULT 0, "
      "\"临时数据\" INTEGER DEFAULT 0, \"红球中\" INTEGER DEFAULT 0, \"蓝球中\" INTEGER DEFAULT 0)");
}

// `过滤条件` and `过滤条件使用情况`, or their factory twins with the prefix 默认.
void createConditions(SQLite::Database& db, const std::string& prefix) {
  const std::string cells = sqlName(prefix + "过滤条件");
  const std::string usages = sqlName(prefix + "过滤条件使用情况");
  db.exec(fmt::format("CREATE TABLE {} (\"ID\" INTEGER PRIMARY KEY, \"Value\" INTEGER NOT NULL DEFAULT 0)",
                      cells));
  db.exec(fmt::format(
      "CREATE TABLE {} (\"条件\" INTEGER PRIMARY KEY, \"使用情况\" INTEGER NOT NULL DEFAULT 0)", usages));
}

void fillValues(SQLite::Database& db, const std::string& table, const std::vector<FactoryValue>& rows) {
  SQLite::Statement add(db, fmt::format("INSERT INTO {} VALUES (?, ?)", sqlName(table)));
  for (const FactoryValue& row : rows) {
    add.bind(1, row.key);
    add.bind(2, row.value);
    add.exec();
    add.reset();
  }
}

void fillConditions(SQLite::Database& db, const std::string& prefix) {
  fillValues(db, prefix + "过滤条件", factoryCells());
  fillValues(db, prefix + "过滤条件使用情况", factorySwitches());
}

// What the factory puts into the columns of a table for one number, in column order.
std::vector<bool> factoryRow(AttributeTable table, int number) {
  std::vector<bool> row;
  for (const AttributeFamily& family : attributeFamilies()) {
    if (family.table != table) continue;
    for (int g = 0; g < std::max(1, family.count); ++g) row.push_back(family.holds(g, number));
  }
  if (table == AttributeTable::third)
    for (const CustomInterval& interval : factoryCustomIntervals())
      row.push_back(divisionHolds(interval.division, interval.index, number));
  return row;
}

void createAttributes(SQLite::Database& db, AttributeTable table, const std::string& name) {
  std::string definition = "\"INDEX\" INTEGER PRIMARY KEY, \"号码\" INTEGER NOT NULL UNIQUE";
  for (const std::string& column : attributeColumns(table))
    definition += fmt::format(", {} INTEGER NOT NULL DEFAULT 0", sqlName(column));
  db.exec(fmt::format("CREATE TABLE {} ({})", sqlName(name), definition));
}

void fillAttributes(SQLite::Database& db, AttributeTable table, const std::string& name) {
  std::string marks = "?, ?";
  for (std::size_t i = 0; i < attributeColumns(table).size(); ++i) marks += ", ?";
  SQLite::Statement add(db, fmt::format("INSERT INTO {} VALUES ({})", sqlName(name), marks));
  for (int n = 1; n <= kRedCount; ++n) {
    add.bind(1, n);
    add.bind(2, n);
    int place = 3;
    for (const bool member : factoryRow(table, n)) add.bind(place++, member ? 1 : 0);
    add.exec();
    add.reset();
  }
}

// The division of the reds into the four intervals, one row a number.
void createIntervalDefinition(SQLite::Database& db, const std::string& name) {
  db.exec(fmt::format("CREATE TABLE {} (\"号码\" INTEGER PRIMARY KEY, \"区间\" INTEGER NOT NULL DEFAULT 0)",
                      sqlName(name)));
}

void fillIntervalDefinition(SQLite::Database& db, const std::string& name) {
  SQLite::Statement add(db, fmt::format("INSERT INTO {} VALUES (?, ?)", sqlName(name)));
  for (int n = 1; n <= kRedCount; ++n) {
    add.bind(1, n);
    add.bind(2, (n - 1) / 10 + 1);
    add.exec();
    add.reset();
  }
}

void createCustomIntervals(SQLite::Database& db) {
  db.exec(
      "CREATE TABLE \"自定义区间\" (\"序号\" INTEGER PRIMARY KEY, \"名称\" TEXT NOT NULL UNIQUE, "
      "\"条件使用情况\" INTEGER NOT "
      "NULL, \"值min\" INTEGER NOT NULL, \"值max\" INTEGER NOT NULL)");
}

void fillCustomIntervals(SQLite::Database& db) {
  SQLite::Statement add(db, "INSERT INTO \"自定义区间\" VALUES (?, ?, ?, ?, ?)");
  for (const CustomInterval& interval : factoryCustomIntervals()) {
    add.bind(1, interval.turn);
    add.bind(2, interval.name);
    add.bind(3, interval.usage);
    add.bind(4, interval.first);
    add.bind(5, interval.last);
    add.exec();
    add.reset();
  }
}

void createCombinations(SQLite::Database& db) {
  db.exec(
      "CREATE TABLE \"组合过滤\" (\"序号\" INTEGER PRIMARY KEY, \"名称\" TEXT NOT NULL, \"条件使用情况\" "
      "INTEGER NOT NULL, "
      "\"值min\" INTEGER NOT NULL, \"值max\" INTEGER NOT NULL)");
}

// The combination filters in the order of their turns: the history column, the switch and the cells of its
// shape filter.
void fillCombinations(SQLite::Database& db) {
  SQLite::Statement add(db, "INSERT INTO \"组合过滤\" VALUES (?, ?, ?, ?, ?)");
  for (int turn = 0; turn < kTurnCount; ++turn) {
    const Family& family = familyOfTurn(turn);
    add.bind(1, turn);
    add.bind(2, std::string(family.draw_column));
    add.bind(3, family.usage);
    add.bind(4, family.first);
    add.bind(5, family.last);
    add.exec();
    add.reset();
  }
}

void createDistribution(SQLite::Database& db) {
  std::string columns = "\"期号\" INTEGER PRIMARY KEY";
  for (int n = 1; n <= kRedCount; ++n) columns += fmt::format(", \"红{:02}\" TEXT", n);
  for (int n = 1; n <= kBlueCount; ++n) columns += fmt::format(", \"蓝{:02}\" TEXT", n);
  db.exec(fmt::format("CREATE TABLE \"号码分布\" ({})", columns));
}

// The sets that a user keeps under a name.
void createNamedSets(SQLite::Database& db) {
  db.exec(
      "CREATE TABLE \"命名方案\" (\"名称\" TEXT PRIMARY KEY, \"含选号\" INTEGER NOT NULL, \"内容\" TEXT NOT "
      "NULL)");
}

// The ways back: changes of the settings, the tickets before the last action, and what set a run had.
void createSteps(SQLite::Database& db) {
  db.exec(
      "CREATE TABLE \"设置步骤\" (\"序号\" INTEGER PRIMARY KEY, \"用户\" TEXT NOT NULL, \"已撤销\" "
      "INTEGER NOT NULL DEFAULT 0, \"名称\" TEXT NOT NULL, \"内容\" TEXT NOT NULL)");
  db.exec(
      "CREATE TABLE \"号码步骤\" (\"方向\" INTEGER PRIMARY KEY, \"动作\" TEXT NOT NULL, \"期号\" INTEGER NOT "
      "NULL, \"号码\" BLOB NOT NULL, \"缩水前\" BLOB NOT NULL)");
  db.exec(
      "CREATE TABLE \"运行条件\" (\"方向\" INTEGER NOT NULL, \"期号\" INTEGER NOT NULL, \"方案\" TEXT NOT "
      "NULL, "
      "\"内容\" TEXT NOT NULL, PRIMARY KEY (\"方向\", \"期号\"))");
}

void createSmallTables(SQLite::Database& db) {
  db.exec(
      "CREATE TABLE \"历史数据过滤\" (\"使用状态\" INTEGER NOT NULL, \"最小值\" INTEGER NOT NULL, \"最大值\" "
      "INTEGER NOT NULL, "
      "\"匹配值\" INTEGER NOT NULL, \"自选范围\" INTEGER NOT NULL DEFAULT 0)");
  db.exec("CREATE TABLE \"概率表\" (\"号码\" INTEGER PRIMARY KEY, \"概率\" INTEGER NOT NULL DEFAULT 0)");
  db.exec(
      "CREATE TABLE \"用户表\" (\"用户名\" TEXT PRIMARY KEY, \"密码\" TEXT NOT NULL, \"最后登陆时间\" TEXT, "
      "\"密码形式\" INTEGER NOT NULL DEFAULT 0)");
  db.exec(
      "CREATE TABLE \"用户模式\" (\"模式\" INTEGER NOT NULL, \"当前用户\" TEXT NOT NULL DEFAULT '', "
      "\"区间待统计\" INTEGER NOT NULL DEFAULT 0)");
  db.exec("CREATE TABLE \"下载地址\" (\"地址\" TEXT NOT NULL)");
}

void fillSmallTables(SQLite::Database& db) {
  db.exec(fmt::format("INSERT INTO \"历史数据过滤\" VALUES (0, {0}, {0}, 6, 0)", kDefaultPeriod));
  SQLite::Statement add(db, "INSERT INTO \"概率表\" (\"号码\") VALUES (?)");
  for (int i = 1; i <= kCodeCount; ++i) {
    add.bind(1, i <= kRedCount ? i : kBlueCodeBase + i - kRedCount);
    add.exec();
    add.reset();
  }
  db.exec("INSERT INTO \"用户表\" (\"用户名\", \"密码\") VALUES ('临时用户', '')");
  db.exec("INSERT INTO \"用户模式\" (\"模式\") VALUES (0)");
  db.exec("INSERT INTO \"下载地址\" VALUES ('')");
}

// Writes the factory rows of what belongs to a user.
void fillUserTables(SQLite::Database& db) {
  fillConditions(db, "");
  fillAttributes(db, AttributeTable::first, "号码特性");
  fillIntervalDefinition(db, "区间定义");
}

// A column as its table's definition has it.
struct ColumnDefinition {
  std::string table;
  std::string name;
  std::string definition;

  friend bool operator==(const ColumnDefinition& one, const ColumnDefinition& other) {
    return one.table == other.table && one.name == other.name;
  }
};

std::vector<ColumnDefinition> columnsOf(SQLite::Database& db) {
  SQLite::Statement row(db,
                        R"(SELECT t.name, c.name, c.type||CASE c."notnull" WHEN 1 THEN ' NOT NULL' ELSE '' END
                                      ||CASE WHEN c.dflt_value IS NULL THEN '' ELSE ' DEFAULT '||c.dflt_value
                                      END
                               FROM sqlite_master t, pragma_table_info(t.name) c WHERE t.type='table')");
  std::vector<ColumnDefinition> columns;
  while (row.executeStep())
    columns.push_back(
        {row.getColumn(0).getString(), row.getColumn(1).getString(), row.getColumn(2).getString()});
  return columns;
}

// A column that wasn't there holds what the factory puts there.
void fillAddedColumn(SQLite::Database& db, const ColumnDefinition& column, SQLite::Database& fresh) {
  if (column.table == "历史记录") {
    db.exec("UPDATE \"用户模式\" SET \"区间待统计\"=2");
    return;
  }
  if (!column.table.starts_with("号码特性") && column.table != "默认号码特性") return;
  SQLite::Statement factory(
      fresh, fmt::format("SELECT {}, \"号码\" FROM {}", sqlName(column.name), sqlName(column.table)));
  SQLite::Statement update(
      db, fmt::format("UPDATE {} SET {}=? WHERE \"号码\"=?", sqlName(column.table), sqlName(column.name)));
  while (factory.executeStep()) {
    update.bind(1, factory.getColumn(0).getInt());
    update.bind(2, factory.getColumn(1).getInt());
    update.exec();
    update.reset();
  }
}

// Tables, columns, then rows by their key, that a store of this version has and the other lacks. A version
// number that a flipped bit made older finds them there already.
void addWhatIsMissing(SQLite::Database& db) {
  SQLite::Database fresh(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
  createSchema(fresh);
  SQLite::Statement definition(fresh, "SELECT name, sql FROM sqlite_master WHERE type='table'");
  while (definition.executeStep())
    if (!db.tableExists(definition.getColumn(0).getString())) db.exec(definition.getColumn(1).getString());
  const auto present = columnsOf(db);
  std::vector<ColumnDefinition> missing;
  for (const ColumnDefinition& column : columnsOf(fresh))
    if (std::ranges::find(present, column) == present.end()) missing.push_back(column);
  for (const ColumnDefinition& column : missing)
    db.exec(fmt::format("ALTER TABLE {} ADD COLUMN {} {}", sqlName(column.table), sqlName(column.name),
                        column.definition));
  for (const ColumnDefinition& column : missing) fillAddedColumn(db, column, fresh);

  for (const char* table :
       {"过滤条件", "默认过滤条件", "过滤条件使用情况", "默认过滤条件使用情况", "自定义区间", "组合过滤"}) {
    SQLite::Statement row(fresh, fmt::format("SELECT * FROM {}", sqlName(table)));
    std::vector<std::string> columns;
    std::string marks;
    for (int i = 0; i < row.getColumnCount(); ++i) {
      columns.emplace_back(row.getColumnName(i));
      marks += i == 0 ? "?" : ",?";
    }
    SQLite::Statement add(db, fmt::format("INSERT OR IGNORE INTO {} ({}) VALUES ({})", sqlName(table),
                                          columnList(columns), marks));
    while (row.executeStep()) {
      for (int i = 0; i < row.getColumnCount(); ++i) add.bind(i + 1, row.getColumn(i).getString());
      add.exec();
      add.reset();
    }
  }
}

void setVersion(SQLite::Database& db, int version) {
  db.exec(fmt::format("PRAGMA user_version = {}", version));
}

}  // namespace

std::string sqlName(std::string_view name) {
  std::string text = "\"";
  for (const char c : name) {
    if (c == '"') text += '"';
    text += c;
  }
  return text + '"';
}

std::string columnList(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ",") + sqlName(name);
  return list;
}

int schemaVersion() {
  static const int version = [] {
    int newest = std::max({kBaseVersion, kFewerSince, kSetToleranceSince});
    for (const Condition& condition : allConditions()) newest = std::max(newest, condition.since);
    for (const DrawColumn& column : drawColumns()) newest = std::max(newest, column.since);
    for (const AttributeFamily& family : attributeFamilies()) newest = std::max(newest, family.since);
    return newest;
  }();
  return version;
}

void createUserTables(SQLite::Database& db) {
  createConditions(db, "");
  createAttributes(db, AttributeTable::first, "号码特性");
  createIntervalDefinition(db, "区间定义");
  createNamedSets(db);
}

void createTables(SQLite::Database& db) {
  createHistory(db);
  createTickets(db);
  createUserTables(db);
  createConditions(db, "默认");
  createAttributes(db, AttributeTable::first, "默认号码特性");
  createIntervalDefinition(db, "默认区间定义");
  createAttributes(db, AttributeTable::second, "号码特性2");
  createAttributes(db, AttributeTable::third, "号码特性3");
  createCustomIntervals(db);
  createCombinations(db);
  createDistribution(db);
  createSmallTables(db);
  createSteps(db);
}

void createSchema(SQLite::Database& db) {
  createTables(db);
  fillUserTables(db);
  fillConditions(db, "默认");
  fillAttributes(db, AttributeTable::first, "默认号码特性");
  fillIntervalDefinition(db, "默认区间定义");
  fillAttributes(db, AttributeTable::second, "号码特性2");
  fillAttributes(db, AttributeTable::third, "号码特性3");
  fillCustomIntervals(db);
  fillCombinations(db);
  fillSmallTables(db);
  setVersion(db, schemaVersion());
}

void createProfile(SQLite::Database& db) {
  createUserTables(db);
  fillUserTables(db);
  setVersion(db, schemaVersion());
}

void upgradeSchema(SQLite::Database& db) {
  const int version = db.execAndGet("PRAGMA user_version").getInt();
  if (version < 1 || version > schemaVersion())
    throw SQLite::Exception(fmt::format("unknown schema version {}", version));
  addWhatIsMissing(db);
  if (version < 3) {
    // An older program left the interval counts of the draws behind after some ways of changing the
    // intervals.
    db.exec("UPDATE \"用户模式\" SET \"区间待统计\"=max(\"区间待统计\", 1)");
    // Nobody knows who set a range that is in use: it stays.
    db.exec("UPDATE \"历史数据过滤\" SET \"自选范围\"=1 WHERE \"使用状态\"=1");
  }
  setVersion(db, schemaVersion());
}

}  // namespace lotmere

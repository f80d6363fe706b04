#include "core/store.hpp"

#include <gtest/gtest.h>

#include "core/row_copy.hpp"
#include "core/schema.hpp"
#include "faults.hpp"

namespace lotmere {
namespace {

using namespace test;

void add_Ticket(Store& store, int id) { put_Ticket(store, id, id, 2007001, {{1, 2, 3, 4, 5, 6}, 7}); }
std::int64_t sum_OfIds(Store& store) { return store.value(R"(SELECT total("ID") FROM "日志表")"); }

TEST(StoreChange, StandsWholeOrNotAtAll) {
  TempHome home;
  Store& store = home.store();
  {
    StoreChange outer(store);
    add_Ticket(store, 1);
    {
      StoreChange kept(store);
      add_Ticket(store, 2);
      StoreChange dropped(store);
      add_Ticket(store, 4);
    }
    {
      StoreChange kept(store);
      add_Ticket(store, 8);
      kept.commit();
    }
    outer.commit();
  }
  EXPECT_EQ(sum_OfIds(store), 1 + 8);
  {
    StoreChange dropped(store);
    add_Ticket(store, 16);
    StoreChange inner(store);
    add_Ticket(store, 32);
    inner.commit();
  }
  EXPECT_EQ(sum_OfIds(store), 1 + 8);
  const auto fail = [&] {
    StoreChange change(store);
    add_Ticket(store, 64);
    add_Ticket(store, 1);  // stands already
    change.commit();
  };
  EXPECT_THROW(fail(), SQLite::Exception);
  StoreChange after(store);
  add_Ticket(store, 128);
  after.commit();
  EXPECT_EQ(sum_OfIds(store), 1 + 8 + 128);
}

TEST(Store, OpensOnlyAStoreThatItKnows) {
  TempHome home;
  const auto path = home.home().main_Db();
  EXPECT_THROW(Store{path}, SQLite::Exception);
  EXPECT_FALSE(fs::exists(path)) << "a refused store must not be made by the refusal";
  for (const int version : {-1, 0, kSchemaVersion + 1}) {
    make_Store(path, 1);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    change_File(path, "PRAGMA user_version = " + std::to_string(version));
    const std::string bytes = bytes_Of(path);
    EXPECT_THROW(Store{path}, SQLite::Exception) << version;
    EXPECT_TRUE(bytes_Of(path) == bytes) << version;
  }
  for (const char* text : {"", "this is a shopping list"}) {
    write_File(path, text);
    EXPECT_THROW(Store{path}, SQLite::Exception) << text;
    EXPECT_EQ(bytes_Of(path), text);
  }
}

std::string values(Store& store) {
  return store.db()
      .execAndGet("SELECT group_concat(a || b, ' ') FROM (SELECT * FROM target ORDER BY k)")
      .getString();
}

TEST(RowCopy, WalksBothTablesSideBySide) {
  TempHome home;
  Store& store = home.store();
  store.db().exec(
      "CREATE TABLE target (k, a, b); INSERT INTO target VALUES (3,'r',3), (1,'p',1), (2,'q',2);"
      "CREATE TABLE source (k, a, b, more); INSERT INTO source VALUES (30,'z',9,0), (10,'x',7,0), "
      "(20,'y',8,0), (40,'w',6,0)");
  EXPECT_EQ(copy_Rows(store, {"source", "target", "k", 2}), 3);
  EXPECT_EQ(values(store), "p7 q8 r9");
  store.db().exec("DELETE FROM source WHERE k <> 20");
  EXPECT_EQ(copy_Rows(store, {"source", "target", "k", 1}), 1);
  EXPECT_EQ(values(store), "y8 q8 r9");
  store.db().exec("INSERT INTO source VALUES (99,'v',5,0)");
  EXPECT_EQ(copy_Rows(store, {"source", "target", "k", 0}), 2)
      << "copying the key must not lead the walk astray";
  EXPECT_EQ(values(store), "r9 y8 v5");
  EXPECT_THROW(copy_Rows(store, {"target", "source", "k", 1}), SQLite::Exception) << "too few columns";
  EXPECT_THROW(copy_Rows(store, {"missing", "target", "k", 1}), SQLite::Exception);
}

// Fields that hold neither a factory value nor one that a person could have set.
constexpr const char* kSpoil =
    R"(UPDATE "过滤条件" SET "Value"=99; UPDATE "过滤条件使用情况" SET "使用情况"=99; UPDATE "区间定义" SET "区间"=99;
       UPDATE "号码特性" SET "区间1"=99, "自定义组10"=99)";
std::int64_t spoilt_Rows(Store& store) {
  return store.value(
      R"(SELECT (SELECT sum("Value"=99) FROM "过滤条件")+(SELECT sum("使用情况"=99) FROM "过滤条件使用情况")
                        +(SELECT sum("区间"=99) FROM "区间定义")+(SELECT sum("区间1"=99)+sum("自定义组10"=99) FROM "号码特性"))");
}

TEST(RowCopy, TheFactoryValuesComeBackWholeOrNotAtAll) {
  struct Row {
    const char* name;
    const char* change;
    bool restored;
  };
  const Row rows[] = {
      {"as shipped", "", true},
      {"a column more in the conditions", R"(ALTER TABLE "过滤条件" ADD COLUMN "备注")", true},
      {"a column more in the attributes alone", R"(ALTER TABLE "号码特性" ADD COLUMN "新特性")", false},
  };
  for (const Row& row : rows) {
    TempHome home;
    Store& store = home.store();
    store.db().exec(kSpoil);
    store.db().exec(row.change);
    const auto spoilt = spoilt_Rows(store);
    if (row.restored)
      EXPECT_NO_THROW(restoreTiaojian(store)) << row.name;
    else
      EXPECT_THROW(restoreTiaojian(store), SQLite::Exception) << row.name;
    EXPECT_EQ(spoilt_Rows(store), row.restored ? 0 : spoilt) << row.name;
  }
}

}  // namespace
}  // namespace lotmere

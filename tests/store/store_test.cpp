// The store: what a new one holds, changes that stand whole or not at all, look-ups of periods, and the way
// back to the factory values.
#include "store/store.hpp"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <sstream>

#include "catalogue/attributes.hpp"
#include "store/periods.hpp"
#include "store/row_copy.hpp"
#include "store/schema.hpp"
#include "support/store_test.hpp"

namespace lotmere::test {
namespace {

using Changes = StoreTest;
using Attributes = StoreTest;
using Schema = StoreTest;
using Periods = StoreTest;

TEST_F(Changes, StandWholeOrNotAtAll) {
  const auto add = [&](int id) { putTicket(store_, id, id, 2007001, {{1, 2, 3, 4, 5, 6}, 7}); };
  for (const bool commit : {true, false}) {
    StoreChange outer(store_);
    add(commit ? 1 : 16);
    {
      StoreChange dropped(store_);
      add(commit ? 2 : 32);
    }
    StoreChange kept(store_);
    add(commit ? 4 : 64);
    EXPECT_THROW(add(1), SQLite::Exception) << "stands already";
    kept.commit();
    if (commit) outer.commit();
  }
  EXPECT_EQ(store_.value(R"(SELECT total("ID") FROM "日志表")"), 1 + 4);
}

TEST(Store, OpensOnlyAStoreThatItKnows) {
  TempHome home;
  const auto path = home.home().mainDb();
  EXPECT_THROW(Store{path}, SQLite::Exception);
  EXPECT_FALSE(std::filesystem::exists(path)) << "a refused store must not be made by the refusal";
  for (const int version : {-1, 0, schemaVersion() + 1}) {
    home.store().db().exec("PRAGMA user_version = " + std::to_string(version));
    EXPECT_THROW(Store{path}, SQLite::Exception) << version;
  }
  EXPECT_EQ(int(std::filesystem::status(path).permissions()), 0600);
}

// For each family the group of every number from 1 on, as the suffix of its column; "." for none.
TEST_F(Attributes, FactoryGroupsHoldTheirNumbers) {
  std::istringstream families(
      "区间=111111111122222222223333333333444 四=012301230123012301230123012301230 "
      "七=012345601234560123456012345601234 八=012345670123456701234567012345670 "
      "九=012345678012345678012345678012345 十一=0123456789a0123456789a0123456789a "
      "十二=000011112222000011112222000011112 尾=123456789012345678901234567890123 "
      "七分组=010101010123232323234545454545666 尾七分组=000011111022223333324444555554666 "
      "和数三三=0123456789abcdeffedcba9876543210g 和数三四=0123456789abcdefgfedcba9876543210 "
      "和数三五=g0123456789abcdeffedcba9876543210 奇偶连=00112233445566778899aabbccddeeffg "
      "偶奇连=0112233445566778899aabbccddeeffgg 等差16组=0123456789abcdef0123456789abcdefg "
      "等差17组=0123456789abcdefg0123456789abcdef 间距11链=0134679acdf0235689bcef124578abdeg "
      "大数=................11111111111111111 高尾码=....11111.....11111.....11111.... "
      "低尾码=1111.....11111.....11111.....1111 第=................................. "
      "自定义组=................................. 大小奇偶尾=232301010323230101032323010103232 "
      "大小奇偶组=232323232323232301010101010101010 八数四分自然段=000000001111111122222222333333333 "
      "间距三=012012012012012012012012012012012 三波组=001122001120011220012200112200122 "
      "十一数三分自然段=000000000001111111111122222222222 间距五=012340123401234012340123401234012 "
      "双尾5分组=011223344001122334400112233440011 间距六=012345012345012345012345012345012 "
      "四数八分自然段=000011112222333344445555666677777 间距十=012345678901234567890123456789012 "
      "间距十二=0123456789ab0123456789ab012345678 三波排异=010212343546768579a98acdbcbdfgeef "
      "区间排异=024679acdf024689bcef13578abdeg135 生肖链=0134679acdef0235689bcefg124578abd "
      "六区间=111111222222333333444445555566666 七区间=111112222233333444445555566667777 "
      "八区间=111112222333344445555666677778888 九区间=111122223333444455556666777888999 "
      "十区间=111122223333444555666777888999aaa 十一区间=111222333444555666777888999aaabbb "
      "十二区间=111222333444555666777888999aabbcc ");
  constexpr std::string_view suffixes = "0123456789abcdefg";
  for (std::string family; families >> family;) {
    const std::string name = family.substr(0, family.find('='));
    std::string found(kRedCount, '.');
    for (const auto table : {AttributeTable::first, AttributeTable::second, AttributeTable::third})
      for (const std::string& column : attributeColumns(table)) {
        const std::string suffix = column.starts_with(name) ? column.substr(name.size()) : "x";
        if (suffix.find_first_not_of("0123456789") != std::string::npos) continue;
        Query rows =
            store_.query(fmt::format(R"(SELECT "号码" FROM "{}" WHERE "{}"=1)", tableName(table), column));
        while (rows.next()) {
          char& group = found.at(rows.number(0) - 1);
          group = group == '.' ? suffixes[suffix.empty() ? 1 : std::stoi(suffix)] : '!';
        }
      }
    EXPECT_EQ(found, family.substr(name.size() + 1)) << name;
  }
}

TEST_F(Schema, ANewStoreHoldsItsColumnsAndFirstSettings) {
  const std::pair<const char*, const char*> values[] = {
      {R"(group_concat(name,' ') FROM pragma_table_info('历史记录'))",
       "期号 开奖日期 红球1 红球2 红球3 红球4 红球5 红球6 蓝球 和值 奇数和值 偶数和值 奇数个数 偶数个数 "
       "大数个数 小数个数 高尾码个数 低尾码个数 区间1 区间2 区间3 区间4 自定义组1 自定义组2 自定义组3 "
       "自定义组4 自定义组5 自定义组6 自定义组7 自定义组8 自定义组9 自定义组10 尾数形式 间距七 间距八 "
       "七分组 大小尾七分组 间距九 间距十一 间距十二 间距十二3分组 间距四 间距3 间距6 三波排异 区间排异 "
       "和数33 和数34 和数35 奇偶连 偶奇连 等差16组 等差17组 间距11链 生肖链 四数八分自然段 "
       "八数四分自然段 间距5 间距10 四区间 三波组 大小奇偶组 双尾5分组 大小奇偶尾 跨度 最大间距 AC值 "
       "连号 重叠号 尾数重叠 合数重叠 前3期出现个数 斜位码 尾数和值 合数和值 大数和值 小数和值 温度5 "
       "温度10 遗漏数据 已完成 总期号 临时数据"},
      {R"(count(*)||' '||sum("ID") FROM "过滤条件")", "2529 11652282"},
      {R"(count(*)||' '||sum("条件") FROM "过滤条件使用情况")", "175 35574"},
      {R"(count(*) FROM "自定义区间" WHERE "条件使用情况"=400+"序号" AND "值min"=6990+10*"序号" AND
          "值max"="值min"+9)",
       "63"},
      {R"(group_concat("Value") FROM "过滤条件" WHERE "ID" IN (33,3900,7000,7629))", "0,6,1,0"},
      {R"(group_concat("条件") FROM "过滤条件使用情况" WHERE "使用情况"<>0)", "1,5,6,9,10,12"}};
  for (const auto& [select, value] : values)
    EXPECT_EQ(store_.db().execAndGet(std::string("SELECT ") + select).getString(), value) << select;
}

TEST(RowCopy, TheFactoryValuesComeBackByTheirKeys) {
  TempHome home;
  Store& store = home.store();
  store.db().exec(R"(UPDATE "过滤条件" SET "Value"=99; UPDATE "过滤条件使用情况" SET "使用情况"=99;
                     UPDATE "区间定义" SET "区间"=99; UPDATE "号码特性" SET "区间1"=99, "自定义组10"=99;
                     ALTER TABLE "过滤条件" ADD "备注"; ALTER TABLE "号码特性" ADD "新特性";
                     DELETE FROM "默认过滤条件" WHERE "ID"=1070; DELETE FROM "过滤条件使用情况" WHERE
                     "条件"=4)");
  restoreFactoryRows(store);
  const char* const strange =
      R"(SELECT (SELECT sum(a."Value"<>b."Value") FROM "过滤条件" AS a JOIN "默认过滤条件" AS b USING ("ID"))
      +(SELECT count(*) FROM (SELECT * FROM "过滤条件使用情况" EXCEPT SELECT * FROM "默认过滤条件使用情况"))
      +(SELECT count(*) FROM (SELECT * FROM "区间定义" EXCEPT SELECT * FROM "默认区间定义"))
      +(SELECT sum("区间1"=99)+sum("自定义组10"=99)+count("新特性") FROM "号码特性"))";
  EXPECT_EQ(store.value(strange), 0);
  EXPECT_EQ(store.value(R"(SELECT "Value" FROM "过滤条件" WHERE "ID"=1070)"), 99)
      << "without a factory value";
}

TEST(RowCopy, EitherSideMayLackRowsAndColumnsOrHoldThemInAnotherOrder) {
  SQLite::Database source(":memory:", SQLite::OPEN_READWRITE), target(":memory:", SQLite::OPEN_READWRITE);
  source.exec(
      R"(CREATE TABLE t(x, k PRIMARY KEY, y TEXT, gone); INSERT INTO t VALUES(11,1,'a',0),(31,3,'c',0))");
  target.exec(R"(CREATE TABLE t(k PRIMARY KEY, added, y TEXT, x);
                 INSERT INTO t VALUES(3,7,'-',0),(2,7,'-',0),(1,NULL,'-',0),(4,7,'-',0))");
  TableRows fallback{{"x", "added"}, {}};
  fallback.rows[2] = {std::int64_t{20}, std::int64_t{8}};
  fallback.rows[3] = {std::int64_t{30}, std::int64_t{9}};
  writeRows(target, {"t", "k"}, readRows(source, "t", "k"), fallback);
  EXPECT_EQ(target
                .execAndGet(
                    "SELECT group_concat(k||y||x||ifnull(added,'*'), ' ') FROM (SELECT * FROM t ORDER BY k)")
                .getString(),
            "1a11* 2-208 3c319 4-07");
}

constexpr DrawNumbers kNumbers{{1, 2, 3, 4, 5, 6}, 7};

TEST_F(Periods, LookUpsStepOverGapsAndYears) {
  putDraw(store_, 2004002, "2004-01-06", {{2, 3, 4, 5, 6, 7}, 8});
  putDraw(store_, 2003007, "2003-03-16", kNumbers);
  putDraw(store_, 2003089, "2003-12-28", kNumbers);
  EXPECT_EQ(firstPeriod(store_), 2003007);
  const PeriodNo rows[][4] = {// period, steps, back from it, back with itself
                              {2004002, 1, 2003089, 2004002}, {2004002, 2, 2003007, 2003089},
                              {2004002, 9, 2003007, 2003007}, {2003050, 1, 2003007, 2003007},
                              {9999999, 1, 2004002, 2004002}, {2003007, 1, kDefaultPeriod, 2003007}};
  for (const auto& [period, n, back, up_to] : rows) {
    EXPECT_EQ(periodsBack(store_, period, n), back) << period << " back " << n;
    EXPECT_EQ(periodsUpTo(store_, period, n), up_to) << period << " up to " << n;
  }
  EXPECT_EQ(drawsBefore(store_, 2004002, 1).at(0).period, 2003089);
  EXPECT_EQ(findDraw(store_, 2004002).value().numbers, (DrawNumbers{{2, 3, 4, 5, 6, 7}, 8}));
}

TEST_F(Periods, TheNextPeriodCountsOnUntilADrawOfTheNewYearStands) {
  const auto next_after = [&](PeriodNo stored, const char* date) {
    putDraw(store_, stored, date, kNumbers);
    return nextPeriod(store_, *parseDate("2004-01-01"));
  };
  EXPECT_EQ(next_after(2003089, "2003-12-28"), 2003090) << "the entry's date alone doesn't turn the year";
  EXPECT_EQ(next_after(2003090, "2004-01-01"), 2004001);
  EXPECT_EQ(next_after(2004001, "2003-12-30"), 2004002);
}

}  // namespace
}  // namespace lotmere::test

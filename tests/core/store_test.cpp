// The store: what a new one holds, changes that stand whole or not at all, look-ups of periods, and the way
// back to the factory values.
#include "core/store.hpp"

#include <gtest/gtest.h>

#include <sstream>

#include "core/number_list.hpp"
#include "core/periods.hpp"
#include "core/row_copy.hpp"
#include "core/schema.hpp"
#include "support/store_test.hpp"

namespace lotmere::test {
namespace {

using Changes = StoreTest;
using Attributes = StoreTest;
using Schema = StoreTest;
using Periods = StoreTest;

TEST_F(Changes, StandWholeOrNotAtAll) {
  const auto add = [&](int id) { put_Ticket(store_, id, id, 2007001, {{1, 2, 3, 4, 5, 6}, 7}); };
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
  const auto path = home.home().main_Db();
  EXPECT_THROW(Store{path}, SQLite::Exception);
  EXPECT_FALSE(std::filesystem::exists(path)) << "a refused store must not be made by the refusal";
  for (const int version : {-1, 0, kSchemaVersion + 1}) {
    home.store().db().exec("PRAGMA user_version = " + std::to_string(version));
    EXPECT_THROW(Store{path}, SQLite::Exception) << version;
  }
  EXPECT_EQ(int(std::filesystem::status(path).permissions()), 0600);
}

TEST_F(Attributes, FactoryGroupsHoldTheirNumbers) {
  std::istringstream groups(
      "区间4=31-33 四0=1,5,9,13,17,21,25,29,33 七6=7,14,21,28 八7=8,16,24,32 九8=9,18,27 十一10=11,22,33 "
      "十二2=9-12,21-24,33 尾0=10,20,30 七分组3=12,14,16,18,20 尾七分组5=25-29 和数三三0=1,32 "
      "和数三五0=2,33 奇偶连15=31-32 偶奇连16=32-33 等差16组16=33 等差17组15=16,33 间距11链1=2,23 "
      "大数=17-33 低尾码=1-4,10-14,20-24,30-33 高尾码=5-9,15-19,25-29 生肖链16=24 四数八分自然段7=29-33 "
      "八数四分自然段3=25-33 十一数三分自然段1=12-22 三波组1=3-4,9-10,14-15,20,25-26,31 "
      "三波组2=5-6,11,16-17,21-22,27-28,32-33 三波排异1=2,5 区间排异1=21,31 "
      "大小奇偶组3=2,4,6,8,10,12,14,16 大小奇偶尾1=6,8,16,18,26,28 双尾5分组0=1,10-11,20-21,30-31 "
      "间距十二11=12,24 间距六5=6,12,18,24,30 间距五0=1,6,11,16,21,26,31 "
      "间距三2=3,6,9,12,15,18,21,24,27,30,33 六区间6=29-33 七区间5=21-25 十二区间9=25-27");
  for (std::string group; groups >> group;) {
    const std::string column = group.substr(0, group.find('='));
    Query rows = store_.query(R"(SELECT "号码" FROM "号码特性" JOIN "号码特性2" USING ("号码")
                                       JOIN "号码特性3" USING ("号码") WHERE ")" +
                              column + "\"=1 ORDER BY 1");
    std::vector<int> members;
    while (rows.next()) members.push_back(rows.number(0));
    EXPECT_EQ(members, parse_NumberList(group.substr(column.size() + 1), 1, kRedCount)) << column;
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
      {R"(count(*)||' '||sum("ID") FROM "过滤条件")", "2526 11640573"},
      {R"(count(*)||' '||sum("条件") FROM "过滤条件使用情况")", "175 35574"},
      {R"(count(*) FROM "自定义区间" WHERE "条件使用情况"=400+"序号" AND "值min"=6990+10*"序号" AND "值max"="值min"+9)",
       "63"},
      {R"(group_concat("Value") FROM "过滤条件" WHERE "ID" IN (33,3900,7000,7629))", "0,6,1,0"},
      {R"(group_concat("条件") FROM "过滤条件使用情况" WHERE "使用情况"<>0)", "1,5,6,9,10,12"}};
  for (const auto& [select, value] : values)
    EXPECT_EQ(store_.db().execAndGet(std::string("SELECT ") + select).getString(), value) << select;
}

TEST(RowCopy, TheFactoryValuesComeBackWholeOrNotAtAll) {
  for (const bool fits : {true, false}) {
    TempHome home;
    Store& store = home.store();
    store.db().exec(R"(UPDATE "过滤条件" SET "Value"=99; UPDATE "过滤条件使用情况" SET "使用情况"=99;
                       UPDATE "区间定义" SET "区间"=99; UPDATE "号码特性" SET "区间1"=99, "自定义组10"=99)");
    // Conditions may have columns of their own; an attribute without a factory value fails the last copy.
    store.db().exec(fits ? R"(ALTER TABLE "过滤条件" ADD "备注")" : R"(ALTER TABLE "号码特性" ADD "新特性")");
    if (fits)
      restoreTiaojian(store);
    else
      EXPECT_THROW(restoreTiaojian(store), SQLite::Exception);
    const char* const strange =
        R"(SELECT (SELECT count(*) FROM "过滤条件" AS a JOIN "默认过滤条件" AS b USING ("ID") WHERE a."Value"<>b."Value")
      +(SELECT count(*) FROM (SELECT * FROM "过滤条件使用情况" EXCEPT SELECT * FROM "默认过滤条件使用情况"))
      +(SELECT count(*) FROM (SELECT * FROM "区间定义" EXCEPT SELECT * FROM "默认区间定义"))
      +(SELECT sum("区间1"=99)+sum("自定义组10"=99) FROM "号码特性"))";
    EXPECT_EQ(store.value(strange), fits ? 0 : 2526 + 175 + 33 + 66);
  }
}

constexpr DrawNumbers kNumbers{{1, 2, 3, 4, 5, 6}, 7};

TEST_F(Periods, LookUpsStepOverGapsAndYears) {
  put_Draw(store_, 2004002, "2004-01-06", {{2, 3, 4, 5, 6, 7}, 8});
  put_Draw(store_, 2003007, "2003-03-16", kNumbers);
  put_Draw(store_, 2003089, "2003-12-28", kNumbers);
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
  const auto next_After = [&](PeriodNo stored, const char* date) {
    put_Draw(store_, stored, date, kNumbers);
    return nextPeriod(store_, *parse_Date("2004-01-01"));
  };
  EXPECT_EQ(next_After(2003089, "2003-12-28"), 2003090) << "the entry's date alone doesn't turn the year";
  EXPECT_EQ(next_After(2003090, "2004-01-01"), 2004001);
  EXPECT_EQ(next_After(2004001, "2003-12-30"), 2004002);
}

}  // namespace
}  // namespace lotmere::test

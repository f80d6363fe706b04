// What a new store holds: the attribute columns, the schema and the first settings.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <sstream>

#include "core/attributes.hpp"
#include "core/number_list.hpp"
#include "core/schema.hpp"
#include "support/test_store.hpp"

namespace lotmere {
namespace {

using test::TempHome;

std::vector<int> members(Store& store, const std::string& table, const std::string& column) {
  Query rows =
      store.query("SELECT \"号码\" FROM \"" + table + "\" WHERE \"" + column + "\"=1 ORDER BY \"INDEX\"");
  std::vector<int> numbers;
  while (rows.next()) numbers.push_back(rows.number(0));
  return numbers;
}

std::vector<std::string> columns_Of(Store& store, const std::string& table) {
  Query rows = store.query("SELECT name FROM pragma_table_info(?) ORDER BY cid");
  rows.bind(table);
  std::vector<std::string> names;
  while (rows.next()) names.push_back(rows.text(0));
  return names;
}

TEST(Attributes, EachFactoryFamilyPutsEveryNumberIntoOneGroup) {
  const std::set<std::string_view> not_partitions = {"大数", "高尾码", "低尾码", "第", "自定义组"};
  for (const AttributeFamily& family : attribute_Families()) {
    if (not_partitions.contains(family.name)) continue;
    for (int n = 1; n <= kRedCount; ++n) {
      int groups = 0;
      for (int g = 0; g < family.count; ++g) groups += family.holds(g, n);
      EXPECT_EQ(groups, 1) << family.name << " " << n;
    }
  }
}

TEST(Attributes, FactoryGroupsHoldTheirNumbers) {
  const std::map<std::string, std::string> tables = {
      {"号码特性",
       "区间1=1-10 区间4=31-33 四0=1,5,9,13,17,21,25,29,33 七6=7,14,21,28 七7= 八7=8,16,24,32 九9= "
       "十一10=11,22,33 "
       "十二0=1-4,13-16,25-28 十二2=9-12,21-24,33 十二3= 尾0=10,20,30 尾3=3,13,23,33 七分组0=1,3,5,7,9 "
       "七分组3=12,14,16,18,20 七分组6=31-33 尾七分组0=1-4,10 尾七分组5=25-29 和数三三0=1,32 和数三三16=33 "
       "和数三四15=16,18 和数三四16=17 和数三五0=2,33 和数三五16=1 奇偶连15=31-32 奇偶连16=33 偶奇连0=1 "
       "偶奇连16=32-33 等差16组15=16,32 等差16组16=33 等差17组15=16,33 等差17组16=17 间距11链0=1,12 "
       "间距11链1=2,23 间距11链16=33 大数=17-33 低尾码=1-4,10-14,20-24,30-33 高尾码=5-9,15-19,25-29 第1= "
       "第7= "
       "自定义组1= 自定义组10="},
      {"号码特性2",
       "生肖链1=2,25 生肖链16=24 四数八分自然段0=1-4 四数八分自然段7=29-33 八数四分自然段3=25-33 "
       "十一数三分自然段1=12-22 三波组0=1-2,7-8,12-13,18-19,23-24,29-30 三波组1=3-4,9-10,14-15,20,25-26,31 "
       "三波组2=5-6,11,16-17,21-22,27-28,32-33 三波排异0=1,3 三波排异1=2,5 三波排异16=30 区间排异0=1,11 "
       "区间排异1=21,31 区间排异16=30 大小奇偶组0=17,19,21,23,25,27,29,31,33 大小奇偶组3=2,4,6,8,10,12,14,16 "
       "大小奇偶尾1=6,8,16,18,26,28 大小奇偶尾2=1,3,11,13,21,23,31,33 双尾5分组0=1,10-11,20-21,30-31 "
       "间距十二11=12,24 间距十9=10,20,30 间距三2=3,6,9,12,15,18,21,24,27,30,33 间距五0=1,6,11,16,21,26,31"},
      {"号码特性3", "六区间1=1-6 六区间6=29-33 七区间5=21-25 十二区间9=25-27 十二区间12=32-33"}};
  TempHome home;
  for (const auto& [table, groups] : tables) {
    std::istringstream list(groups);
    for (std::string group; list >> group;) {
      const std::string column = group.substr(0, group.find('='));
      const auto numbers = parse_NumberList(group.substr(column.size() + 1), 1, kRedCount);
      EXPECT_EQ(members(home.store(), table, column), numbers.value_or(std::vector<int>{})) << group;
    }
  }
}

TEST(Attributes, TheCustomDivisionsMakeSixtyThreeIntervals) {
  TempHome home;
  Query rows = home.store().query(R"(SELECT "序号","名称","条件使用情况","值min","值max" FROM "自定义区间")");
  constexpr const char* captions[] = {"六区间", "七区间",   "八区间",  "九区间",
                                      "十区间", "十一区间", "十二区间"};
  int turn = 0;
  for (int division = 6; division <= 12; ++division) {
    std::vector<int> all;
    for (int i = 1; i <= division; ++i) {
      ASSERT_TRUE(rows.next());
      ++turn;
      EXPECT_EQ(rows.number(0), turn);
      EXPECT_EQ(rows.text(1), captions[division - 6] + std::to_string(i));
      EXPECT_EQ(rows.number(2), 400 + turn);
      EXPECT_EQ(rows.number(3), 7000 + 10 * (turn - 1));
      EXPECT_EQ(rows.number(4), 7009 + 10 * (turn - 1));
      const auto interval = members(home.store(), "号码特性3", rows.text(1));
      EXPECT_EQ(interval.size(), std::size_t(kRedCount / division + (i <= kRedCount % division)))
          << rows.text(1);
      all.insert(all.end(), interval.begin(), interval.end());
    }
    EXPECT_EQ(all.size(), std::size_t{kRedCount}) << division;
    EXPECT_TRUE(std::is_sorted(all.begin(), all.end())) << division;
  }
  EXPECT_FALSE(rows.next());
}

TEST(Schema, ADrawHasItsColumnsInOrder) {
  TempHome home;
  const auto columns = columns_Of(home.store(), "历史记录");
  ASSERT_EQ(columns.size(), 83u);
  EXPECT_EQ(std::set(columns.begin(), columns.end()).size(), 83u);
  const std::map<std::size_t, std::string> places = {
      {0, "期号"},    {1, "开奖日期"},    {2, "红球1"},     {7, "红球6"},       {8, "蓝球"},
      {18, "区间1"},  {31, "自定义组10"}, {32, "尾数形式"}, {63, "大小奇偶尾"}, {79, "遗漏数据"},
      {80, "已完成"}, {81, "总期号"},     {82, "临时数据"}};
  for (const auto& [place, name] : places) EXPECT_EQ(columns[place], name) << place;
  for (std::size_t i = 0; i < columns.size(); ++i) EXPECT_EQ(draw_Columns()[i].name, columns[i]);
  std::istringstream names(
      "和值 奇数和值 偶数和值 尾数和值 合数和值 大数和值 小数和值 奇数个数 偶数个数 大数个数 小数个数 "
      "高尾码个数 "
      "低尾码个数 跨度 最大间距 AC值 连号 重叠号 尾数重叠 合数重叠 前3期出现个数 斜位码 温度5 温度10");
  for (std::string name; names >> name;)
    EXPECT_EQ(std::count(columns.begin(), columns.end(), name), 1) << name;
  const std::set<std::string> patterns(columns.begin() + 32, columns.begin() + 64);
  Query turns = home.store().query(R"(SELECT "名称" FROM "组合过滤")");
  std::set<std::string> named;
  while (turns.next()) named.insert(turns.text(0));
  EXPECT_EQ(named, patterns) << "each pattern column has its combination filter";
}

TEST(Schema, TwinsHaveTheSameColumnsAndRows) {
  TempHome home;
  Store& store = home.store();
  for (const std::string table : {"过滤条件", "过滤条件使用情况", "号码特性", "区间定义"}) {
    EXPECT_EQ(columns_Of(store, table), columns_Of(store, "默认" + table)) << table;
    const auto lacking = [&](const std::string& a, const std::string& b) {
      return store.value("SELECT count(*) FROM (SELECT * FROM \"" + a + "\" EXCEPT SELECT * FROM \"" + b +
                         "\")");
    };
    EXPECT_GE(store.value("SELECT count(*) FROM \"" + table + "\""), kRedCount) << table;
    EXPECT_EQ(lacking(table, "默认" + table) + lacking("默认" + table, table), 0) << table;
  }
}

TEST(Schema, NoConditionLacksACellOrItsSwitch) {
  // Neighbouring ranges are taken together.
  const std::map<std::string, std::string> wanted = {
      {R"("过滤条件" WHERE "ID")",
       "1-33,101-116,1000-1170,2000-2170,3000-3170,3300-3340,3400-3440,3450-3460,3470-3480,3490-3500,3600-"
       "3630,"
       "3640-3739,3800-3901,4000-4289,4300-4319,4400-4450,4500-4550,4600-4765,4800-4965,5000-5159,6650-6689,"
       "6700-6720,6800-6820,7000-7629"},
      {R"("过滤条件使用情况" WHERE "条件")", "1-73,100-131,263-266,300-302,401-463"}};
  TempHome home;
  for (const auto& [table, list] : wanted) {
    const auto ids = parse_NumberList(list, 1, 9999);
    ASSERT_TRUE(ids);
    for (const int id : *ids)
      EXPECT_EQ(home.store().value("SELECT count(*) FROM " + table + "=?", id), 1) << table << id;
  }
}

TEST(Schema, FirstSettings) {
  TempHome home;
  const std::map<std::string, std::int64_t> values = {
      {R"("Value" FROM "过滤条件" WHERE "ID"=3900)", 6},
      {R"("Value" FROM "过滤条件" WHERE "ID"=3901)", 0},
      {R"(sum("Value") FROM "过滤条件" WHERE "ID"<200)", 0},
      {R"(sum("Value") FROM "过滤条件" WHERE "ID">=7000 AND "ID"%10<=6)", 63 * 7},
      {R"(sum("使用情况"=1) FROM "过滤条件使用情况")", 6},
      {R"(sum("使用情况"=1) FROM "过滤条件使用情况" WHERE "条件" IN (1,10,12,5,6,9))", 6},
      {R"("匹配值" FROM "历史数据过滤")", 6},
      {R"(sum("概率"=0) FROM "概率表" WHERE "号码"<=33 OR "号码" BETWEEN 101 AND 116)", 49},
      {R"("模式"+count(*) FROM "用户模式")", 1},
      {R"(count(*) FROM "用户表" WHERE "用户名"='临时用户')", 1},
      {R"(count(*) FROM "历史记录")", 0}};
  for (const auto& [sql, value] : values) EXPECT_EQ(home.store().value("SELECT " + sql), value) << sql;
}

}  // namespace
}  // namespace lotmere

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "conditions/catalogue.hpp"
#include "conditions/condition_store.hpp"
#include "conditions/values.hpp"
#include "core/desk_script.hpp"
#include "support/test_store.hpp"

namespace lotmere {
namespace {

using Cells = std::map<ConditionId, int>;

class Conditions : public testing::Test {
 protected:
  Cells all_Cells() {
    Cells cells;
    Query rows = store().query(R"(SELECT "ID","Value" FROM "过滤条件")");
    while (rows.next()) cells[rows.number(0)] = rows.number(1);
    return cells;
  }
  void set_All(int value) { store().query(R"(UPDATE "过滤条件" SET "Value"=?)").bind(value).run(); }
  Condition condition(std::string_view name) { return find_Condition(store(), name).value(); }
  Store& store() { return home_.store(); }
  test::TempHome home_;
};

TEST_F(Conditions, EveryCellAndSwitchOfTheCatalogueHasItsRow) {
  const Cells cells = all_Cells();
  std::set<UsageId> usages;
  for (const Condition& condition : all_Conditions(store())) {
    EXPECT_TRUE(usages.insert(condition.usage).second) << condition.name << " twice";
    EXPECT_TRUE(set_Usage(store(), condition.usage, true)) << condition.name;
    EXPECT_TRUE(is_Used(store(), condition.usage)) << condition.name;
    EXPECT_EQ(condition.first % 10, 0) << condition.name;
    for (ConditionId id = condition.first; id != 0 && id <= condition.last; ++id)
      EXPECT_TRUE(cells.count(id)) << condition.name << " " << id;
    EXPECT_LE(cell_Count(condition), condition.last - condition.first + 1) << condition.name;
  }
  EXPECT_EQ(usages.size(), 73U + 32U + 4U + 3U + 63U);
  for (const ConditionId id : {1, 33, 101, 116, kShrinkTypeCell, kToleranceCell})
    EXPECT_TRUE(cells.count(id)) << id;
}

TEST_F(Conditions, AreFoundByNameOrSwitchAndNameTheirItems) {
  const struct {
    const char* wanted;
    UsageId usage;  // 0: none
    ConditionId first;
    int k;
    const char* item;
  } cases[] = {{"总和值", 1, 1000, 100, "总和值=100"},
               {" 连号 ", 6, 3450, 2, "连号=2+2"},
               {"6", 6, 3450, 0, "连号=0"},
               {"间距七", 39, 4040, 9, "5,1"},
               {"间距十二", 41, 4050, 0, "1,1,1,1,1,1"},
               {"11数3分自然段", 59, 4280, 6, "6"},
               {"重叠号", 7, 3470, 3, "重叠码个数=3"},
               {"高尾码个数", 14, 3680, 1, "高尾码=1"},
               {"区间4", 19, 3730, 6, "区间4开出个数=6"},
               {"自定义组10", 29, 3890, 0, "0"},
               {"前2期和值相同组", 266, 6680, 6, "总和值相同组"},
               {"号码定位7", 36, 0, 5, "05"},
               {"十二区间12", 463, 7620, 4, "4"},
               {"401", 401, 7000, 0, "0"},
               {"跨度", 4, 3300, 32, "跨度=32"},
               {"", 0, 0, 0, ""},
               {"0", 0, 0, 0, ""},
               {"74", 0, 0, 0, ""},
               {"总和", 0, 0, 0, ""},
               {"1x", 0, 0, 0, ""},
               {"99999999999999", 0, 0, 0, ""}};
  for (const auto& row : cases) {
    const auto found = find_Condition(store(), row.wanted);
    ASSERT_EQ(found.has_value(), row.usage != 0) << row.wanted;
    if (!found) continue;
    EXPECT_EQ(found->usage, row.usage) << row.wanted;
    EXPECT_EQ(found->first, row.first) << row.wanted;
    EXPECT_EQ(item_Text(*found, row.k), row.item) << row.wanted;
  }
}

TEST_F(Conditions, TheCurrentValueTellsRunsAndSingleCells) {
  const struct {
    const char* what;
    std::vector<int> ticked;
    const char* text;
  } cases[] = {{"no cell", {}, ""},
               {"all cells are one run", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}, "０～９"},
               {"a run and a cell", {3, 4, 5, 8}, "３～５ 或 ８"},
               {"one cell", {7}, "７"},
               {"the first cell", {0}, "０"},
               {"the last cell alone", {1, 9}, "１ 或 ９"},
               {"a run of two at the end", {0, 2, 8, 9}, "０ 或 ２ 或 ８～９"}};
  for (const auto& row : cases) {
    set_All(0);
    for (const int k : row.ticked) set_Cell(store(), 3640 + k, true);
    EXPECT_EQ(tj_CurrentValue(store(), 3640, 3649), row.text) << row.what;
    EXPECT_EQ(current_Value(store(), condition("奇数个数")), row.text) << row.what;
  }
  set_All(0);
  for (const ConditionId id : {1015, 1100, 1101, 1170}) set_Cell(store(), id, true);
  EXPECT_EQ(tj_CurrentValue(store(), 1000, 1170), "１５ 或 １００～１０１ 或 １７０");
  EXPECT_EQ(tj_CurrentValue(store(), 9000, 9010), "") << "a range without rows";
}

TEST_F(Conditions, AllowingValuesWritesExactlyTheirCells) {
  const struct {
    const char* name;
    const char* values;
    std::vector<ConditionId> on;  // among the condition's cells
    ConditionId first, last;      // the cells that are written
    const char* current;
  } cases[] = {{"总和值", "60-62, 170", {1060, 1061, 1062, 1170}, 1000, 1170, "６０～６２ 或 １７０"},
               {"奇数个数", "0,6", {3640, 3646}, 3640, 3646, "０ 或 ６～９"},
               {"连号", "0;3+3 ; 6", {3450, 3456, 3460}, 3450, 3460, "0;3+3;6"},
               {"间距七", "5,1;2,2,2", {4043, 4049}, 4040, 4049, "2,2,2;5,1"},
               {"间距十二", "1,1,1,1,1,1", {4050}, 4050, 4059, "1,1,1,1,1,1"},
               {"间距四", "6", {4138}, 4130, 4138, "6"},
               {"前2期和值相同组",
                "总和值相同组;尾数和值相同组",
                {6680, 6686},
                6680,
                6686,
                "尾数和值相同组;总和值相同组"},
               {"六区间1", "2-3", {7002, 7003}, 7000, 7006, "２～３ 或 ７～９"}};
  for (const auto& row : cases) {
    set_All(1);
    Cells expected = all_Cells();
    for (ConditionId id = row.first; id <= row.last; ++id) expected[id] = 0;
    for (const ConditionId id : row.on) expected[id] = 1;
    ScriptedDesk desk;
    EXPECT_TRUE(allow_Values(store(), desk, condition(row.name), row.values)) << row.name;
    EXPECT_EQ(all_Cells(), expected) << row.name;
    EXPECT_TRUE(desk.told.empty()) << row.name;
    // Rows behind the last item can't be set; only with cells 0 or all 1 they show in no text.
    const std::string current = current_Value(store(), condition(row.name));
    EXPECT_EQ(current, row.current) << row.name;
  }
}

TEST_F(Conditions, ARefusedTextChangesNothing) {
  const struct {
    const char* name;
    const char* values;
  } cases[] = {
      {"总和值", "171"},         {"总和值", "-1"},     {"总和值", ""},         {"总和值", "9-5"},
      {"总和值", "60;70"},       {"总和值", "3,3"},    {"总和值", "六"},       {"奇数个数", "7"},
      {"连号", "2+3"},           {"连号", "连号=2"},   {"连号", "0;"},         {"间距七", "6"},
      {"间距四", "1,1,1,1,1,1"}, {"间距3", "2,2,1,1"}, {"间距3", "4,2;9"},     {"前2期和值相同组", "1"},
      {"智能优化", "1"},         {"号码定位1", "1"},   {"间距七（具体）", "1"}};
  const Cells before = all_Cells();
  for (const auto& row : cases) {
    ScriptedDesk desk;
    EXPECT_FALSE(allow_Values(store(), desk, condition(row.name), row.values))
        << row.name << " " << row.values;
    EXPECT_EQ(desk.told.size(), 1U) << row.name << " " << row.values;
    EXPECT_EQ(all_Cells(), before) << row.name << " " << row.values;
  }
}

TEST_F(Conditions, ARangeIsReadInRowOrder) {
  set_All(0);
  for (const ConditionId id : {1, 33, 105, 4050, 4059, 4060, 4069}) set_ConditionValue(store(), id, 2);
  const auto ones = [](const ValueArray& cells) {
    std::vector<int> places;
    for (int i = 0; i < 200; ++i)
      if (cells[static_cast<std::size_t>(i)] == 2) places.push_back(i);
    return places;
  };
  EXPECT_EQ(ones(load_ConditionRange(store(), 1, 33)), (std::vector<int>{1, 33}));
  EXPECT_EQ(ones(load_ConditionRange(store(), 101, 116)), std::vector<int>{5});
  EXPECT_EQ(ones(load_ConditionRange(store(), 4040, 4059)), (std::vector<int>{10, 19}));
  EXPECT_EQ(ones(load_ConditionRange(store(), 4050, 4069)), (std::vector<int>{0, 9, 10, 19}));
  EXPECT_EQ(ones(load_ConditionRange(store(), 9000, 9009)), std::vector<int>{});
  EXPECT_FALSE(set_Cell(store(), 9000, true));
  EXPECT_FALSE(set_Usage(store(), 99, true));
  EXPECT_FALSE(is_Used(store(), 99));
}

TEST_F(Conditions, ColumnsAreSetNumberByNumber) {
  const auto members = [&](AttributeTable table, const char* column) {
    std::vector<int> list;
    const RedTable flags = read_AttributeColumn(store(), table, column);
    for (int n = 1; n <= kRedCount; ++n)
      if (flags[n]) list.push_back(n);
    return list;
  };
  set_Column(store(), AttributeTable::first, "自定义组2", std::vector<int>{1, 20, 33});
  toggle_Attribute(store(), "自定义组2", 20);
  toggle_Attribute(store(), "自定义组2", 7);
  EXPECT_EQ(members(AttributeTable::first, "自定义组2"), (std::vector<int>{1, 7, 33}));
  EXPECT_TRUE(members(AttributeTable::first, "自定义组1").empty());
  write_Attribute(store(), AttributeTable::third, "六区间6", 1, true);
  EXPECT_EQ(members(AttributeTable::third, "六区间6"), (std::vector<int>{1, 29, 30, 31, 32, 33}));
  set_Column(store(), AttributeTable::third, "六区间6", {});
  EXPECT_TRUE(members(AttributeTable::third, "六区间6").empty());
}

TEST_F(Conditions, TheDefaultsComeBackWithNothingPicked) {
  const Cells factory = all_Cells();
  for (const bool factory_picks : {false, true}) {
    // A picked number in the factory rows is not picked afterwards either.
    if (factory_picks) store().query(R"(UPDATE "默认过滤条件" SET "Value"=1 WHERE "ID"=9 OR "ID"=105)").run();
    set_All(2);
    set_Usage(store(), 1, false);
    set_Usage(store(), 300, true);
    set_Column(store(), AttributeTable::first, "自定义组1", std::vector<int>{5});
    restore_Defaults(store());
    EXPECT_EQ(all_Cells(), factory);
    EXPECT_TRUE(is_Used(store(), 1));
    EXPECT_FALSE(is_Used(store(), 300));
    EXPECT_EQ(sum_Of(read_AttributeColumn(store(), AttributeTable::first, "自定义组1"), {5, 5, 5, 5, 5, 5}),
              0);
  }
}

}  // namespace
}  // namespace lotmere

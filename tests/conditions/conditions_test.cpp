#include <gtest/gtest.h>

#include <map>
#include <set>

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
    for (ConditionId id = condition.first; id != 0 && id <= condition.last; ++id)
      EXPECT_TRUE(cells.count(id)) << condition.name << " " << id;
  }
  EXPECT_EQ(condition("十二区间12").first, 7620);
  EXPECT_EQ(usages.size(), 73U + 32U + 4U + 3U + 63U);
}

TEST_F(Conditions, AreFoundByNameOrSwitchAndNameTheirItems) {
  const struct {
    const char* wanted;
    UsageId usage;  // 0: none
    int k;
    const char* item;
  } cases[] = {{"总和值", 1, 100, "总和值=100"},
               {" 连号 ", 6, 2, "连号=2+2"},
               {"11数3分自然段", 59, 6, "6"},
               {"号码定位7", 36, 5, "05"},
               {"十二区间12", 463, 4, "开出个数=4"},
               {"", 0, 0, ""},
               {"1x", 0, 0, ""}};
  for (const auto& row : cases) {
    const auto found = find_Condition(store(), row.wanted);
    EXPECT_EQ(found ? found->usage : 0, row.usage) << row.wanted;
    EXPECT_EQ(found ? item_Text(*found, row.k) : "", row.item) << row.wanted;
  }
}

TEST_F(Conditions, AllowingValuesWritesExactlyTheirCells) {
  const struct {
    const char* name;
    const char* values;
    std::vector<ConditionId> on;  // among the cells that are written
    ConditionId first, last;
    const char* current;  // the rows behind the last item stay at 1
  } cases[] = {{"总和值", "60-62, 170", {1060, 1061, 1062, 1170}, 1000, 1170, "６０～６２ 或 １７０"},
               {"奇数个数", "0,6", {3640, 3646}, 3640, 3646, "０ 或 ６～９"},
               {"跨度", "5,39-40", {3305, 3339, 3340}, 3300, 3340, "５ 或 ３９～４０"},
               {"连号", "0;3+3 ; 6", {3450, 3456, 3460}, 3450, 3460, "0;3+3;6"},
               {"间距七", "5,1;2,2,2", {4043, 4049}, 4040, 4049, "2,2,2;5,1"},
               {"间距四", "6", {4138}, 4130, 4138, "6"},
               {"前2期和值相同组", "总和值相同组", {6686}, 6680, 6686, "总和值相同组"},
               {"六区间1", "2-3", {7002, 7003}, 7000, 7006, "２～３ 或 ７～９"}};
  for (const auto& row : cases) {
    set_All(1);
    Cells expected = all_Cells();
    for (ConditionId id = row.first; id <= row.last; ++id) expected[id] = 0;
    for (const ConditionId id : row.on) expected[id] = 1;
    ScriptedDesk desk;
    EXPECT_TRUE(allow_Values(store(), desk, condition(row.name), row.values)) << row.name;
    EXPECT_EQ(all_Cells(), expected) << row.name;
    EXPECT_EQ(current_Value(store(), condition(row.name)), row.current);
  }
  set_All(0);
  EXPECT_EQ(current_Value(store(), condition("总和值")), "");
}

TEST_F(Conditions, ARefusedTextChangesNothing) {
  const std::pair<const char*, const char*> cases[] = {
      {"总和值", "171"},  {"总和值", "-1"},         {"总和值", "60;70"}, {"奇数个数", "7"},
      {"连号", "2+3"},    {"连号", "0;"},           {"间距七", "6"},     {"间距四", "1,1,1,1,1,1"},
      {"间距3", "4,2;9"}, {"前2期和值相同组", "1"}, {"智能优化", "1"},   {"间距七（具体）", "1"}};
  const Cells before = all_Cells();
  for (const auto& [name, values] : cases) {
    ScriptedDesk desk;
    EXPECT_FALSE(allow_Values(store(), desk, condition(name), values)) << name << " " << values;
    EXPECT_EQ(desk.told.size(), 1U) << name << " " << values;
    EXPECT_EQ(all_Cells(), before) << name << " " << values;
  }
}

TEST_F(Conditions, ColumnsAreSetNumberByNumber) {
  set_Column(store(), AttributeTable::first, "自定义组2", std::vector<int>{3, 20});
  set_Column(store(), AttributeTable::first, "自定义组2", std::vector<int>{1, 20, 33});
  toggle_Attribute(store(), "自定义组2", 20);
  toggle_Attribute(store(), "自定义组2", 7);
  RedTable members{};
  members[1] = members[7] = members[33] = 1;
  EXPECT_EQ(read_AttributeColumn(store(), AttributeTable::first, "自定义组2"), members);
}

TEST_F(Conditions, TheDefaultsComeBackWithNothingPicked) {
  const Cells factory = all_Cells();
  // A picked number in the factory rows is not picked afterwards either.
  store().query(R"(UPDATE "默认过滤条件" SET "Value"=1 WHERE "ID"=9 OR "ID"=105)").run();
  set_All(2);
  set_Usage(store(), 300, true);
  set_Column(store(), AttributeTable::first, "自定义组1", std::vector<int>{5});
  restore_Defaults(store());
  EXPECT_EQ(all_Cells(), factory);
  EXPECT_FALSE(is_Used(store(), 300));
  EXPECT_EQ(read_AttributeColumn(store(), AttributeTable::first, "自定义组1"), RedTable{});
}

}  // namespace
}  // namespace lotmere

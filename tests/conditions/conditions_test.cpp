#include <gtest/gtest.h>

#include <map>
#include <set>

#include "conditions/condition_store.hpp"
#include "conditions/families.hpp"
#include "conditions/summary.hpp"
#include "conditions/values.hpp"
#include "support/store_test.hpp"

namespace lotmere {
namespace {

using Cells = std::map<ConditionId, int>;

class Conditions : public test::StoreTest {
 protected:
  Cells all_Cells() {
    Cells cells;
    Query rows = store_.query(R"(SELECT "ID","Value" FROM "过滤条件")");
    while (rows.next()) cells[rows.number(0)] = rows.number(1);
    return cells;
  }
  void set_All(int value) { store_.query(R"(UPDATE "过滤条件" SET "Value"=?)").bind(value).run(); }
  Condition condition(std::string_view name) { return find_Condition(store_, name).value(); }
};

TEST_F(Conditions, EveryCellAndSwitchOfTheCatalogueHasItsRow) {
  const Cells cells = all_Cells();
  std::set<UsageId> usages;
  for (const Condition& condition : all_Conditions(store_)) {
    EXPECT_TRUE(usages.insert(condition.usage).second) << condition.name << " twice";
    EXPECT_TRUE(set_Usage(store_, condition.usage, true)) << condition.name;
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
    const auto found = find_Condition(store_, row.wanted);
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
    EXPECT_TRUE(allow_Values(store_, desk, condition(row.name), row.values)) << row.name;
    EXPECT_EQ(all_Cells(), expected) << row.name;
    EXPECT_EQ(current_Value(store_, condition(row.name)), row.current);
  }
  set_All(0);
  EXPECT_EQ(current_Value(store_, condition("总和值")), "");
}

TEST_F(Conditions, ARefusedTextChangesNothing) {
  const std::pair<const char*, const char*> cases[] = {
      {"总和值", "171"},  {"总和值", "-1"},         {"总和值", "60;70"}, {"奇数个数", "7"},
      {"连号", "2+3"},    {"连号", "0;"},           {"间距七", "6"},     {"间距四", "1,1,1,1,1,1"},
      {"间距3", "4,2;9"}, {"前2期和值相同组", "1"}, {"智能优化", "1"},   {"间距七（具体）", "1"}};
  const Cells before = all_Cells();
  for (const auto& [name, values] : cases) {
    ScriptedDesk desk;
    EXPECT_FALSE(allow_Values(store_, desk, condition(name), values)) << name << " " << values;
    EXPECT_EQ(desk.told.size(), 1U) << name << " " << values;
    EXPECT_EQ(all_Cells(), before) << name << " " << values;
  }
}

TEST_F(Conditions, TheDefaultsComeBackWithNothingPicked) {
  const Cells factory = all_Cells();
  // A picked number in the factory rows is not picked afterwards either.
  store_.query(R"(UPDATE "默认过滤条件" SET "Value"=1 WHERE "ID"=9 OR "ID"=105)").run();
  set_All(2);
  restore_Defaults(store_);
  EXPECT_EQ(all_Cells(), factory);
}

GroupCounts pack(const std::vector<int>& counts) {
  GroupCounts word = 0;
  for (std::size_t g = 0; g < counts.size(); ++g)
    word |= static_cast<GroupCounts>(counts[g]) << (kGroupBits * static_cast<int>(g));
  return word;
}

TEST(Families, ShapesOfCounts) {
  const struct {
    UsageId family;
    std::vector<int> counts;
    std::optional<int> shape;
    const char* text;
  } cases[] = {{37, {1, 1, 1, 0, 1, 1, 1}, 0, "[0,1,2,4,5,6]（1,1,1,1,1,1）"},
               {37, {0, 4, 0, 0, 0, 0, 0, 0, 0, 2}, 8, "[1,1,1,1,9,9]（4,2）"},
               {37, {5, 1}, std::nullopt, "[0,0,0,0,0,1]（5）"},
               {39, {5, 0, 1}, 9, "[1,1,1,1,1,3]（5,1）"},
               {39, {0, 6}, std::nullopt, "[2,2,2,2,2,2]（6）"},
               {45, {0, 0, 0, 0}, std::nullopt, "[]（0）"},
               {45, {6}, 8, "[1,1,1,1,1,1]（6）"},
               {45, {2, 2, 1}, 1, "[1,1,2,2,3]（2,2,2）"},   // fewer than six reds read like the pair
               {45, {1, 1, 0, 1}, 0, "[1,2,4]（2,2,1,1）"},  // a pair that isn't listed: the first shape
               {40, {1, 1, 1, 1, 1, 1, 1}, std::nullopt, "[1,2,3,4,5,6,7]（1）"},
               {69, {0, 6, 0}, 6, "[2,2,2,2,2,2]（6）"}};
  for (const auto& row : cases) {
    const Family& family = *family_OfUsage(row.family);
    EXPECT_EQ(shape_Number(family, pack(row.counts)), row.shape) << row.text;
    EXPECT_EQ(draw_Text(family, pack(row.counts)), row.text);
  }
}

TEST(Families, TurnsInTheirOrder) {
  std::string columns;
  for (int turn = 0; turn < 32; ++turn) columns += std::string(family_OfTurn(turn).column) + " ";
  EXPECT_EQ(columns,
            "尾 七 九 十一 十二 八 七分组 尾七分组 四 间距三 间距六 和数三三 和数三四 和数三五 奇偶连 偶奇连 "
            "等差16组 等差17组 间距11链 生肖链 四数八分自然段 八数四分自然段 三波排异 区间排异 间距五 间距十 "
            "区间 三波组 大小奇偶组 双尾5分组 大小奇偶尾 间距十二 ");
}

using Summary = test::StoreTest;

TEST_F(Summary, TellsEverySettingInItsLine) {
  test::put_Pick(store_, 8, PickState::tuo);
  test::put_Pick(store_, 105, PickState::dan);
  set_Column(store_, AttributeTable::first, "自定义组2", std::vector{9, 3});
  set_Usage(store_, 21, true);
  set_Usage(store_, 29, true);
  set_Usage(store_, 46, true);
  for (int k = 0; k <= 6; ++k) set_Cell(store_, 3890 + k, false);
  set_Usage(store_, 5, false);

  const std::string text = tj_Summary(store_);
  const char* lines[] = {
      "\r\n 红球“拖码”： ０８  \r\n\r\n 红球“胆码”： \r\n\r\n",
      " 蓝球“胆码”： ０５  \r\n\r\n 最大间距取值范围：  未 使 用\r\n\r\n 连号取值范围： ０  ２  ２+２  ３  "
      "\r\n",
      " 间距四：  未 使 用\r\n\r\n 间距八：  未 使 用\r\n\r\n 间距3： （２,２,２）   （３,２,１）   ",
      "\r\n 自定义组1 ——　未 使 用 \r\n\r\n 自定义组2　号码：（０３,０９） —— 允许开出个数（0个,1个,",
      "\r\n 自定义组10（ 无 号 码 ） ——（条 件 未 设 置）\r\n\r\n 缩 水 类 型： 保六型\r\n\r\n"};
  std::size_t from = 0;
  for (const char* line : lines) {
    from = text.find(line, from);
    ASSERT_NE(from, std::string::npos) << line << "\nin " << text;
  }
  set_Usage(store_, 29, false);
  EXPECT_EQ(tj_FillGroups(store_)[9], "自定义组10——　未 使 用 ");
}

}  // namespace
}  // namespace lotmere

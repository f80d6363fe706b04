#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <sstream>

#include "base/text.hpp"
#include "catalogue/families.hpp"
#include "conditions/own_sets.hpp"
#include "conditions/values.hpp"
#include "panels/summary.hpp"
#include "support/desk_script.hpp"
#include "support/test_store.hpp"

namespace lotmere {
namespace {

class Conditions : public testing::Test {
 protected:
  void setAll(int value) {
    for (const auto& [id, old] : std::vector(set_.cells.rows())) set_.cells.set(id, value);
  }
  const Condition& condition(std::string_view name) { return *findCondition(name); }

  ConditionSet set_ = test::factorySet();
};

TEST_F(Conditions, EveryCellAndSwitchOfTheCatalogueHasItsRow) {
  std::set<UsageId> usages;
  for (const Condition& condition : allConditions()) {
    EXPECT_TRUE(usages.insert(condition.usage).second) << condition.name << " twice";
    EXPECT_TRUE(set_.use(condition.usage, true)) << condition.name;
    for (ConditionId id = condition.first; id != 0 && id <= condition.last; ++id)
      EXPECT_TRUE(set_.allow(id, true)) << condition.name << " " << id;
  }
  EXPECT_FALSE(set_.use(464, true) || set_.allow(7630, true));
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
    const auto found = findCondition(row.wanted);
    EXPECT_EQ(found ? found->usage : 0, row.usage) << row.wanted;
    EXPECT_EQ(found ? itemText(*found, row.k) : "", row.item) << row.wanted;
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
    setAll(1);
    ConditionSet expected = set_;
    for (ConditionId id = row.first; id <= row.last; ++id) expected.allow(id, false);
    for (const ConditionId id : row.on) expected.allow(id, true);
    ScriptedDesk desk;
    EXPECT_TRUE(allowValues(set_, desk, condition(row.name), row.values)) << row.name;
    EXPECT_EQ(set_, expected) << row.name;
    for (const auto& [id, value] : expected.cells.rows()) set_.cells.set(id, 2 * value);  // 2 counts as 1
    EXPECT_EQ(currentValue(set_, condition(row.name)), row.current);
  }
  setAll(0);
  EXPECT_EQ(currentValue(set_, condition("总和值")), "");
}

TEST_F(Conditions, ARefusedTextChangesNothing) {
  const std::pair<const char*, const char*> cases[] = {
      {"总和值", "171"},  {"总和值", "-1"},         {"总和值", "60;70"}, {"奇数个数", "7"},
      {"连号", "2+3"},    {"连号", "0;"},           {"间距七", "6"},     {"间距四", "1,1,1,1,1,1"},
      {"间距3", "4,2;9"}, {"前2期和值相同组", "1"}, {"智能优化", "1"},   {"间距七（具体）", "1"}};
  for (const auto& [name, values] : cases) {
    ScriptedDesk desk;
    EXPECT_FALSE(allowValues(set_, desk, condition(name), values)) << name << " " << values;
    ASSERT_EQ(desk.told.size(), 1U) << name << " " << values;
    if (name == std::string_view("总和值")) {
      EXPECT_EQ(desk.told[0].text, "“总和值”的取值应为 0 到 170 之间的数字，如 1,3-5。");
    }
    EXPECT_EQ(set_, test::factorySet()) << name << " " << values;
  }
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
    const Family& family = *familyOfUsage(row.family);
    EXPECT_EQ(shapeNumber(family, pack(row.counts)), row.shape) << row.text;
    EXPECT_EQ(drawText(family, pack(row.counts)), row.text);
  }
}

TEST(Families, TurnsInTheirOrder) {
  std::string columns;
  for (int turn = 0; turn < 32; ++turn) {
    columns += std::string(familyOfTurn(turn).column) + " ";
    EXPECT_EQ(groupText(1, familyOfTurn(turn).first_group_id), turn == 0 ? "[0]" : "[1]") << turn;
  }
  EXPECT_EQ(columns,
            "尾 七 九 十一 十二 八 七分组 尾七分组 四 间距三 间距六 和数三三 和数三四 和数三五 奇偶连 偶奇连 "
            "等差16组 等差17组 间距11链 生肖链 四数八分自然段 八数四分自然段 三波排异 区间排异 间距五 间距十 "
            "区间 三波组 大小奇偶组 双尾5分组 大小奇偶尾 间距十二 ");
}

class Summary : public testing::Test {
 protected:
  // Nothing is picked, allowed or on.
  void SetUp() override {
    for (const auto& [id, value] : std::vector(set_.cells.rows())) set_.cells.set(id, 0);
    for (const auto& [usage, value] : std::vector(set_.switches.rows())) set_.use(usage, false);
    set_.cells.set(kShrinkTypeCell, 6);
  }
  // The lines of a set that differ from those of this one.
  std::string news(const ConditionSet& set) {
    std::stringstream now(summaryText(set)), old(summaryText(set_));
    std::string line, other, text;
    while (std::getline(now, line)) {
      if (!std::getline(old, other)) other.clear();
      if (line != other && line != "\r") text += line.substr(0, line.size() - 1) + '|';
    }
    return text;
  }

  ConditionSet set_ = test::factorySet();
};

TEST_F(Summary, TellsEverySettingInItsLine) {
  for (const auto& [code, state] : {std::pair{8, 1}, {33, 2}, {105, 2}, {116, 1}})
    set_.cells.set(code, state);
  const std::string text = summaryText(set_);
  EXPECT_TRUE(text.starts_with(
      "\r\n 红球“拖码”： ０８  \r\n\r\n 红球“胆码”： ３３  \r\n\r\n 蓝球“拖码”： １６  \r\n\r\n"
      " 蓝球“胆码”： ０５  \r\n\r\n 最大间距取值范围：  未 使 用\r\n\r\n"))
      << text;
  EXPECT_TRUE(
      text.ends_with("\r\n 自定义组9 ——　未 使 用 \r\n\r\n 自定义组10——　未 使 用 \r\n\r\n 缩 水 类 型： "
                     "保六型\r\n\r\n"))
      << text;
}

// Each condition alone with its second cell allowed: its line changes and no other, in the order of the
// lines.
TEST_F(Summary, GivesEachConditionTheLineOfItsSwitchAndCells) {
  // Those that have a line while they are off, too; the others stand behind them while they are on.
  std::vector<UsageId> order{5, 6, 7, 8, 9, 10, 12, 14, 16, 17, 18, 19, 37, 38, 39, 40, 41, 42, 44, 45, 43};
  for (UsageId usage = 46; usage <= 61; ++usage)
    if (usage != 59) order.push_back(usage);
  std::map<UsageId, std::string> names{{9, "ＡＣ值"}, {57, "4数8分自然段"}, {58, "8数4分自然段"}};
  for (UsageId usage = 16; usage <= 19; ++usage)
    names[usage] = "区间" + std::to_string(usage - 15) + "开出号码个数";
  const std::set<UsageId> spaced{7, 8, 9, 10, 12, 14, 16, 17, 18, 19};
  std::map<UsageId, Condition> conditions;
  for (const Condition& condition : allConditions()) {
    if (condition.usage >= 20 && condition.usage <= 36) continue;  // groups and places stand below
    conditions[condition.usage] = condition;
    names.emplace(condition.usage, condition.name);
    if (std::ranges::find(order, condition.usage) == order.end()) order.push_back(condition.usage);
  }
  for (const UsageId usage : order) {
    const Condition& condition = conditions.at(usage);
    ConditionSet set = set_;
    set.use(usage, true);
    if (condition.first != 0) set.cells.set(condition.first + 1, 2);  // counts as 1
    std::string line = " " + names.at(usage);
    switch (condition.kind) {
      case CellKind::shape:
        line += "： （" + toFullWidth(itemText(condition, 1)) + "）   ";
        break;
      case CellKind::sum_family:
        line += "： 合数和值相同组  ";
        break;
      case CellKind::combination:
      case CellKind::setting:
        line += "： 使 用";
        break;
      default:
        line += std::string("取值范围： ") + (usage == 6 ? "２  " : spaced.contains(usage) ? "１  " : "１");
    }
    if (usage == 401) line = " 六区间1　号码：（０１,０２,０３,０４,０５,０６） —— 允许开出个数（1个）";
    if (usage == 463) line = " 十二区间12　号码：（３２,３３） —— 允许开出个数（1个）";
    if (usage > 401 && usage < 463) continue;
    EXPECT_EQ(news(set), line + '|');
  }
  for (const UsageId usage : order) set_.use(usage, true);
  const std::string text = summaryText(set_);
  std::size_t from = 0;
  for (const UsageId usage : order) {
    from = text.find("\r\n " + names.at(usage), from);
    ASSERT_NE(from, std::string::npos) << names.at(usage) << "\nin " << text;
  }
}

TEST_F(Summary, TellsGroupsPlacesAndTheMatchWithTheirNumbers) {
  ConditionSet set = set_;
  setGroup(set, 2, std::vector{9, 3});
  setPlace(set, 2, std::vector{4, 33});
  setPlace(set, 7, std::vector{16});
  for (const UsageId usage : {21, 29}) set.use(usage, true);
  for (const ConditionId id : {3810, 3812, 3821, kToleranceCell}) set.allow(id, true);
  set.match = {true, 2007001, 2007010, 4, true};
  EXPECT_EQ(news(set),
            " 自定义组2　号码：（０３,０９） —— 允许开出个数（0个,2个）| 自定义组10（ 无 号 码 ） ——（条 件 "
            "未 设 置）|"
            " 号码定位容错值： １| 号码定位2： ０４  ３３  | 号码定位7： １６  |"
            " 历史数据过滤： ２００７００１～２００７０１０，最大匹配值 ４（自选范围）|");
  set.match.chosen = false;
  EXPECT_TRUE(
      summaryText(set).ends_with("～２００７０１０，最大匹配值 ４（打开设置页面时更新为最近50期）\r\n\r\n"));
}

}  // namespace
}  // namespace lotmere

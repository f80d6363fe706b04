#include <gtest/gtest.h>

#include <map>
#include <numeric>
#include <random>

#include "panels/own_pages.hpp"
#include "panels/pages.hpp"
#include "panels/sheet.hpp"
#include "support/test_store.hpp"

namespace lotmere {
namespace {

class Panels : public testing::Test {
 protected:
  void clear(ConditionId first, ConditionId last) {
    for (ConditionId id = first; id <= last; ++id) set_.allow(id, false);
  }

  ConditionSet set_ = test::factorySet();
};

TEST_F(Panels, EveryListShowsItsItemsAndTheirCells) {
  std::mt19937 random(11);  // no two lists of seven get the same cells
  for (ConditionId id = 1000; id < 7700; ++id) set_.cells.set(id, int(random() % 3));
  const ConditionSheet sheet = panelReload(set_);
  const auto counts = countPanels(set_, 13);
  const ConditionPanel span = valuePage(set_, 5);
  const struct {
    const ConditionPanel& panel;
    UsageId usage;
    ConditionId cell;   // of the first item
    const char* items;  // first, last and how many
  } cases[] = {{sheet.slots[0], 1, 1015, "总和值=15 总和值=165 151"},
               {sheet.slots[2], 62, 4400, "尾数和值=0 尾数和值=50 51"},
               {sheet.slots[3], 63, 4500, "合数和值=0 合数和值=50 51"},
               {sheet.slots[4], 64, 4600, "大数和值=0 大数和值=165 166"},
               {sheet.slots[5], 65, 4800, "小数和值=0 小数和值=165 166"},
               {sheet.slots[6], 2, 2000, "奇数和值=0 奇数和值=155 156"},
               {sheet.slots[7], 3, 3000, "偶数和值=0 偶数和值=150 151"},
               {sheet.slots[8], 10, 3640, "奇数个数=0 奇数个数=6 7"},
               {sheet.slots[9], 12, 3660, "大数个数=0 大数个数=6 7"},
               {sheet.slots[10], 14, 3680, "高尾码=0 高尾码=6 7"},
               {sheet.slots[11], 5, 3401, "最大间距=1 最大间距=28 28"},
               {sheet.slots[12], 6, 3450, "连号=0 连号=6 11"},
               {sheet.slots[13], 9, 3600, "AC值=0 AC值=15 16"},
               {sheet.slots[14], 7, 3470, "重叠码个数=0 重叠码个数=6 7"},
               {sheet.slots[15], 8, 3490, "斜位码个数=0 斜位码个数=6 7"},
               {sheet.intervals[3], 19, 3730, "区间4开出个数=0 区间4开出个数=6 7"},
               {sheet.relatives[0], 263, 6650, "尾数重叠=0 尾数重叠=6 7"},
               {sheet.relatives[1], 264, 6660, "合数重叠=0 合数重叠=6 7"},
               {sheet.relatives[2], 265, 6670, "前3期出现个数=0 前3期出现个数=6 7"},
               {sheet.relatives[3], 266, 6680, "尾数和值相同组 总和值相同组 7"},
               {sheet.heat[0], 301, 6700, "温度5=0 温度5=20 21"},
               {sheet.heat[1], 302, 6800, "温度10=0 温度10=20 21"},
               {sheet.shapes[2], 38, 4020, "1,1,1,1,1,1 5,1 10"},
               {sheet.shapes[30], 72, 5140, "2,2,1,1 6 9"},
               {counts[0], 14, 3680, "高尾码个数=0 高尾码个数=6 7"},
               {counts[1], 15, 3690, "低尾码个数=0 低尾码个数=6 7"},
               {span, 4, 3305, "跨度=5 跨度=32 28"}};
  for (const auto& row : cases) {
    const auto& items = row.panel.items;
    EXPECT_EQ(items.front().text + " " + items.back().text + " " + std::to_string(items.size()), row.items);
    EXPECT_EQ(row.panel.usage, row.usage) << row.items;
    for (std::size_t i = 0; i < items.size(); ++i)
      EXPECT_EQ(items[i].selected, set_.cells.value(row.cell + int(i)) > 0) << items[i].text;
  }
  EXPECT_TRUE(sheet.slots[1].items.empty() && sheet.tips[1].empty());
  EXPECT_EQ(sheet.relatives[2].caption + sheet.relatives[3].caption,
            "前3期出现个数过滤掉前2期和值相同组(允许错2)");
}

TEST_F(Panels, ATipTellsTheTickedCells) {
  const Condition& condition = *slotCondition(8);
  clear(condition.first, condition.last);
  EXPECT_EQ(slotTip(set_, 8), "");
  for (const int k : {0, 8, 9}) clickItem(set_, condition, k, true);
  EXPECT_EQ(slotTip(set_, 8), "\r\n当前取值：\r\n\r\n０ 或 ８～９");
  EXPECT_EQ(slotTip(set_, 12), "") << "runs have none";
  for (const auto& [usage, on] : std::vector(set_.switches.rows())) set_.switches.set(usage, 2);
  EXPECT_FALSE(slotPanel(set_, 0).ticked) << "a slot is ticked at exactly 1";
  EXPECT_TRUE(shapePanels(set_)[0].ticked);
}

TEST_F(Panels, ThePagesHaveEverySwitchFrom1To61Once) {
  const std::map<UsageId, std::string> short_names{
      {37, "尾数设置"}, {57, "4数8分自然段"}, {58, "8数4分自然段"}};
  std::map<UsageId, int> tabs;
  for (int tab = 1; tab <= 44; ++tab) {
    const ConditionPage& page = conditionPage(tab);
    for (const Condition* condition : page.conditions)
      EXPECT_TRUE(tabs.emplace(condition->usage, tab).second);
    if (page.kind != PageKind::shapes) continue;
    const UsageId usage = page.conditions.front()->usage;
    const auto named = short_names.find(usage);
    EXPECT_EQ(shapePage(set_, usage).tip,
              (named == short_names.end() ? conditionOfUsage(usage).name : named->second) + "\r\n");
    EXPECT_EQ(usage, tab + 21);
  }
  EXPECT_EQ(tabs.erase(300), 1U);
  EXPECT_EQ(tabs.size(), 61U);
  EXPECT_EQ(tabs.rbegin()->first, 61);
  EXPECT_TRUE(tabs[1] == 2 && tabs[15] == 13 && tabs[16] == 14 && tabs[29] == 41 && tabs[36] == 15);
  EXPECT_EQ(valuePage(set_, 10).caption, "使用“AC值”过滤");
  EXPECT_EQ(countPanels(set_, 13)[1].caption, "使用“低尾码个数”过滤");
}

TEST_F(Panels, SomeListsLeadTheirBox) {
  clear(4020, 4029);
  clear(3810, 3819);
  const struct {
    UsageId usage;
    int k;
    bool selected;
    BoxState box;
  } clicks[] = {{38, 9, true, {true, true}},   {38, 0, true, {true, true}},    {38, 9, false, {true, true}},
                {38, 0, false, {false, true}}, {21, 3, true, {true, true}},    {21, 3, false, {false, false}},
                {36, 16, true, {true, true}},  {36, 16, false, {false, false}}};
  for (const auto& [usage, k, selected, box] : clicks) {
    EXPECT_EQ(clickLeadingItem(set_, conditionOfUsage(usage), k, selected), box) << usage << " " << k;
    EXPECT_EQ(set_.isUsed(usage), box.ticked) << usage << " " << k;
  }
  set_.use(16, true);
  for (int k = 0; k <= 6; ++k) clickItem(set_, conditionOfUsage(16), k, false);
  EXPECT_TRUE(set_.isUsed(16)) << "the other lists leave their box alone";
  clickItem(set_, conditionOfUsage(131), 0, true);
  EXPECT_TRUE(set_.isUsed(131));
}

TEST_F(Panels, AGroupWithoutMembersIsNotInUse) {
  set_.use(22, true);
  GroupPage page = groupPage(set_, 3);
  EXPECT_TRUE(page.panel.items.empty() && !page.panel.ticked && !page.panel.enabled);
  EXPECT_TRUE(set_.isUsed(22)) << "its page alone shows it as off";
  for (const int number : {33, 4, 33}) clickGroupNumber(set_, 3, number);
  page = groupPage(set_, 3);
  EXPECT_TRUE(page.panel.ticked && page.panel.enabled && page.members[4] && !page.members[33]);
  EXPECT_EQ(page.panel.items.back(), (PanelItem{"开出个数=6", 6, true}));
  clickGroupNumber(set_, 3, 4);
  EXPECT_FALSE(set_.isUsed(22));
  EXPECT_EQ(set_.cellRange(3820, 3826), ValueArray{});
  for (const int group : {1, 10}) {
    setGroup(set_, group, std::vector{1});
    set_.use(usageOfGroup(group), true);
  }
  emptyGroups(set_);
  for (const int group : {1, 10}) {
    EXPECT_EQ(groupPage(set_, group).members, RedTable{}) << group;
    EXPECT_FALSE(set_.isUsed(usageOfGroup(group))) << group;
  }
}

TEST_F(Panels, OptionsAndPlacesShowWhatIsStored) {
  set_.use(31, true);  // in use without a number
  setPlace(set_, 7, std::vector{16});
  set_.cells.set(kToleranceCell, 7);
  const PlacePage page = placePage(set_);
  EXPECT_EQ(page.tolerances.back(), (PanelItem{"７", 7, true}));
  EXPECT_EQ(page.places[6].items.back(), (PanelItem{"16", 16, true}));
  EXPECT_TRUE(!page.places[0].enabled && page.places[1].enabled && page.places[6].ticked);
  set_.cells.set(kShrinkTypeCell, 4);
  set_.use(kSmartOptimisation, true);
  set_.cells.set(kFewerCell, 1);
  const std::pair<int, const char*> promises[] = {
      {2, ""},
      {3, "相同，但不保证中奖：３ 个红球而没有蓝球不中奖。"},
      {4, "至少有一注与它有 ４ 个号码相同，至少中五等奖。"},
      {5, "至少中四等奖。"},
      {6, "至少中三等奖。"},
      {7, "保七型：不缩水。开奖号码在这些号码之中时，就有一注中一等奖。"}};
  for (const auto& [type, text] : promises)
    EXPECT_TRUE(promiseText(type).ends_with(text)) << promiseText(type);
  const ShrinkPage shrink = shrinkPage(set_);
  EXPECT_TRUE(shrink.promise.starts_with("保四型：")) << shrink.promise;
  EXPECT_TRUE(shrink.fewer && shrink.efforts.size() == 9);
  EXPECT_EQ(shrink.efforts[2], (PanelItem{"力度 ３", 3, true}));
  EXPECT_EQ(shrink.types[1], (PanelItem{"保四型", 4, true}));
  EXPECT_TRUE(!shrink.types[3].selected && shrink.smart.ticked && !page.tolerances[0].selected);

  setPlace(set_, 7, {});
  EXPECT_FALSE(set_.isUsed(36)) << "the last number gone";
}

TEST_F(Panels, TheRangeOfTheMatchFollowsTheDrawsUntilItIsChosenByHand) {
  // The newest fifty of the periods up to 2007000 + last.
  const auto latest = [](int last) {
    std::vector<PeriodNo> periods(50);
    std::iota(periods.rbegin(), periods.rend(), 2007000 + last - 49);
    return periods;
  };
  const auto follow = [&](int last) {
    followDraws(set_, latest(last));
    return matchPage(set_, latest(last));
  };
  set_.match = {true, 2001001, 2001002, 4};
  followDraws(set_, {});
  EXPECT_TRUE(matchPage(set_, {}).periods.empty());
  EXPECT_EQ(set_.match, (HistoryMatch{true, 2001001, 2001002, 4})) << "no draws: the range stays";
  EXPECT_EQ(follow(51).matches[3], (PanelItem{"4", 4, true}));
  EXPECT_EQ(follow(51).periods, latest(51));
  EXPECT_EQ(set_.match, (HistoryMatch{true, 2007002, 2007051, 4}));
  switchHistoryMatch(set_, false, latest(53));
  EXPECT_EQ(set_.match, (HistoryMatch{false, 2007002, 2007051, 4})) << "draws alone move nothing";
  switchHistoryMatch(set_, true, latest(53));
  EXPECT_EQ(set_.match, (HistoryMatch{true, 2007004, 2007053, 4}));

  chooseMatchEnd(set_, &HistoryMatch::last, 2007040);
  chooseMatchEnd(set_, &HistoryMatch::first, 2006150);
  const MatchPage page = follow(60);
  const HistoryMatch chosen{true, 2006150, 2007040, 4, true};
  EXPECT_TRUE(page.settings == chosen && set_.match == chosen);
  EXPECT_EQ(page.periods.size(), 51U) << "an end outside of the last fifty is shown too";
  EXPECT_TRUE(page.periods.front() == 2007060 && page.periods.back() == 2006150);
}

TEST_F(Panels, IntervalsAreClearedAndDivisionsShown) {
  set_.use(19, true);
  EXPECT_EQ(intervalPreviews(set_)[3], " 区间4：　３１  ３２  ３３  ");
  clickIntervalNumber(set_, 4, 32);
  clickIntervalNumber(set_, 4, 4);
  EXPECT_EQ(intervalPreviews(set_)[3], " 区间4：　０４  ３１  ３３  ");
  clearIntervals(set_);
  EXPECT_EQ(intervalPreviews(set_)[0], " 区间1：　无号码，可把鼠标移动到左边的按钮来设置。。。");
  EXPECT_FALSE(set_.isUsed(19));
  const auto panels = divisionPanels(set_, 11);
  EXPECT_EQ(panels.size(), 11U);
  EXPECT_EQ(panels.back().panel.caption, divisionCaption(11) + "11");
  EXPECT_EQ(panels.back().numbers, "３１  ３２  ３３");
}

TEST(ShapeFilters, OfTheStoreAreTheFamilies) {
  std::string sets[3];
  for (const Family& family : families()) sets[int(family.set)] += std::to_string(family.usage) + " ";
  EXPECT_EQ(sets[int(ShapeSet::four)], "45 58 68 70 72 ");
  EXPECT_EQ(sets[int(ShapeSet::three)], "46 59 69 73 ");
  test::TempHome home;
  Query rows =
      home.store().query(R"(SELECT "名称","条件使用情况","值min","值max" FROM "组合过滤" ORDER BY "序号")");
  for (int turn = 0; turn < kTurnCount; ++turn) {
    const Family& family = familyOfTurn(turn);
    ASSERT_TRUE(rows.next());
    EXPECT_EQ(std::tie(family.draw_column, family.usage, family.first, family.last),
              std::make_tuple(rows.text(0), rows.number(1), rows.number(2), rows.number(3)));
  }
}

}  // namespace
}  // namespace lotmere

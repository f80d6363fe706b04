// The condition sheet and pages: what they show, and what a click on each kind of control writes.
#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QComboBox>
#include <QHelpEvent>
#include <QLabel>
#include <QRadioButton>
#include <QToolTip>

#include "conditions/condition_store.hpp"
#include "conditions/own_pages.hpp"
#include "conditions/pages.hpp"
#include "ui/check_list.hpp"
#include "ui/text.hpp"
#include "window_fixture.hpp"

namespace lotmere::ui::test {
namespace {

class ConditionsTest : public WindowTest {
 protected:
  void SetUp() override {
    open_Settled();
    choose("tab_2");
  }
  void open_Tab(int tab) { choose(ConditionsPage::tab_Command(tab).c_str()); }
  // A click on a row of a list.
  void tick(CheckList& list, int row) {
    list.scrollTo(list.model()->index(row, 0));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.visualRect(list.model()->index(row, 0)).center());
  }
  void tick(const char* list, int row) { tick(part<CheckList>(list), row); }
  void click_Box(const char* box) {
    QTest::mouseClick(&part<QCheckBox>(box), Qt::LeftButton, {}, QPoint(8, 8));
  }
  // Everything that a person can set, as one text.
  [[nodiscard]] std::string settings() {
    std::string text;
    for (const char* table :
         {"过滤条件", "过滤条件使用情况", "号码特性", "号码特性3", "历史数据过滤", "日志表"}) {
      Query rows = store().query(std::string("SELECT * FROM \"") + table + '"');
      while (rows.next())
        for (int i = 0; i < rows.statement().getColumnCount(); ++i) text += rows.text(i) + ',';
    }
    return text;
  }
  [[nodiscard]] int cell(ConditionId id) { return condition_Value(store(), id); }
};

TEST_F(ConditionsTest, OpeningEveryPageWritesNothingBack) {
  static_cast<void>(load_LiShi(store()));  // its page sets the range at every load
  const std::string before = settings();
  for (int tab = 2; tab <= 42; ++tab) {
    open_Tab(tab);
    EXPECT_EQ(settings(), before) << "tab " << tab;
    EXPECT_EQ(part<QListView>("TabStrip_TiaoJian").currentIndex().row(), tab - 1);
    EXPECT_LE(program_->window().minimumSizeHint().width(), 1240) << "tab " << tab << " fits a small screen";
  }
  for (const char* command : {"mnu_TiaojianChoseNumber", "mnu_TiaojianShuosui", "mnu_TiaojianView"})
    choose(command);
  EXPECT_EQ(settings(), before);
}

TEST_F(ConditionsTest, TheSheetWritesEachClickAndTellsTheCurrentValues) {
  auto& list = part<CheckList>("List_TjA_8");  // 奇数个数
  const QAbstractItemModelTester tester(list.model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
  const int before = cell(3646);
  tick(list, 6);
  EXPECT_EQ(cell(3646), 1 - before);
  list.setCurrentIndex(list.model()->index(6, 0));
  QTest::keyClick(&list, Qt::Key_Space);
  EXPECT_EQ(cell(3646), before) << "the space bar turns it back";
  for (int k = 0; k <= 6; ++k)
    if ((cell(3640 + k) == 1) != (k == 2 || k == 3)) tick(list, k);
  EXPECT_TRUE(list.parentWidget()->findChild<QLabel*>()->text().contains(QStringLiteral("２～３")));
  const bool used = is_Used(store(), 10);
  click_Box("Check_useTiaojiao_8");
  EXPECT_EQ(is_Used(store(), 10), !used);
  tick("List_wscd_0", 3);
  tick("List_TiaojianMohu_0", 1);
  tick("List_wenDu5", 20);
  EXPECT_EQ(cell(6720), 1) << "温度5, the last cell";
}

TEST_F(ConditionsTest, ConcreteCombinationsFollowTheChosenDraw) {
  auto& list = part<CheckList>("List_jtzhsgl");
  EXPECT_EQ(part<QComboBox>("Combo_guoluqh").currentText(), QStringLiteral("2026090"));
  EXPECT_TRUE(list.list().items()[0].text.find("≠ [") != std::string::npos);
  tick(list, 0);
  EXPECT_TRUE(is_Used(store(), usage_OfTurn(0)));
}

TEST_F(ConditionsTest, ListsThatLeadTheirBoxSwitchIt) {
  open_Tab(16);  // 尾数形式
  auto& box = part<QCheckBox>("Check_useTiaojiao_else");
  auto& list = part<CheckList>("List_TiaojianElse");
  for (const PanelItem& item : std::vector(list.list().items()))
    if (item.selected) tick(list, item.k);
  EXPECT_FALSE(box.isChecked());
  EXPECT_FALSE(is_Used(store(), 37));
  tick(list, 2);
  EXPECT_TRUE(box.isChecked());
  EXPECT_TRUE(is_Used(store(), 37));
  open_Tab(17);  // the same page for another condition
  tick(list, 2);
  EXPECT_TRUE(is_Used(store(), 38));
  EXPECT_EQ(cell(4002), 1) << "the first one keeps its cell";

  open_Tab(15);
  EXPECT_FALSE(part<QCheckBox>("Check_useDingWeiTiaojiao_30").isEnabled());
  tick("List_DingweiNumber_1", 4);
  EXPECT_TRUE(is_Used(store(), 30));
  EXPECT_EQ(read_AttributeColumn(store(), AttributeTable::first, "第1")[5], 1);
  tick("List_DingweiNumber_1", 4);
  EXPECT_FALSE(part<QCheckBox>("Check_useDingWeiTiaojiao_30").isEnabled());
  part<QRadioButton>("Option_DingweiRongcuo_3").click();
  EXPECT_EQ(cell(kToleranceCell), 3);
}

TEST_F(ConditionsTest, CountAndIntervalPagesWriteTheirCells) {
  open_Tab(11);
  const int before = cell(3653);
  tick("List_TJ_1", 3);
  EXPECT_EQ(cell(3653), 1 - before) << "偶数个数";
  click_Box("Check_page_1");
  EXPECT_TRUE(is_Used(store(), 11));
  open_Tab(14);
  const int interval = cell(3735);
  tick("List_TJ_3", 5);
  EXPECT_EQ(cell(3735), 1 - interval) << "区间4";
  open_Tab(2);
  EXPECT_FALSE(part<CheckList>("List_TJ_0").isVisible()) << "the values stand on the sheet";
  open_Tab(5);
  EXPECT_TRUE(part<CheckList>("List_TJ_0").isVisible()) << "跨度 has its list here";
}

TEST_F(ConditionsTest, GroupsAreMadeFilledAndEmptied) {
  open_Tab(41);
  EXPECT_FALSE(part<QCheckBox>("Check_Zdy").isEnabled());
  for (const char* number : {"cmm_ZDY_03", "cmm_ZDY_09"}) part<QAbstractButton>(number).click();
  EXPECT_TRUE(part<QCheckBox>("Check_Zdy").isEnabled());
  EXPECT_TRUE(shown(std::string("　号码：（０３,０９）")).size() > 0);
  EXPECT_EQ(read_AttributeColumn(store(), AttributeTable::first, "自定义组1")[9], 1);
  auto& counts = part<CheckList>("List_ZDYset");
  for (const PanelItem& item : std::vector(counts.list().items()))
    if (item.selected != (item.k == 1)) tick(counts, item.k);
  EXPECT_TRUE(is_Used(store(), 20));
  EXPECT_TRUE(part<QListView>("List_ZDY")
                  .model()
                  ->index(0, 0)
                  .data()
                  .toString()
                  .contains(QStringLiteral("允许开出个数（1个）")));
  press("cmm_EmptyZDY_0");
  EXPECT_FALSE(is_Used(store(), 20));
  EXPECT_FALSE(part<QCheckBox>("Check_Zdy").isEnabled());
}

TEST_F(ConditionsTest, MatchAndShrinkPagesStoreTheirChoice) {
  open_Tab(42);
  click_Box("Check_Historyguolu");
  auto& match = part<QComboBox>("Combo_PiPei");
  match.setCurrentIndex(3);
  Q_EMIT match.activated(3);
  EXPECT_TRUE(load_HistoryMatch(store()).used);
  EXPECT_EQ(load_HistoryMatch(store()).match, 4);
  EXPECT_EQ(load_HistoryMatch(store()).last, 2026090);
  choose("mnu_TiaojianShuosui");
  part<QRadioButton>("Option_ShuoSuiLeiXing_4").click();
  part<QCheckBox>("Check_auto").click();
  EXPECT_EQ(cell(kShrinkTypeCell), 4);
  EXPECT_TRUE(is_Used(store(), kSmartOptimisation));
}

TEST_F(ConditionsTest, CustomDivisionsShowTheirIntervalsAndTakeNumbers) {
  part<QRadioButton>("Option_qjFenlei_2").click();  // 八区间
  EXPECT_TRUE(
      part<QCheckBox>("Check_zdyQJ_7").parentWidget()->parentWidget()->isVisibleTo(&program_->window()));
  EXPECT_FALSE(
      part<QCheckBox>("Check_zdyQJ_8").parentWidget()->parentWidget()->isVisibleTo(&program_->window()));
  const DivisionPanel second = division_Panels(store(), 8)[1];
  part<QCheckBox>("Check_zdyQJ_1").click();
  EXPECT_NE(is_Used(store(), second.condition.usage), second.panel.ticked);
  part<QPushButton>("cmm_QujianTip_102").click();
  const bool member = read_AttributeColumn(store(), AttributeTable::third, "八区间2")[33] != 0;
  part<QAbstractButton>("Check_zdyQJnumber_33").click();
  EXPECT_NE(read_AttributeColumn(store(), AttributeTable::third, "八区间2")[33] != 0, member);
  part<QPushButton>("cmm_CLSzdyQj").click();
}

TEST_F(ConditionsTest, DividingTheIntervalsRecountsTheDrawsWhenThePageIsLeft) {
  choose("mnu_newQuJian");
  const auto counted = [&] {
    return store().value(R"(SELECT "区间2" FROM "历史记录" WHERE "期号"=2026090)");
  };
  part<QRadioButton>("Option_QujianDingyi_1").click();
  part<QAbstractButton>("cmm_QujianHuafen_01").click();
  EXPECT_TRUE(part<QLabel>("Label_4qj_1").text().contains(QStringLiteral("０１")));
  EXPECT_EQ(counted(), 0);
  choose("tab_1");
  EXPECT_EQ(counted(), 1) << "the draw holds 1";
  desk_.told.clear();
  choose("mnu_newQuJian");
  choose("tab_1");
  EXPECT_TRUE(desk_.told.empty()) << "unchanged intervals aren't counted again";
  choose("mnu_newQuJian");
  press("cmm_CLSQujianHuafen");
  EXPECT_TRUE(part<QLabel>("Label_4qj_0").text().contains(QStringLiteral("无号码")));
}

TEST_F(ConditionsTest, TheFootTellsWhatARunWouldLeave) {
  const auto foot = [&](const std::string& text) {
    return QTest::qWaitFor([&] { return part<QLabel>("Label_liveCount").text() == shown(text); });
  };
  EXPECT_TRUE(foot("还没有投注号，也没有选好号码。"));
  pick({8, 9, 10, 11, 12, 13, 14, 15, 16, 108, 109});
  LiveCount expansion(store());
  const auto picked = expansion.count(2026091);
  EXPECT_EQ(picked->tickets, 84 * 2);
  EXPECT_TRUE(foot(live_Text(*picked)));
  desk_.texts = {"2026091", "2026091"};
  choose("mnu_ShengCeng_0");
  choose("tab_2");
  tick("List_TjA_8", 3);
  tick("List_TjA_8", 2);
  LiveCount tickets(store());
  const auto before = tickets.count(2026091);
  EXPECT_TRUE(foot(live_Text(*before)));
  choose("mnu_ShengCeng_1");
  EXPECT_EQ(store().value(R"(SELECT count(*) FROM "日志表")"), before->survivors);
}

TEST_F(ConditionsTest, TipsTellHowMuchAConditionLetsThrough) {
  const auto tip = [&](const char* name) {
    auto& box = part<QCheckBox>(name);
    QHelpEvent asked(QEvent::ToolTip, QPoint(2, 2), box.mapToGlobal(QPoint(2, 2)));
    QApplication::sendEvent(&box, &asked);
    return QToolTip::text();
  };
  const QString sum = tip("Check_useTiaojiao_0");
  EXPECT_TRUE(sum.startsWith(QStringLiteral("总和值\n当前取值：６０～１４３\n放行全部红球组合的")));
  EXPECT_TRUE(tip("Check_zdyQJ_0").contains(QStringLiteral("六区间1")));
  open_Tab(42);
  EXPECT_TRUE(tip("Check_Historyguolu").startsWith(QStringLiteral("放行全部红球组合的")));
}

TEST_F(ConditionsTest, AnalysesTakeTheSheetsPlaceAndGiveItBack) {
  press("cmm_Yltj_1");
  EXPECT_TRUE(part<QComboBox>("Combo_ItemOfYLFX").isVisible());
  EXPECT_EQ(part<QComboBox>("Combo_ItemOfYLFX").currentIndex(), 1);
  EXPECT_FALSE(part<CheckList>("List_TjA_0").isVisible());
  press("cmm_Cstj_0");
  EXPECT_TRUE(part<QComboBox>("Combo_MSChartItem").isVisible());
  choose("tab_1");
  choose("tab_2");
  EXPECT_TRUE(part<QComboBox>("Combo_MSChartItem").isVisible())
      << "the view stays until the person leaves it";
  for (auto* back : program_->window().findChildren<QPushButton*>(QStringLiteral("cmm_Qiehuan")))
    if (back->isVisible()) QTest::mouseClick(back, Qt::LeftButton);
  EXPECT_TRUE(part<CheckList>("List_TjA_0").isVisible());
}

TEST_F(ConditionsTest, RestoredDefaultsAndNewUsersShowOnTheSheetAgain) {
  const auto& list = part<CheckList>("List_TjA_8").list();
  const bool factory = list.items()[6].selected;
  tick("List_TjA_8", 6);
  EXPECT_NE(list.items()[6].selected, factory);
  desk_.choices = {0};
  choose("huanyuan");
  choose("tab_2");
  EXPECT_EQ(list.items()[6].selected, factory);
}

}  // namespace
}  // namespace lotmere::ui::test

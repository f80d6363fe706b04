// The condition sheet and pages: what they show, and what a click on each kind of control writes.
#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QComboBox>
#include <QHelpEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QToolTip>

#include "conditions/condition_store.hpp"
#include "conditions/own_pages.hpp"
#include "conditions/pages.hpp"
#include "core/interval_mark.hpp"
#include "core/schema.hpp"
#include "ui/check_list.hpp"
#include "ui/count_bars.hpp"
#include "ui/frozen_grid.hpp"
#include "ui/omission_chart.hpp"
#include "ui/text.hpp"
#include "window_fixture.hpp"

namespace lotmere::ui::test {
namespace {

class ConditionsTest : public WindowTest {
 protected:
  void SetUp() override {
    lotmere::test::put_Draw(home_.store(), 2026088, "2026-08-13", {{7, 9, 14, 20, 28, 33}, 2});
    lotmere::test::put_Draw(home_.store(), 2026089, "2026-08-16", {{1, 12, 13, 24, 30, 31}, 9});
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
  // What the foot is to tell, worked out here.
  [[nodiscard]] std::optional<LiveCount::Result> count_Live() {
    FreeCourse course;
    return LiveCount().count(
        {loadLiveTickets(store()), loadConditionSet(store()), loadDrawTable(store()), 2026091}, course);
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
  // What every box, list, option, ball and choice shows, one entry each.
  [[nodiscard]] std::vector<std::string> face() {
    const QWidget& window = program_->window();
    std::vector<std::string> marks;
    for (const auto* button : window.findChildren<QAbstractButton*>())
      marks.push_back(utf8(button->objectName()) + ' ' + utf8(button->accessibleName()) +
                      (button->isChecked() ? "+" : "-"));
    for (const auto* list : window.findChildren<CheckList*>())
      for (const PanelItem& item : list->list().items())
        marks.push_back(utf8(list->objectName()) + ' ' + item.text + (item.selected ? "+" : "-"));
    for (const auto* choice : window.findChildren<QComboBox*>())
      marks.push_back(utf8(choice->objectName()) + ' ' + utf8(choice->currentText()));
    return marks;
  }
  // The entries of two faces that differ; lists that are filled anew may be longer.
  static std::string differences(const std::vector<std::string>& a, const std::vector<std::string>& b) {
    std::string text = a.size() == b.size() ? "" : "other lists; ";
    for (std::size_t i = 0; i < std::min(a.size(), b.size()) && text.size() < 300; ++i)
      if (a[i] != b[i]) text += a[i] + " / " + b[i] + "; ";
    return text;
  }
  // A choice from the list of a box, as a user makes it.
  void select(const char* name, int index) {
    auto& box = part<QComboBox>(name);
    box.setCurrentIndex(index);
    Q_EMIT box.activated(index);
  }
};

// A control of each kind, where it stands, and a click on it.
struct Click {
  const char* command;
  const char* name;
  std::function<void()> click;
};

// Each click with the store held by another program, and then free: what it shows is what is stored, at once
// and when the page is opened again, and the tickets that are left are counted anew.
TEST_F(ConditionsTest, EveryControlShowsWhatIsStored) {
  const auto tab = [](int number) { return std::string("mnu_Tiaojian_") + std::to_string(number); };
  const std::string counts = tab(11), places = tab(15), shapes = tab(16), groups = tab(41), match = tab(42);
  constexpr const char* sheet = "mnu_TiaojianChoseNumber";
  constexpr const char* shrink = "mnu_TiaojianShuosui";
  const auto item = [&](const char* list, int row) { return [=, this] { tick(list, row); }; };
  const auto box = [&](const char* name) { return [=, this] { click_Box(name); }; };
  const auto button = [&](const char* name) { return [=, this] { part<QAbstractButton>(name).click(); }; };
  set_Group(store(), 1, std::vector{3, 9});
  const Click clicks[] = {{sheet, "an item", item("List_TjA_8", 6)},
                          {sheet, "a box", box("Check_useTiaojiao_8")},
                          {sheet, "a turn", item("List_jtzhsgl", 2)},
                          {sheet, "a division's box", button("Check_zdyQJ_1")},
                          {sheet, "a division's item", item("List_zdyQJ_1", 3)},
                          {sheet, "a division's number", button("Check_zdyQJnumber_33")},
                          {sheet, "a ball", button("cmm_C7_07")},
                          {counts.c_str(), "an item", item("List_TJ_1", 3)},
                          {counts.c_str(), "a box", box("Check_page_0")},
                          {places.c_str(), "a number", item("List_DingweiNumber_1", 4)},
                          {places.c_str(), "its box", box("Check_useDingWeiTiaojiao_30")},
                          {places.c_str(), "the tolerance", button("Option_DingweiRongcuo_3")},
                          {shapes.c_str(), "a shape", item("List_TiaojianElse", 9)},
                          {groups.c_str(), "a number", button("cmm_ZDY_12")},
                          {groups.c_str(), "a count", item("List_ZDYset", 5)},
                          {groups.c_str(), "its box", box("Check_Zdy")},
                          {groups.c_str(), "the empty button", button("cmm_EmptyZDY_0")},
                          {match.c_str(), "the box", box("Check_Historyguolu")},
                          {match.c_str(), "the first period", [&] { select("Combo_HistoryGuoLu_0", 1); }},
                          {match.c_str(), "the last period", [&] { select("Combo_HistoryGuoLu_1", 1); }},
                          {match.c_str(), "the match value", [&] { select("Combo_PiPei", 2); }},
                          {match.c_str(), "the latest fifty", button("cmm_latestPeriods")},
                          {shrink, "the type", button("Option_ShuoSuiLeiXing_4")},
                          {shrink, "smart", button("Check_auto")}};
  store().db().setBusyTimeout(0);
  part<QPushButton>("cmm_QujianTip_102").click();
  auto& foot = part<QLabel>("Label_liveCount");
  const auto counted = [&] {
    return QTest::qWaitFor([&] { return foot.text() != QStringLiteral("?"); }, 2000);
  };
  foot.setText(QStringLiteral("?"));
  EXPECT_TRUE(counted());
  for (const Click& row : clicks) {
    SCOPED_TRACE(row.command + std::string(": ") + row.name);
    choose(row.command);
    const std::string stored = settings();
    const auto shown_before = face();
    desk_.told.clear();
    {
      SQLite::Database other(store().path().string(), SQLite::OPEN_READWRITE);
      other.exec("BEGIN EXCLUSIVE");
      row.click();
    }
    EXPECT_EQ(differences(face(), shown_before), "");
    EXPECT_EQ(desk_.told.size(), 1U);
    EXPECT_EQ(settings(), stored);
    foot.setText(QStringLiteral("?"));
    row.click();
    EXPECT_NE(settings(), stored);
    EXPECT_TRUE(counted()) << "anew behind the click";
    const auto shown_behind = face();
    EXPECT_NE(differences(shown_behind, shown_before), "");
    choose("tab_1");
    choose("tab_2");
    EXPECT_EQ(differences(face(), shown_behind), "");
    foot.setText(QStringLiteral("?"));
    EXPECT_TRUE(counted()) << "when the page is opened; nothing is under way before the next click";
  }
}

TEST_F(ConditionsTest, SheetAndPagesAgree) {
  const struct {
    int tab;
    const char* page_box;
    const char* page_list;
    const char* sheet_box;
    const char* sheet_list;
  } cases[] = {
      {11, "Check_page_0", "List_TJ_0", "Check_useTiaojiao_8", "List_TjA_8"},
      {14, "Check_page_2", "List_TJ_2", "Check_useTiaojiao_18", "List_QJ_3"},
      {16, "Check_useTiaojiao_else", "List_TiaojianElse", "Check_TiaojianMohu_0", "List_TiaojianMohu_0"}};
  for (const auto& row : cases) {
    SCOPED_TRACE(row.tab);
    const auto agree = [&](const char* where) {
      open_Tab(row.tab);
      const auto items = part<CheckList>(row.page_list).list().items();
      const bool used = part<QCheckBox>(row.page_box).isChecked();
      // The strip and the command lead back alike.
      if (row.tab == 14)
        part<QListView>("TabStrip_TiaoJian")
            .setCurrentIndex(part<QListView>("TabStrip_TiaoJian").model()->index(0, 0));
      else
        choose("mnu_TiaojianChoseNumber");
      const auto& sheet = part<CheckList>(row.sheet_list).list().items();
      ASSERT_EQ(items.size(), sheet.size());
      for (std::size_t i = 0; i < sheet.size(); ++i)
        EXPECT_EQ(items[i].selected, sheet[i].selected) << where << i;
      EXPECT_EQ(used, part<QCheckBox>(row.sheet_box).isChecked()) << where;
    };
    choose("mnu_TiaojianChoseNumber");
    click_Box(row.sheet_box);
    tick(row.sheet_list, 5);
    agree("behind clicks on the sheet ");
    open_Tab(row.tab);
    tick(row.page_list, 6);
    click_Box(row.page_box);
    agree("behind clicks on the page ");
  }
  choose("mnu_TiaojianView");
  pick({9});
  EXPECT_TRUE(
      part<QPlainTextEdit>("Text_TiaoJianList").toPlainText().contains(QStringLiteral("“拖码”： ０９")));
}

TEST_F(ConditionsTest, TheSheetFollowsDrawsAndIntervals) {
  EXPECT_EQ(part<QComboBox>("Combo_guoluqh").currentText(), QStringLiteral("2026090"));
  click_Box("Check_useTiaojiao_16");
  EXPECT_TRUE(is_Used(store(), 16));
  choose("tab_1");
  for (int i = 1; i <= 7; ++i)
    part<QLineEdit>(("TextHistory_" + std::to_string(i)).c_str()).setText(QString::number(2 * i + 1));
  choose("cmmUpdateHistory_0");
  EXPECT_EQ(latestPeriod(store()), 2026091);
  choose("tab_2");
  EXPECT_EQ(part<QComboBox>("Combo_guoluqh").currentText(), QStringLiteral("2026091"));
  choose("mnu_newQuJian");
  press("cmm_CLSQujianHuafen");
  choose("tab_2");
  EXPECT_FALSE(part<QCheckBox>("Check_useTiaojiao_16").isChecked()) << "empty intervals filter nothing";
}

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
  for (const auto& [name, row, id] : {std::tuple{"List_wscd_1", 3, 6663},
                                      {"List_TiaojianMohu_2", 1, 4021},
                                      {"List_TjA_11", 0, 3401},
                                      {"List_wenDu5", 20, 6720}}) {
    const int allowed = cell(id);
    tick(name, row);
    EXPECT_EQ(cell(id), 1 - allowed) << name;
  }
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
  const auto members = [&](int group) {
    std::string kept;
    const RedTable column =
        read_AttributeColumn(store(), AttributeTable::first, "自定义组" + std::to_string(group));
    for (int n = 1; n <= kRedCount; ++n) kept += column[n] ? std::to_string(n) + ' ' : "";
    return kept;
  };
  auto& tabs = part<QTabBar>("TabStrip_ZDYchose");
  const std::pair<int, std::vector<const char*>> groups[] = {
      {1, {"cmm_ZDY_03", "cmm_ZDY_09"}}, {2, {"cmm_ZDY_05"}}, {10, {"cmm_ZDY_33", "cmm_ZDY_01"}}};
  for (const auto& [group, numbers] : groups) {
    tabs.setCurrentIndex(group - 1);
    for (const char* number : numbers) part<QAbstractButton>(number).click();
    auto& counts = part<CheckList>("List_ZDYset");
    for (const PanelItem& item : std::vector(counts.list().items()))
      if (item.selected != (item.k == 1)) tick(counts, item.k);
    EXPECT_TRUE(is_Used(store(), usage_OfGroup(group)) && part<QCheckBox>("Check_Zdy").isChecked());
  }
  EXPECT_EQ(members(1) + members(2) + members(3) + members(10), "3 9 5 1 33 ");
  const auto line = [&](int group) {
    return utf8(part<QListView>("List_ZDY").model()->index(group - 1, 0).data().toString());
  };
  EXPECT_EQ(line(2), "自定义组2　号码：（０５） —— 允许开出个数（1个）");
  Q_EMIT part<QListView>("List_ZDY").clicked(part<QListView>("List_ZDY").model()->index(1, 0));
  EXPECT_EQ(tabs.currentIndex(), 1);
  press("cmm_EmptyZDY_0");
  EXPECT_EQ(members(1) + members(2) + members(10), "3 9 1 33 ") << "the group shown, and no other";
  EXPECT_TRUE(is_Used(store(), 20) && !is_Used(store(), 21) && is_Used(store(), 29));
  EXPECT_FALSE(part<QCheckBox>("Check_Zdy").isEnabled());
  press("cmm_EmptyZDY_1");
  EXPECT_EQ(members(1) + members(10), "");
  EXPECT_FALSE(is_Used(store(), 20) || is_Used(store(), 29));
  EXPECT_EQ(line(1), "自定义组1 ——　未 使 用 ");
}

TEST_F(ConditionsTest, TheMatchPageMovesItsRangeOnWhenItIsShownAndLeavesAChosenOne) {
  const auto range = [&] {
    const HistoryMatch match = load_HistoryMatch(store());
    return std::pair{match.first, match.last};
  };
  const auto which = [&] { return utf8(part<QLabel>("Label_matchRange").text()); };
  open_Tab(42);
  EXPECT_EQ(range(), std::pair(2026088, 2026090));
  EXPECT_EQ(which(), kMatchTexts.latest);
  choose("tab_1");
  lotmere::test::put_Draw(store(), 2026091, "2026-08-20", {{2, 4, 6, 8, 10, 12}, 1});
  for (const char* command : {"mnu_TiaojianView", "huanyuan", "mnu_TiaojianChoseNumber"}) {
    open_Tab(42);  // from here the page is left and another one asked for from outside
    choose("tab_1");
    store().query(R"(UPDATE "历史数据过滤" SET "最大值"=2026089)").run();
    desk_.choices = {1};
    choose(command);
    EXPECT_EQ(range().second, 2026089) << command << " doesn't show the page";
    choose("tab_1");
  }
  open_Tab(42);
  EXPECT_EQ(range(), std::pair(2026088, 2026091));
  select("Combo_HistoryGuoLu_1", 2);
  select("Combo_HistoryGuoLu_0", 1);
  EXPECT_EQ(range(), std::pair(2026090, 2026089)) << "as chosen, whatever sense it makes";
  select("Combo_HistoryGuoLu_0", 2);
  EXPECT_EQ(which(), kMatchTexts.chosen);
  open_Tab(16);
  open_Tab(42);
  EXPECT_EQ(range(), std::pair(2026089, 2026089));
  EXPECT_EQ(part<QComboBox>("Combo_HistoryGuoLu_0").currentText(), QStringLiteral("2026089"));
  press("cmm_latestPeriods");
  EXPECT_EQ(range(), std::pair(2026088, 2026091));
  EXPECT_EQ(which(), kMatchTexts.latest);
  click_Box("Check_Historyguolu");
  select("Combo_PiPei", 3);
  EXPECT_EQ(load_HistoryMatch(store()), (HistoryMatch{true, 2026088, 2026091, 4}));
}

TEST_F(ConditionsTest, PlaceAndShrinkPagesShowWhatIsStored) {
  for (const int stored : {5, 2}) {
    set_ConditionValue(store(), kToleranceCell, stored);
    set_ConditionValue(store(), kShrinkTypeCell, stored + 1);
    set_Usage(store(), kSmartOptimisation, stored == 5);
    open_Tab(15);
    for (int k = 0; k <= kPlaceCount; ++k)
      EXPECT_EQ(part<QRadioButton>(("Option_DingweiRongcuo_" + std::to_string(k)).c_str()).isChecked(),
                k == stored);
    choose("mnu_TiaojianShuosui");
    for (int type = kSmallestShrink; type <= kLargestShrink; ++type)
      EXPECT_EQ(part<QRadioButton>(("Option_ShuoSuiLeiXing_" + std::to_string(type)).c_str()).isChecked(),
                type == stored + 1);
    EXPECT_EQ(part<QCheckBox>("Check_auto").isChecked(), stored == 5);
  }
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
  EXPECT_TRUE(part<QWidget>("Frame_zdyQJnumber").isVisible());
  part<QPushButton>("cmm_CLSzdyQj").click();
  EXPECT_FALSE(part<QWidget>("Frame_zdyQJnumber").isVisible());
}

class IntervalTest : public ConditionsTest {
 protected:
  void SetUp() override {
    ConditionsTest::SetUp();
    store().db().exec(R"(UPDATE "历史记录" SET "区间2"=7)");  // no count: whatever counts anew shows
    choose("mnu_newQuJian");
    part<QRadioButton>("Option_QujianDingyi_1").click();
  }
  void toggle(const char* number) { part<QAbstractButton>(number).click(); }
  // What the draws hold of 区间2, oldest first, and what the grid shows of it.
  std::string counted() {
    std::string text;
    Query rows = store().query(R"(SELECT "区间2" FROM "历史记录" ORDER BY "期号")");
    while (rows.next()) text += rows.text(0);
    return text;
  }
  std::string grid() {
    std::string text;
    const QAbstractItemModel& rows = *part<FrozenGrid>("TDBGridHistory").left().model();
    int column = 0;
    while (draw_Columns()[static_cast<std::size_t>(column)].name != "区间2") ++column;
    for (int row = 0; row < rows.rowCount(); ++row) text += utf8(rows.index(row, column).data().toString());
    return text;
  }
};

TEST_F(IntervalTest, LeavingThePageCountsTheDrawsAnew) {
  toggle("cmm_QujianHuafen_01");
  EXPECT_TRUE(part<QLabel>("Label_4qj_1").text().contains(QStringLiteral("０１")));
  EXPECT_EQ(counted(), "777");
  choose("tab_1");
  EXPECT_EQ(counted(), "231") << "of 1 and 11 to 20";
  EXPECT_EQ(grid(), "231");
  desk_.told.clear();
  choose("mnu_newQuJian");
  choose("tab_1");
  EXPECT_TRUE(desk_.told.empty()) << "unchanged intervals aren't counted again";
  choose("mnu_newQuJian");
  press("cmm_CLSQujianHuafen");
  EXPECT_TRUE(part<QLabel>("Label_4qj_0").text().contains(QStringLiteral("无号码")));
  choose("mnu_youxiguizhe");
  EXPECT_EQ(counted(), "231") << "another text of the same page";
  choose("tab_3");
  EXPECT_EQ(counted(), "000");
}

TEST_F(IntervalTest, ClosingTheWindowCountsThemTooAlsoWhenItStaysOpen) {
  toggle("cmm_QujianHuafen_33");
  desk_.answers = {false};
  program_->window().close();
  EXPECT_EQ(counted(), "320");
  choose("tab_1");
  EXPECT_EQ(grid(), "320");
  choose("mnu_newQuJian");
  toggle("cmm_QujianHuafen_33");
  desk_.answers = {true};
  program_->window().close();
  EXPECT_EQ(counted(), "220");
  EXPECT_FALSE(interval_CountsDue(store()));
}

TEST_F(IntervalTest, WhateverElseChangesThemCountsTheDraws) {
  toggle("cmm_QujianHuafen_01");
  choose("tab_2");
  EXPECT_EQ(counted(), "231");
  desk_.choices = {0};
  choose("huanyuan");
  EXPECT_EQ(counted(), "220") << "restored factory values";
  EXPECT_EQ(grid(), "220");
  // Killed on the page of the intervals: the next start counts.
  choose("mnu_newQuJian");
  toggle("cmm_QujianHuafen_30");
  program_.reset();
  open();
  EXPECT_EQ(counted(), "230");
  EXPECT_EQ(grid(), "230");
}

TEST_F(IntervalTest, AClickThatCannotBeStoredShowsTheIntervalsAsTheyAre) {
  store().db().setBusyTimeout(0);
  const auto before = face();
  {
    SQLite::Database other(store().path().string(), SQLite::OPEN_READWRITE);
    other.exec("BEGIN EXCLUSIVE");
    toggle("cmm_QujianHuafen_01");
    part<QRadioButton>("Option_QujianDingyi_3").click();
    press("cmm_CLSQujianHuafen");
  }
  EXPECT_EQ(differences(face(), before), "");
  EXPECT_EQ(desk_.told.size(), 3U);
  toggle("cmm_QujianHuafen_01");
  EXPECT_EQ(read_AttributeColumn(store(), AttributeTable::first, "区间2")[1], 1)
      << "the interval that is shown";
}

TEST_F(ConditionsTest, TheFootTellsWhatARunWouldLeave) {
  const auto foot = [&](const std::string& text) {
    return QTest::qWaitFor([&] { return part<QLabel>("Label_liveCount").text() == shown(text); });
  };
  EXPECT_TRUE(foot("还没有投注号，也没有选好号码。"));
  pick({8, 9, 10, 11, 12, 13, 14, 15, 16, 108, 109});
  const auto picked = count_Live();
  EXPECT_EQ(picked->tickets, 84 * 2);
  EXPECT_TRUE(foot(live_Text(*picked)));
  desk_.texts = {"2026091", "2026091"};
  choose("mnu_ShengCeng_0");
  choose("tab_2");
  tick("List_TjA_8", 3);
  tick("List_TjA_8", 2);
  const auto before = count_Live();
  EXPECT_TRUE(foot(live_Text(*before)));
  choose("mnu_ShengCeng_1");
  EXPECT_EQ(store().value(R"(SELECT count(*) FROM "日志表")"), before->survivors);
}

// The count of a large table is taken in slices: clicks and commands come between them and find the store
// free.
TEST_F(ConditionsTest, ACountUnderWayGivesWay) {
  store().db().exec(R"(WITH RECURSIVE c(i) AS (SELECT 0 UNION ALL SELECT i+1 FROM c WHERE i<199999)
    INSERT INTO "日志表"("序号","期号","红球1","红球2","红球3","红球4","红球5","红球6","蓝球")
    SELECT i+1,2026091,1+i%5,6+i/5%5,11+i/25%5,16+i/125%5,21+i/625%6,27+i/3750%7,1+i/26250%16 FROM c)");
  auto& foot = part<QLabel>("Label_liveCount");
  const auto open_InTheMiddle = [&] {
    choose("tab_1");
    choose("tab_2");
    foot.setText(QStringLiteral("?"));
    QTest::qWait(70);  // while the tickets are read
  };
  open_InTheMiddle();
  click_Box("Check_useTiaojiao_8");
  EXPECT_TRUE(QTest::qWaitFor([&] { return foot.text().startsWith(QStringLiteral("表格中")); }, 20'000));
  EXPECT_EQ(utf8(foot.text()), live_Text(*count_Live()));
  const auto left = count_Live()->survivors;
  open_InTheMiddle();
  desk_.texts = {"2026091"};
  desk_.told.clear();
  choose("mnu_ShengCeng_1");
  EXPECT_TRUE(desk_.told.empty()) << told();
  EXPECT_EQ(store().value(R"(SELECT count(*) FROM "日志表")"), left);
  open_InTheMiddle();
  program_.reset();  // the end of the program in the middle
}

TEST_F(ConditionsTest, TipsTellHowMuchAConditionLetsThrough) {
  const auto tip = [&](const char* name) {
    auto& box = part<QCheckBox>(name);
    QHelpEvent asked(QEvent::ToolTip, QPoint(2, 2), box.mapToGlobal(QPoint(2, 2)));
    QApplication::sendEvent(&box, &asked);
    // The first lines stand at once; the strength follows when it is worked out.
    EXPECT_TRUE(
        QTest::qWaitFor([] { return QToolTip::text().contains(QStringLiteral("\n放行全部红球组合的")); }));
    return QToolTip::text();
  };
  const QString sum = tip("Check_useTiaojiao_0");
  EXPECT_TRUE(sum.startsWith(QStringLiteral("总和值\n当前取值：６０～１４３\n放行全部红球组合的")));
  EXPECT_TRUE(tip("Check_zdyQJ_0").contains(QStringLiteral("六区间1")));
  open_Tab(42);
  EXPECT_TRUE(tip("Check_Historyguolu").startsWith(QStringLiteral("历史数据过滤\n放行全部红球组合的")));
}

TEST_F(ConditionsTest, AnalysesTakeTheSheetsPlaceAndGiveItBack) {
  press("cmm_Yltj_1");
  EXPECT_TRUE(part<QComboBox>("Combo_ItemOfYLFX").isVisible());
  EXPECT_EQ(part<QComboBox>("Combo_ItemOfYLFX").currentIndex(), 1);
  EXPECT_FALSE(part<CheckList>("List_TjA_0").isVisible());
  press("cmm_Cstj_1");
  EXPECT_EQ(part<QComboBox>("Combo_MSChartItem").currentIndex(), 1);
  const auto add_Draw = [&](int period) {
    choose("tab_1");
    const int draw[] = {period, 9, 10, 11, 12, 13, 14, 15};
    for (int i = 0; i < 8; ++i)
      part<QLineEdit>(("TextHistory_" + std::to_string(i)).c_str()).setText(QString::number(draw[i]));
    choose("cmmUpdateHistory_0");
    choose("tab_2");
  };
  add_Draw(2026091);
  EXPECT_EQ(part<QComboBox>("Combo_pic_TiaoJian_1").currentText(), QStringLiteral("2026091"));
  EXPECT_TRUE(part<CountBars>("MSChart_TiaoJian").tip_Of(14).endsWith(QStringLiteral("　1 次")));
  EXPECT_TRUE(part<QComboBox>("Combo_MSChartItem").isVisible())
      << "the view stays until the person leaves it";
  for (auto* back : program_->window().findChildren<QPushButton*>(QStringLiteral("cmm_Qiehuan")))
    if (back->isVisible()) QTest::mouseClick(back, Qt::LeftButton);
  EXPECT_TRUE(part<CheckList>("List_TjA_0").isVisible());
  press("cmm_Yltj_0");
  EXPECT_EQ(part<QComboBox>("Combo_QSofYLFX").currentText(), QStringLiteral("2026091"));
  add_Draw(2026092);
  EXPECT_EQ(part<QComboBox>("Combo_QSofYLFX").count(), 5);
  EXPECT_EQ(part<OmissionChart>("frm_YLFXmain").omission()->period, 2026092);
}

TEST_F(ConditionsTest, RestoredDefaultsShowOnTheSheetAgain) {
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

// The condition sheet and pages: what they show, and what a click on each kind of control writes.
#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QComboBox>
#include <QHelpEvent>
#include <QLabel>
#include <QToolTip>
#include <QTreeView>
#include <map>

#include "advice/value_shares.hpp"
#include "catalogue/draw_columns.hpp"
#include "conditions/condition_store.hpp"
#include "conditions/values.hpp"
#include "panels/own_pages.hpp"
#include "panels/pages.hpp"
#include "store/interval_mark.hpp"
#include "store/schema.hpp"
#include "ui/analysis/count_bars.hpp"
#include "ui/analysis/omission_chart.hpp"
#include "ui/widgets/check_list.hpp"
#include "ui/widgets/frozen_grid.hpp"
#include "ui/widgets/funnel_bars.hpp"
#include "window_fixture.hpp"

namespace lotmere::ui::test {
namespace {

constexpr const char* kSheet = "conditions.edit";
constexpr const char* kShrink = "conditions.shrink";
std::string tabCommand(int tab) { return ConditionsPage::tabCommand(tab); }

class ConditionsTest : public WindowTest {
 protected:
  void SetUp() override {
    lotmere::test::putDraw(home_.store(), 2026088, "2026-08-13", {{7, 9, 14, 20, 28, 33}, 2});
    lotmere::test::putDraw(home_.store(), 2026089, "2026-08-16", {{1, 12, 13, 24, 30, 31}, 9});
    openSettled();
    choose("page.2");
  }
  // A click on a row of a list.
  void tick(const std::string& name, int row) {
    auto& list = part<CheckList>(name);
    const QModelIndex index = list.model()->index(row, 0);
    list.scrollTo(index);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(index).center());
  }
  // The list of all conditions: its row of a name, and the name of the row in front.
  [[nodiscard]] QModelIndex rowNamed(const std::string& name) {
    const QAbstractItemModel& model = *part<QTreeView>("conditionList").model();
    const auto found = model.match(model.index(0, 0), Qt::DisplayRole, QString::fromStdString(name), 1,
                                   Qt::MatchExactly | Qt::MatchRecursive);
    return found.isEmpty() ? QModelIndex() : found.front();
  }
  void chooseRow(const std::string& name) {
    part<QTreeView>("conditionList").setCurrentIndex(rowNamed(name));
  }
  [[nodiscard]] std::string chosenRow() {
    return utf8(part<QTreeView>("conditionList").currentIndex().siblingAtColumn(0).data().toString());
  }
  // A choice from the list of a box, as a user makes it.
  void select(const std::string& name, int index) {
    auto& box = part<QComboBox>(name);
    box.setCurrentIndex(index);
    Q_EMIT box.activated(index);
  }
  // While another program holds the store.
  void whileHeld(const std::function<void()>& clicks) {
    store().db().setBusyTimeout(0);
    SQLite::Database other(store().path().string(), SQLite::OPEN_READWRITE);
    other.exec("BEGIN EXCLUSIVE");
    clicks();
    settle();
  }
  // What the foot is to tell, worked out here.
  [[nodiscard]] std::optional<LiveCount::Result> countLive() {
    // On the thread of the store: a timer of the window may give it more to do meanwhile.
    return desk_.work().run([&] {
      Store& store = program_->store();
      FreeCourse course;
      return LiveCount().count(
          {loadLiveTickets(store), loadConditionSet(store), loadDrawTable(store), 2026091}, course);
    });
  }
  // Everything that a user can set, by its place.
  [[nodiscard]] std::map<std::string, std::string> settings() {
    std::map<std::string, std::string> all;
    for (const auto& [table, name] : {std::pair<std::string, std::string>{"过滤条件", "cell"},
                                      {"过滤条件使用情况", "switch"},
                                      {"号码特性", "number"},
                                      {"号码特性3", "number"},
                                      {"历史数据过滤", "match"}}) {
      Query rows = store().query("SELECT rowid,* FROM \"" + table + '"');
      const int columns = rows.statement().getColumnCount();
      while (rows.next())
        for (int i = columns == 3 ? 2 : 1; i < columns; ++i)
          all[name + ' ' + rows.text(0) +
              (columns == 3 ? "" : ' ' + std::string(rows.statement().getColumnName(i)))] = rows.text(i);
    }
    return all;
  }
  // What isn't as before, as "cell 3646=1; number 5 第1=1; ".
  [[nodiscard]] std::string changes(const std::map<std::string, std::string>& before) {
    std::string text;
    for (const auto& [place, value] : settings())
      if (before.at(place) != value) text.append(place).append("=").append(value).append("; ");
    return text;
  }
  // What every box, list, option, ball and choice shows, one entry each.
  [[nodiscard]] std::vector<std::string> face(const QWidget& of) {
    std::vector<std::string> marks;
    for (const auto* button : of.findChildren<QAbstractButton*>())
      marks.push_back(utf8(button->objectName()) + ' ' + utf8(button->accessibleName()) +
                      (button->isChecked() ? "+" : "-"));
    for (const auto* list : of.findChildren<CheckList*>())
      for (const PanelItem& item : list->list().items())
        marks.push_back(utf8(list->objectName()) + ' ' + item.text + (item.selected ? "+" : "-"));
    for (const auto* choice : of.findChildren<QComboBox*>())
      marks.push_back(utf8(choice->objectName()) + ' ' + utf8(choice->currentText()));
    return marks;
  }
  [[nodiscard]] std::vector<std::string> face() { return face(window()); }
  // The entries of two faces that differ; lists that are filled anew may be longer.
  static std::string differences(const std::vector<std::string>& a, const std::vector<std::string>& b) {
    std::string text = a.size() == b.size() ? "" : "other lists; ";
    for (std::size_t i = 0; i < std::min(a.size(), b.size()) && text.size() < 300; ++i)
      if (a[i] != b[i]) text += a[i] + " / " + b[i] + "; ";
    return text;
  }
  // Whether the foot is written, which a test has replaced by a question mark.
  [[nodiscard]] bool isCounted() {
    return QTest::qWaitFor([this] { return text("liveCount") != "?"; }, 2000);
  }
};

// A control of each kind, a click on it, and what that stores.
struct Click {
  std::string command;  // which shows it
  const char* name;
  std::function<void()> click;
  std::string stores;
};

// Each click while a command runs, with the store held by another program, and then free: what it shows is
// what is stored, at once and when the page is opened again, and the tickets that are left are counted anew.
TEST_F(ConditionsTest, EveryControlStoresItsOwnCellAndShowsWhatIsStored) {
  const std::string counts = tabCommand(11), intervals = tabCommand(14), places = tabCommand(15),
                    shapes = tabCommand(16), groups = tabCommand(41), match = tabCommand(42);
  const auto item = [&](const char* list, int row) { return [=, this] { tick(list, row); }; };
  const auto button = [&](const char* name) { return [=, this] { click(name); }; };
  const auto choice = [&](const char* name, int index) { return [=, this] { select(name, index); }; };
  choose(groups);
  for (const char* number : {"groupNumber.03", "groupNumber.09"}) click(number);
  const Click clicks[] = {
      {kSheet, "an item", item("metricValues.8", 6), "cell 3646=1; "},
      {kSheet, "the first item of a longer list", item("metricValues.11", 0), "cell 3401=1; "},
      {kSheet, "a box", button("metricSwitch.8"), "switch 10=0; "},
      {kSheet, "an item of an interval", item("intervalValues.3", 5), "cell 3725=1; "},
      {kSheet, "an item beside past draws", item("relativeValues.1", 3), "cell 6663=0; "},
      {kSheet, "a temperature", item("heatValues.0", 20), "cell 6720=1; "},
      {kSheet, "a shape of combinations", item("shapeValues.2", 1), "cell 4021=0; "},
      {kSheet, "a turn", item("combinationDraws", 2), "switch 102=1; "},
      {kSheet, "a division's box", button("divisionSwitch.1"), "switch 402=1; "},
      {kSheet, "a division's item", item("divisionValues.1", 3), "cell 7013=0; "},
      {kSheet, "a division's number", button("divisionNumber.33"), "number 33 六区间2=1; "},
      {kSheet, "a ball", button("padBall.07"), "cell 7=1; "},
      {counts, "an item", item("pageValues.1", 3), "cell 3653=0; "},
      {counts, "a box", button("pageSwitch.1"), "switch 11=1; "},
      {intervals, "an item", item("pageValues.3", 5), "cell 3735=1; "},
      {places, "a number", item("placeNumbers.1", 4), "number 5 第1=1; switch 30=1; "},
      {places, "its box", button("placeSwitch.30"), "switch 30=0; "},
      {places, "the tolerance", button("placeTolerance.3"), "cell 3901=3; "},
      {shapes, "a shape", item("pageShapes", 9), "cell 4009=1; switch 37=1; "},
      {tabCommand(17), "a shape of another condition", item("pageShapes", 2), "cell 4022=0; switch 38=1; "},
      {groups, "a number", button("groupNumber.12"), "number 12 自定义组1=1; "},
      {groups, "a count", item("groupCounts", 5), "cell 3805=0; switch 20=1; "},
      {groups, "its box", button("groupSwitch"), "switch 20=0; "},
      {groups, "the empty button", button("emptyGroup.0"),
       "number 12 自定义组1=0; number 3 自定义组1=0; number 9 自定义组1=0; "},
      {match, "the box", button("matchSwitch"), "match 1 使用状态=1; "},
      {match, "the first period", choice("matchFirst", 1), "match 1 最小值=2026089; match 1 自选范围=1; "},
      {match, "the last period", choice("matchLast", 2), "match 1 最大值=2026088; "},
      {match, "the match value", choice("matchValue", 2), "match 1 匹配值=3; "},
      {match, "the latest fifty", button("latestPeriods"),
       "match 1 最大值=2026090; match 1 最小值=2026088; match 1 自选范围=0; "},
      {kShrink, "the type", button("shrinkType.4"), "cell 3900=4; "},
      {kShrink, "smart", button("smartSwitch"), "switch 300=1; "},
      {kShrink, "fewer tickets", button("fewerTickets"), "cell 3902=1; "},
      {kShrink, "its effort", choice("fewerEffort", 5), "cell 3903=6; "}};
  click("divisionMembers.102");
  auto& foot = part<QLabel>("liveCount");
  for (const Click& row : clicks) {
    SCOPED_TRACE(row.command + ": " + row.name);
    choose(row.command);
    const auto stored = settings();
    const auto shown_before = face();
    desk_.told.clear();
    commands().runner().run(row.click);
    EXPECT_EQ(differences(face(), shown_before), "") << "refused behind a command that runs";
    whileHeld(row.click);
    EXPECT_EQ(differences(face(), shown_before), "");
    EXPECT_EQ(desk_.told.size(), 1U);
    EXPECT_EQ(changes(stored), "");
    foot.setText(QStringLiteral("?"));
    row.click();
    settle();
    EXPECT_EQ(changes(stored), row.stores);
    EXPECT_TRUE(isCounted()) << "anew behind the click";
    const auto shown_behind = face();
    EXPECT_NE(differences(shown_behind, shown_before), "");
    choose("page.1");
    choose("page.2");
    EXPECT_EQ(differences(face(), shown_behind), "");
    foot.setText(QStringLiteral("?"));
    EXPECT_TRUE(isCounted()) << "when the page is opened; nothing is under way before the next click";
  }
}

// Behind each change the sheet and the pad are as a window shows it that is opened anew.
TEST_F(ConditionsTest, TheSheetFollowsWhateverChangesTheStore) {
  const std::pair<const char*, std::function<void()>> rows[] = {
      {"clicks on the sheet", [&] { pick({33}), tick("metricValues.8", 5), click("metricSwitch.18"); }},
      {"clicks on a page",
       [&] {
         choose(tabCommand(11));
         tick("pageValues.0", 6), click("pageSwitch.0");
       }},
      {"a click that leads its box", [&] { choose(tabCommand(16)), tick("pageShapes", 2); }},
      {"a new draw", [&] { enterDraw(2026091, 20); }},
      {"empty intervals",
       [&] {
         choose("intervals.divide");
         press("clearInterval");
       }},
      {"restored factory values", [&] { desk_.choices = {0}, choose("conditions.reset"); }}};
  const auto face = [&] {
    auto all = ConditionsTest::face(part("conditionSheet"));
    all.push_back(utf8(part("padBall.33").accessibleName()));
    return all;
  };
  for (const auto& [name, change] : rows) {
    const auto before = face();
    change();
    choose("page.2");
    choose(kSheet);
    const auto shown_here = face();
    EXPECT_NE(differences(shown_here, before), "") << name;
    open();
    choose("page.2");
    EXPECT_EQ(differences(shown_here, face()), "") << name;
  }
}

TEST_F(ConditionsTest, OpeningEveryPageWritesNothingBack) {
  choose(tabCommand(42));  // which moves its range on
  const auto before = settings();
  for (int tab = 42; tab >= 1; --tab) {
    const ConditionPage& page = conditionPage(tab);
    const std::string row =
        page.conditions.empty() ? std::string(page.caption) : page.conditions.front()->name;
    if (tab % 2 == 0 || page.kind == PageKind::shrink)
      choose(tabCommand(tab));
    else
      chooseRow(row);
    settle();
    EXPECT_EQ(changes(before), "") << "tab " << tab;
    if (page.kind != PageKind::shrink) {
      EXPECT_EQ(chosenRow(), row);
    }
    EXPECT_LE(window().minimumSizeHint().width(), 1024) << "tab " << tab << " fits a small screen";
    EXPECT_LE(window().minimumSizeHint().height(), 560) << "tab " << tab;
    EXPECT_EQ(part<CheckList>("metricValues.8").isVisible(), tab == 1);
    EXPECT_TRUE(page.kind != PageKind::value || part("pageValues.0").isVisible());
  }
  for (const char* command : {kShrink, "conditions.show"}) choose(command);
  EXPECT_EQ(changes(before), "");
  pick({9});
  EXPECT_NE(text("settingsSummary").find("“拖码”： ０９"), std::string::npos)
      << "the summary follows the pad";
}

TEST_F(ConditionsTest, TheListTellsWhatIsOnAndSwitchesIt) {
  auto& tree = part<QTreeView>("conditionList");
  const auto cell = [&](const char* row, int column) {
    return utf8(rowNamed(row).siblingAtColumn(column).data().toString());
  };
  const auto known = [&](const char* row) {
    return QTest::qWaitFor([&] { return !cell(row, 2).empty(); }, 20'000);
  };
  pick({1, 5, 9, 14, 20, 27, 30, 33});
  click("padBall.103");
  ASSERT_TRUE(known("自定义组1"));
  for (const auto& [row, values] : {std::pair{"总和值", "60～143"},
                                    {"尾数形式", "1,1,1,1,1,1 2,1,1,1,1 2,2,1,1 …"},
                                    {"保Ｎ型缩水", "保六型"}})
    EXPECT_EQ(cell(row, 1), values);
  const auto live = countLive();
  ASSERT_TRUE(live && live->from_selection);
  const auto left = [&] { return std::vector{cell("总和值", 3), cell("AC值", 3)}; };
  const std::vector<std::string> wanted{utf8(grouped(live->funnel.front().after)),
                                        utf8(grouped(live->filtered))};
  EXPECT_TRUE(QTest::qWaitFor([&] { return left() == wanted; })) << left()[0] << " " << left()[1];
  // A box: stored, and the sheet and the funnel follow.
  const auto before = settings();
  const std::size_t bars = part<FunnelBars>("funnelBars").bars().size();
  const QModelIndex box = rowNamed("AC值");
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(box).topLeft() + QPoint(8, 12));
  settle();
  EXPECT_EQ(changes(before), "switch 9=0; ");
  EXPECT_FALSE(part<QAbstractButton>("metricSwitch.13").isChecked());
  EXPECT_TRUE(QTest::qWaitFor([&] { return part<FunnelBars>("funnelBars").bars().size() == bars - 1; }));
  EXPECT_EQ(cell("AC值", 3), "");
  // The funnel leads to the editor, the search and the box to rows.
  Q_EMIT part<FunnelBars>("funnelBars").clicked(1);
  EXPECT_EQ(chosenRow(), "奇数个数");
  EXPECT_TRUE(part("pageValues.0").isVisible());
  part<QLineEdit>("conditionSearch").setText(QStringLiteral("生肖"));
  EXPECT_TRUE(rowNamed("生肖链").isValid());
  EXPECT_FALSE(rowNamed("总和值").isValid());
  part<QLineEdit>("conditionSearch").clear();
  click("onlyUsedConditions");
  EXPECT_TRUE(rowNamed("总和值").isValid());
  EXPECT_FALSE(rowNamed("生肖链").isValid() || rowNamed("AC值").isValid());
}

TEST_F(ConditionsTest, TheEditorExplainsItsConditionAndTakesRanges) {
  chooseRow("连号");
  auto& list = part<CheckList>("pageValues.0");
  EXPECT_EQ(text("conditionDefinition.0"), conditionNamed("连号").definition);
  EXPECT_FALSE(part("conditionBalls.0").isVisible());
  chooseRow("生肖链");
  EXPECT_TRUE(part("conditionBalls.0").isVisible());
  chooseRow("尾数和值");  // which has no page of its own
  ASSERT_TRUE(QTest::qWaitFor([&] { return !text("conditionStrength.0").empty(); }, 20'000));
  const ConditionSet stored = loadConditionSet(store());
  const Condition& condition = conditionNamed("尾数和值");
  const auto shares = valueShares(stored, loadDrawTable(store()), condition, 2026091, kStrengthDraws).value();
  EXPECT_EQ(text("conditionStrength.0"), strengthSentence(strengthOf(shares, stored, condition), false));
  EXPECT_EQ(list.list().shares().at(25).chance, static_cast<double>(shares.sixes[25]) / kAllRedSixes);
  EXPECT_TRUE(QTest::qWaitFor([&] {
    return list.indexAt({20, 10}).row() == 14;
  })) << list.indexAt({20, 10}).row()
      << "the first value that is on stands on top";
  const auto allowed = [&] { return utf8(part<QLineEdit>("conditionValues.0").text()); };
  const auto row = [&](int k) { return list.visualRect(list.model()->index(k, 0)).center(); };
  const auto press = [&](int k, Qt::KeyboardModifiers keys) {
    QTest::mousePress(list.viewport(), Qt::LeftButton, keys, row(k));
  };
  const auto release = [&](int k, Qt::KeyboardModifiers keys) {
    QTest::mouseRelease(list.viewport(), Qt::LeftButton, keys, row(k));
  };
  press(16, {}), QTest::mouseMove(list.viewport(), row(17)), QTest::mouseMove(list.viewport(), row(19)),
      release(19, {});
  settle();
  EXPECT_EQ(allowed(), "14,15,20-38") << "dragged";
  press(22, {}), release(22, {});
  press(24, Qt::ShiftModifier), release(24, Qt::ShiftModifier);
  settle();
  EXPECT_EQ(allowed(), "14,15,20,21,25-38") << "Shift";
  const std::pair<const char*, std::string> buttons[] = {{"allowOthers.0", "0-13,16-19,22-24,39-50"},
                                                         {"allowAll.0", "0-50"},
                                                         {"allowDrawn.0", "11,21,31"},
                                                         {"allowFactory.0", "14-38"}};
  for (const auto& [name, values] : buttons) {
    click(name);
    settle();
    EXPECT_EQ(allowed(), values) << name;
    EXPECT_EQ(formatValues(condition,
                           [&] {
                             std::vector<int> cells;
                             const ValueArray now =
                                 loadConditionSet(store()).cellRange(condition.first, condition.last);
                             for (int k = 0; k <= 50; ++k)
                               if (now[static_cast<std::size_t>(k)] > 0) cells.push_back(k);
                             return cells;
                           }()),
              values);
  }
  auto& field = part<QLineEdit>("conditionValues.0");
  for (const auto& [typed, values] : {std::pair{"20-22,30", "20-22,30"}, {"9-", "20-22,30"}}) {
    field.setFocus();
    field.clear();
    QTest::keyClicks(&field, QString::fromUtf8(typed));
    QTest::keyClick(&field, Qt::Key_Return);
    settle();
    EXPECT_EQ(allowed(), values) << typed;
  }
  EXPECT_NE(told().find("“尾数和值”的取值应为"), std::string::npos);
}

TEST_F(ConditionsTest, TheShrinkPageSaysWhatTheChosenTypePromises) {
  choose(kShrink);
  for (const int type : {3, 7, 4}) {
    click("shrinkType." + std::to_string(type));
    settle();
    EXPECT_TRUE(text("shrinkHint").ends_with(promiseText(type))) << text("shrinkHint");
  }
}

TEST_F(ConditionsTest, AListTakesTheSpaceBarAndTellsTheCurrentValues) {
  auto& list = part<CheckList>("metricValues.8");  // 奇数个数
  const QAbstractItemModelTester tester(list.model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
  for (int k = 0; k <= 6; ++k) {
    list.setCurrentIndex(list.model()->index(k, 0));
    const bool allowed = loadConditionSet(store()).cells.value(3640 + k) == 1;
    if (allowed != (k == 2 || k == 3)) QTest::keyClick(&list, Qt::Key_Space);
  }
  EXPECT_TRUE(list.parentWidget()->findChild<QLabel*>()->text().contains(QStringLiteral("２～３")));
}

TEST_F(ConditionsTest, ConcreteCombinationsFollowTheChosenDraw) {
  const auto turns = [&] { return part<CheckList>("combinationDraws").list().items(); };
  const auto newest = turns();
  EXPECT_NE(newest[0].text.find("≠ ["), std::string::npos);
  select("combinationPeriods", 1);
  EXPECT_EQ(text("combinationPeriods"), "2026089");
  EXPECT_NE(turns()[0].text, newest[0].text);
}

TEST_F(ConditionsTest, EachGroupIsFilledAndEmptiedByItself) {
  choose(tabCommand(41));
  const auto before = settings();
  auto& lines = part<QListView>("groupList");
  for (const auto& [tab, number] :
       {std::pair{0, "groupNumber.03"}, {1, "groupNumber.05"}, {9, "groupNumber.33"}}) {
    part<QTabBar>("groupTabs").setCurrentIndex(tab);
    EXPECT_FALSE(part("groupSwitch").isEnabled());
    click(number);
    tick("groupCounts", 1);
  }
  EXPECT_EQ(changes(before),
            "cell 3801=0; cell 3811=0; cell 3891=0; number 3 自定义组1=1; number 33 自定义组10=1; "
            "number 5 自定义组2=1; switch 20=1; switch 21=1; switch 29=1; ");
  Q_EMIT lines.clicked(lines.model()->index(1, 0));
  EXPECT_EQ(part<QTabBar>("groupTabs").currentIndex(), 1);
  const auto filled = settings();
  press("emptyGroup.0");
  EXPECT_EQ(changes(filled), "number 5 自定义组2=0; switch 21=0; ") << "the group shown, and no other";
  EXPECT_EQ(utf8(lines.model()->index(1, 0).data().toString()), "自定义组2 ——　未 使 用 ");
  press("emptyGroup.1");
  EXPECT_EQ(changes(before), "cell 3801=0; cell 3811=0; cell 3891=0; ") << "every group";
}

TEST_F(ConditionsTest, OnlyShowingTheMatchPageMovesItsRangeOn) {
  const auto last = [&] { return loadConditionSet(store()).match.last; };
  const std::string match = tabCommand(42);
  PeriodNo newest = 2026090;
  for (const char* command : {"conditions.show", "conditions.reset", kSheet}) {
    choose(match);
    EXPECT_EQ(last(), newest);
    choose("page.1");  // from here the page is left and another one asked for from outside
    lotmere::test::putDraw(store(), ++newest, "2026-08-20", {{2, 4, 6, 8, 10, 12}, 1});
    desk_.choices = {1};
    choose(command);
    EXPECT_EQ(last(), newest - 1) << command << " doesn't show the page";
  }
  choose(match);
  EXPECT_EQ(text("matchRange"), kMatchTexts.latest);
  select("matchLast", 1);
  EXPECT_EQ(text("matchRange"), kMatchTexts.chosen);
}

TEST_F(ConditionsTest, ADivisionShowsItsIntervalsAndTheirClicksAreItsOwn) {
  for (const auto& [option, count] : {std::pair{"divisionChoice.6", 12}, {"divisionChoice.2", 8}}) {
    click(option);
    for (int i = 0; i < 12; ++i)
      EXPECT_EQ(part("divisionSwitch." + std::to_string(i)).isVisibleTo(&window()), i < count) << option << i;
  }
  const auto before = settings();
  click("divisionSwitch.7");
  EXPECT_EQ(changes(before), "switch 421=1; ");
}

class IntervalTest : public ConditionsTest {
 protected:
  void SetUp() override {
    ConditionsTest::SetUp();
    store().db().exec(R"(UPDATE "历史记录" SET "区间2"=7)");  // no count: whatever counts anew shows
    showPage();
  }
  void showPage() {
    choose("intervals.divide");
    click("intervalChoice.1");
  }
  // What the grid shows of 区间2, oldest draw first.
  std::string grid() {
    std::string text;
    const QAbstractItemModel& rows = *part<FrozenGrid>("historyGrid").left().model();
    int column = 0;
    while (drawColumns()[static_cast<std::size_t>(column)].name != "区间2") ++column;
    for (int row = 0; row < rows.rowCount(); ++row) text += utf8(rows.index(row, column).data().toString());
    return text;
  }
};

TEST_F(IntervalTest, TheDrawsAreCountedAnewWhereverThePageIsLeft) {
  const auto close = [&](bool answer) {
    desk_.answers = {answer};
    window().close();
  };
  const struct {
    const char* name;
    const char* clicked;
    std::function<void()> leave;
    const char* counts;
  } rows[] = {{"for another page", "intervalNumber.01", [&] { choose("page.1"); }, "231"},
              {"for the factory's intervals", "clearInterval",
               [&] {
                 desk_.choices = {0};
                 choose("conditions.reset");
               },
               "220"},
              {"by a close that is taken back", "intervalNumber.33", [&] { close(false); }, "320"},
              {"by a kill, and a new start", "intervalNumber.30", [&] { open(); }, "330"},
              {"by a close", "intervalNumber.01", [&] { close(true); }, "341"}};
  for (const auto& row : rows) {
    showPage();
    click(row.clicked);
    choose("help.rules");  // another text of the same page
    row.leave();
    EXPECT_EQ(grid(), row.counts) << row.name;
  }
  EXPECT_FALSE(intervalCountsDue(store()));
}

TEST_F(IntervalTest, AClickThatCannotBeStoredShowsTheIntervalsAsTheyAre) {
  const auto before = face();
  whileHeld([&] {
    click("intervalNumber.01");
    press("clearInterval");
  });
  EXPECT_EQ(differences(face(), before), "");
  EXPECT_EQ(desk_.told.size(), 2U);
  const auto stored = settings();
  click("intervalNumber.01");
  EXPECT_EQ(changes(stored), "number 1 区间2=1; ") << "the interval that is shown";
  EXPECT_NE(text("intervalMembers.1").find("０１"), std::string::npos);
}

TEST_F(ConditionsTest, TheFootTellsWhatARunWouldLeave) {
  const auto tells = [&](const std::string& wanted) {
    return QTest::qWaitFor([&] { return text("liveCount") == wanted; });
  };
  EXPECT_TRUE(tells("还没有投注号，也没有选好号码。"));
  pick({8, 9, 10, 11, 12, 13, 14, 15, 16, 108, 109});
  EXPECT_TRUE(tells(liveText(*countLive())));
  desk_.texts = {"2026091"};
  choose("tickets.init");
  choose("page.2");
  tick("metricValues.8", 3);
  EXPECT_TRUE(tells(liveText(*countLive())));
}

// The count of a large table is taken in slices: clicks and commands come between them and find the store
// free.
TEST_F(ConditionsTest, ACountUnderWayGivesWay) {
  store().db().exec(R"(WITH RECURSIVE c(i) AS (SELECT 0 UNION ALL SELECT i+1 FROM c WHERE i<199999)
    INSERT INTO "日志表"("序号","期号","红球1","红球2","红球3","红球4","红球5","红球6","蓝球")
    SELECT i+1,2026091,1+i%5,6+i/5%5,11+i/25%5,16+i/125%5,21+i/625%6,27+i/3750%7,1+i/26250%16 FROM c)");
  auto& foot = part<QLabel>("liveCount");
  const auto open_in_the_middle = [&] {
    choose("page.1");
    choose("page.2");
    foot.setText(QStringLiteral("?"));
    QTest::qWait(70);  // while the tickets are read
  };
  open_in_the_middle();
  click("metricSwitch.8");
  EXPECT_TRUE(QTest::qWaitFor([&] { return foot.text().startsWith(QStringLiteral("表格中")); }, 20'000));
  const auto counted = countLive();
  EXPECT_EQ(utf8(foot.text()), liveText(*counted));
  open_in_the_middle();
  desk_.texts = {"2026091"};
  desk_.told.clear();
  choose("tickets.run");
  EXPECT_TRUE(desk_.told.empty()) << told();
  EXPECT_EQ(countRows("日志表"), counted->survivors);
  open_in_the_middle();
  program_.reset();  // the end of the program in the middle
}

TEST_F(ConditionsTest, TipsTellHowMuchAConditionLetsThrough) {
  const auto tip = [&](const char* name) {
    auto& box = part(name);
    QHelpEvent asked(QEvent::ToolTip, QPoint(2, 2), box.mapToGlobal(QPoint(2, 2)));
    QApplication::sendEvent(&box, &asked);
    // The first lines stand at once; the strength follows when it is worked out.
    EXPECT_TRUE(
        QTest::qWaitFor([] { return QToolTip::text().contains(QStringLiteral("\n放行全部红球组合的")); }));
    return utf8(QToolTip::text());
  };
  EXPECT_TRUE(tip("metricSwitch.0").starts_with("总和值\n当前取值：６０～１４３\n放行全部红球组合的"));
  EXPECT_TRUE(tip("divisionSwitch.0").starts_with("六区间1"));
  choose(tabCommand(42));
  EXPECT_TRUE(tip("matchSwitch").starts_with("历史数据过滤\n放行全部红球组合的"));
}

TEST_F(ConditionsTest, AnalysesTakeTheSheetsPlaceFollowTheDrawsAndGiveItBack) {
  press("analysis.blueOmission.button");
  EXPECT_EQ(text("omissionBalls"), "蓝球号码遗漏分析");
  EXPECT_TRUE(part("omissionBalls").isVisible() && !part("metricValues.0").isVisible());
  EXPECT_TRUE(part<QPushButton>("analysis.blueOmission.button").isChecked());
  press("analysis.blueCounts.button");
  EXPECT_EQ(text("countBalls"), "蓝球号码统计");
  EXPECT_TRUE(part<QPushButton>("analysis.blueCounts.button").isChecked() &&
              !part<QPushButton>("analysis.blueOmission.button").isChecked());
  press("analysis.blueCounts.button");
  EXPECT_TRUE(part<QPushButton>("analysis.blueCounts.button").isChecked())
      << "the view in front, however often it is pressed";
  enterDraw(2026091, 10);
  choose("page.2");
  EXPECT_EQ(text("countPeriod.1"), "2026091");
  EXPECT_EQ(part<QComboBox>("countPeriod.0").count(), 4);
  EXPECT_TRUE(part<CountBars>("countBars").tipOf(7).endsWith(QStringLiteral("　1 次")));
  EXPECT_TRUE(part("countBalls").isVisible()) << "the view stays until the user leaves it";
  for (auto* back : window().findChildren<QPushButton*>(QStringLiteral("backToConditions")))
    if (back->isVisible()) QTest::mouseClick(back, Qt::LeftButton);
  EXPECT_TRUE(part("metricValues.0").isVisible() &&
              !part<QPushButton>("analysis.blueCounts.button").isChecked());
  press("analysis.redOmission.button");
  enterDraw(2026092, 11);
  choose("page.2");
  EXPECT_EQ(text("omissionPeriod"), "2026092");
  EXPECT_EQ(part<QComboBox>("omissionPeriod").count(), 5);
  EXPECT_EQ(part<OmissionChart>("omissionChart").omission()->period, 2026092);
}

}  // namespace
}  // namespace lotmere::ui::test

// The way back for settings, the sets with names and the back-test, as the window shows them.
#include <QComboBox>
#include <QListWidget>
#include <QSpinBox>
#include <QTableView>
#include <QTableWidget>

#include "advice/backtest_text.hpp"
#include "conditions/condition_store.hpp"
#include "conditions/named_sets.hpp"
#include "ui/conditions/backtest_view.hpp"
#include "ui/widgets/check_list.hpp"
#include "window_fixture.hpp"

namespace lotmere::ui::test {
namespace {

class DecidingTest : public WindowTest {
 protected:
  void SetUp() override {
    lotmere::test::putDraw(home_.store(), 2026088, "2026-08-13", {{7, 9, 14, 20, 28, 33}, 2});
    lotmere::test::putDraw(home_.store(), 2026089, "2026-08-16", {{1, 12, 13, 24, 30, 31}, 9});
    openSettled();
    choose("page.2");
  }
  void give(const char* command) {
    choose(command);
    settle();
  }
  [[nodiscard]] ConditionSet stored() { return loadConditionSet(store()); }
  [[nodiscard]] QString caption(const char* command) { return commands().action(command)->text(); }
};

TEST_F(DecidingTest, EveryClickCanBeTakenBackAndMadeAgain) {
  const ConditionSet first = stored();
  pick({7});
  settle();
  const ConditionSet picked = stored();
  click("metricSwitch.8");
  settle();
  const ConditionSet both = stored();
  ASSERT_TRUE(first != picked && picked != both);
  EXPECT_EQ(caption("conditions.undo"), QStringLiteral("撤销：奇数个数(&U)"));
  give("conditions.undo");
  EXPECT_EQ(stored(), picked);
  EXPECT_TRUE(part<QAbstractButton>("metricSwitch.8").isChecked()) << "the sheet follows";
  EXPECT_EQ(caption("conditions.redo"), QStringLiteral("重做：奇数个数(&R)"));
  click("undoButton");
  settle();
  EXPECT_EQ(stored(), first);
  EXPECT_TRUE(part("padBall.07").accessibleName().contains(QStringLiteral("未选"))) << "the pad follows";
  give("conditions.undo");
  EXPECT_EQ(stored(), first) << "nothing is left to be taken back";
  give("conditions.redo");
  give("conditions.redo");
  EXPECT_EQ(stored(), both);
  open();
  choose("page.2");
  EXPECT_EQ(caption("conditions.undo"), QStringLiteral("撤销：奇数个数(&U)")) << "across starts";
}

TEST_F(DecidingTest, ASetIsKeptComparedLoadedWrittenAndRemoved) {
  const ConditionSet first = stored();
  desk_.texts = {std::nullopt, " 平时 "};
  give("sets.save");
  EXPECT_TRUE(allNamedSets(store()).empty()) << "cancelled";
  give("sets.save");
  click("metricSwitch.8");
  settle();
  desk_.texts = {"少一个"};
  give("sets.save");
  const QString file = QString::fromStdString((home_.path() / "out.txt").string());
  desk_.files = {file};
  desk_.choices = {0};
  desk_.dialogs = {[&](QDialog& dialog) {
    auto& names = *dialog.findChild<QListWidget*>(QStringLiteral("setNames"));
    auto& lines = *dialog.findChild<QTableWidget*>(QStringLiteral("setDifferences"));
    const auto press_button = [&](const char* name) {
      dialog.findChild<QPushButton*>(QString::fromUtf8(name))->click();
    };
    EXPECT_EQ(names.count(), 2);
    names.setCurrentRow(1);
    EXPECT_EQ(lines.rowCount(), 1);
    EXPECT_EQ(lines.item(0, 0)->text(), QStringLiteral("奇数个数"));
    EXPECT_NE(lines.item(0, 1)->text(), lines.item(0, 2)->text());
    auto& other = *dialog.findChild<QComboBox*>(QStringLiteral("comparedWith"));
    other.setCurrentIndex(2);
    Q_EMIT other.activated(2);
    EXPECT_EQ(lines.rowCount(), 0) << "with itself";
    press_button("exportSet");
    press_button("loadSet");
    EXPECT_EQ(stored(), first);
    names.setCurrentRow(0);
    press_button("deleteSet");
    EXPECT_EQ(names.count(), 1);
    return true;
  }};
  give("sets.manage");
  EXPECT_TRUE(part<QAbstractButton>("metricSwitch.8").isChecked()) << "the sheet follows the loaded set";
  EXPECT_EQ(allNamedSets(store()).front().name, "平时");
  desk_.files = {file};
  desk_.texts = {"回来"};
  give("sets.import");
  EXPECT_EQ(findNamedSet(store(), "回来")->text, findNamedSet(store(), "平时")->text);
  give("conditions.undo");
  EXPECT_FALSE(stored().isUsed(10)) << "loading is a step";
}

TEST_F(DecidingTest, TheBackTestFollowsTheSettingsAndLeadsToAnEditor) {
  give("conditions.backtest");
  auto& model = *part<QTableView>("backTestDraws").model();
  const auto lines = [&] {
    FreeCourse course;
    return backTestLines(backTest(stored(), loadDrawTable(store()), 100, course).value());
  };
  const auto told = [&] { return utf8(part<QLabel>("backTestSentence").text()); };
  const auto wanted = [&] { return lines().front() + " " + lines().back(); };
  ASSERT_TRUE(QTest::qWaitFor([&] { return told() == wanted(); }, 20'000)) << told();
  EXPECT_EQ(model.rowCount(), 3);
  EXPECT_EQ(model.index(0, 0).data().toInt(), 2026090);
  // 1 to 6: their sum is 21, their only run is six long.
  EXPECT_EQ(utf8(model.index(0, VerdictModel::names_column).data().toString()),
            "总和值、大数个数、最大间距、连号、AC值");
  part<QSpinBox>("setTolerance").setValue(5);
  settle();
  EXPECT_EQ(stored().cells.value(kSetToleranceCell), 5);
  ASSERT_TRUE(QTest::qWaitFor([&] { return told() == wanted(); }, 20'000)) << told();
  Q_EMIT part<QTableView>("backTestDraws").doubleClicked(model.index(0, 0));
  EXPECT_TRUE(part("pageValues.0").isVisible());
  EXPECT_EQ(text("conditionDraw.0"), "2026090 期：01 02 03 04 05 06 + 07　→　总和值=21");
  give("conditions.backtest");
  EXPECT_TRUE(part("backTestDraws").isVisible());
  give("conditions.backtest");
  EXPECT_FALSE(part("backTestDraws").isVisible());
}

}  // namespace
}  // namespace lotmere::ui::test

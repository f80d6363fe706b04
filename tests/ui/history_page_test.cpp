// The page of draws, driven as a user drives it: keys and clicks in, the store and the screen out.
#include "ui/history/history_page.hpp"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QComboBox>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTreeWidget>
#include <fstream>

#include "catalogue/draw_columns.hpp"
#include "history/addresses.hpp"
#include "store/schema.hpp"
#include "ui/look/ball_delegate.hpp"
#include "ui/look/balls.hpp"
#include "ui/look/theme.hpp"
#include "window_fixture.hpp"

namespace lotmere::ui::test {
namespace {

using lotmere::test::putDraw;

constexpr DrawNumbers kNumbers{{1, 5, 7, 14, 21, 33}, 8};
constexpr const char* kNormalRows = "2007023-2008050:100";

class HistoryPageTest : public DrivenTest {
 protected:
  HistoryPageTest() { clock_.day = *parseDate("2008-05-02"); }
  void SetUp() override {
    putDraw(store_, 2008049, "2008-04-27", {{2, 3, 4, 5, 6, 7}, 5});
    putDraw(store_, 2008050, "2008-04-29", {{5, 8, 9, 10, 11, 12}, 5});
    page_.resize(1240, 560);
    page_.show();
    page_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&page_));
    page_.refreshHistoryView();
    page_.loadEntry();
  }
  [[nodiscard]] const QWidget& whole() override { return page_; }
  [[nodiscard]] Commands& commands() override { return commands_; }

  // More than the hundred rows that are shown as a rule.
  void putOldDraws() {
    for (PeriodNo period = 2007001; period <= 2007120; ++period)
      putDraw(store_, period, "2007-01-02", kNumbers);
    page_.refreshHistoryView();
    QTest::qWait(0);
  }
  std::string putList(const char* text) {
    realFiles().writeWhole(home_.path() / "a list.txt", text);
    return (home_.path() / "a list.txt").string();
  }
  static std::string boxName(int i) { return "entryField." + std::to_string(i); }
  std::string box(int i) { return text(boxName(i)); }
  // The period and the date that are proposed.
  std::string proposed() { return box(0) + ' ' + formatDate(session_.entry_date); }
  std::string focused() {
    return page_.focusWidget() == nullptr ? "" : utf8(page_.focusWidget()->objectName());
  }
  // Types into the boxes from the period on, with Enter behind each number.
  void type(const char* period, const std::vector<const char*>& numbers) {
    for (int i = 0; i <= 7; ++i) part<QLineEdit>(boxName(i)).clear();
    QTest::keyClicks(&part(boxName(0)), QString::fromUtf8(period));
    part(boxName(1)).setFocus();
    for (const char* number : numbers) {
      QTest::keyClicks(page_.focusWidget(), QString::fromUtf8(number));
      QTest::keyClick(page_.focusWidget(), Qt::Key_Return);
    }
  }
  void removeDraw(std::optional<std::string> typed, std::optional<std::size_t> answer) {
    desk_.texts = {std::move(typed)};
    desk_.choices = {answer};
    press("draws.delete");
  }

  QAbstractItemModel& rows() { return *part<FrozenGrid>("historyGrid").left().model(); }
  std::string cell(int row, int column) { return utf8(rows().index(row, column).data().toString()); }
  // The first and the last shown period and the count.
  std::string shownRows() {
    const int last = rows().rowCount() - 1;
    return cell(0, 0) + "-" + cell(last, 0) + ":" + std::to_string(last + 1);
  }
  void search(int column, const char* text) {
    auto& field = part("filterField." + std::to_string(column));
    QTest::keyClicks(&field, QString::fromUtf8(text));
    QTest::keyClick(&field, Qt::Key_Return);
    QTest::qWait(0);
  }

  Store& store_ = home_.store();
  Commands commands_{desk_};
  Session session_{store_, home_.home(), desk_, clock_, commands_};
  HistoryPage page_{session_};
  QSignalSpy changes_{&page_, &HistoryPage::historyChanged};
};

TEST_F(HistoryPageTest, ADrawTypedInAnyOrderIsStoredSorted) {
  EXPECT_EQ(proposed(), "2008051 2008-05-01");
  part("entryField.3").setFocus();
  press("entryField.0");
  EXPECT_EQ(utf8(part<QLineEdit>("entryField.0").selectedText()), "2008051");
  type("2008051", {"33", "07", "2x1", "05", "-1", "14", "8"});
  EXPECT_TRUE(desk_.told.empty());
  ASSERT_TRUE(findDraw(store_, 2008051));
  EXPECT_EQ(findDraw(store_, 2008051)->numbers, kNumbers);
  EXPECT_EQ(latestDrawDate(store_), *parseDate("2008-05-01"));
  EXPECT_EQ(cell(2, 9), "81") << "its statistics are there and shown";
  EXPECT_EQ(proposed() + box(1) + box(7), "2008052 2008-05-04") << "ready for the next one";
  EXPECT_EQ(focused(), "entryField.1");
  EXPECT_EQ(changes_.count(), 1);
  part<QDateEdit>("drawDate").setDate(QDate(2008, 4, 24));
  type("2008048", {"1", "2", "3", "4", "5", "6", "8"});
  EXPECT_TRUE(findDraw(store_, 2008048));
  EXPECT_EQ(proposed(), "2008052 2008-05-04") << "behind an older one, too";
}

TEST_F(HistoryPageTest, ABadEntryChangesNothingAndShowsWhatWasRead) {
  const std::vector<const char*> good{"1", "2", "3", "4", "5", "6", "8"};
  const std::string bad_numbers = "输入有误或不完整,请核对后重新输入!";
  const auto bad_period = [](const std::string& typed) {
    return "期号“" + typed + "”不对，应为年份加三位期次的7位数字，如 2007001。";
  };
  const struct {
    const char* period;
    std::vector<const char*> typed;
    std::string says;
    std::string shown;
    int focus;
  } cases[] = {{"", {"33", "7", "7", "5", "1", "14", "8"}, bad_numbers, " 1 5 7 14 33  8", 6},
               {"", {"9", "3", "40", "5", "1", "14", "8"}, bad_numbers, " 3 9 40 5 1 14 8", 3},
               {"", {"6", "5", "4", "3", "2", "1", "17"}, bad_numbers, " 1 2 3 4 5 6 17", 7},
               {"", {"6", "5", "4", "3", "2", "0", "7"}, bad_numbers, " 2 3 4 5 6 0 7", 6},
               {"", {"", "", "", "", "", "", ""}, bad_numbers, "       ", 1},
               {"202609", good, bad_period("202609"), "202609 1 2 3 4 5 6 8", 0},
               {"20080510", good, bad_period("20080510"), "20080510 1 2 3 4 5 6 8", 0}};
  const QWidget& frame = part("entryFrame");
  for (const auto& row : cases) {
    SCOPED_TRACE(row.shown);
    desk_.told.clear();
    type(row.period, row.typed);
    ASSERT_EQ(desk_.told.size(), 1U);
    EXPECT_EQ(told(), row.says);
    std::string boxes = box(0);
    for (int i = 1; i <= 7; ++i) boxes += " " + box(i);
    EXPECT_EQ(boxes, row.shown);
    EXPECT_EQ(focused(), boxName(row.focus));
    EXPECT_LT(frame.x(), 0) << "the frame slides in";
    EXPECT_TRUE(QTest::qWaitFor([&] { return box(0) == "2008051"; })) << "proposed anew";
    EXPECT_EQ(frame.x(), 0);
  }
  EXPECT_EQ(changes_.count(), 0);
  EXPECT_EQ(store_.value(R"(SELECT count(*) FROM "历史记录")"), 2);
  const char* const pasted[] = {" ２００８０５１　", "１", "2", "3", "4", "5", "３３", "8"};
  for (int i = 0; i <= 7; ++i) {
    part<QLineEdit>(boxName(i)).clear();
    part<QLineEdit>(boxName(i)).insert(QString::fromUtf8(pasted[i]));
  }
  EXPECT_EQ(box(0), "2008051");
  QTest::keyClick(&part("entryField.7"), Qt::Key_Return);
  EXPECT_EQ(findDraw(store_, 2008051).value().numbers, (DrawNumbers{{1, 2, 3, 4, 5, 33}, 8}));
}

TEST_F(HistoryPageTest, ADeletedDrawIsProposedAgain) {
  removeDraw("2008050", std::nullopt);
  EXPECT_TRUE(desk_.told.empty() && findDraw(store_, 2008050)) << "Esc changes nothing";
  EXPECT_NE(desk_.asked.back().find("2008050 期  2008-04-29  05 08 09 10 11 12+05"), std::string::npos);
  removeDraw("2008050", 0);
  EXPECT_EQ(desk_.proposed[0], "2008050");
  EXPECT_EQ(told(), "删除完成！");
  EXPECT_EQ(shownRows(), "2008049-2008049:1");
  EXPECT_EQ(proposed(), "2008050 2008-04-29");
  removeDraw("20080501", 0);
  EXPECT_EQ(desk_.told.back().title, "删除失败");
  removeDraw(std::nullopt, 0);
  EXPECT_EQ(desk_.told.size(), 2U) << "nothing is said of a cancelled question";
  EXPECT_EQ(changes_.count(), 1);
  press("historyMode.1");
  removeDraw("2008049", 0);
  EXPECT_EQ(told(), "删除完成，将重新加载数据。");
  for (const char* mode : {"historyMode.1", "historyMode.0"}) {
    press(mode);
    EXPECT_FALSE(part("distributionGrid").isVisible() || part("historyGrid").isVisible())
        << "an empty history";
  }
  EXPECT_EQ(box(0), "2008001");
  press("draws.export");
  EXPECT_TRUE(desk_.opened.empty()) << "there is nothing to open";
}

TEST_F(HistoryPageTest, TheFilterRowSearchesAllDraws) {
  putOldDraws();
  EXPECT_EQ(shownRows(), kNormalRows);
  QSignalSpy status(&desk_, &WindowDesk::statusChanged);
  const auto told_passing = [&] {
    settle();
    return utf8(status.last()[0].toString());
  };
  choose("searchButton");
  EXPECT_TRUE(told_passing().starts_with("请在表格中最顶一行") && desk_.told.empty());
  EXPECT_EQ(focused(), "filterField.0");
  QTest::keyClicks(page_.focusWidget(), QStringLiteral("200701"));
  choose("draws.enter");
  QTest::qWait(0);
  EXPECT_EQ(rows().rowCount(), 100) << "no search while somebody types, nor by another command";
  press("searchButton");
  EXPECT_EQ(shownRows(), "2007010-2007019:10");
  EXPECT_EQ(told_passing(), "找到 10 期");
  QTest::qWait(0);
  search(8, "5");
  EXPECT_EQ(shownRows(), kNormalRows) << "nothing is found: back to the normal rows";
  EXPECT_EQ(told(), "没有符合条件的记录。");
  EXPECT_EQ(text("filterField.0"), "200701") << "what was typed stays";
  press("clearFilter");
  search(8, "05");
  EXPECT_EQ(shownRows(), "2008049-2008050:2") << "as the grid shows it";
  press("clearFilter");
  EXPECT_EQ(shownRows(), kNormalRows);
  search(0, "200712");
  press("historySpan.1");
  EXPECT_EQ(shownRows(), "2007001-2008050:122");
  press("historyMode.1");
  const QScrollBar* chart = part<QTableView>("distributionGrid").verticalScrollBar();
  EXPECT_TRUE(chart->maximum() > 0 && chart->value() == chart->maximum()) << "the newest draws are in sight";
}

TEST_F(HistoryPageTest, OptionsAndMenuShowTheSameViews) {
  QSignalSpy wanted(&page_, &HistoryPage::wanted);
  auto& chart = part<QTableView>("distributionGrid");
  press("historyMode.1");
  EXPECT_TRUE(chart.isVisible() && !part("historyGrid").isVisible());
  EXPECT_TRUE(commands_.action("draws.showTrend")->isChecked());
  choose("draws.showAll");
  EXPECT_TRUE(part<QAbstractButton>("historySpan.1").isChecked() && chart.isVisible());
  choose("draws.showData");
  EXPECT_TRUE(part<QAbstractButton>("historyMode.0").isChecked() && part("historyGrid").isVisible());
  choose("draws.enter");
  EXPECT_EQ(focused(), "entryField.1");
  EXPECT_EQ(wanted.count(), 4);
}

TEST_F(HistoryPageTest, SheetAndDetailPageAreOpenedOrTheirPlaceIsTold) {
  realFiles().writeWhole(home_.path() / "08050.html", "双色球");
  const std::string prefix = "file://" + home_.path().string() + "/";
  const struct {
    const char* command;
    std::deque<std::optional<std::string>> texts;
    std::string place;
  } rows[] = {{"draws.export", {}, "a list.xlsx"},
              {"draws.export", {}, "a list.csv"},
              {"draws.openPage", {"2008050", prefix}, "08050.html"}};
  for (const auto& [command, texts, place] : rows) {
    SCOPED_TRACE(command);
    for (const bool opens : {true, false}) {
      desk_.opens = opens;
      desk_.told.clear();
      desk_.texts = texts;
      desk_.files = {QString::fromStdString((home_.path() / place).string())};
      desk_.choices = {0, 0};  // to open it, the second time behind the leave to replace it
      choose(command);
      EXPECT_EQ(utf8(desk_.opened.back().toString()), prefix + place);
      EXPECT_TRUE(std::filesystem::exists(home_.path() / place));
      EXPECT_TRUE(opens ? desk_.told.empty() : told().ends_with(home_.path().string() + "/" + place))
          << told();
    }
  }
  EXPECT_NE(desk_.places.back().find("LotmereHistory.xlsx"), std::string::npos);
  std::ifstream list(home_.path() / "a list.csv");
  std::string head, first;
  std::getline(list, head);
  std::getline(list, first);
  EXPECT_TRUE(head.starts_with("\xEF\xBB\xBF期号,开奖日期,红球1,") && head.ends_with("\r")) << head;
  EXPECT_TRUE(first.starts_with("2008049,2008-04-27,2,3,4,5,6,7,5,")) << first;
  EXPECT_EQ(std::ranges::count(head, ','), std::ranges::count(first, ',')) << first;
  desk_.files = {QString::fromStdString((home_.path() / "a list.csv").string())};
  desk_.choices = {std::nullopt};
  choose("draws.export");
  EXPECT_NE(desk_.asked.back().find("要替换吗"), std::string::npos);
  desk_.texts = {"2008049"};
  choose("draws.openPage");
  EXPECT_EQ(desk_.opened.size(), 6U) << "no page, nothing opened";
}

TEST_F(HistoryPageTest, ADownloadAsksForTheAddressOnce) {
  const std::string list =
      putList("=336= 2008051 2008/05/01 01 05 07 14 21 33 08\n2008052 2008/05/04 01 02 03 04 05 06 07");
  int usable = -1;  // how often somebody could have typed while a job ran
  desk_.on_look = [&] { usable = std::max(usable, 0) + part("entryStrip").isEnabled(); };
  desk_.texts = {"file:///nowhere", list};
  part("entryField.3").setFocus();
  choose("draws.download");
  EXPECT_TRUE(told().ends_with("\r\n\r\n原因：没有这个文件。")) << told();
  EXPECT_EQ(changes_.count(), 0);
  choose("draws.download");
  EXPECT_EQ(told(),
            "已成功更新!\r\n新增 1 期，更新 0 期，跳过 1 条无效数据，最新一期 2008051\r\n"
            "第 2 行（2008052 期）：日期在今天之后");
  choose("draws.download");  // nothing newer
  EXPECT_EQ(desk_.proposed, (std::vector<std::string>{"", "file:///nowhere"})) << "the typed one stays";
  EXPECT_EQ(changes_.count(), 2);
  EXPECT_EQ(shownRows(), "2008049-2008051:3");
  EXPECT_EQ(proposed(), "2008052 2008-05-04") << "behind the newest draw, however often";
  EXPECT_EQ(usable, 0);
  EXPECT_EQ(focused(), "entryField.3") << "the user goes on where they were";
  desk_.texts = {"", "https://me@site/d/"};
  choose("draws.listAddress");
  choose("draws.pageAddress");
  EXPECT_EQ(storedAddress(store_, AddressUse::draw_list), "");
  EXPECT_EQ(storedAddress(store_, AddressUse::detail_page), "https://me@site/d/");
}

TEST_F(HistoryPageTest, AStoredDrawIsReplacedOnlyWhenTheUserSaysSo) {
  const std::vector<const char*> typed{"33", "7", "21", "5", "1", "14", "8"};
  part<QDateEdit>("drawDate").setDate(QDate(2008, 4, 29));
  desk_.choices = {std::nullopt};
  type("2008050", typed);
  EXPECT_NE(desk_.asked.back().find("原有：2008-04-29  05 08 09 10 11 12+05"), std::string::npos);
  EXPECT_EQ(changes_.count(), 0);
  EXPECT_EQ(box(0) + ' ' + box(1), "2008050 1") << "what was typed stays";
  desk_.choices = {0};
  press("draws.add");
  EXPECT_EQ(findDraw(store_, 2008050).value().numbers, kNumbers);

  // The same question for a file.
  desk_.choices = {1};
  desk_.files = {QString(), QString::fromStdString(putList("2008050 2008-04-29 1 2 3 4 5 6 7\n"
                                                           "2008051,2008-05-01,1,2,3,4,5,6,7"))};
  choose("draws.import");
  EXPECT_EQ(changes_.count(), 1) << "no file, no import";
  choose("draws.import");
  EXPECT_EQ(told(),
            "读到 2 期：新增 1 期，更改 0 期，跳过 0 行，最新一期 2008051\r\n有 1 "
            "期和原有记录不同，保留了原有的。");
  EXPECT_EQ(shownRows(), "2008049-2008051:3");
  EXPECT_EQ(proposed(), "2008052 2008-05-04");
  EXPECT_EQ(changes_.count(), 2);
}

TEST_F(HistoryPageTest, ACopiedListIsLookedAtBeforeItIsStored) {
  QApplication::clipboard()->setText(
      QStringLiteral("期号\t日期\n2008051\t2008-05-01\t01 05 07 14 21 33 08\n"
                     "2008052\t2008-05-01\t01 05 07 14 21 34 08"));
  desk_.dialogs = {[](QDialog&) { return false; },
                   [&](QDialog& dialog) {
                     const auto& rows = partOf<QTreeWidget>(dialog, "understoodDraws");
                     EXPECT_EQ(rows.topLevelItemCount(), 2);
                     EXPECT_EQ(textOf(dialog, "okButton"), "存入 1 期");
                     EXPECT_EQ(utf8(rows.topLevelItem(1)->text(2)), "红球 34 不对");
                     auto& typed = partOf<QPlainTextEdit>(dialog, "pastedText");
                     typed.setPlainText(QStringLiteral("nothing"));
                     EXPECT_TRUE(QTest::qWaitFor([&] { return !partOf(dialog, "okButton").isEnabled(); }));
                     typed.setPlainText(QStringLiteral("2008051 2008-05-01 01 05 07 14 21 33 08"));
                     EXPECT_TRUE(QTest::qWaitFor([&] { return partOf(dialog, "okButton").isEnabled(); }));
                     return true;
                   }};
  part<FrozenGrid>("historyGrid").left().setFocus();
  QTest::keyClick(page_.focusWidget(), Qt::Key_V, Qt::ControlModifier);
  settle();
  EXPECT_TRUE(desk_.told.empty()) << "the look was enough";
  QTest::keyClick(page_.focusWidget(), Qt::Key_V, Qt::ControlModifier);
  settle();
  EXPECT_EQ(told(), "读到 1 期：新增 1 期，更改 0 期，跳过 0 行，最新一期 2008051");
  EXPECT_EQ(findDraw(store_, 2008051)->numbers, kNumbers);
  auto& grid = part<FrozenGrid>("historyGrid");
  EXPECT_EQ(grid.selectedRows(), std::vector<int>{2}) << "what came";
  grid.left().setFocus();
  QTest::keyClick(&grid.left(), Qt::Key_C, Qt::ControlModifier);
  const QString copied = QApplication::clipboard()->text();
  EXPECT_TRUE(copied.startsWith(QStringLiteral("2008051\t2008-05-01\t01\t05\t07\t14\t21\t33\t08\t81\t")))
      << utf8(copied);
  EXPECT_EQ(copied.count(QLatin1Char('\n')), 1);
  desk_.choices = {0};
  QTest::keyClick(&grid.left(), Qt::Key_Delete);
  settle();
  EXPECT_FALSE(findDraw(store_, 2008051)) << "the chosen one, without its number typed";
  EXPECT_TRUE(findDraw(store_, 2008050));
}

TEST_F(HistoryPageTest, TheTrendStandsBesideTheBallsWhereItIsWanted) {
  auto& chart = part<DistributionGrid>("distributionGrid");
  EXPECT_FALSE(part("trendGaps").isVisible());
  press("historyMode.1");
  const auto shown_at = [&](int row, int column) {
    return utf8(chart.model()->index(row, column).data().toString());
  };
  const QImage plain = chart.grab().toImage();
  EXPECT_EQ(shown_at(1, 2) + shown_at(1, 5), "05") << "the balls alone";
  click("trendGaps");
  EXPECT_EQ(shown_at(0, 1) + shown_at(1, 1) + shown_at(1, 2) + shown_at(1, 5), "12105");
  EXPECT_FALSE(chart.model()->index(1, 1).data(kBallRole).isValid());
  click("trendGaps");
  EXPECT_EQ(chart.grab().toImage(), plain);
  click("trendLine");
  EXPECT_NE(chart.grab().toImage(), plain) << "one blue above the other";
  click("trendFoot");
  ASSERT_EQ(chart.model()->rowCount(), 2 + 4);
  EXPECT_EQ(shown_at(2, 0) + shown_at(2, 5) + shown_at(3, 1) + shown_at(4, 1) + shown_at(5, 5),
            "出现次数22.022");
  part<QComboBox>("trendStatistic").setCurrentIndex(1);
  EXPECT_EQ(shown_at(1, 50), "55");
  EXPECT_EQ(utf8(chart.model()->headerData(50, Qt::Horizontal).toString()), "和值");
  press("historyMode.0");
  EXPECT_FALSE(part("trendGaps").isVisible());
}

TEST_F(HistoryPageTest, WhatADownloadBroughtStandsThereBeforeItsMessage) {
  const std::string list = putList("=336= 2008051 2008/05/01 01 05 07 14 21 33 08");
  desk_.texts = {list};
  std::string at_message;
  desk_.on_tell = [&] { at_message = shownRows(); };
  choose("draws.download");
  EXPECT_EQ(at_message, "2008049-2008051:3");
}

TEST_F(HistoryPageTest, TwoDigitsLeadToTheNextBallAndAnEnterBehindThemIsNoStep) {
  part(boxName(1)).setFocus();
  QTest::keyClicks(page_.focusWidget(), QStringLiteral("01"));
  EXPECT_EQ(focused(), boxName(2));
  QTest::keyClick(page_.focusWidget(), Qt::Key_Return);
  EXPECT_EQ(focused(), boxName(2));
  QTest::keyClick(page_.focusWidget(), Qt::Key_Return);
  EXPECT_EQ(focused(), boxName(3)) << "one that is meant";
  for (int box = 3; box <= 6; ++box) QTest::keyClicks(page_.focusWidget(), QString::number(10 + box));
  EXPECT_EQ(focused(), boxName(7));
  QTest::keyClicks(page_.focusWidget(), QStringLiteral("08"));
  EXPECT_EQ(focused(), boxName(7)) << "nothing is stored without an Enter";
}

TEST_F(HistoryPageTest, PanesShareRowsAndKeys) {
  putOldDraws();
  auto& grid = part<FrozenGrid>("historyGrid");
  QScrollBar* left = grid.left().verticalScrollBar();
  QScrollBar* right = grid.right().verticalScrollBar();
  const auto values = [&] { return std::pair(left->value(), right->value()); };
  const auto resize = [&](int height) {
    page_.resize(1240, height);
    QTest::qWait(0);
  };
  for (const int height : {560, 400}) {
    resize(height);
    EXPECT_GT(right->maximum(), 0);
    EXPECT_EQ(values(), std::pair(right->maximum(), right->maximum())) << "the newest draws are in sight";
  }
  left->setValue(40);
  EXPECT_EQ(values(), std::pair(40, 40));
  right->setValue(70);
  resize(380);
  EXPECT_EQ(values(), std::pair(70, 70)) << "who reads further up stays there";

  const auto current = [&] { return std::pair(grid.currentColumn(), page_.focusWidget()); };
  grid.left().setFocus();
  grid.left().setCurrentIndex(rows().index(3, kBlueColumn));
  QTest::keyClick(&grid.left(), Qt::Key_Right);
  EXPECT_EQ(current(), std::pair(9, static_cast<QWidget*>(&grid.right())));
  EXPECT_TRUE(grid.left().selectionModel()->isRowSelected(3)) << "the whole row in both panes";
  QTest::keyClick(&grid.right(), Qt::Key_Left);
  EXPECT_EQ(current(), std::pair(8, static_cast<QWidget*>(&grid.left())));

  grid.focusFilter();
  for (const auto& [name, key] : {std::pair{"filterField.8", Qt::Key_Tab},
                                  {"filterField.9", Qt::Key_Backtab},
                                  {"filterField.8", Qt::Key_Escape}}) {
    EXPECT_EQ(focused(), name);
    QTest::keyClick(page_.focusWidget(), key);
  }
  EXPECT_EQ(page_.focusWidget(), &grid.left());
  const QHeaderView* head = grid.right().horizontalHeader();
  grid.right().scrollTo(rows().index(3, 60));
  grid.right().setColumnWidth(59, 300);
  EXPECT_NEAR(part("filterField.60").x(), head->sectionViewportPosition(60), 4)
      << "a box stays over its column";
}

TEST_F(HistoryPageTest, ACaptionOfEitherPaneSortsBothAndRowsStayWhatTheyAre) {
  putDraw(store_, 2008051, "2008-05-01", {{1, 2, 3, 4, 5, 33}, 16});
  store_.db().exec(R"(UPDATE "历史记录" SET "和值"="红球1"+"红球2"+"红球3"+"红球4"+"红球5"+"红球6")");
  page_.refreshHistoryView();
  auto& grid = part<FrozenGrid>("historyGrid");
  const auto periods = [&] { return cell(0, 0) + " " + cell(1, 0) + " " + cell(2, 0); };
  const auto click = [](EndTable& pane, int column) {
    const QHeaderView& head = *pane.horizontalHeader();
    QTest::mouseClick(head.viewport(), Qt::LeftButton, {}, {head.sectionViewportPosition(column) + 9, 9});
    return head.sortIndicatorSection();
  };
  EXPECT_EQ(click(grid.left(), 2), 2);
  EXPECT_EQ(periods(), "2008051 2008049 2008050");
  EXPECT_EQ(click(grid.right(), 9), 9);
  EXPECT_EQ(periods(), "2008049 2008051 2008050") << "sums of 27, 48 and 55";
  EXPECT_EQ(grid.left().horizontalHeader()->sortIndicatorSection(), 9) << "one order, one mark";
  grid.selectFrom(1);
  EXPECT_EQ(grid.selectedRows(), (std::vector<int>{2, 1})) << "of the history, as they are shown";
  grid.right().setFocus();
  QTest::keyClick(&grid.right(), Qt::Key_C, Qt::ControlModifier);
  const QString copied = QApplication::clipboard()->text();
  EXPECT_TRUE(copied.startsWith(QStringLiteral("2008051\t2008-05-01\t01\t02"))) << utf8(copied);
  EXPECT_EQ(copied.section(QLatin1Char('\n'), 1).left(8), QStringLiteral("2008050\t"));
  QTest::mouseClick(grid.left().viewport(), Qt::LeftButton, {},
                    grid.left().visualRect(grid.left().model()->index(1, 3)).center());
  desk_.choices = {0};
  QTest::keyClick(&grid.left(), Qt::Key_Delete);
  settle();
  EXPECT_FALSE(findDraw(store_, 2008051)) << "the one that was chosen";
  EXPECT_EQ(shownRows(), "2008049-2008050:2");
  click(grid.right(), 9);
  EXPECT_EQ(cell(0, 0), "2008050");
  EXPECT_EQ(click(grid.right(), 9), -1);
  EXPECT_EQ(cell(0, 0), "2008049");
}

TEST_F(HistoryPageTest, ModelsKeepTheRulesOfTheirKind) {
  HistoryModel draws;
  QAbstractItemModelTester draws_tester(&draws, QAbstractItemModelTester::FailureReportingMode::Fatal);
  DistributionModel numbers;
  QAbstractItemModelTester numbers_tester(&numbers, QAbstractItemModelTester::FailureReportingMode::Fatal);
  EXPECT_EQ(draws.show(HistoryModel::read(store_, {2008049, 2008050})), 2);
  EXPECT_EQ(draws.show(HistoryModel::read(store_, {2008050, 2008050})), 1);
  const auto caption = [&](int column) { return draws.headerData(column, Qt::Horizontal, Qt::DisplayRole); };
  EXPECT_EQ(caption(9), QStringLiteral("总和值"));
  const auto& pane = part<FrozenGrid>("historyGrid").right();
  QString hidden;
  for (int column = kIdentityColumns; column < draws.columnCount(); ++column) {
    EXPECT_GT(draws.columnWidth(column, page_.fontMetrics()),
              page_.fontMetrics().horizontalAdvance(caption(column).toString()));
    if (pane.isColumnHidden(column)) hidden += caption(column).toString();
  }
  EXPECT_EQ(hidden, QStringLiteral("已完成总期号临时数据"));

  DistributionRow last_red{2008050, {}};
  last_red.drawn[kRedCount - 1] = last_red.drawn[kRedCount] = true;  // and the first blue
  numbers.setRows({last_red}, {});
  const QVariant none, red_text = colours().red_text, blue_text = colours().blue_text;
  const QVariant red = static_cast<int>(BallFace::red), blue = static_cast<int>(BallFace::blue);
  const struct {
    const QAbstractItemModel& model;
    int column;
    const char* text;
    QVariant ball, colour, head_colour;
  } cells[] = {{numbers, 32, "", none, none, red_text},
               {numbers, 33, "33", red, none, red_text},
               {numbers, 34, "01", blue, blue_text, blue_text},
               {draws, 2, "05", red, red_text, none},
               {draws, 7, "12", red, red_text, none},
               {draws, 8, "05", blue, blue_text, none},
               {draws, 9, "", none, none, none}};
  for (const auto& cell : cells) {
    SCOPED_TRACE(cell.column);
    const QModelIndex index = cell.model.index(0, cell.column);
    EXPECT_EQ(utf8(index.data().toString()), cell.text);
    EXPECT_EQ(index.data(kBallRole), cell.ball);
    EXPECT_EQ(index.data(Qt::ForegroundRole), cell.colour);
    EXPECT_EQ(cell.model.headerData(cell.column, Qt::Horizontal, Qt::ForegroundRole), cell.head_colour);
  }
  EXPECT_EQ(numbers.headerData(34, Qt::Horizontal, Qt::DisplayRole), QStringLiteral("01"));
  test::putDraw(store_, 2008052, "2008-05-01", {{7, 8, 9, 10, 11, 12}, 17});
  draws.show(HistoryModel::read(store_, {2008052, 2008052}));
  EXPECT_EQ(draws.index(0, 8).data(kBallRole), none) << "17 is no blue";
  for (int column = 0; column < 3; ++column)
    EXPECT_EQ(draws.index(0, column).data(Qt::BackgroundRole).isValid(), column < 2) << column;
}

}  // namespace
}  // namespace lotmere::ui::test

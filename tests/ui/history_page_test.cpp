// The page of draws, driven as a person drives it: keys and clicks in, the store and the screen out.
#include "ui/history_page.hpp"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include "core/schema.hpp"
#include "history/addresses.hpp"
#include "support/test_store.hpp"
#include "ui/ball_delegate.hpp"
#include "ui/balls.hpp"
#include "ui/theme.hpp"
#include "window_desk_script.hpp"

namespace lotmere::ui {
namespace {

constexpr DrawNumbers kNumbers{{1, 5, 7, 14, 21, 33}, 8};

struct OneDay : Clock {
  Date today() override { return *parse_Date("2008-05-02"); }
};

class HistoryPageTest : public testing::Test {
 protected:
  void SetUp() override {
    test::put_Draw(store_, 2008049, "2008-04-27", {{2, 3, 4, 5, 6, 7}, 5});
    test::put_Draw(store_, 2008050, "2008-04-29", {{5, 8, 9, 10, 11, 12}, 5});
    open();
  }

  void open() {
    page_.resize(1240, 560);
    page_.show();
    page_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&page_));
    page_.refreshHistoryView();
    page_.load_Entry();
  }

  template <class T = QWidget>
  T* get(const char* name) {
    T* found = page_.findChild<T*>(QString::fromUtf8(name));
    if (found == nullptr) throw std::logic_error(std::string("no widget ") + name);
    return found;
  }
  std::string box(int i) { return get<QLineEdit>(box_Name(i).c_str())->text().toStdString(); }
  static std::string box_Name(int i) { return "TextHistory_" + std::to_string(i); }
  std::string focused() {
    const QWidget* widget = page_.focusWidget();
    return widget == nullptr ? "" : widget->objectName().toStdString();
  }
  void give(const char* command) { commands_.action(command)->trigger(); }
  void click(const char* name) { QTest::mouseClick(get(name), Qt::LeftButton); }

  // Types into the boxes from red 1 on, with Enter behind each.
  void type(const std::vector<const char*>& numbers) {
    get(box_Name(1).c_str())->setFocus();
    for (const char* number : numbers) {
      QTest::keyClicks(page_.focusWidget(), QString::fromUtf8(number));
      QTest::keyClick(page_.focusWidget(), Qt::Key_Return);
    }
  }

  QAbstractItemModel& rows() { return *get<FrozenGrid>("TDBGridHistory")->left().model(); }
  std::string cell(int row, int column) {
    return rows().data(rows().index(row, column)).toString().toStdString();
  }
  // The first and the last shown period and the count.
  std::string shown_Rows() {
    const int last = rows().rowCount() - 1;
    return cell(0, 0) + "-" + cell(last, 0) + ":" + std::to_string(last + 1);
  }
  void search(int column, const char* text) {
    QTest::keyClicks(get(("FilterText_" + std::to_string(column)).c_str()), QString::fromUtf8(text));
    QTest::keyClick(get(("FilterText_" + std::to_string(column)).c_str()), Qt::Key_Return);
  }

  test::TempHome home_;
  Store& store_ = home_.store();
  ScriptedWindowDesk desk_;
  OneDay clock_;
  Commands commands_{desk_};
  Session session_{store_, home_.home(), desk_, clock_, commands_};
  HistoryPage page_{session_};
  QSignalSpy changes_{&page_, &HistoryPage::history_Changed};
};

TEST_F(HistoryPageTest, ADrawTypedInAnyOrderIsStoredSorted) {
  EXPECT_EQ(box(0), "2008051");
  EXPECT_EQ(format_Date(session_.entry_date), "2008-05-01");
  get("TextHistory_3")->setFocus();
  click("TextHistory_0");
  EXPECT_EQ(get<QLineEdit>("TextHistory_0")->selectedText(), QStringLiteral("2008051"));
  type({"33", "07", "2x1", "05", "-1", "14", "8"});
  EXPECT_TRUE(desk_.told.empty());
  ASSERT_TRUE(findDraw(store_, 2008051));
  EXPECT_EQ(findDraw(store_, 2008051)->numbers, kNumbers);
  EXPECT_EQ(latestDrawDate(store_), *parse_Date("2008-05-01"));
  EXPECT_EQ(cell(2, 9), "81") << "its statistics are there and shown";
  EXPECT_EQ(box(0) + box(1) + box(7), "2008052") << "ready for the next one";
  EXPECT_EQ(format_Date(session_.entry_date), "2008-05-04");
  EXPECT_EQ(focused(), "TextHistory_1");
  EXPECT_EQ(changes_.count(), 1);
  // An older draw typed behind it proposes what follows the newest one.
  get<QDateEdit>("DTPicker_KJ")->setDate(QDate(2008, 4, 24));
  get<QLineEdit>("TextHistory_0")->setText(QStringLiteral("2008048"));
  type({"1", "2", "3", "4", "5", "6", "8"});
  EXPECT_TRUE(findDraw(store_, 2008048));
  EXPECT_EQ(box(0) + format_Date(session_.entry_date), "20080522008-05-04");
}

TEST_F(HistoryPageTest, AnEntryWithoutAPeriodIsNeitherCutNorStored) {
  const auto stored = [&] { return store_.value(R"(SELECT count(*) FROM "历史记录")"); };
  for (const char* typed : {"", "202609", "20080510", "99999999999", "2008000"}) {
    desk_.told.clear();
    get<QLineEdit>("TextHistory_0")->clear();
    QTest::keyClicks(get("TextHistory_0"), QString::fromUtf8(typed));
    EXPECT_EQ(box(0), typed);
    type({"1", "2", "3", "4", "5", "6", "8"});
    ASSERT_EQ(desk_.told.size(), 1U) << typed;
    EXPECT_EQ(desk_.told[0].text,
              "期号“" + std::string(typed) + "”不对，应为年份加三位期次的7位数字，如 2007001。");
    EXPECT_EQ(stored(), 2) << typed;
    EXPECT_TRUE(QTest::qWaitFor([&] { return box(0) == "2008051"; })) << "proposed anew";
    for (int i = 1; i <= 7; ++i) get<QLineEdit>(box_Name(i).c_str())->clear();
  }
  auto* period = get<QLineEdit>("TextHistory_0");
  period->clear();
  period->insert(QStringLiteral(" ２００８０５１　"));  // as a paste does
  EXPECT_EQ(box(0), "2008051");
  const char* const numbers[] = {"１", "2", "3", "4", "5", "３３", "8"};
  for (int i = 1; i <= 7; ++i) get<QLineEdit>(box_Name(i).c_str())->insert(QString::fromUtf8(numbers[i - 1]));
  QTest::keyClick(get("TextHistory_7"), Qt::Key_Return);
  EXPECT_EQ(findDraw(store_, 2008051).value().numbers, (DrawNumbers{{1, 2, 3, 4, 5, 33}, 8}));
}

TEST_F(HistoryPageTest, ABadEntryChangesNothingAndShowsWhatWasRead) {
  const struct {
    std::vector<const char*> typed;
    std::string shown;
    const char* focus;
  } cases[] = {{{"33", "7", "7", "5", "1", "14", "8"}, "1 5 7 14 33  8", "TextHistory_6"},
               {{"9", "3", "40", "5", "1", "14", "8"}, "3 9 40 5 1 14 8", "TextHistory_3"},
               {{"6", "5", "4", "3", "2", "1", "17"}, "1 2 3 4 5 6 17", "TextHistory_7"},
               {{"6", "5", "4", "3", "2", "0", "7"}, "2 3 4 5 6 0 7", "TextHistory_6"},
               {{"", "", "", "", "", "", ""}, "      ", "TextHistory_1"}};
  const auto* frame = get("FrameHkaijian");
  for (const auto& [typed, shown, focus] : cases) {
    desk_.told.clear();
    for (int i = 1; i <= 7; ++i) get<QLineEdit>(box_Name(i).c_str())->clear();
    get<QLineEdit>("TextHistory_0")->clear();
    type(typed);
    ASSERT_EQ(desk_.told.size(), 1U) << shown;
    EXPECT_EQ(desk_.told[0].text, "输入有误或不完整,请核对后重新输入!");
    EXPECT_EQ(desk_.told[0].tone, Tone::error);
    std::string boxes = box(1);
    for (int i = 2; i <= 7; ++i) boxes += " " + box(i);
    EXPECT_EQ(boxes, shown);
    EXPECT_EQ(focused(), focus);
    EXPECT_LT(frame->x(), 0) << "the frame slides in";
    EXPECT_TRUE(QTest::qWaitFor([&] { return box(0) == "2008051"; }));
    EXPECT_EQ(frame->x(), 0);
  }
  EXPECT_EQ(changes_.count(), 0);
  EXPECT_EQ(latestPeriod(store_), 2008050);
}

TEST_F(HistoryPageTest, ADeletedDrawIsProposedAgain) {
  desk_.texts = {"2008050", "2008050", "20080501", "", std::nullopt};
  desk_.choices = {std::nullopt, 0};
  click("cmm_scls");
  EXPECT_TRUE(desk_.told.empty() && findDraw(store_, 2008050)) << "Esc changes nothing";
  EXPECT_NE(desk_.asked.back().find("2008050 期  2008-04-29  05 08 09 10 11 12+05"), std::string::npos);
  EXPECT_EQ(desk_.buttons, (std::vector<std::string>{"删除", "不删除"}));
  for (int i = 0; i < 4; ++i) click("cmm_scls");
  EXPECT_EQ(desk_.proposed[0], "2008050");
  ASSERT_EQ(desk_.told.size(), 3U) << "nothing is said of a cancelled question";
  EXPECT_EQ(desk_.told[0].text, "删除完成！");
  EXPECT_EQ(desk_.told[1].title, "删除失败");
  EXPECT_TRUE(desk_.told[2].text.starts_with("期号“”不对"));
  EXPECT_EQ(shown_Rows(), "2008049-2008049:1");
  EXPECT_EQ(box(0), "2008050");
  EXPECT_EQ(format_Date(session_.entry_date), "2008-04-29");
  EXPECT_EQ(changes_.count(), 1);
  click("Option_TorD_1");
  desk_.texts = {"2008049"};
  desk_.choices = {0};
  click("cmm_scls");
  EXPECT_EQ(desk_.told.back().text, "删除完成，将重新加载数据。");
}

TEST_F(HistoryPageTest, TheFilterRowSearchesAllDraws) {
  for (PeriodNo period = 2007001; period <= 2007120; ++period)
    test::put_Draw(store_, period, "2007-01-02", kNumbers);
  page_.refreshHistoryView();
  EXPECT_EQ(shown_Rows(), "2007023-2008050:100");
  EXPECT_FALSE(get("filterBegin")->isEnabled());
  give("CmmSousuo");
  EXPECT_EQ(focused(), "FilterText_0");
  QTest::keyClicks(page_.focusWidget(), QStringLiteral("200701"));
  give("mnu_InputKaiJian");
  QTest::qWait(0);
  EXPECT_EQ(rows().rowCount(), 100) << "no search while somebody types, nor by another command";
  click("filterBegin");
  EXPECT_EQ(shown_Rows(), "2007010-2007019:10");
  QTest::qWait(0);
  EXPECT_FALSE(get("filterBegin")->isEnabled());
  desk_.told.clear();
  search(8, "5");
  EXPECT_EQ(shown_Rows(), "2007023-2008050:100") << "nothing is found: back to the normal rows";
  ASSERT_EQ(desk_.told.size(), 1U);
  EXPECT_EQ(desk_.told[0].text, "没有符合条件的记录。");
  EXPECT_EQ(get<QLineEdit>("FilterText_0")->text(), QStringLiteral("200701")) << "what was typed stays";
  QTest::qWait(0);
  EXPECT_TRUE(get("filterBegin")->isEnabled());
  click("cmdClearFilter");
  search(8, "05");
  EXPECT_EQ(shown_Rows(), "2008049-2008050:2") << "as the grid shows it";
  click("cmdClearFilter");
  EXPECT_EQ(shown_Rows(), "2007023-2008050:100");
  search(0, "200712");
  click("OptionHistoryMode_1");
  EXPECT_EQ(shown_Rows(), "2007001-2008050:122");
  click("Option_TorD_1");
  const QScrollBar* chart = get<QTableView>("TDBGrid_FenBu")->verticalScrollBar();
  EXPECT_TRUE(chart->maximum() > 0 && chart->value() == chart->maximum()) << "the newest draws are in sight";
}

TEST_F(HistoryPageTest, OptionsAndMenuShowTheSameViews) {
  QSignalSpy wanted(&page_, &HistoryPage::wanted);
  auto* chart = get<QTableView>("TDBGrid_FenBu");
  click("Option_TorD_1");
  EXPECT_TRUE(chart->isVisible() && !get("TDBGridHistory")->isVisible());
  EXPECT_TRUE(commands_.action("mnu_HistoryTubiao")->isChecked());
  // Red 5 and blue 5 have columns of their own.
  const auto text = [&](int column) {
    return chart->model()->index(1, column).data().toString().toStdString();
  };
  EXPECT_EQ(text(0) + text(4) + text(5) + text(38) + text(39), "20080500505");
  give("mnu_HistoryShowAll");
  EXPECT_TRUE(get<QAbstractButton>("OptionHistoryMode_1")->isChecked());
  EXPECT_TRUE(chart->isVisible());
  give("mnu_HistoryData");
  EXPECT_TRUE(get<QAbstractButton>("Option_TorD_0")->isChecked() && get("TDBGridHistory")->isVisible());
  give("mnu_InputKaiJian");
  EXPECT_EQ(focused(), "TextHistory_1");
  EXPECT_EQ(wanted.count(), 4);
}

TEST_F(HistoryPageTest, AnEmptyHistoryHasNeitherGrid) {
  desk_.texts = {"2008049", "2008050"};
  desk_.choices = {0, 0};
  click("cmm_scls");
  click("cmm_scls");
  for (const char* mode : {"Option_TorD_1", "Option_TorD_0"}) {
    click(mode);
    EXPECT_FALSE(get("TDBGrid_FenBu")->isVisible() || get("TDBGridHistory")->isVisible());
  }
  give("CmmSousuo");
  EXPECT_EQ(box(0), "2008001");
  give("cmm_Daocu");
  EXPECT_TRUE(desk_.opened.empty()) << "there is nothing to open";
}

TEST_F(HistoryPageTest, TheSheetIsOpenedOrItsPlaceIsTold) {
  click("cmm_Daocu");
  const auto file = home_.path() / "LotmereHistory.xlsx";
  ASSERT_EQ(desk_.opened.size(), 1U);
  EXPECT_EQ(desk_.opened[0].toLocalFile().toStdString(), file.string());
  EXPECT_TRUE(std::filesystem::exists(file) && desk_.told.empty());
  desk_.opens = false;
  click("cmm_Daocu");
  ASSERT_EQ(desk_.told.size(), 1U);
  EXPECT_NE(desk_.told[0].text.find(file.string()), std::string::npos);
}

TEST_F(HistoryPageTest, ADownloadAsksForTheAddressOnce) {
  const auto list = home_.path() / "list.txt";
  real_Files().write_Whole(
      list, "=336= 2008051 2008/05/01 01 05 07 14 21 33 08\n2008052 2008/05/04 01 02 03 04 05 06 07");
  std::vector<bool> usable;
  desk_.on_serve = [&] { usable.push_back(get("Pic_addHistory")->isEnabled()); };
  desk_.texts = {"file:///nowhere", "file://" + list.string()};
  get("TextHistory_3")->setFocus();
  give("mnu_AutoUpdate");
  EXPECT_EQ(desk_.told.at(0).tone, Tone::error);
  EXPECT_EQ(changes_.count(), 0);
  give("mnu_AutoUpdate");
  give("mnu_AutoUpdate");
  EXPECT_EQ(desk_.asked.size(), 2U);
  EXPECT_TRUE(desk_.told[0].text.ends_with("\r\n\r\n原因：没有这个文件。")) << desk_.told[0].text;
  EXPECT_EQ(desk_.proposed, (std::vector<std::string>{"", "file:///nowhere"})) << "the typed one stays";
  EXPECT_EQ(desk_.told.at(1).text,
            "已成功更新!\r\n新增 1 期，更新 0 期，跳过 1 条无效数据，最新一期 2008051\r\n"
            "第 2 行（2008052 期）：日期在今天之后");
  EXPECT_NE(desk_.told.at(2).text.find("没有比现有记录更新的开奖数据。"), std::string::npos);
  EXPECT_EQ(changes_.count(), 2);
  EXPECT_EQ(findDraw(store_, 2008051).value().numbers, kNumbers);
  EXPECT_EQ(shown_Rows(), "2008049-2008051:3");
  EXPECT_EQ(box(0), "2008052");
  EXPECT_EQ(format_Date(session_.entry_date), "2008-05-04") << "behind the newest draw, however often";
  EXPECT_FALSE(usable.empty());
  EXPECT_EQ(std::count(usable.begin(), usable.end(), true), 0) << "nobody types while a job runs";
  EXPECT_EQ(focused(), "TextHistory_3") << "and goes on where they were";
  desk_.texts = {"", "https://me:pw@site/d/", "https://me@site/d/"};
  give("mnu_DownloadAddress");
  EXPECT_EQ(desk_.proposed.back(), "file://" + list.string());
  EXPECT_EQ(stored_Address(store_, AddressUse::draw_list), "");
  give("mnu_DetailAddress");
  give("mnu_DetailAddress");
  EXPECT_EQ(desk_.proposed.back(), "https://me@site/d/");
  EXPECT_EQ(stored_Address(store_, AddressUse::detail_page), "https://me:pw@site/d/");
}

TEST_F(HistoryPageTest, AFirstDownloadTakesTheWholeList) {
  store_.query(R"(DELETE FROM "历史记录")").run();
  const auto list = home_.path() / "a list.txt";
  real_Files().write_Whole(
      list,
      "=336= 2003001 2003/02/23 01 05 07 14 21 33 08\n"
      "2008002 2008/01/03 01 05 07 14 21 33 08\n2008051 2008/05/01 01 02 03 04 05 06 08");
  desk_.texts = {list.string()};
  give("mnu_AutoUpdate");
  EXPECT_EQ(shown_Rows(), "2003001-2008051:3");
  EXPECT_EQ(box(0) + format_Date(session_.entry_date), "20080522008-05-04");
}

TEST_F(HistoryPageTest, TheDetailPageOpensInTheBrowser) {
  real_Files().write_Whole(home_.path() / "08050.html", "双色球");
  const std::string prefix = "file://" + home_.path().string() + "/";
  desk_.texts = {"2008050", prefix, "2008049"};
  desk_.opens = false;
  give("cmm_kjqk");
  ASSERT_EQ(desk_.opened.size(), 1U);
  EXPECT_EQ(desk_.opened[0].toString().toStdString(), prefix + "08050.html");
  EXPECT_NE(desk_.told.at(0).text.find(prefix + "08050.html"), std::string::npos);
  give("cmm_kjqk");
  EXPECT_EQ(desk_.opened.size(), 1U) << "no page, nothing opened";
}

TEST_F(HistoryPageTest, PanesShareRowsAndKeys) {
  for (PeriodNo period = 2007001; period <= 2007099; ++period)
    test::put_Draw(store_, period, "2007-01-02", kNumbers);
  page_.refreshHistoryView();
  QTest::qWait(0);
  auto* grid = get<FrozenGrid>("TDBGridHistory");
  QScrollBar* left = grid->left().verticalScrollBar();
  QScrollBar* right = grid->right().verticalScrollBar();
  EXPECT_GT(right->maximum(), 0);
  EXPECT_EQ(right->value(), right->maximum()) << "the newest draws are in sight";
  EXPECT_EQ(left->value(), right->value());
  page_.resize(1240, 400);
  QTest::qWait(0);
  EXPECT_EQ(right->value(), right->maximum()) << "also in a smaller window";
  left->setValue(40);
  EXPECT_EQ(right->value(), 40);
  right->setValue(70);
  page_.resize(1240, 380);
  QTest::qWait(0);
  EXPECT_TRUE(left->value() == 70 && right->value() == 70) << "who reads further up stays there";

  const auto current = [&] { return std::make_pair(grid->current_Column(), page_.focusWidget()); };
  const QModelIndex blue = rows().index(3, kBlueColumn);
  grid->left().setFocus();
  grid->left().setCurrentIndex(blue);
  QTest::keyClick(&grid->left(), Qt::Key_Right);
  EXPECT_EQ(current(), std::make_pair(9, static_cast<QWidget*>(&grid->right())));
  EXPECT_TRUE(grid->left().selectionModel()->isRowSelected(3)) << "the whole row in both panes";
  QTest::keyClick(&grid->right(), Qt::Key_Left);
  EXPECT_EQ(current(), std::make_pair(8, static_cast<QWidget*>(&grid->left())));

  grid->focus_Filter();
  EXPECT_EQ(focused(), "FilterText_8");
  QTest::keyClick(page_.focusWidget(), Qt::Key_Tab);
  EXPECT_EQ(focused(), "FilterText_9");
  QTest::keyClick(page_.focusWidget(), Qt::Key_Backtab);
  QTest::keyClick(page_.focusWidget(), Qt::Key_Escape);
  EXPECT_EQ(page_.focusWidget(), &grid->left());
  // A box stays over its column.
  const QHeaderView* head = grid->right().horizontalHeader();
  grid->right().scrollTo(rows().index(3, 60));
  const auto* far = get("FilterText_60");
  EXPECT_NEAR(far->x(), head->sectionViewportPosition(60), 4);
  grid->right().setColumnWidth(59, 300);
  EXPECT_NEAR(far->x(), head->sectionViewportPosition(60), 4);
}

TEST_F(HistoryPageTest, ModelsKeepTheRulesOfTheirKind) {
  HistoryModel draws;
  QAbstractItemModelTester draws_Tester(&draws, QAbstractItemModelTester::FailureReportingMode::Fatal);
  DistributionModel numbers;
  QAbstractItemModelTester numbers_Tester(&numbers, QAbstractItemModelTester::FailureReportingMode::Fatal);
  EXPECT_EQ(draws.load(store_, {2008049, 2008050}), 2);
  EXPECT_EQ(draws.load(store_, {2008050, 2008050}), 1);
  EXPECT_EQ(draws.columnCount(), static_cast<int>(draw_Columns().size()));
  const auto caption = [&](int column) { return draws.headerData(column, Qt::Horizontal, Qt::DisplayRole); };
  EXPECT_EQ(caption(9), QStringLiteral("总和值"));
  for (int column = 0; column < draws.columnCount(); ++column)
    EXPECT_GT(draws.column_Width(column, page_.fontMetrics()),
              page_.fontMetrics().horizontalAdvance(caption(column).toString()));
  EXPECT_EQ(draws.index(0, 2).data(), QStringLiteral("05"));
  EXPECT_EQ(draws.index(0, 9).data(), QString()) << "a figure that was never computed";
  const auto& pane = get<FrozenGrid>("TDBGridHistory")->right();
  QString hidden;
  for (int column = kIdentityColumns; column < draws.columnCount(); ++column)
    if (pane.isColumnHidden(column)) hidden += caption(column).toString();
  EXPECT_EQ(hidden, QStringLiteral("已完成总期号临时数据"));

  DistributionRow last_Red{2008050, {}};
  last_Red.drawn[kRedCount - 1] = last_Red.drawn[kRedCount] = true;  // and the first blue
  numbers.set_Rows({last_Red});
  const auto look = [](const QAbstractItemModel& model, int column) {
    const QModelIndex index = model.index(0, column);
    return std::tuple(index.data().toString(), index.data(kBallRole), index.data(Qt::ForegroundRole),
                      model.headerData(column, Qt::Horizontal, Qt::ForegroundRole));
  };
  const auto red = static_cast<int>(BallFace::red), blue = static_cast<int>(BallFace::blue);
  const QVariant red_text = colours().red_text, blue_text = colours().blue_text, none;
  EXPECT_EQ(look(numbers, 32), std::tuple(QString(), none, none, red_text));
  EXPECT_EQ(look(numbers, 33), std::tuple(QStringLiteral("33"), red, none, red_text));
  EXPECT_EQ(look(numbers, 34), std::tuple(QStringLiteral("01"), blue, blue_text, blue_text));
  EXPECT_EQ(numbers.headerData(34, Qt::Horizontal, Qt::DisplayRole), QStringLiteral("01"));
  EXPECT_EQ(look(draws, 7), std::tuple(QStringLiteral("12"), red, red_text, none));
  EXPECT_EQ(look(draws, 8), std::tuple(QStringLiteral("05"), blue, blue_text, none));
  for (int column = 0; column < 3; ++column)
    EXPECT_EQ(draws.index(0, column).data(Qt::BackgroundRole).isValid(), column < 2) << column;
}

}  // namespace
}  // namespace lotmere::ui

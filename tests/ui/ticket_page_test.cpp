// The road of a ticket through the window: pick, initialise, filter, stop, export, import, check.
#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QPainter>
#include <fstream>

#include "conditions/condition_store.hpp"
#include "panels/pages.hpp"
#include "tickets/low_chance.hpp"
#include "ui/conditions/number_pad.hpp"
#include "ui/look/ball_delegate.hpp"
#include "ui/look/balls.hpp"
#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"
#include "ui/tickets/run_result.hpp"
#include "window_fixture.hpp"

namespace lotmere::ui::test {
namespace {

class TicketPageTest : public WindowTest {
 protected:
  void SetUp() override {
    settleHome();
    for (const int code : {8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 108, 109, 110, 111})
      lotmere::test::putPick(home_.store(), code, PickState::tuo);
    open();
    choose("page.3");
  }
  // Presses the button of a step and answers its question for a period; 2026091 follows the newest draw.
  void pressWith(const char* button, std::optional<std::string> period = "2026091") {
    desk_.texts = {std::move(period)};
    press(button);
  }
  // The picked reds stand side by side, so that the factory conditions leave none of their tickets.
  void allowRuns() {
    changeSettings(store(), [](ConditionSet& set) {
      for (const char* name : {"连号", "AC值"}) set.use(conditionNamed(name).usage, false);
    });
  }
  void init() { pressWith("initButton"); }
  void run() { pressWith("runButton"); }
  void check(const char* period) { pressWith("checkButton", period); }
  [[nodiscard]] std::int64_t stored() { return countRows("日志表"); }
  [[nodiscard]] QAbstractItemModel& model() { return *part<QTableView>("ticketGrid").model(); }
  [[nodiscard]] std::string cell(int row, int column) {
    return utf8(model().index(row, column).data().toString());
  }
  [[nodiscard]] std::string log() { return text("runningText"); }

  static constexpr int kAll = 210 * 4;
};

TEST_F(TicketPageTest, InitialisesFiltersAndShowsTheCourse) {
  const QAbstractItemModelTester tester(&model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
  init();
  EXPECT_EQ(told(), "初始化选号完成!共 ８４０ 注！");
  EXPECT_EQ(model().rowCount(), kAll);
  EXPECT_EQ(cell(0, 2), "08");
  run();
  EXPECT_EQ(desk_.proposed, (std::vector<std::string>{"2026091", "2026091"}));
  EXPECT_LT(stored(), kAll);
  EXPECT_EQ(model().rowCount(), stored());
  EXPECT_NE(log().find("全部过滤缩水完成,余："), std::string::npos);
  EXPECT_TRUE(part<QPlainTextEdit>("runningText").textCursor().atEnd());
}

// In front stands what the run came to; the running text is a tab behind it. An undo brings the tickets back.
TEST_F(TicketPageTest, TheResultStandsInFrontAndCanBeTakenBack) {
  init();
  EXPECT_EQ(text("ticketHead"), "第 2026091 期　840 注　1,680 元");
  allowRuns();
  run();
  const auto left = stored();
  ASSERT_GT(left, 0);
  EXPECT_TRUE(part("runHead").isVisible());
  EXPECT_FALSE(part("runningText").isVisible());
  EXPECT_EQ(text("runHead").find("840 → "), 0U) << text("runHead");
  EXPECT_NE(text("runHead").find("→ " + utf8(grouped(left)) + " 注"), std::string::npos) << text("runHead");
  // Only steps that removed something have a row, and no condition that is off.
  EXPECT_LE(part<StepRows>("runSteps").count(), 8);
  ASSERT_TRUE(QTest::qWaitFor([&] { return part("runPrizes").isVisible(); }));
  EXPECT_EQ(text("runPromise"), promiseText(6));
  const auto& prizes = part<QTableWidget>("runPrizes");
  double share = 0;
  for (int row = 0; row < prizes.rowCount(); ++row)
    share += prizes.item(row, 1)->text().remove(u'%').toDouble();
  EXPECT_NEAR(share, 100, 0.3);
  EXPECT_EQ(text("runCost"),
            utf8(QStringLiteral("把过滤缩水前的 840 注逐一当作开奖号码；余下 %1 注，成本 %2 元。")
                     .arg(grouped(left), grouped(2 * left))));
  EXPECT_EQ(commands().action("tickets.undo")->text(), QStringLiteral("撤销：过滤缩水"));
  press("undoTickets");
  EXPECT_EQ(stored(), kAll);
  EXPECT_FALSE(part("runPrizes").isVisible());
  choose("tickets.redo");
  EXPECT_EQ(stored(), left);
  EXPECT_EQ(model().rowCount(), left);
}

TEST_F(TicketPageTest, GeneratesFromTheChosenNumbersAndShowsWhyNothingIsStored) {
  desk_.choices = {std::nullopt};
  pressWith("generateTickets");
  EXPECT_EQ(stored(), 0) << "cancelled";
  allowRuns();
  desk_.choices = {0};
  pressWith("generateTickets");
  const auto left = stored();
  EXPECT_TRUE(left > 0 && left < kAll);
  EXPECT_EQ(model().rowCount(), left);
  desk_.choices = {2, 0};
  changeSettings(store(), [](ConditionSet& set) { set.cells.set(kShrinkTypeCell, kLargestShrink); });
  pressWith("generateTickets");
  EXPECT_EQ(stored(), left) << "all numbers leave too many";
  EXPECT_EQ(text("runHead").find("17,721,088"), 0U) << text("runHead");
}

TEST_F(TicketPageTest, WithoutAPeriodOrAnAnswerNothingChanges) {
  init();
  desk_.choices = {std::nullopt, 0};
  init();
  init();
  EXPECT_EQ(model().rowCount(), kAll) << "Esc, and the button that drops the rows of before";
  desk_.told.clear();
  for (const char* button : {"initButton", "runButton", "checkButton"}) {
    pressWith(button, std::nullopt);
    pressWith(button, "20260911");
    EXPECT_TRUE(told().starts_with("期号“20260911”不对")) << told();
  }
  EXPECT_EQ(desk_.told.size(), 3) << "nothing is said of a cancelled question";
  EXPECT_EQ(stored(), kAll);
}

TEST_F(TicketPageTest, WithoutNumbersTheUserStandsBeforeThePad) {
  choose("page.2");
  for (const char* button : {"clearReds", "clearBlues"}) press(button);
  choose("page.3");
  init();
  EXPECT_EQ(told(), "号码还没有选取,或者已选的号码个数太少!请先选取号码！");
  EXPECT_EQ(window().currentPage(), MainWindow::Page::conditions);
}

TEST_F(TicketPageTest, AJobDisablesEveryCommandAndStopsAtItsButtonEachTime) {
  init();
  int served = 0;
  desk_.on_look = [&] {
    if (!desk_.jobRunning() || ++served > 1) return;
    for (const QAction* action : commands().all()) EXPECT_FALSE(action->isEnabled());
    EXPECT_FALSE(part("pageTabs").isEnabled() || part("runButton").isEnabled());
    choose("tickets.clear");  // would ask
    auto& bar = part("ticketProgress");
    EXPECT_TRUE(bar.isVisible());
    QTest::mousePress(&partOf(*bar.parentWidget(), "stopButton"), Qt::LeftButton);
  };
  for (int times = 1; times <= 2; ++times) {
    served = 0;
    run();
    EXPECT_GT(served, 0);
    EXPECT_EQ(stored(), kAll) << "stopped before the first pass";
    EXPECT_TRUE(log().ends_with("用户中止,当前记录余：８４０ 注")) << log();
    EXPECT_TRUE(part("pageTabs").isEnabled() && part("runButton").isEnabled());
    EXPECT_FALSE(part("ticketProgress").isVisible() || desk_.course().stopRequested());
  }
}

TEST_F(TicketPageTest, ClosingInTheMiddleOfAJobAsksFirstAndStopsItOnYes) {
  init();
  bool closed = false;
  desk_.on_look = [&] {
    if (!desk_.jobRunning() || std::exchange(closed, true)) return;
    EXPECT_FALSE(window().close());
    EXPECT_EQ(desk_.course().stopRequested(), desk_.answers.empty())
        << "not before the second question is answered";
    closed = desk_.answers.empty();
  };
  desk_.answers = {false, true};
  run();
  EXPECT_TRUE(closes());
  EXPECT_EQ(std::ranges::count(desk_.asked, "确认要退出吗？"), 2) << "the end itself asks no more";
  EXPECT_EQ(stored(), kAll);
}

TEST_F(TicketPageTest, ExportsWhatTheDialogSaysWhereTheUserWantsIt) {
  const auto target = home_.path() / "号码.txt";
  const QString file = QString::fromStdString(target.string());
  init();
  desk_.dialogs = {[](QDialog&) { return false; },
                   [](QDialog& dialog) {
                     EXPECT_TRUE(partOf<QCheckBox>(dialog, "exportContent.2").isChecked());
                     partOf<QCheckBox>(dialog, "exportContent.1").setChecked(true);
                     partOf<QComboBox>(dialog, "exportFormat").setCurrentIndex(1);
                     return true;
                   },
                   [](QDialog& dialog) {
                     EXPECT_TRUE(partOf<QCheckBox>(dialog, "exportContent.1").isChecked()) << "kept";
                     return true;
                   },
                   [](QDialog& dialog) {
                     partOf<QComboBox>(dialog, "exportFormat").setCurrentIndex(2);
                     return true;
                   }};
  press("exportButton");
  EXPECT_FALSE(std::filesystem::exists(target)) << "cancelled";
  desk_.files = {file, file, file};
  desk_.choices = {0};
  press("exportButton");
  EXPECT_TRUE(lotmere::test::readFile(target).starts_with("2026091,,,08,09,10,11,12,13|08\r\n"));
  ASSERT_EQ(desk_.opened.size(), 1);
  EXPECT_EQ(desk_.opened[0].toLocalFile(), file);
  EXPECT_EQ(desk_.asked.back(), "已导出 840 注到 " + target.string());
  std::ofstream(target) << "mine";
  desk_.choices = {std::nullopt};
  press("exportButton");
  EXPECT_EQ(lotmere::test::readFile(target), "mine") << "a file that stands there is asked about";
  desk_.choices = {0, 1};
  press("exportButton");
  EXPECT_NE(lotmere::test::readFile(target).find("08 09 10 11 12 13 14 15 16 17"), std::string::npos)
      << "ten reds in one compound bet";
  EXPECT_EQ(desk_.opened.size(), 1);
  for (const auto& [format, name, begin] :
       {std::tuple{3, "LotmereTemp.xlsx", "PK"}, {4, "LotmereTemp.csv", "\xEF\xBB\xBF期号,红球1,"}}) {
    desk_.dialogs = {[format = format](QDialog& dialog) {
      partOf<QComboBox>(dialog, "exportFormat").setCurrentIndex(format);
      EXPECT_FALSE(partOf<QCheckBox>(dialog, "exportContent.3").isEnabled()) << "a table has no empty lines";
      partOf<QCheckBox>(dialog, "exportContent.1").setChecked(true);
      return true;
    }};
    desk_.files = {file};
    desk_.choices = {0, 1};
    press("exportButton");
    EXPECT_TRUE(desk_.places.back().ends_with(name)) << desk_.places.back();
    EXPECT_TRUE(lotmere::test::readFile(target).starts_with(begin)) << name;
  }
}

TEST_F(TicketPageTest, ImportsInTheChosenFormat) {
  const auto file = home_.path() / "号码.txt";
  std::ofstream(file) << "2026092 01 02 03 04 05 06 + 07\n2026092 01 02 03 04 05 34 + 07\n";
  desk_.files = {QString::fromStdString(file.string()), QString()};
  desk_.dialogs = {[](QDialog& dialog) {
    auto& period = partOf<QLineEdit>(dialog, "importPeriod");
    EXPECT_EQ(utf8(period.text()), "2026091");
    QTest::keyClicks(&period, QStringLiteral("1"));
    partOf<QPushButton>(dialog, "okButton").click();
    EXPECT_EQ(dialog.result(), QDialog::Rejected) << "the period has to have seven digits";
    partOf<QAbstractButton>(dialog, "importFormat.1").click();
    EXPECT_FALSE(period.isEnabled());
    partOf<QPushButton>(dialog, "okButton").click();
    return dialog.result() == QDialog::Accepted;
  }};
  press("importButton");
  EXPECT_EQ(told(), "数据导入完成，共导入：１ 注！跳过了 １ 行，第一处在第 ２ 行。");
  ASSERT_EQ(model().rowCount(), 1);
  EXPECT_EQ(cell(0, 1), "2026092");
  press("importButton");
  EXPECT_EQ(desk_.told.size(), 2) << "no file, nothing more is said";
}

TEST_F(TicketPageTest, ChecksShowHitsAsBallsAndDeletionAsksFirst) {
  lotmere::test::putTicket(store(), 1, 1, 2026090, {{1, 2, 3, 9, 10, 11}, 7});
  lotmere::test::putTicket(store(), 2, 2, 2026091, {{1, 2, 3, 9, 10, 11}, 7});
  choose("page.1");
  choose("page.3");
  check("2026090");
  EXPECT_EQ(told(), "开奖核对完成,结果请查看右边的操作提示！");
  // What a row shows behind its period: the balls that are hits in brackets, and the figures.
  const auto line = [&](int row) {
    std::string all;
    for (int column = 2; column < model().columnCount(); ++column) {
      const QVariant face = model().index(row, column).data(kBallRole);
      const bool blue = face == QVariant(static_cast<int>(BallFace::blue));
      all +=
          !face.isValid() ? cell(row, column) : (blue ? "{" : "[") + cell(row, column) + (blue ? "}" : "]");
    }
    return all;
  };
  EXPECT_EQ(line(0), "[01][02][03]091011{07}31");
  EXPECT_EQ(line(1), "0102030910110700") << "a ticket of another period has no hits";
  const auto caption = [&](int column) {
    return utf8(model().headerData(column, Qt::Horizontal).toString());
  };
  EXPECT_EQ(caption(8) + caption(9) + caption(10), "蓝球红球中蓝球中");
  part<QTableView>("ticketGrid").setCurrentIndex(model().index(1, 4));
  check("2020001");
  EXPECT_EQ(desk_.proposed, (std::vector<std::string>{"2026090", "2026091"})) << "of the current row";
  EXPECT_EQ(desk_.told.back().title, "出错啦!");

  desk_.choices = {std::nullopt, 0};
  press("clearButton");
  EXPECT_EQ(stored(), 2);
  press("clearButton");
  EXPECT_EQ(model().rowCount(), 0);
}

// Two periods, and numbers that stand in several rows.
TEST_F(TicketPageTest, CaptionsSortAndWhatIsCopiedIsWhatIsShown) {
  const QAbstractItemModelTester tester(&model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
  lotmere::test::putTicket(store(), 1, 1, 2026090, {{9, 10, 11, 12, 13, 14}, 7});
  lotmere::test::putTicket(store(), 2, 2, 2026090, {{1, 2, 3, 9, 10, 11}, 16});
  lotmere::test::putTicket(store(), 3, 10, 2026091, {{1, 2, 3, 9, 10, 11}, 7});
  choose("page.1");
  choose("page.3");
  auto& grid = part<RowTable>("ticketGrid");
  const auto click = [&](int column) {
    const QHeaderView& head = *grid.horizontalHeader();
    QTest::mouseClick(head.viewport(), Qt::LeftButton, {},
                      {head.sectionViewportPosition(column) + head.sectionSize(column) / 2, 6});
  };
  const auto copied = [&](Qt::Key key) {
    QTest::keyClick(&grid, key, Qt::ControlModifier);
    return utf8(QApplication::clipboard()->text());
  };
  const std::string first = "1\t2026090\t09\t10\t11\t12\t13\t14\t07\t0\t0\n";
  const std::string second = "2\t2026090\t01\t02\t03\t09\t10\t11\t16\t0\t0\n";
  const std::string third = "10\t2026091\t01\t02\t03\t09\t10\t11\t07\t0\t0\n";
  const std::string stored = first + second + third;
  const struct {
    int column;
    std::string order;
  } clicks[] = {{2, second + third + first},  // equal ones as they are stored
                {2, first + second + third}, {2, stored},
                {8, first + third + second}, {0, first + second + third},  // 10 is more than 2
                {0, third + second + first}};
  for (const auto& [column, order] : clicks) {
    click(column);
    grid.selectAll();
    EXPECT_EQ(copied(Qt::Key_C), order) << column;
  }
  check("2026090");  // reads the tickets anew and marks hits
  EXPECT_EQ(cell(0, 0) + cell(1, 0) + cell(2, 0), "1021") << "the order lasts";
  EXPECT_FALSE(model().index(0, 2).data(kBallRole).isValid()) << "of another period than the draw";
  EXPECT_TRUE(model().index(1, 2).data(kBallRole).isValid());
  QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.visualRect(model().index(0, 3)).center());
  click(0);
  EXPECT_EQ(copied(Qt::Key_C), third) << "the choice goes with its row";
  part<QAction>("copyNumbers").trigger();
  EXPECT_EQ(utf8(QApplication::clipboard()->text()), "01 02 03 09 10 11 + 07\n");
  check("2020001");
  EXPECT_EQ(desk_.proposed.back(), "2026091") << "of the row that is current";
}

// The colour of the ball in the middle of a picture, looked at beside the number and the light.
QColor ballColour(const QImage& picture, int size) {
  return picture.pixelColor(static_cast<int>(picture.width() / 2.0 + size * 0.27),
                            static_cast<int>(picture.height() / 2.0 - size * 0.2));
}
// Alike but for the shade.
bool areAlike(const QColor& found, const QColor& colour) {
  return std::max({std::abs(found.red() - colour.red()), std::abs(found.green() - colour.green()),
                   std::abs(found.blue() - colour.blue())}) < 16;
}

TEST(BallTest, EachFaceHasItsColour) {
  const std::pair<BallFace, QColor> faces[] = {{BallFace::red, colours().red_ball},
                                               {BallFace::blue, colours().blue_ball},
                                               {BallFace::plain, colours().plain},
                                               {BallFace::low_chance, colours().low_chance}};
  for (const auto& [face, colour] : faces) {
    QImage picture(60, 60, QImage::Format_RGB32);
    QPainter painter(&picture);
    paintBall(painter, picture.rect(), QStringLiteral("08"), face);
    painter.end();
    EXPECT_TRUE(areAlike(ballColour(picture, 60), colour)) << static_cast<int>(face);
  }
}

class NumberPadTest : public WindowTest {
 protected:
  void SetUp() override {
    openSettled();
    choose("page.2");
  }
  [[nodiscard]] PadButton& button(int code) {
    return part<PadButton>((code < 10 ? "padBall.0" : "padBall.") + std::to_string(code));
  }
  // Each of the buttons as a letter: tuo, dan, none, or locked.
  [[nodiscard]] std::string states(std::initializer_list<int> codes) {
    std::string all;
    for (const int code : codes)
      all += !button(code).isEnabled() ? 'l' : "ntd"[static_cast<int>(button(code).state())];
    return all;
  }
  void turnToDan(const char* strip) {
    auto& tabs = part<QTabBar>(strip);
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(1).center());
  }
  [[nodiscard]] QColor face(int code) {
    const QImage picture = button(code).grab().toImage();
    return ballColour(picture, std::min({picture.width(), picture.height(), 52}) - 4);
  }
};

TEST_F(NumberPadTest, ShowsWhatEachClickMadeOfTheSelection) {
  pick({20, 21, 33});
  EXPECT_NE(text("pickSummary").find("已选红球“拖码”个数： ３"), std::string::npos);
  turnToDan("redTabs");
  EXPECT_EQ(told(), "现在点击数字按钮可以把相应的数设为红球的“胆码”。");
  desk_.answers = {false, true};
  pick({20, 21, 30});
  EXPECT_EQ(states({19, 20, 21, 30, 33}), "ntddt") << "no leaves it";
  EXPECT_TRUE(areAlike(face(20), colours().tuo) && areAlike(face(30), colours().dan));
  EXPECT_FALSE(areAlike(face(19), colours().tuo));
  EXPECT_EQ(utf8(button(30).accessibleName()), "红球 30 胆码");
  QTest::keyClick(&button(21), Qt::Key_Space);
  EXPECT_EQ(states({21}), "n") << "the keyboard does the same, without a question";
  pick({108});
  turnToDan("blueTabs");
  pick({110});
  EXPECT_EQ(states({108, 109, 110, 33}), "lldt") << "a lone blue dan locks the others";
  EXPECT_NE(face(108), face(19)) << "locked, and free";
  pick({110});
  EXPECT_EQ(states({108, 110}), "nn");
  pick({110});
  press("clearBlues");
  EXPECT_EQ(states({108, 110, 30}), "nnd") << "the reds stay";
  pick({110});
  press("clearReds");
  EXPECT_EQ(states({30, 110}), "nd") << "and the blues";
}

TEST_F(NumberPadTest, MarkedNumbersWarnAndAreTakenAllTheSame) {
  const LowChanceNumbers marked = lowChanceNumbers(store());
  ASSERT_EQ(marked.reds.size() + marked.blues.size(), 11U);
  for (int code = 1; code <= 116; code += code == kRedCount ? 68 : 1)
    EXPECT_EQ(button(code).isLowChance(), marked.holds(code)) << code;
  pick({marked.reds[1]});
  EXPECT_EQ(told(), lowChanceWarning(marked.reds[1], 2026091));
  EXPECT_EQ(states({marked.reds[1]}), "t");
}

}  // namespace
}  // namespace lotmere::ui::test

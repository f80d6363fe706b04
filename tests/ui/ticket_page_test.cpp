// The road of a ticket through the window: pick, initialise, filter, stop, export, import, check.
#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QRadioButton>
#include <csignal>
#include <fstream>

#include "conditions/condition_store.hpp"
#include "tickets/low_chance.hpp"
#include "tickets/ticket_set.hpp"
#include "ui/ball_delegate.hpp"
#include "ui/balls.hpp"
#include "ui/number_pad.hpp"
#include "ui/text.hpp"
#include "ui/theme.hpp"
#include "window_fixture.hpp"

namespace lotmere::ui::test {
namespace {

constexpr PeriodNo kPeriod = 2026091;  // behind the settled home's newest draw

class TicketPageTest : public WindowTest {
 protected:
  void SetUp() override {
    settle_Home(home_.store());
    for (const int red : {8, 9, 10, 11, 12, 13, 14, 15, 16, 17})
      lotmere::test::put_Pick(home_.store(), red, PickState::tuo);
    for (const int blue : {108, 109, 110, 111}) lotmere::test::put_Pick(home_.store(), blue, PickState::tuo);
    open();
    choose("tab_3");
  }
  void init(const char* period = "2026091") {
    desk_.texts = {period};
    press("cmmTouZhu_0");
  }
  [[nodiscard]] int stored() { return static_cast<int>(store().value(R"(SELECT count(*) FROM "日志表")")); }
  [[nodiscard]] QAbstractItemModel& model() { return *part<QTableView>("TDBGrid_RZ").model(); }
  [[nodiscard]] std::string log() {
    return part<QPlainTextEdit>("TextChaoZuoTip").toPlainText().toStdString();
  }

  static constexpr int kAll = 210 * 4;
};

TEST_F(TicketPageTest, InitialisesFiltersAndShowsTheCourse) {
  const QAbstractItemModelTester tester(&model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
  init();
  EXPECT_EQ(desk_.proposed, std::vector<std::string>{"2026091"});
  EXPECT_EQ(told(), "初始化选号完成!共 ８４０ 注！");
  EXPECT_EQ(model().rowCount(), kAll);
  EXPECT_EQ(model().index(0, 2).data().toString(), QStringLiteral("08"));
  desk_.texts = {"2026091"};
  press("cmmTouZhu_1");
  EXPECT_EQ(desk_.proposed.back(), "2026091");
  EXPECT_LT(stored(), kAll);
  EXPECT_EQ(model().rowCount(), stored());
  EXPECT_NE(log().find("全部过滤缩水完成,余："), std::string::npos);
  EXPECT_TRUE(part<QPlainTextEdit>("TextChaoZuoTip").textCursor().atEnd());
}

TEST_F(TicketPageTest, RowsOfTheSamePeriodAreKeptOrDropped) {
  init();
  desk_.choices = {1, std::nullopt, 0};
  init();
  EXPECT_EQ(model().rowCount(), 2 * kAll) << "kept";
  lotmere::test::put_Ticket(store(), 9'999, 1, kPeriod + 1, {{1, 2, 3, 4, 5, 6}, 7});
  init();
  EXPECT_EQ(stored(), 2 * kAll + 1) << "Esc changes nothing";
  init();
  EXPECT_EQ(model().rowCount(), kAll);
  desk_.texts = {std::nullopt};
  press("cmmTouZhu_0");
  for (const char* command : {"cmmTouZhu_0", "cmmTouZhu_1", "cmmTouZhu_6"})
    for (const char* typed : {"", "abc", "202609", "20260911"}) {
      desk_.told.clear();
      desk_.texts = {typed};
      press(command);
      ASSERT_EQ(desk_.told.size(), 1) << command;
      EXPECT_TRUE(told().starts_with("期号“" + std::string(typed) + "”不对")) << told();
    }
  EXPECT_EQ(stored(), kAll) << "no period changes nothing";
  desk_.answers = {true};
  init("２０２６０９１ ");
  EXPECT_EQ(count_Tickets(store(), kPeriod), kAll);
}

TEST_F(TicketPageTest, WithoutNumbersThePersonStandsBeforeThePad) {
  store().query(R"(UPDATE "过滤条件" SET "Value"=0 WHERE "ID"<200)").run();
  init();
  EXPECT_EQ(told(), "号码还没有选取,或者已选的号码个数太少!请先选取号码！");
  EXPECT_EQ(program_->window().current_Page(), MainWindow::Page::conditions);
}

TEST_F(TicketPageTest, AJobDisablesEveryCommandAndStopsAtItsButtonEachTime) {
  init();
  int served = 0;
  desk_.on_serve = [&] {
    if (!desk_.job_Running() || ++served > 1) return;
    for (const QAction* action : program_->commands().all()) EXPECT_FALSE(action->isEnabled());
    EXPECT_FALSE(part<QTabBar>("TabStrip_Top").isEnabled());
    EXPECT_FALSE(part<QPushButton>("cmmTouZhu_1").isEnabled());
    choose("mnu_ShengCeng_5");  // would ask
    auto& bar = part<QWidget>("ProgressBar_TouZu_Busy");
    EXPECT_TRUE(bar.isVisible());
    QTest::mousePress(bar.parentWidget()->findChild<QPushButton*>(QStringLiteral("cmm_stop")),
                      Qt::LeftButton);
  };
  for (int times = 1; times <= 2; ++times) {
    served = 0;
    desk_.texts = {"2026091"};
    press("cmmTouZhu_1");
    EXPECT_GT(served, 0);
    EXPECT_EQ(stored(), kAll) << "stopped before the first pass";
    EXPECT_TRUE(log().ends_with("用户中止,当前记录余：８４０ 注")) << log();
    EXPECT_TRUE(part<QPushButton>("cmmTouZhu_1").isEnabled());
    EXPECT_TRUE(part<QTabBar>("TabStrip_Top").isEnabled());
    EXPECT_FALSE(part<QWidget>("ProgressBar_TouZu_Busy").isVisible());
    EXPECT_FALSE(desk_.stop_Requested());
  }
}

TEST_F(TicketPageTest, ClosingInTheMiddleOfAJobStopsItAndThenAsks) {
  init();
  MainWindow& window = program_->window();
  bool closed = false;
  desk_.on_serve = [&] {
    if (!desk_.job_Running() || std::exchange(closed, true)) return;
    EXPECT_FALSE(window.close());
  };
  desk_.texts = {"2026091"};
  desk_.answers = {true};
  press("cmmTouZhu_1");
  EXPECT_TRUE(window.isVisible());
  EXPECT_TRUE(QTest::qWaitFor([&] { return !window.isVisible(); }));
  EXPECT_EQ(desk_.asked.back(), "确认要退出吗？");
  EXPECT_EQ(stored(), kAll);
}

TEST_F(TicketPageTest, AKillInTheMiddleOfARunLeavesTheTicketsAsTheyWere) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // the victim is a process of its own, begun anew
  init();
  program_.reset();
  const Home home = home_.home();
  ::setenv("LOTMERE_KILLED_HOME", home.folder.c_str(), 0);  // the victim works on this home, not on a new one
  EXPECT_EXIT(
      {
        Program victim(Home{std::getenv("LOTMERE_KILLED_HOME")}, desk_, clock_);
        if (!victim.start()) std::_Exit(1);
        victim.window().show_Page(MainWindow::Page::tickets);
        desk_.on_serve = [&] {
          if (desk_.running_Text().text().find("过滤后余") != std::string::npos) std::raise(SIGKILL);
        };
        desk_.texts = {"2026091"};
        victim.commands().action("mnu_ShengCeng_1")->trigger();
        std::_Exit(0);
      },
      testing::KilledBySignal(SIGKILL), "");
  ::unsetenv("LOTMERE_KILLED_HOME");
  EXPECT_TRUE(is_SoundStore(home.main_Db()));
  Store after(home.main_Db());
  EXPECT_EQ(count_Tickets(after, kPeriod), kAll);
  EXPECT_EQ(after.value(R"(SELECT count(*) FROM "日志表" WHERE "过滤标记"<>0)"), 0);
}

TEST_F(TicketPageTest, ExportsWhatTheDialogSaysAndOpensIt) {
  const auto target = home_.path() / "LotmereTemp.txt";
  desk_.dialogs = {[](QDialog&) { return false; }};
  press("cmmTouZhu_3");
  EXPECT_FALSE(std::filesystem::exists(target)) << "cancelled";
  init();
  desk_.dialogs = {[](QDialog& dialog) {
    EXPECT_TRUE(dialog.findChild<QCheckBox*>(QStringLiteral("Check_ToFile_2"))->isChecked());
    dialog.findChild<QCheckBox*>(QStringLiteral("Check_ToFile_1"))->setChecked(true);
    dialog.findChild<QComboBox*>(QStringLiteral("ComboDCgesi"))->setCurrentIndex(1);
    return true;
  }};
  press("cmmTouZhu_3");
  EXPECT_TRUE(lotmere::test::read_File(target).starts_with("2026091,,,08,09,10,11,12,13|08\r\n"));
  ASSERT_EQ(desk_.opened.size(), 1);
  EXPECT_EQ(desk_.opened[0].toLocalFile().toStdString(), target.string());
  EXPECT_NE(log().find("号码导出完成．"), std::string::npos);
  desk_.opens = false;
  desk_.dialogs = {[](QDialog& dialog) {
    EXPECT_TRUE(dialog.findChild<QCheckBox*>(QStringLiteral("Check_ToFile_1"))->isChecked()) << "kept";
    return true;
  }};
  press("cmmTouZhu_3");
  EXPECT_NE(told().find("LotmereTemp.txt"), std::string::npos)
      << "no editor: the person learns where the file is";
}

TEST_F(TicketPageTest, ImportsInTheChosenFormat) {
  const auto file = home_.path() / "号码.txt";
  std::ofstream(file) << "2026092 01 02 03 04 05 06 + 07\n2026092 01 02 03 04 05 34 + 07\n";
  desk_.files = {QString::fromStdString(file.string())};
  desk_.dialogs = {[](QDialog& dialog) {
    auto* period = dialog.findChild<QLineEdit*>(QStringLiteral("Txt_FromFileQS"));
    EXPECT_EQ(period->text(), QStringLiteral("2026091"));
    period->clear();
    QTest::keyClicks(period, QStringLiteral("20260911"));
    EXPECT_EQ(period->text(), QStringLiteral("20260911"));
    dialog.findChild<QPushButton*>(QStringLiteral("cmm_ToFileOK"))->click();
    EXPECT_EQ(dialog.result(), QDialog::Rejected) << "the period has to have seven digits";
    dialog.findChild<QRadioButton*>(QStringLiteral("Option_GeShi_1"))->click();
    EXPECT_FALSE(period->isEnabled());
    dialog.findChild<QPushButton*>(QStringLiteral("cmm_ToFileOK"))->click();
    return dialog.result() == QDialog::Accepted;
  }};
  press("cmmTouZhu_4");
  EXPECT_EQ(told(), "数据导入完成，共导入：１ 注！跳过了 １ 行，第一处在第 ２ 行。");
  ASSERT_EQ(model().rowCount(), 1);
  EXPECT_EQ(model().index(0, 1).data().toInt(), 2026092);
  desk_.files = {QString()};
  press("cmmTouZhu_4");
  EXPECT_EQ(desk_.told.size(), 2) << "no file, nothing more is said";
}

TEST_F(TicketPageTest, ChecksShowHitsAsBallsAndDeletionAsksFirst) {
  lotmere::test::put_Ticket(store(), 1, 1, 2026090, {{1, 2, 3, 9, 10, 11}, 7});
  lotmere::test::put_Ticket(store(), 2, 2, 2026091, {{1, 2, 3, 9, 10, 11}, 7});
  choose("tab_1");
  choose("tab_3");
  desk_.texts = {"2026090"};
  press("cmmTouZhu_6");
  EXPECT_EQ(desk_.proposed.back(), "2026090") << "the period of the current row";
  EXPECT_EQ(told(), "开奖核对完成,结果请查看右边的操作提示！");
  const auto face = [&](int column, int row = 0) { return model().index(row, column).data(kBallRole); };
  EXPECT_FALSE(face(2, 1).isValid() || face(8, 1).isValid()) << "a ticket of another period has no hits";
  EXPECT_EQ(face(2).toInt(), static_cast<int>(BallFace::red));
  EXPECT_FALSE(face(5).isValid());
  EXPECT_EQ(face(8).toInt(), static_cast<int>(BallFace::blue));
  const auto caption = [&](int column) { return model().headerData(column, Qt::Horizontal, 0).toString(); };
  EXPECT_EQ(caption(9) + model().index(0, 9).data().toString(), QStringLiteral("红球中3"));
  EXPECT_EQ(caption(10) + model().index(0, 10).data().toString(), QStringLiteral("蓝球中1"));
  EXPECT_EQ(model().index(0, 7).data(Qt::ForegroundRole), QVariant(colours().red_text));
  EXPECT_EQ(model().index(0, 8).data(Qt::ForegroundRole), QVariant(colours().blue_text));
  desk_.texts = {"2020001"};
  part<QTableView>("TDBGrid_RZ").setCurrentIndex(model().index(1, 4));
  press("cmmTouZhu_6");
  EXPECT_EQ(desk_.proposed.back(), "2026091") << "of the row that is current now";
  EXPECT_EQ(desk_.told.back().title, "出错啦!");

  desk_.choices = {std::nullopt, 0};
  press("cmmTouZhu_5");
  EXPECT_EQ(stored(), 2);
  press("cmmTouZhu_5");
  EXPECT_EQ(model().rowCount(), 0);
}

// The colour of the ball in the middle of a picture, looked at beside the number and the light.
QColor ball_Colour(const QImage& picture, int size) {
  return picture.pixelColor(static_cast<int>(picture.width() / 2.0 + size * 0.27),
                            static_cast<int>(picture.height() / 2.0 - size * 0.2));
}
// Alike but for the shade.
bool are_Alike(const QColor& found, const QColor& colour) {
  return std::max({std::abs(found.red() - colour.red()), std::abs(found.green() - colour.green()),
                   std::abs(found.blue() - colour.blue())}) < 16;
}

class NumberPadTest : public WindowTest {
 protected:
  void SetUp() override {
    open_Settled();
    choose("tab_2");
  }
  [[nodiscard]] PadButton& button(int code) {
    return part<PadButton>(
        QStringLiteral("cmm_C7_%1").arg(code, 2, 10, QLatin1Char('0')).toUtf8().constData());
  }
  void turn(const char* strip, int tab) {
    auto& tabs = part<QTabBar>(strip);
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(tab).center());
  }
  [[nodiscard]] QString count() { return part<QLabel>("Text_ChoseNumberTip").text(); }
  [[nodiscard]] QColor face(int code) {
    const QImage picture = button(code).grab().toImage();
    return ball_Colour(picture, std::min({picture.width(), picture.height(), 52}) - 4);
  }
  [[nodiscard]] bool is_Painted(int code, const QColor& colour) { return are_Alike(face(code), colour); }
};

TEST(BallTest, EachFaceHasItsColour) {
  const std::pair<BallFace, QColor> faces[] = {
      {BallFace::red, colours().red_ball},
      {BallFace::blue, colours().blue_ball},
      {BallFace::tuo, colours().tuo},
      {BallFace::dan, colours().dan},
      {BallFace::plain, colours().plain},
      {BallFace::low_chance, colours().low_chance},
      {BallFace::locked, QApplication::palette().color(QPalette::Window)}};
  for (const auto& [face, colour] : faces) {
    QImage picture(60, 60, QImage::Format_RGB32);
    QPainter painter(&picture);
    paint_Ball(painter, picture.rect(), QStringLiteral("08"), face);
    painter.end();
    EXPECT_TRUE(are_Alike(ball_Colour(picture, 60), colour)) << static_cast<int>(face);
  }
}

TEST_F(NumberPadTest, ColoursQuestionsAndLimitsFollowTheStore) {
  pick({20, 21, 22, 23, 24, 25, 26});
  EXPECT_EQ(button(20).state(), PickState::tuo);
  EXPECT_TRUE(count().contains(QStringLiteral("已选红球“拖码”个数： ７")));
  EXPECT_TRUE(is_Painted(20, colours().tuo) && !is_Painted(19, colours().tuo));
  turn("TabStrip_Qiaqu", 1);
  EXPECT_EQ(told(), "现在点击数字按钮可以把相应的数设为红球的“胆码”。");
  desk_.answers = {false, true};
  pick({20});
  EXPECT_EQ(button(20).state(), PickState::tuo) << "no leaves it";
  pick({20, 27, 28, 29, 30, 31});
  EXPECT_EQ(told(), "红球“胆码”最多只设 ５ 个.");
  EXPECT_EQ(button(30).state(), PickState::dan);
  EXPECT_TRUE(is_Painted(30, colours().dan));
  EXPECT_EQ(button(30).accessibleName(), QStringLiteral("红球 30 胆码"));
  EXPECT_EQ(button(31).state(), PickState::none);
  EXPECT_EQ(load_Selection(store()).red[20], PickState::dan);
  QTest::keyClick(&button(20), Qt::Key_Space);
  EXPECT_EQ(button(20).state(), PickState::none) << "the keyboard does the same, without a question";
  press("cmm_clsQ");
  EXPECT_EQ(button(30).state(), PickState::none);
}

TEST_F(NumberPadTest, ALoneBlueDanLocksTheOthersUntilItIsTakenOff) {
  pick({108, 33});
  turn("TabStrip_Houqu", 1);
  EXPECT_EQ(told(), "现在点击数字按钮可以把相应的数设为蓝球的“胆码”。");
  pick({110});
  EXPECT_EQ(button(110).state(), PickState::dan);
  EXPECT_EQ(button(108).state(), PickState::none);
  EXPECT_FALSE(button(108).isEnabled());
  EXPECT_TRUE(is_Painted(110, colours().dan));
  EXPECT_NE(face(108), face(20)) << "locked, and free";
  pick({110});
  EXPECT_TRUE(button(108).isEnabled());
  pick({110});
  press("cmm_clsH");
  EXPECT_TRUE(button(108).isEnabled());
  EXPECT_EQ(button(110).state(), PickState::none);
  EXPECT_EQ(load_Selection(store()).red[33], PickState::tuo) << "the reds stay";
  EXPECT_EQ(button(110).accessibleName(), QStringLiteral("蓝球 10 未选"));
}

TEST_F(NumberPadTest, MarkedNumbersWarnAndAreTakenAllTheSame) {
  store().db().exec("UPDATE 概率表 SET 概率=-(号码 IN (2,33,101,116))");
  press("cmm_clsQ");  // which shows the pad anew
  const LowChanceNumbers low = low_ChanceNumbers(store());
  for (const int code : {1, 2, 3, 16, 33, 101, 102, 103, 116})
    EXPECT_EQ(button(code).is_LowChance(), code == 2 || code == 33 || code == 101 || code == 116) << code;
  pick({low.reds.front()});
  EXPECT_EQ(told(), low_ChanceWarning(low.reds.front(), 2026091));
  EXPECT_EQ(button(low.reds.front()).state(), PickState::tuo);
}

TEST_F(NumberPadTest, DefaultsComeBackOnlyWhenThePersonSaysSo) {
  pick({33});
  desk_.choices = {std::nullopt, 1, 0};
  choose("huanyuan");
  EXPECT_EQ(desk_.buttons, (std::vector<std::string>{"还原", "取消"}));
  choose("huanyuan");
  EXPECT_EQ(load_Selection(store()).red[33], PickState::tuo);
  choose("huanyuan");
  EXPECT_EQ(load_Selection(store()).red[33], PickState::none);
  EXPECT_EQ(told(), "完成，过滤条件已经还原为默认值！");
  pick({9});
  choose("mnu_TiaojianView");
  EXPECT_TRUE(
      part<QPlainTextEdit>("Text_TiaoJianList").toPlainText().contains(QStringLiteral("红球“拖码”： ０９")));
}

}  // namespace
}  // namespace lotmere::ui::test

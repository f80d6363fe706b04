// From the start of the process to the ready window, users, and the end.
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QRadioButton>
#include <QScopeGuard>
#include <QTimer>
#include <csignal>
#include <set>

#include "conditions/condition_store.hpp"
#include "start/transfer.hpp"
#include "store/store_files.hpp"
#include "support/faulty_files.hpp"
#include "ui/shell/end_watch.hpp"
#include "ui/shell/tip_dialog.hpp"
#include "users/profile.hpp"
#include "window_fixture.hpp"

namespace lotmere::ui::test {
namespace {

// Types a name into the box and texts into the lines of a dialog, and presses a button of it; whether that
// was the end of the dialog.
bool fill(QDialog& dialog, const char* box, const char* name,
          std::initializer_list<std::pair<const char*, const char*>> lines, const char* button) {
  partOf<QComboBox>(dialog, box).setCurrentText(QString::fromUtf8(name));
  for (const auto& [line, text] : lines) partOf<QLineEdit>(dialog, line).setText(QString::fromUtf8(text));
  partOf<QPushButton>(dialog, button).click();
  return dialog.result() == QDialog::Accepted;
}

class StartTest : public WindowTest {
 protected:
  // Answers of the login dialog.
  static bool logIn(QDialog& dialog, const char* name, const char* password,
                    const char* button = "okButton") {
    return fill(dialog, "userName", name, {{"password", password}}, button);
  }
  static std::function<bool(QDialog&)> comeNew(const char* name, const char* password) {
    return [=](QDialog& dialog) {
      EXPECT_FALSE(logIn(dialog, name, password, "newUserButton"));
      return logIn(dialog, name, password);
    };
  }
  void putTickets(Store& store, int count) {
    for (int id = 1; id <= count; ++id)
      lotmere::test::putTicket(store, id, 1, 2026090 + id, {{1, 2, 3, 4, 5, 6}, 7});
  }
};

TEST_F(StartTest, FirstStartOfASingleUserEndsReadyAndOffersTheDownload) {
  desk_.dialogs = {[](QDialog& dialog) {
    partOf<QRadioButton>(dialog, "userMode.1").setChecked(true);
    partOf<QPushButton>(dialog, "okButton").click();
    return dialog.result() == QDialog::Accepted;
  }};
  desk_.choices = {3};
  EXPECT_TRUE(open().isVisible());
  EXPECT_EQ(userMode(store()), UserMode::single);
  EXPECT_FALSE(part<QMenu>("userMenu").menuAction()->isVisible());
  ASSERT_EQ(desk_.asked.size(), 1);
  EXPECT_TRUE(desk_.asked[0].starts_with("开奖记录不是最新的，是否需要更新到最新的数据．．．"));
  EXPECT_NE(desk_.asked[0].find("2007001 2007-01-02 01 05"), std::string::npos) << "what a list looks like";
  EXPECT_NE(text("statusPanel.1").find("不完整"), std::string::npos);
  EXPECT_NE(text("statusPanel.3").find("2026001 期"), std::string::npos);
  EXPECT_LE(window().minimumSizeHint().width(), 1240) << "fits a small screen with the longest status, too";
}

TEST_F(StartTest, AStartThatComesToNoEndSaysWhy) {
  desk_.dialogs = {[](QDialog& dialog) {
    partOf<QPushButton>(dialog, "exitButton").click();
    return false;
  }};
  {
    Program left(home_.home(), desk_, clock_);
    EXPECT_FALSE(left.start()) << "the first question is left, and asked again next time";
    EXPECT_EQ(userMode(left.store()), UserMode::unchosen);
  }
  lotmere::test::FaultyFiles files(1);
  std::filesystem::remove(home_.home().mainDb());
  std::filesystem::remove(home_.home().backupDb());
  EXPECT_FALSE(Program(home_.home(), desk_, clock_, files).start());
  ASSERT_EQ(desk_.told.size(), 2);
  EXPECT_TRUE(desk_.told[0].text.starts_with("文件操作失败：")) << desk_.told[0].text;
  EXPECT_TRUE(desk_.told[1].text.starts_with("请以管理员身份来运行程序！"));
  openSettled();
  window().setWindowState(Qt::WindowMinimized);
  const std::size_t before = desk_.told.size();
  EXPECT_FALSE(Program(home_.home(), desk_, clock_).start());
  EXPECT_TRUE(QTest::qWaitFor([this] { return !window().isMinimized(); }))
      << "a second start shows the first";
  EXPECT_EQ(desk_.told.size(), before);
  program_.reset();
  const auto lock = lockHome(home_.home());
  EXPECT_FALSE(Program(home_.home(), desk_, clock_).start());
  EXPECT_EQ(told(), "程序正在运行,不允许同时打开多个!!!") << "where something else holds the home";
}

TEST_F(StartTest, ADrawOfTodayIsNotMissingYetAndOneOfYesterdayIs) {
  openSettled();
  EXPECT_TRUE(desk_.asked.empty());
  clock_.day += std::chrono::days(1);
  desk_.answers = {false};
  open();
  EXPECT_EQ(desk_.asked.size(), 1);
  enterDraw(2026091, 8);
  EXPECT_NE(text("statusPanel.1").find("已更新"), std::string::npos);
  EXPECT_NE(text("statusPanel.3").find("2026092 期"), std::string::npos);
}

TEST_F(StartTest, SeveralUsersLogInSwitchAndKeepTheirOwnSelections) {
  settleHome(UserMode::multi);
  desk_.dialogs = {[this](QDialog& dialog) {
    EXPECT_FALSE(logIn(dialog, "甲", "1")) << "only the button makes a user";
    EXPECT_NE(told().find("“我是新用户”"), std::string::npos);
    EXPECT_EQ(partOf<QLineEdit>(dialog, "password").echoMode(), QLineEdit::Password);
    EXPECT_TRUE(comeNew("甲", "1")(dialog));
    EXPECT_EQ(partOf<QLineEdit>(dialog, "password").echoMode(), QLineEdit::Normal)
        << "while a new one is typed";
    return true;
  }};
  desk_.answers = {true};
  open();
  EXPECT_TRUE(part<QMenu>("userMenu").menuAction()->isVisible());
  EXPECT_EQ(utf8(window().windowTitle()), "甲  —— Lotmere 双色球");
  choose("page.2");
  pick({33});
  click("metricSwitch.0");
  store().db().exec(R"(UPDATE "号码特性" SET "区间1"="号码"<=4)");
  putTickets(store(), 2);
  // What is this user's own: the pick of 33, the switch on the sheet, the interval counts of the draw 1 to 6.
  const auto shown_state = [&] {
    const auto counted = store().value(R"(SELECT "区间1" FROM "历史记录" WHERE "期号"=2026090)");
    choose("page.2");  // whose sheet counts the newest draw anew
    return std::tuple(selectionOf(loadConditionSet(store())).red[33],
                      part<QAbstractButton>("metricSwitch.0").isChecked(), counted);
  };
  desk_.choices = {std::nullopt, 0};  // Esc, then the button that empties the tickets
  desk_.dialogs = {[](QDialog& dialog) {
                     EXPECT_FALSE(comeNew("乙", "2")(dialog)) << "tickets stand";
                     return logIn(dialog, "乙", "2");
                   },
                   [](QDialog& dialog) { return logIn(dialog, "甲", "1"); }};
  desk_.answers = {true, true};
  choose("users.switch");
  EXPECT_EQ(window().currentPage(), MainWindow::Page::history);
  EXPECT_EQ(utf8(window().windowTitle()), "乙  —— Lotmere 双色球");
  EXPECT_EQ(part<QAbstractItemView>("ticketGrid").model()->rowCount(), 0);
  EXPECT_EQ(shown_state(), std::tuple(PickState::none, true, 6));
  choose("users.switch");
  EXPECT_EQ(shown_state(), std::tuple(PickState::tuo, false, 4));

  desk_.dialogs = {[](QDialog&) { return false; },
                   [](QDialog& dialog) { return logIn(dialog, "", "", "exitButton"); }};
  choose("users.switch");
  EXPECT_TRUE(window().isVisible()) << "a closed dialog changes nothing";
  EXPECT_EQ(currentUser(store()), "甲");
  choose("users.switch");
  EXPECT_TRUE(closes());
}

// 甲 can't get in any more, and 乙 is no longer there.
TEST_F(StartTest, AForgottenPasswordAndAUserWhoLeftAreSeenToAtTheLoginAndInTheMenu) {
  settleHome(UserMode::multi);
  for (const char* name : {"甲", "乙"})
    addUser(home_.store(), name, hashPassword("forgotten", HashLimits::lowest()));
  const auto change = [](QDialog& dialog, const char* before, const char* again) {
    fill(dialog, "managedUser", "甲",
         {{"txtOldPWD", before}, {"txtNewPWD", "new"}, {"txtNewPWDAgain", again}}, "changePasswordButton");
  };
  desk_.choices = {0};
  desk_.dialogs = {[](QDialog& dialog) {
                     EXPECT_FALSE(logIn(dialog, "甲", "new"));
                     EXPECT_FALSE(logIn(dialog, "甲", "", "manageUsersButton"));
                     return logIn(dialog, "甲", "new");
                   },
                   [&](QDialog& dialog) {
                     EXPECT_EQ(partOf<QComboBox>(dialog, "managedUser").count(), 2) << "all but the guest";
                     EXPECT_EQ(textOf(dialog, "managedUser"), "甲") << "who was typed";
                     change(dialog, "", "old");
                     EXPECT_EQ(told(), "两次输入的新密码不一样。");
                     for (const char* before : {"", "new"}) {  // forgotten, which is asked about, and known
                       desk_.told.clear();
                       change(dialog, before, "new");
                       EXPECT_EQ(told(), "密码已更改。");
                     }
                     return false;
                   }};
  open();
  EXPECT_EQ(currentUser(store()), "甲");
  desk_.choices = {std::nullopt, 0};
  desk_.dialogs = {[&](QDialog& dialog) {
    for (const bool there : {true, false}) {
      fill(dialog, "managedUser", "乙", {}, "removeUserButton");
      EXPECT_EQ(findUser(store(), "乙").has_value(), there) << "Esc, and the button";
    }
    return false;
  }};
  choose("users.manage");
}

TEST_F(StartTest, TheExitAsksAndNoGoesOnAndYesMakesABackup) {
  const auto draws_in_backup = [&] {
    return Store(home_.home().backupDb()).value(R"(SELECT count(*) FROM "历史记录")");
  };
  openSettled();
  lotmere::test::putDraw(store(), 2026091, "2026-08-20", {{1, 2, 3, 4, 5, 6}, 8});
  desk_.answers = {false, true};
  EXPECT_FALSE(window().close());
  EXPECT_TRUE(window().isVisible());
  choose("program.exit");
  EXPECT_TRUE(closes());
  EXPECT_EQ(draws_in_backup(), 1) << "as the start left it";
  program_->finish();
  EXPECT_EQ(draws_in_backup(), 2);
  EXPECT_TRUE(desk_.told.empty());
}

TEST_F(StartTest, ASignalInTheMiddleOfARunEndsTheProgramInGoodOrder) {
  settleHome(UserMode::multi);
  desk_.dialogs = {comeNew("甲", "1")};
  desk_.answers = {true};
  open();
  const EndWatch watch;
  QObject::connect(&watch, &EndWatch::endAsked, &window(), [&] { program_->end(); });
  choose("page.2");
  pick({33});
  putTickets(store(), 3);
  desk_.on_look = [&] {
    if (!desk_.jobRunning() || desk_.isEnding()) return;
    std::raise(SIGTERM);
    QCoreApplication::processEvents();
  };
  desk_.texts = {"2026092"};
  choose("tickets.run");
  EXPECT_TRUE(closes());
  EXPECT_NE(desk_.runningText().text().find("用户中止,当前记录余：１ 注"), std::string::npos);
  EXPECT_EQ(desk_.asked.size(), 2) << "who the user is and which period to run, and nothing more";
  EXPECT_EQ(currentUser(store()), "");
  program_->finish();
  SQLite::Database profile(profileFile(home_.home(), "甲").string());
  EXPECT_EQ(profile.execAndGet(R"(SELECT "Value" FROM "过滤条件" WHERE "ID"=33)").getInt(), 1);
  EXPECT_EQ(Store(home_.home().backupDb()).value(R"(SELECT count(*) FROM "日志表")"), 3);
}

// With the real dialogs: the open one closes as on Esc, and no other one opens.
TEST_F(StartTest, ASignalClosesAnOpenQuestionWithoutAnAnswer) {
  settleHome();
  putTickets(home_.store(), 2);
  home_.close();
  WindowDesk desk;
  Program program(home_.home(), desk, clock_);
  ASSERT_TRUE(program.start());
  const EndWatch watch;
  QObject::connect(&watch, &EndWatch::endAsked, &desk, [&] { program.end(); });
  QTimer::singleShot(0, [] {
    EXPECT_NE(QApplication::activeModalWidget(), nullptr);
    std::raise(SIGHUP);
  });
  program.commands().action("tickets.clear")->trigger();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !program.window().isVisible(); }));
  EXPECT_EQ(program.store().value(R"(SELECT count(*) FROM "日志表")"), 2);
  constexpr std::string_view buttons[] = {"删除", "取消"};
  EXPECT_TRUE(!desk.ask("?") && desk.choose("?", buttons, 1) == 1 && !desk.askText("?", "", "x"));
}

TEST_F(StartTest, EverythingIsSavedToAFileAndReadBackByANewStart) {
  openSettled();
  choose("page.2");
  pick({33});
  const QString file = QString::fromStdString((home_.path() / "all.lotmere").string());
  desk_.files = {QString(), file, QString(), file, file};
  desk_.choices = {std::nullopt, 0};
  choose("store.save");
  EXPECT_TRUE(desk_.told.empty()) << "cancelled";
  choose("store.save");
  EXPECT_NE(told().find("all.lotmere"), std::string::npos);
  pick({1, 33});
  choose("store.restore");
  choose("store.restore");
  EXPECT_FALSE(restoreWaits(home_.home())) << "neither cancelled nor by Esc";
  choose("store.restore");
  EXPECT_TRUE(closes());
  program_->finish();
  EXPECT_TRUE(restoreWaits(home_.home()));
  open();
  EXPECT_EQ(selectionOf(loadConditionSet(store())).red[33], PickState::tuo);
  EXPECT_EQ(selectionOf(loadConditionSet(store())).red[1], PickState::none);
}

TEST_F(StartTest, ABackupThatCanNotBeMadeIsTold) {
  settleHome();
  ASSERT_TRUE(copyDatabase(home_.home().mainDb(), home_.home().backupDb(), realFiles()));
  std::filesystem::create_directories(home_.path() / "Lotmere.backup.db.new" / "full");
  open();
  ASSERT_EQ(desk_.told.size(), 1U);
  EXPECT_NE(told().find("备份没有更新：文件操作失败"), std::string::npos) << told();
}

TEST_F(StartTest, TheNextStartFindsTheWindowAsItWasLeftAndEachHomeHasItsOwn) {
  settleHome();
  open();
  window().resize(900, 600);
  part<FrozenGrid>("historyGrid").setColumnWidth(9, 133);
  choose("draws.showAll");
  choose("window.look");
  const auto leave_look = qScopeGuard([] { applyAppearance(*qApp, Appearance::light); });
  desk_.files = {QString::fromStdString((home_.path() / "a folder" / "all.lotmere").string())};
  std::filesystem::create_directory(home_.path() / "a folder");
  choose("store.save");
  desk_.answers = {true};
  window().close();
  EXPECT_TRUE(closes());
  open();
  EXPECT_EQ(window().size(), QSize(900, 600));
  EXPECT_EQ(part<FrozenGrid>("historyGrid").columnWidth(9), 133);
  EXPECT_TRUE(part<QRadioButton>("historySpan.1").isChecked());
  EXPECT_EQ(Remembered::look(home_.home().folder), Appearance::dark);
  desk_.files = {QString()};
  choose("draws.import");
  EXPECT_EQ(desk_.places.back(), (home_.path() / "a folder").string());
  lotmere::test::TempHome other;
  EXPECT_EQ(Remembered::look(other.home().folder), std::nullopt);
  EXPECT_TRUE(isOwnFile(home_.home(), home_.home().windowFile()));

  program_.reset();
  realFiles().writeWhole(home_.home().windowFile(),
                         "[window]\nplace=@ByteArray(zz)\nlook=7\n[columns\n\xff=1");
  open();
  EXPECT_GE(window().width(), 700) << "a damaged file counts as none";
}

TEST_F(StartTest, HelpAndTextsStandBehindTheirCommands) {
  openSettled();
  press("stepsButton");
  EXPECT_TRUE(told().starts_with("使用步骤："));
  for (const auto& [command, name, start] : {std::tuple{"help.rules", "rulesText", "双色球游戏规则"},
                                             {"help.definitions", "definitionsText", "常用词的定义"}}) {
    choose(command);
    EXPECT_TRUE(part(name).isVisible());
    EXPECT_TRUE(text(name).starts_with(start)) << name;
  }
  for (const char* page : {"page.1", "draws.showTrend", "page.3", "intervals.divide", "help.rules"}) {
    choose(page);
    EXPECT_LE(window().minimumSizeHint().width(), 1008) << page << " fits a small screen";
    EXPECT_LE(window().minimumSizeHint().height(), 560) << page;
  }
  choose("help.about");
  EXPECT_NE(told().find(home_.path().string()), std::string::npos);
  EXPECT_NE(told().find("GPL"), std::string::npos);
  choose("page.1");
  part("entryField.1").setFocus();
  desk_.files = {QString()};
  QTest::keyClick(&part("entryField.1"), Qt::Key_E, Qt::ControlModifier);
  settle();
  EXPECT_TRUE(desk_.files.empty()) << "the export, from within a field";
  choose("help.rules");
  auto& tabs = part<QTabBar>("pageTabs");
  EXPECT_EQ(utf8(tabs.tabText(tabs.currentIndex())), "游戏规则");
  QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(0).center());
  EXPECT_EQ(window().currentPage(), MainWindow::Page::history) << "the tab of the page behind leads back";
  EXPECT_FALSE(tabs.isTabVisible(3));
}

TEST_F(StartTest, NoTwoCommandsShareAShortcutAndNoTwoEntriesOfAMenuAMnemonic) {
  openSettled();
  choose("page.2");
  std::set<QString> shortcuts;
  for (const QAction* action : commands().all()) {
    const QString keys = action->shortcut().toString();
    EXPECT_TRUE(keys.isEmpty() || shortcuts.insert(keys).second) << utf8(keys);
  }
  for (const QMenu* menu : window().menuBar()->findChildren<QMenu*>()) {
    std::set<QChar> mnemonics;
    for (const QAction* action : menu->actions()) {
      const qsizetype place = action->text().indexOf(QLatin1Char('&'));
      EXPECT_TRUE(place < 0 || mnemonics.insert(action->text()[place + 1]).second) << utf8(action->text());
    }
  }
}

// Real message boxes, driven as a user would.
TEST(WindowDeskTest, QuestionsAnswerWhatWasPressed) {
  WindowDesk desk;
  constexpr std::string_view buttons[] = {"删除", "替换", "取消"};
  const auto ask = [&] { return desk.ask("?") ? "yes" : "no"; };
  const auto choose = [&] { return std::to_string(desk.choose("?", buttons, 2)); };
  const auto ask_text = [&] { return desk.askText("?", "", "2026091").value_or("none"); };
  const auto tell = [&] { return desk.tell("<b>text</b>\r\nline", Tone::error), "told"; };
  const auto button = [](const char* caption) {
    return [=](QWidget& box) {
      for (auto* each : box.findChildren<QAbstractButton*>())
        if (utf8(each->text()) == caption) return each->click();
      ADD_FAILURE() << "no button " << caption;
      box.close();
    };
  };
  const auto key = [](Qt::Key pressed) { return [=](QWidget& box) { QTest::keyClick(&box, pressed); }; };
  const auto close = [](QWidget& box) { box.close(); };
  const struct {
    std::function<std::string()> ask;
    std::function<void(QWidget&)> press;
    const char* answer;
  } rows[] = {{ask, button("是(&Y)"), "yes"},
              {ask, button("否(&N)"), "no"},
              {ask, key(Qt::Key_Escape), "no"},
              {choose, button("替换"), "1"},
              {choose, key(Qt::Key_Escape), "2"},
              {choose, key(Qt::Key_Return), "2"},
              {choose, close, "2"},
              {tell, button("确定"), "told"},
              {ask_text, button("确定"), "2026091"},
              {ask_text, button("取消"), "none"}};
  for (const auto& row : rows) {
    QTimer::singleShot(0, [&] { row.press(*QApplication::activeModalWidget()); });
    EXPECT_EQ(row.ask(), row.answer) << &row - rows;
  }
}

TEST(WindowDeskTest, ATipCountsDownAndClosesItself) {
  TipDialog tip(QStringLiteral("text"), {}, nullptr);
  EXPECT_EQ(textOf(tip, "okButton"), "知道了 (10)");
  tip.findChild<QTimer*>(QStringLiteral("tipTimer"))->setInterval(1);
  EXPECT_EQ(tip.exec(), QDialog::Accepted);
  EXPECT_EQ(textOf(tip, "okButton"), "知道了 (0)");
}

TEST(ProgressControlTest, EndsAndValueAreCut) {
  WindowDesk desk;
  QWidget window;
  ProgressControl control(desk, &window);
  control.setMaximum(10);
  control.setMinimum(20);
  control.setMaximum(5);
  EXPECT_EQ(std::pair(control.minimum(), control.maximum()), std::pair(10, 10));
  control.setMinimum(0);
  control.setValue(99);
  EXPECT_EQ(textOf(control, "progressDone") + textOf(control, "progressAll"), "10/ 10");
  const StopScope scope(desk.course());
  control.begin(100, true);
  EXPECT_TRUE(control.stopEnabled() && !control.stopped() && !desk.course().stopRequested());
  QTest::mousePress(&partOf(control, "stopButton"), Qt::LeftButton);
  EXPECT_TRUE(control.stopped() && desk.course().stopRequested() && !control.stopEnabled());
  control.begin(50, true);
  EXPECT_FALSE(control.stopEnabled()) << "a job inside the stopped one";
  control.end();
  control.end();
  control.begin(100, false);
  EXPECT_FALSE(control.stopEnabled());
}

}  // namespace
}  // namespace lotmere::ui::test

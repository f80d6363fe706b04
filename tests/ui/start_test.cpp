// From the start of the process to the ready window, users, and the end.
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QRadioButton>
#include <QTimer>
#include <csignal>
#include <set>

#include "core/store_files.hpp"
#include "core/transfer.hpp"
#include "support/faulty_files.hpp"
#include "ui/end_watch.hpp"
#include "ui/first_run_dialog.hpp"
#include "ui/login_dialog.hpp"
#include "ui/text.hpp"
#include "ui/tip_dialog.hpp"
#include "users/login.hpp"
#include "users/profile.hpp"
#include "window_fixture.hpp"

namespace lotmere::ui::test {
namespace {

class StartTest : public WindowTest {
 protected:
  // Answers the first-run question.
  static std::function<bool(QDialog&)> choose_Mode(UserMode mode) {
    return [mode](QDialog& dialog) {
      dialog.findChild<QRadioButton*>(QStringLiteral("Option_userMode_%1").arg(static_cast<int>(mode)))
          ->setChecked(true);
      dialog.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
      return dialog.result() == QDialog::Accepted;
    };
  }
  // Types name and password into the login and presses a button of it.
  static std::function<bool(QDialog&)> log_In(const char* name, const char* password,
                                              const char* button = "cmdOK") {
    return [=](QDialog& dialog) {
      dialog.findChild<QComboBox*>(QStringLiteral("Combo_userName"))->setCurrentText(QString::fromUtf8(name));
      dialog.findChild<QLineEdit*>(QStringLiteral("txtPWD"))->setText(QString::fromUtf8(password));
      dialog.findChild<QPushButton*>(QString::fromUtf8(button))->click();
      return dialog.result() == QDialog::Accepted;
    };
  }
  [[nodiscard]] bool user_MenuShown() { return part<QMenu>("mnu_User").menuAction()->isVisible(); }
};

TEST_F(StartTest, FirstStartOfASingleUserEndsReadyAndOffersTheDownload) {
  desk_.dialogs = {choose_Mode(UserMode::single)};
  desk_.answers = {false};
  MainWindow& window = open();
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(user_Mode(store()), UserMode::single);
  EXPECT_FALSE(user_MenuShown());
  ASSERT_EQ(desk_.asked.size(), 1);
  EXPECT_EQ(desk_.asked[0], "开奖记录不是最新的，是否需要更新到最新的数据．．．");
  EXPECT_TRUE(part<QLabel>("StatusBar_1").text().contains(QStringLiteral("不完整")));
  EXPECT_TRUE(part<QLabel>("StatusBar_3").text().contains(QStringLiteral("2026001 期")));
  EXPECT_LE(window.minimumSizeHint().width(), 1240) << "fits a small screen with the longest status, too";
}

TEST_F(StartTest, LeavingTheFirstQuestionEndsTheProgramAndAsksAgainNextTime) {
  desk_.dialogs = {[](QDialog& dialog) {
    dialog.findChild<QPushButton*>(QStringLiteral("cmd_End"))->click();
    return false;
  }};
  Program program(home_.home(), desk_, clock_);
  EXPECT_FALSE(program.start());
  EXPECT_EQ(user_Mode(program.store()), UserMode::unchosen);
}

TEST_F(StartTest, ASecondStartSaysSoAndTouchesNothing) {
  open_Settled();
  const std::string before = lotmere::test::read_File(home_.home().main_Db());
  Program second(home_.home(), desk_, clock_);
  EXPECT_FALSE(second.start());
  EXPECT_EQ(told(), "程序正在运行,不允许同时打开多个!!!");
  EXPECT_EQ(lotmere::test::read_File(home_.home().main_Db()), before);
}

TEST_F(StartTest, AFailedStartSaysWhy) {
  lotmere::test::FaultyFiles files(1);
  Program program(home_.home(), desk_, clock_, files);
  EXPECT_FALSE(program.start());
  ASSERT_EQ(desk_.told.size(), 2);
  EXPECT_TRUE(desk_.told[0].text.starts_with("文件操作失败：")) << desk_.told[0].text;
  EXPECT_TRUE(desk_.told[1].text.starts_with("请以管理员身份来运行程序！"));
  EXPECT_EQ(desk_.told[0].tone, Tone::error);
}

TEST_F(StartTest, ADrawOfTodayIsNotMissingYetAndOneOfYesterdayIs) {
  settle_Home(home_.store());
  clock_.day = std::chrono::sys_days{std::chrono::August / 20 / 2026};
  open();
  EXPECT_TRUE(desk_.asked.empty());
  program_.reset();
  clock_.day += std::chrono::days(1);
  desk_.answers = {false};
  open();
  EXPECT_EQ(desk_.asked.size(), 1);
}

TEST_F(StartTest, SeveralUsersLogInSwitchAndKeepTheirOwnSelections) {
  settle_Home(home_.store());
  home_.store().query(R"(UPDATE "用户模式" SET "模式"=2)").run();
  desk_.dialogs = {[this](QDialog& dialog) {
    EXPECT_FALSE(log_In("", "x")(dialog)) << "no name";
    EXPECT_FALSE(log_In("甲", "1")(dialog)) << "only the button makes a user";
    EXPECT_TRUE(shown(told()).contains(QStringLiteral("“我是新用户”")));
    EXPECT_FALSE(log_In("甲", "1", "cmd_newUser")(dialog));
    EXPECT_FALSE(log_In("甲", "1")(dialog)) << "no is answered";
    return log_In("甲", "1")(dialog);
  }};
  desk_.answers = {false, true};
  MainWindow& window = open();
  EXPECT_EQ(desk_.told.front().text, "用户名不能为空！");
  EXPECT_TRUE(user_MenuShown());
  EXPECT_EQ(window.windowTitle(), QStringLiteral("甲  —— Lotmere 双色球"));
  choose("tab_2");
  pick({33});
  const auto used = [&] { return part<QCheckBox>("Check_useTiaojiao_0").isChecked(); };
  EXPECT_TRUE(used());
  part<QCheckBox>("Check_useTiaojiao_0").click();
  store().db().exec(R"(UPDATE "号码特性" SET "区间1"="号码"<=4)");
  const auto counted = [&] {
    return store().value(R"(SELECT "区间1" FROM "历史记录" WHERE "期号"=2026090)");
  };

  desk_.answers = {true};
  desk_.dialogs = {[](QDialog& dialog) {
    EXPECT_FALSE(log_In("乙", "2", "cmd_newUser")(dialog));
    return log_In("乙", "2")(dialog);
  }};
  choose("mnu_UserQiehuan");
  EXPECT_EQ(current_User(store()), "乙");
  EXPECT_EQ(window.current_Page(), MainWindow::Page::history);
  EXPECT_EQ(load_Selection(store()).red[33], PickState::none);
  EXPECT_EQ(counted(), 6) << "the counts are those of this user's intervals";
  choose("tab_2");
  EXPECT_TRUE(used()) << "and the sheet shows this user's switches";

  lotmere::test::put_Ticket(store(), 1, 1, 2026091, {{1, 2, 3, 4, 5, 6}, 7});
  desk_.choices = {std::nullopt, 0};  // Esc, then the button that empties them
  desk_.dialogs = {[](QDialog& dialog) {
    EXPECT_FALSE(log_In("甲", "wrong")(dialog));
    EXPECT_FALSE(log_In("甲", "1")(dialog)) << "tickets stand";
    return log_In("甲", "1")(dialog);
  }};
  choose("mnu_UserQiehuan");
  EXPECT_EQ(told(), "密码错误！(注意大小写区分)");
  EXPECT_TRUE(desk_.choices.empty());
  EXPECT_EQ(store().value(R"(SELECT count(*) FROM "日志表")"), 0);
  EXPECT_EQ(window.windowTitle(), QStringLiteral("甲  —— Lotmere 双色球"));
  EXPECT_EQ(load_Selection(store()).red[33], PickState::tuo);
  EXPECT_EQ(counted(), 4);
  choose("tab_2");
  EXPECT_FALSE(used());

  desk_.dialogs = {[](QDialog&) { return false; }};
  choose("mnu_UserQiehuan");
  EXPECT_TRUE(window.isVisible()) << "a closed dialog changes nothing";
  EXPECT_EQ(current_User(store()), "甲");
  desk_.dialogs = {log_In("", "", "cmd_End")};
  choose("mnu_UserQiehuan");
  EXPECT_TRUE(QTest::qWaitFor([&] { return !window.isVisible(); }));
}

TEST_F(StartTest, TheNewUserButtonShowsThePasswordWhileItIsTypedAndTheGuestIsToldHowLongSettingsLast) {
  Store& store = home_.store();
  settle_Home(store);
  store.query(R"(UPDATE "用户模式" SET "模式"=2)").run();
  desk_.dialogs = {[](QDialog& dialog) {
    auto* password = dialog.findChild<QLineEdit*>(QStringLiteral("txtPWD"));
    EXPECT_EQ(password->echoMode(), QLineEdit::Password);
    dialog.findChild<QPushButton*>(QStringLiteral("cmd_newUser"))->click();
    EXPECT_EQ(password->echoMode(), QLineEdit::Normal);
    return log_In("临时用户", "")(dialog);
  }};
  open();
  EXPECT_EQ(told(), new_UserText());
  ASSERT_EQ(desk_.tips.size(), 1);
  EXPECT_EQ(desk_.tips[0].text, "临时用户的设置不保存，只保留到下一次登录。");
}

// 甲 can't get in any more, and 乙 is no longer there.
TEST_F(StartTest, AForgottenPasswordAndAUserWhoLeftAreSeenToAtTheLoginAndInTheMenu) {
  settle_Home(home_.store());
  home_.store().query(R"(UPDATE "用户模式" SET "模式"=2)").run();
  for (const char* name : {"甲", "乙"})
    add_User(home_.store(), name, hash_Password("forgotten", HashLimits::lowest()));
  const auto type = [](QDialog& dialog, const char* name, std::initializer_list<const char*> passwords,
                       const char* button) {
    dialog.findChild<QComboBox*>(QStringLiteral("Combo_manageUser"))->setCurrentText(QString::fromUtf8(name));
    const char* const* password = passwords.begin();
    for (const char* line : {"txtOldPWD", "txtNewPWD", "txtNewPWDAgain"})
      dialog.findChild<QLineEdit*>(QString::fromUtf8(line))->setText(QString::fromUtf8(*password++));
    dialog.findChild<QPushButton*>(QString::fromUtf8(button))->click();
  };
  desk_.choices = {0};
  desk_.dialogs = {[&](QDialog& dialog) {
                     EXPECT_FALSE(log_In("甲", "new")(dialog));
                     EXPECT_FALSE(log_In("甲", "", "cmd_manageUsers")(dialog));
                     return log_In("甲", "new")(dialog);
                   },
                   [&](QDialog& dialog) {
                     EXPECT_EQ(dialog.findChild<QComboBox*>()->count(), 2) << "all but the guest";
                     EXPECT_EQ(dialog.findChild<QComboBox*>()->currentText(), QStringLiteral("甲"));
                     type(dialog, "甲", {"", "new", "old"}, "cmdChangePWD");
                     EXPECT_EQ(told(), "两次输入的新密码不一样。");
                     type(dialog, "甲", {"", "new", "new"}, "cmdChangePWD");
                     EXPECT_EQ(told(), "密码已更改。");
                     return false;
                   }};
  open();
  EXPECT_EQ(current_User(store()), "甲");

  desk_.choices = {std::nullopt, 0};
  desk_.dialogs = {[&](QDialog& dialog) {
    type(dialog, "甲", {"new", "newer", "newer"}, "cmdChangePWD");
    type(dialog, "甲", {"", "", ""}, "cmdRemoveUser");
    EXPECT_TRUE(shown(told()).contains(QStringLiteral("当前用户")));
    type(dialog, "乙", {"", "", ""}, "cmdRemoveUser");
    EXPECT_TRUE(find_User(store(), "乙")) << "Esc";
    type(dialog, "乙", {"", "", ""}, "cmdRemoveUser");
    return false;
  }};
  choose("mnu_UserManage");
  EXPECT_FALSE(find_User(store(), "乙"));
  EXPECT_TRUE(is_HashOf(find_User(store(), "甲")->password, "newer"));
}

TEST_F(StartTest, TheExitAsksAndNoGoesOnAndYesMakesABackup) {
  const auto draws_InBackup = [&] {
    return Store(home_.home().backup_Db()).value(R"(SELECT count(*) FROM "历史记录")");
  };
  MainWindow& window = open_Settled();
  lotmere::test::put_Draw(store(), 2026091, "2026-08-20", {{1, 2, 3, 4, 5, 6}, 8});
  desk_.answers = {false};
  EXPECT_FALSE(window.close());
  EXPECT_TRUE(window.isVisible());
  desk_.answers = {true};
  choose("mnu_Exit");
  EXPECT_TRUE(QTest::qWaitFor([&] { return !window.isVisible(); }));
  EXPECT_EQ(draws_InBackup(), 1) << "as the start left it";
  program_->finish();
  EXPECT_TRUE(is_SoundStore(home_.home().backup_Db()));
  EXPECT_EQ(draws_InBackup(), 2);
  EXPECT_TRUE(desk_.told.empty());
}

TEST_F(StartTest, ASignalInTheMiddleOfARunEndsTheProgramInGoodOrder) {
  settle_Home(home_.store());
  home_.store().query(R"(UPDATE "用户模式" SET "模式"=2)").run();
  desk_.dialogs = {[](QDialog& dialog) {
    EXPECT_FALSE(log_In("甲", "1", "cmd_newUser")(dialog));
    return log_In("甲", "1")(dialog);
  }};
  desk_.answers = {true};
  MainWindow& window = open();
  const EndWatch watch;
  QObject::connect(&watch, &EndWatch::end_Asked, &window, [&] { program_->end(); });
  choose("tab_2");
  pick({33});
  for (int id = 1; id <= 3; ++id)
    lotmere::test::put_Ticket(store(), id, 1, 2026090 + id, {{1, 2, 3, 4, 5, 6}, 7});
  desk_.on_serve = [&] {
    if (!desk_.job_Running() || desk_.is_Ending()) return;
    std::raise(SIGTERM);
    QCoreApplication::processEvents();
  };
  desk_.texts = {"2026092"};
  choose("mnu_ShengCeng_1");
  EXPECT_TRUE(QTest::qWaitFor([&] { return !window.isVisible(); }));
  EXPECT_NE(desk_.running_Text().text().find("用户中止,当前记录余：１ 注"), std::string::npos);
  EXPECT_EQ(desk_.asked.size(), 2) << "who the user is and which period to run, and nothing more";
  EXPECT_EQ(current_User(store()), "");
  program_->finish();
  SQLite::Database profile(profile_File(home_.home(), "甲").string());
  EXPECT_EQ(profile.execAndGet(R"(SELECT "Value" FROM "过滤条件" WHERE "ID"=33)").getInt(), 1);
  EXPECT_EQ(Store(home_.home().backup_Db()).value(R"(SELECT count(*) FROM "日志表")"), 3);
}

// With the real dialogs: the open one closes as on Esc, and no other one opens.
TEST_F(StartTest, ASignalClosesAnOpenQuestionWithoutAnAnswer) {
  settle_Home(home_.store());
  for (int id = 1; id <= 2; ++id)
    lotmere::test::put_Ticket(home_.store(), id, 1, 2026090 + id, {{1, 2, 3, 4, 5, 6}, 7});
  home_.close();
  WindowDesk desk;
  Program program(home_.home(), desk, clock_);
  ASSERT_TRUE(program.start());
  const EndWatch watch;
  QObject::connect(&watch, &EndWatch::end_Asked, &desk, [&] { program.end(); });
  QTimer::singleShot(0, [] {
    EXPECT_NE(QApplication::activeModalWidget(), nullptr);
    std::raise(SIGHUP);
  });
  program.commands().action("mnu_ShengCeng_5")->trigger();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !program.window().isVisible(); }));
  EXPECT_EQ(program.store().value(R"(SELECT count(*) FROM "日志表")"), 2);
  constexpr std::string_view buttons[] = {"删除", "取消"};
  EXPECT_TRUE(!desk.ask("?") && desk.choose("?", buttons, 1) == 1 && !desk.ask_Text("?", "", "x"));
}

TEST_F(StartTest, EverythingIsSavedToAFileAndReadBackByANewStart) {
  open_Settled();
  choose("tab_2");
  pick({33});
  const QString file = QString::fromStdString((home_.path() / "all.lotmere").string());
  desk_.files = {QString(), file};
  choose("mnu_StoreSave");
  EXPECT_TRUE(desk_.told.empty()) << "cancelled";
  choose("mnu_StoreSave");
  EXPECT_NE(told().find("all.lotmere"), std::string::npos);
  pick({1, 33});

  desk_.files = {QString(), file, file};
  desk_.choices = {std::nullopt, 0};
  choose("mnu_StoreRestore");
  choose("mnu_StoreRestore");
  EXPECT_FALSE(restore_Waits(home_.home())) << "Esc changes nothing";
  choose("mnu_StoreRestore");
  EXPECT_TRUE(QTest::qWaitFor([&] { return !program_->window().isVisible(); }));
  program_->finish();
  EXPECT_TRUE(restore_Waits(home_.home()));
  program_.reset();
  open();
  EXPECT_EQ(load_Selection(store()).red[33], PickState::tuo);
  EXPECT_EQ(load_Selection(store()).red[1], PickState::none);
}

TEST_F(StartTest, ABackupThatCanNotBeMadeIsTold) {
  settle_Home(home_.store());
  ASSERT_TRUE(copy_Database(home_.home().main_Db(), home_.home().backup_Db(), real_Files()));
  std::filesystem::create_directories(home_.path() / "Lotmere.backup.db.new" / "full");
  open();
  ASSERT_EQ(desk_.told.size(), 1U);
  EXPECT_NE(told().find("备份没有更新：文件操作失败"), std::string::npos) << told();
}

TEST_F(StartTest, HelpAndTextsStandBehindTheirCommands) {
  MainWindow& window = open_Settled();
  press("cmm_Autochosenumber");
  EXPECT_TRUE(told().starts_with("使用步骤："));
  for (const auto& [command, name, start] : {std::tuple{"mnu_youxiguizhe", "Text_yxgz", "双色球游戏规则"},
                                             {"mnu_TiaojianDingYi", "Text_dingyi", "常用词的定义"}}) {
    choose(command);
    EXPECT_EQ(window.current_Page(), MainWindow::Page::other);
    EXPECT_TRUE(part<QPlainTextEdit>(name).isVisible());
    EXPECT_TRUE(part<QPlainTextEdit>(name).toPlainText().startsWith(QString::fromUtf8(start))) << name;
  }
  QTest::mouseClick(&part<QTabBar>("TabStrip_Top"), Qt::LeftButton, {},
                    part<QTabBar>("TabStrip_Top").tabRect(0).center());
  EXPECT_EQ(window.current_Page(), MainWindow::Page::history) << "the tab of the page behind leads back";
}

TEST_F(StartTest, NoTwoCommandsShareAShortcutAndNoTwoEntriesOfAMenuAMnemonic) {
  MainWindow& window = open_Settled();
  choose("tab_2");
  std::set<QString> shortcuts;
  for (const QAction* action : program_->commands().all()) {
    const QString keys = action->shortcut().toString();
    EXPECT_TRUE(keys.isEmpty() || shortcuts.insert(keys).second) << keys.toStdString();
  }
  for (const QMenu* menu : window.menuBar()->findChildren<QMenu*>()) {
    std::set<QChar> mnemonics;
    for (const QAction* action : menu->actions()) {
      const qsizetype place = action->text().indexOf(QLatin1Char('&'));
      EXPECT_TRUE(place < 0 || mnemonics.insert(action->text()[place + 1]).second)
          << action->text().toStdString();
    }
  }
}

// Real message boxes, driven as a person would.
TEST(WindowDeskTest, QuestionsAnswerWhatWasPressed) {
  const auto press_Next = [](const QString& text) {
    QTimer::singleShot(0, [text] {
      for (auto* button : QApplication::activeModalWidget()->findChildren<QAbstractButton*>())
        if (button->text() == text) return button->click();
      ADD_FAILURE() << "no button " << text.toStdString();
      QApplication::activeModalWidget()->close();
    });
  };
  WindowDesk desk;
  press_Next(QStringLiteral("是(&Y)"));
  EXPECT_TRUE(desk.ask("?"));
  press_Next(QStringLiteral("否(&N)"));
  EXPECT_FALSE(desk.ask("?"));
  QTimer::singleShot(0, [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
  EXPECT_FALSE(desk.ask("?")) << "Esc is no";
  constexpr std::string_view buttons[] = {"删除", "替换", "取消"};
  press_Next(QStringLiteral("替换"));
  EXPECT_EQ(desk.choose("?", buttons, 2), 1U);
  for (const auto key : {Qt::Key_Escape, Qt::Key_Return}) {
    QTimer::singleShot(0, [key] { QTest::keyClick(QApplication::activeModalWidget(), key); });
    EXPECT_EQ(desk.choose("?", buttons, 2), 2U) << "Esc and Enter on the fresh dialog change nothing";
  }
  QTimer::singleShot(0, [] { QApplication::activeModalWidget()->close(); });
  EXPECT_EQ(desk.choose("?", buttons, 2), 2U);
  press_Next(QStringLiteral("确定"));
  desk.tell("<b>text</b>\r\nline", Tone::error);
  press_Next(QStringLiteral("确定"));
  EXPECT_EQ(desk.ask_Text("?", "", "2026091"), "2026091");
  press_Next(QStringLiteral("取消"));
  EXPECT_EQ(desk.ask_Text("?", "", "2026091"), std::nullopt);
}

TEST(WindowDeskTest, ATipCountsDownAndClosesItself) {
  TipDialog tip(QStringLiteral("text"), {}, nullptr);
  EXPECT_EQ(tip.windowTitle(), QStringLiteral("信息提示"));
  auto* button = tip.findChild<QPushButton*>(QStringLiteral("cmdOK"));
  EXPECT_EQ(button->text(), QStringLiteral("知道了 (10)"));
  tip.findChild<QTimer*>(QStringLiteral("Timer1"))->setInterval(1);
  EXPECT_EQ(tip.exec(), QDialog::Accepted);
  EXPECT_EQ(button->text(), QStringLiteral("知道了 (0)"));
}

TEST(ProgressControlTest, EndsAndValueAreCut) {
  WindowDesk desk;
  QWidget window;
  ProgressControl control(desk, &window);
  control.set_MaxJindu(10);
  control.set_MinJindu(20);
  EXPECT_EQ(control.minJindu(), 10);
  control.set_MaxJindu(5);
  EXPECT_EQ(control.maxJindu(), 10);
  control.set_MinJindu(0);
  control.set_ValueJindu(99);
  EXPECT_EQ(control.ValueJindu(), 99);
  EXPECT_EQ(control.findChild<QLabel*>(QStringLiteral("LabelJindu"))->text(), QStringLiteral("10"));
  EXPECT_EQ(control.findChild<QLabel*>(QStringLiteral("LabelJinduAll"))->text(), QStringLiteral("/ 10"));
  for (int use = 1; use <= 2; ++use) {
    const StopScope scope(desk);
    control.begin(100, true);
    EXPECT_TRUE(control.StopEnabled() && !control.Tingzhi() && !desk.stop_Requested()) << use;
    QTest::mousePress(control.findChild<QPushButton*>(QStringLiteral("cmm_stop")), Qt::LeftButton);
    EXPECT_TRUE(control.Tingzhi() && desk.stop_Requested() && !control.StopEnabled()) << use;
    control.begin(50, true);  // a job inside the stopped one
    EXPECT_FALSE(control.StopEnabled()) << use;
    control.end();
    control.end();
  }
  control.begin(100, false);
  EXPECT_FALSE(control.StopEnabled());
}

}  // namespace
}  // namespace lotmere::ui::test

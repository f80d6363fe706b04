// Files that are dropped on the window, named in its menu, or given to the program.
#include <sys/stat.h>

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QRadioButton>
#include <fstream>

#include "conditions/condition_store.hpp"
#include "conditions/named_sets.hpp"
#include "start/transfer.hpp"
#include "window_fixture.hpp"

namespace lotmere::ui::test {
namespace {

constexpr const char* kDraws = "2026091,2026-08-20,1,2,3,4,5,6,7\n";
constexpr const char* kTickets = "2026092 01 02 03 04 05 06 07\n2026093 01 02 03 04 05 06 08\n";

class FileOpenerTest : public WindowTest {
 protected:
  void SetUp() override { openSettled(); }
  QString put(const char* name, const std::string& text) {
    realFiles().writeWhole(home_.path() / name, text);
    return QString::fromStdString((home_.path() / name).string());
  }
  // On a part of the window, as another program drops files.
  void drop(QWidget& part, const QStringList& files) {
    QMimeData mime;
    QList<QUrl> urls;
    for (const QString& file : files) urls.append(QUrl::fromLocalFile(file));
    mime.setUrls(urls);
    QDragEnterEvent enter({4, 4}, Qt::CopyAction | Qt::MoveAction, &mime, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&part, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent dropped({4, 4}, Qt::CopyAction | Qt::MoveAction, &mime, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&part, &dropped);
    EXPECT_EQ(dropped.dropAction(), Qt::CopyAction) << "whoever drags keeps the file";
    QCoreApplication::processEvents();
    settle();
  }
  void drop(const QStringList& files) { drop(window(), files); }
  [[nodiscard]] std::string stored() {
    return std::to_string(countRows("历史记录")) + " draws, " + std::to_string(countRows("日志表")) +
           " tickets";
  }
};

TEST_F(FileOpenerTest, ADroppedListIsNamedAskedAboutAndImported) {
  const QString draws = put("a & b.csv", kDraws);
  const QString tickets = put("tickets.txt", kTickets);
  choose("page.2");
  desk_.choices = {std::nullopt, 0};
  drop({draws});
  EXPECT_EQ(desk_.asked.back(), "文件“a & b.csv”里是开奖记录（每行有期号、日期和号码）。要怎么做？");
  EXPECT_EQ(stored(), "1 draws, 0 tickets") << "Esc";
  EXPECT_EQ(window().currentPage(), MainWindow::Page::conditions);
  choose("page.1");
  drop(part<QLineEdit>("entryField.3"), {draws});
  EXPECT_EQ(text("entryField.3"), "") << "no field takes the path";
  EXPECT_EQ(told(), "读到 1 期：新增 1 期，更改 0 期，跳过 0 行，最新一期 2026091");
  EXPECT_EQ(stored(), "2 draws, 0 tickets");

  desk_.choices = {1, 1};
  desk_.dialogs = {[](QDialog&) { return false; },
                   [](QDialog& dialog) {
                     EXPECT_TRUE(partOf<QRadioButton>(dialog, "importFormat.1").isChecked());
                     partOf<QPushButton>(dialog, "okButton").click();
                     return dialog.result() == QDialog::Accepted;
                   }};
  drop({tickets});
  EXPECT_EQ(stored(), "2 draws, 0 tickets") << "Esc at the dialog";
  desk_.files = {tickets};
  choose("file.open");
  EXPECT_EQ(desk_.asked.back(),
            "文件“tickets.txt”里是投注号码（每行有期号和一注号码，没有开奖日期）。要怎么做？");
  EXPECT_EQ(stored(), "2 draws, 2 tickets");
  EXPECT_EQ(window().currentPage(), MainWindow::Page::tickets);
}

TEST_F(FileOpenerTest, ASetAndASavedWholeGoTheirWays) {
  ConditionSet set = loadConditionSet(store());
  desk_.choices = {0};
  desk_.texts = {"方案甲"};
  drop({put("set.txt", setText(set))});
  EXPECT_EQ(desk_.asked.front(), "文件“set.txt”里是过滤条件的方案。要怎么做？");
  EXPECT_TRUE(findNamedSet(store(), "方案甲"));
  const auto whole = home_.path() / "all.lotmere";
  ASSERT_EQ(saveEverything(store(), home_.home(), desk_, whole), Outcome::done);
  desk_.choices = {std::nullopt};
  drop({QString::fromStdString(whole.string())});
  EXPECT_NE(desk_.asked.back().find("替换现在的全部数据"), std::string::npos) << desk_.asked.back();
  EXPECT_FALSE(restoreWaits(home_.home()));
}

TEST_F(FileOpenerTest, WhatCanNotBeOpenedIsToldInALine) {
  const QString folder = QString::fromStdString(home_.path().string());
  const QString fifo = folder + QStringLiteral("/fifo");
  ASSERT_EQ(mkfifo(utf8(fifo).c_str(), 0600), 0);
  const struct {
    QStringList files;
    const char* says;
  } rows[] = {{{put("a.txt", kDraws), put("b.txt", kDraws)}, "一次只能打开一个文件。"},
              {{folder}, "文件和文件夹弄混了"},
              {{folder + QStringLiteral("/none")}, "没有这个文件或文件夹"},
              {{fifo}, "不是普通文件"},
              {{put("picture", std::string("\x89PNG\0\0\0", 7))}, "不是文本文件"},
              {{put("letter.txt", "dear all\n")}, "文件“letter.txt”里没有读到开奖记录"}};
  for (const auto& [files, says] : rows) {
    desk_.told.clear();
    drop(files);
    ASSERT_EQ(desk_.told.size(), 1U) << says;
    EXPECT_NE(told().find(says), std::string::npos) << told();
    EXPECT_EQ(told().find('\n'), std::string::npos) << told();
  }
  EXPECT_EQ(stored(), "1 draws, 0 tickets");
}

// While a command runs nothing is asked; a second start hands its file to the window that is open.
TEST_F(FileOpenerTest, AFileWaitsForNoOtherCommandAndComesFromASecondStart) {
  const QString draws = put("draws.csv", kDraws);
  commands().runner().run([&] { drop({draws}); });
  EXPECT_TRUE(desk_.asked.empty());
  ScriptedWindowDesk other;
  Program second(home_.home(), other, clock_);
  second.openBehindStart({draws});
  desk_.choices = {0};
  EXPECT_FALSE(second.start());
  EXPECT_TRUE(QTest::qWaitFor([&] { return !desk_.told.empty(); }));
  settle();
  EXPECT_EQ(stored(), "2 draws, 0 tickets");
  // A start of its own opens it when the window is ready.
  program_.reset();
  desk_.choices = {std::nullopt};
  desk_.asked.clear();
  Program first(home_.home(), desk_, clock_);
  first.openBehindStart({draws});
  ASSERT_TRUE(first.start());
  EXPECT_EQ(desk_.asked.size(), 1U);
}

}  // namespace
}  // namespace lotmere::ui::test

// The whole program with its window over a home folder of one test.
#pragma once

#include <gtest/gtest.h>

#include <QDialog>
#include <QPushButton>
#include <QTest>
#include <memory>

#include "support/test_store.hpp"
#include "ui/look/text.hpp"
#include "ui/main/program.hpp"
#include "ui/window_desk_script.hpp"
#include "users/user_table.hpp"

namespace lotmere::ui::test {

class FixedClock : public Clock {
 public:
  Date day{std::chrono::August / 20 / 2026};
  Date today() override { return day; }
};

// The parts of a window, a page or a dialog by their names.
template <class T = QWidget>
[[nodiscard]] T& partOf(const QWidget& whole, const std::string& name) {
  auto* found = whole.findChild<T*>(QString::fromStdString(name));
  if (found == nullptr) throw std::logic_error("no part " + name);
  return *found;
}
// What a part shows.
[[nodiscard]] inline std::string textOf(const QWidget& whole, const std::string& name) {
  const QWidget& found = partOf(whole, name);
  for (const char* property : {"text", "currentText", "plainText"})
    if (const QVariant value = found.property(property); value.isValid()) return utf8(value.toString());
  throw std::logic_error("no text in " + name);
}

// A home, a scripted desk, and something that is driven by the names of its parts.
class DrivenTest : public testing::Test {
 protected:
  [[nodiscard]] virtual const QWidget& whole() = 0;
  [[nodiscard]] virtual Commands& commands() = 0;

  template <class T = QWidget>
  [[nodiscard]] T& part(const std::string& name) {
    return partOf<T>(whole(), name);
  }
  [[nodiscard]] std::string text(const std::string& name) { return textOf(whole(), name); }
  // With the mouse, which a disabled or hidden part doesn't feel.
  void press(const std::string& button) {
    QTest::mouseClick(&part(button), Qt::LeftButton);
    settle();
  }
  // Wherever its frame is.
  void click(const std::string& button) {
    part<QAbstractButton>(button).click();
    settle();
  }
  void choose(const std::string& command) {
    commands().action(command.c_str())->trigger();
    settle();
  }
  // What was given is saved, and what has been made is shown.
  void settle() {
    if (!commands().runner().isRunning()) desk_.work().run([] {});
    QCoreApplication::sendPostedEvents();
  }
  // What was told last.
  [[nodiscard]] std::string told() const {
    return desk_.told.empty() ? std::string() : desk_.told.back().text;
  }

  lotmere::test::TempHome home_;
  FixedClock clock_;
  ScriptedWindowDesk desk_;
};

class WindowTest : public DrivenTest {
 protected:
  // A home whose newest draw stands, so that a start asks nothing but who the user is, where there are
  // several.
  void settleHome(UserMode mode = UserMode::single) {
    lotmere::test::putDraw(home_.store(), 2026090, "2026-08-18", {{1, 2, 3, 4, 5, 6}, 7});
    ASSERT_TRUE(chooseUserMode(home_.store(), mode));
  }

  // The program started over the home; the store of the test is the program's from now on.
  MainWindow& open() {
    home_.close();
    program_.reset();
    program_ = std::make_unique<Program>(home_.home(), desk_, clock_, realFiles(), HashLimits::lowest());
    if (!program_->start()) throw std::runtime_error("the start came to no end");
    QCoreApplication::processEvents();  // the window takes the focus
    return window();
  }
  MainWindow& openSettled() {
    settleHome();
    return open();
  }
  [[nodiscard]] MainWindow& window() { return program_->window(); }
  [[nodiscard]] const QWidget& whole() override { return window(); }
  [[nodiscard]] Commands& commands() override { return program_->commands(); }
  // Behind what was given to be saved.
  [[nodiscard]] Store& store() {
    desk_.work().run([] {});
    return program_->store();
  }
  [[nodiscard]] std::int64_t countRows(const std::string& table) {
    return store().value("SELECT count(*) FROM \"" + table + '"');
  }
  [[nodiscard]] bool closes() {
    return QTest::qWaitFor([this] { return !window().isVisible(); });
  }
  // The numbers of the pad, by code.
  void pick(std::initializer_list<int> codes) {
    for (const int code : codes) press((code < 10 ? "padBall.0" : "padBall.") + std::to_string(code));
  }
  // A draw typed on its page, which stays in sight; its reds follow each other.
  void enterDraw(PeriodNo period, int first_red) {
    choose("page.1");
    for (int i = 0; i < 8; ++i)
      part<QLineEdit>("entryField." + std::to_string(i))
          .setText(QString::number(i == 0   ? period
                                   : i == 7 ? 8
                                            : first_red + i - 1));
    choose("draws.add");
  }

  std::unique_ptr<Program> program_;
};

}  // namespace lotmere::ui::test

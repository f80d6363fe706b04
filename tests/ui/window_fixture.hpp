// The whole program with its window over a home folder of one test.
#pragma once

#include <gtest/gtest.h>

#include <QDialog>
#include <QPushButton>
#include <QTest>
#include <memory>

#include "support/test_store.hpp"
#include "ui/program.hpp"
#include "users/user_table.hpp"
#include "window_desk_script.hpp"

namespace lotmere::ui::test {

class FixedClock : public Clock {
 public:
  Date day{std::chrono::August / 20 / 2026};
  Date today() override { return day; }
};

class WindowTest : public testing::Test {
 protected:
  // A single user's home whose newest draw stands, so that a start asks nothing.
  void settle_Home(Store& store) {
    lotmere::test::put_Draw(store, 2026090, "2026-08-18", {{1, 2, 3, 4, 5, 6}, 7});
    ASSERT_TRUE(choose_UserMode(store, UserMode::single));
  }

  // The program started over the home; the store of the test is the program's from now on.
  MainWindow& open() {
    home_.close();
    program_ = std::make_unique<Program>(home_.home(), desk_, clock_, real_Files(), HashLimits::lowest());
    if (!program_->start()) throw std::runtime_error("the start came to no end");
    return program_->window();
  }
  MainWindow& open_Settled() {
    settle_Home(home_.store());
    return open();
  }
  [[nodiscard]] Store& store() { return program_->store(); }

  template <class T>
  [[nodiscard]] T& part(const char* name) {
    auto* found = program_->window().findChild<T*>(QString::fromUtf8(name));
    if (found == nullptr) throw std::logic_error(std::string("no part ") + name);
    return *found;
  }
  void press(const char* button) { QTest::mouseClick(&part<QPushButton>(button), Qt::LeftButton); }
  void choose(const char* command) { program_->commands().action(command)->trigger(); }
  // The numbers of the pad, by code.
  void pick(std::initializer_list<int> codes) {
    for (const int code : codes)
      QTest::mouseClick(&part<QAbstractButton>(
                            ("cmm_C7_" + std::string(code < 10 ? "0" : "") + std::to_string(code)).c_str()),
                        Qt::LeftButton);
  }
  // What was told last.
  [[nodiscard]] std::string told() const {
    return desk_.told.empty() ? std::string() : desk_.told.back().text;
  }

  lotmere::test::TempHome home_;
  FixedClock clock_;
  ScriptedWindowDesk desk_;
  std::unique_ptr<Program> program_;
};

}  // namespace lotmere::ui::test

// Work beside the window: one piece behind the other, what it says in its order, failures to whoever asked.
#include "ui/shell/work_thread.hpp"

#include <gtest/gtest.h>

#include <QTest>
#include <QTimer>
#include <stdexcept>

namespace lotmere::ui::test {
namespace {

using namespace std::chrono_literals;

class WorkThreadTest : public testing::Test {
 protected:
  // Long enough that the window is served meanwhile.
  static void work() { std::this_thread::sleep_for(60ms); }

  std::string log_;  // of the window's thread
  WorkThread thread_;
};

TEST_F(WorkThreadTest, GivesWhatTheWorkGivesAndServesTheWindowMeanwhile) {
  const auto window = std::this_thread::get_id();
  QTimer::singleShot(0, [&] { log_ += "served "; });
  const auto result = thread_.run([&] {
    thread_.tellWindow([&] { log_ += "told "; });
    work();
    thread_.callWindow([&] { log_ += std::this_thread::get_id() == window ? "asked " : "elsewhere "; });
    thread_.tellWindow([&] { log_ += "and told"; });
    return std::make_unique<int>(7);  // which moves
  });
  EXPECT_EQ(*result, 7);
  EXPECT_TRUE(log_ == "told served asked and told" || log_ == "served told asked and told") << log_;
}

TEST_F(WorkThreadTest, AFailureReachesWhoeverAskedOnEitherSide) {
  EXPECT_THROW(thread_.run([] { throw std::runtime_error("the store"); }), std::runtime_error);
  const auto answer = [&] {
    thread_.callWindow([] { throw std::invalid_argument("the dialog"); });
    log_ += "never";
  };
  EXPECT_THROW(thread_.run(answer), std::invalid_argument);
  EXPECT_EQ(log_, "");
}

TEST_F(WorkThreadTest, WhatIsPostedIsDoneInFrontOfWhatIsRunBehindIt) {
  std::string stored;
  const auto then = [&](const char* name) {
    return [&, name](const std::exception_ptr& failure) { log_ += name + std::string(failure ? "! " : " "); };
  };
  thread_.post([&] { work(), stored += "one "; }, then("one"));
  thread_.post([&] { throw std::runtime_error("two"); }, then("two"));
  EXPECT_EQ(log_, "") << "comes back at once";
  EXPECT_EQ(thread_.run([&] { return stored; }), "one ");
  EXPECT_EQ(log_, "one two! ");
  thread_.post([&] { stored += "three"; }, then("three"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return log_.ends_with("three "); })) << "by the event loop alone";
}

TEST_F(WorkThreadTest, WorkGivenWhileTheThreadWaitsForAnAnswerIsRefused) {
  const auto ask = [&] { thread_.callWindow([&] { thread_.run([&] { log_ += "never"; }); }); };
  EXPECT_THROW(thread_.run(ask), std::logic_error);
  // What the window does by itself meanwhile may work too.
  QTimer::singleShot(0, [&] { log_ += std::to_string(thread_.run([] { return 5; })); });
  thread_.run([] { work(); });
  EXPECT_EQ(log_, "5");
}

}  // namespace
}  // namespace lotmere::ui::test

// Questions answered beside the window: the newest wins, what is dropped is never shown.
#include "ui/shell/answer_thread.hpp"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>
#include <stdexcept>

#include "window_desk_script.hpp"

namespace lotmere::ui::test {
namespace {

class AnswerThreadTest : public testing::Test {
 protected:
  // Works until it is told to stop.
  AnswerThread::Question endless() {
    return [this](Course& course) -> AnswerThread::Answer {
      ++begun_;
      while (!course.stopRequested()) std::this_thread::yield();
      return [this] { answered_ += "endless "; };
    };
  }
  AnswerThread::Question quick(const char* name) {
    return [this, name](Course&) { return [this, name] { answered_ += name; }; };
  }
  bool waitBegun(int questions) {
    return QTest::qWaitFor([&] { return begun_ == questions; });
  }

  ScriptedWindowDesk desk_;
  std::atomic<int> begun_ = 0;
  std::string answered_;
};

TEST_F(AnswerThreadTest, TheNewestQuestionStopsAndSilencesTheOlder) {
  AnswerThread answers(desk_);
  EXPECT_FALSE(answers.isBusy());
  answers.ask(endless());
  ASSERT_TRUE(waitBegun(1));
  answers.ask(quick("lost "));
  answers.ask(quick("second "));
  EXPECT_TRUE(answers.isBusy());
  EXPECT_EQ(answered_, "") << "given by the event loop only";
  EXPECT_TRUE(QTest::qWaitFor([&] { return !answers.isBusy(); }));
  EXPECT_EQ(answered_, "second ");
  answers.ask(quick("third"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !answers.isBusy(); }));
  EXPECT_EQ(answered_, "second third");
}

TEST_F(AnswerThreadTest, ADroppedQuestionGivesNothingAndAFailureIsTold) {
  {
    AnswerThread answers(desk_);
    answers.ask(quick("dropped"));
    answers.drop();
    EXPECT_FALSE(answers.isBusy());
    answers.ask([](Course&) -> AnswerThread::Answer { throw std::runtime_error("no memory"); });
    EXPECT_TRUE(QTest::qWaitFor([&] { return !answers.isBusy(); }));
    EXPECT_EQ(desk_.told.size(), 1U);
    answers.ask(endless());
    ASSERT_TRUE(waitBegun(1));
  }
  QTest::qWait(0);
  EXPECT_EQ(answered_, "");
}

}  // namespace
}  // namespace lotmere::ui::test

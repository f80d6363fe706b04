// The window over a disk whose every flush takes half a second: its own thread never waits for one.
#include <QApplication>
#include <QElapsedTimer>

#include "slow_disk/slow_syncs.hpp"
#include "ui/main/splash.hpp"
#include "ui/window_fixture.hpp"

namespace lotmere::ui::test {
namespace {

using namespace std::chrono_literals;
using lotmere::test::delayFlushes;
using lotmere::test::takeFlushes;

constexpr auto kDelay = 500ms;
constexpr int kBeatEvery = 20;   // milliseconds
constexpr int kBeatsAFlush = 5;  // of some 25 that fit: the machine may be busy

class SlowDiskTest : public WindowTest {
 protected:
  SlowDiskTest() {
    beat_.setInterval(kBeatEvery);
    beat_.callOnTimeout([this] { ++beats_; });
    beat_.start();
  }
  ~SlowDiskTest() override { delayFlushes(0ms); }

  // Does something that flushes at least once, and expects the window to be looked after meanwhile.
  void expectServed(const char* what, const std::function<void()>& work) {
    SCOPED_TRACE(what);
    static_cast<void>(takeFlushes());
    beats_ = 0;
    delayFlushes(kDelay);
    work();
    delayFlushes(0ms);
    const auto flushes = takeFlushes();
    EXPECT_GT(flushes.all, 0);
    EXPECT_EQ(flushes.of_window, 0);
    EXPECT_GE(beats_, kBeatsAFlush * flushes.all);
  }

  QTimer beat_;
  int beats_ = 0;
};

TEST_F(SlowDiskTest, TheWindowNeverWaitsForIt) {
  settleHome();
  home_.store().db().exec(
      "INSERT INTO 日志表 (ID,序号,期号,红球1,红球2,红球3,红球4,红球5,红球6,蓝球) VALUES "
      "(1,1,2026092,1,2,3,4,5,6,7),(2,2,2026092,1,2,3,4,5,9,7)");
  bool pictured = false;
  QTimer look;
  look.callOnTimeout([&] {
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (qobject_cast<Splash*>(widget) != nullptr && widget->isVisible()) pictured = true;
  });
  look.start(kBeatEvery);
  expectServed("the start", [&] { open(); });
  EXPECT_TRUE(pictured) << "while the steps of the start run";
  expectServed("a draw", [&] { enterDraw(2026091, 1); });
  EXPECT_EQ(countRows("历史记录"), 2);
  expectServed("an export", [&] {
    desk_.dialogs = {[](QDialog&) { return true; }};
    desk_.files = {QString::fromStdString((home_.path() / "号码.txt").string())};
    desk_.choices = {1};
    choose("tickets.export");
  });
  expectServed("a run", [&] {
    desk_.texts = {"2026092"};
    choose("tickets.run");
  });
  expectServed("the end", [&] {
    desk_.answers = {true};
    window().close();
    EXPECT_TRUE(closes());
    program_->finish();
  });
  EXPECT_TRUE(desk_.told.empty()) << told();
}

TEST_F(SlowDiskTest, ClicksWithinOneSlowSaveShowAtOnceAndAllCount) {
  openSettled();
  choose("page.2");
  expectServed("the save", [&] {
    QElapsedTimer since;
    since.start();
    for (const char* ball : {"padBall.03", "padBall.08", "padBall.33"}) part<QAbstractButton>(ball).click();
    EXPECT_LT(since.elapsed(), kDelay.count()) << "no click waits for the disk";
    EXPECT_EQ(part("padBall.33").accessibleName(), QStringLiteral("红球 33 拖码"));
    settle();
  });
  EXPECT_EQ(
      store().value(R"(SELECT group_concat("ID") = '3,8,33' FROM "过滤条件" WHERE "Value">0 AND "ID"<100)"),
      1);
}

}  // namespace
}  // namespace lotmere::ui::test

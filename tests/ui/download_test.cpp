// The download through the window, from a server on the loopback that never answers.
#include "history/addresses.hpp"
#include "support/loopback.hpp"
#include "window_fixture.hpp"

namespace lotmere::ui::test {
namespace {

using DownloadTest = WindowTest;

TEST_F(DownloadTest, ASilentServerIsLeftAtTheStopButtonEachTime) {
  openSettled();
  clock_.day = std::chrono::sys_days{std::chrono::August / 22 / 2026};  // a draw is due
  int served = 0;
  int stops = 0;  // first by the button, then by its key
  desk_.on_look = [&] {
    if (++served != 5) return;  // the first times the server may not have taken the call yet
    EXPECT_TRUE(part("progress").isVisible());
    EXPECT_FALSE(part("pageTabs").isEnabled());
    if (++stops == 1)
      QTest::mousePress(&partOf(part("progress"), "stopButton"), Qt::LeftButton);
    else
      QTest::keyClick(&window(), Qt::Key_Escape);
  };
  for (int times = 1; times <= 2; ++times) {
    served = 0;
    const bool left = lotmere::test::withServer("", true, [this](const std::string& address) {
      desk_.texts = {address};
      press("downloadButton");
    });
    EXPECT_TRUE(left) << "the line that the server holds";
    EXPECT_TRUE(desk_.told.empty());
    EXPECT_EQ(countRows("历史记录"), 1);
    EXPECT_EQ(storedAddress(store(), AddressUse::draw_list), "") << "which is asked for again";
    EXPECT_TRUE(part("pageTabs").isEnabled() && part("downloadButton").isEnabled());
    EXPECT_FALSE(part("progress").isVisible());
    EXPECT_EQ(text("statusPanel.2"), "");
  }
}

}  // namespace
}  // namespace lotmere::ui::test

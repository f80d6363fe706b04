// The download through the window, from a server on the loopback that behaves or doesn't.
#include <QLabel>

#include "history/addresses.hpp"
#include "support/loopback.hpp"
#include "window_fixture.hpp"

namespace lotmere::ui::test {
namespace {

using lotmere::test::with_Server;

class DownloadTest : public WindowTest {
 protected:
  void SetUp() override {
    open_Settled();
    clock_.day = std::chrono::sys_days{std::chrono::August / 22 / 2026};  // a draw is due
  }
  static std::string reply(const std::string& body, std::size_t announced) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(announced) + "\r\n\r\n" + body;
  }
  // Presses the button on a server's address; whether the window left a line that was held.
  bool download(const std::string& answer, bool holds) {
    return with_Server(answer, holds, [this](const std::string& address) {
      desk_.texts = {address};
      press("cmmUpdateHistory_1");
    });
  }
  [[nodiscard]] std::int64_t draws() { return store().value(R"(SELECT count(*) FROM "历史记录")"); }
  [[nodiscard]] bool all_Enabled() {
    return part<QTabBar>("TabStrip_Top").isEnabled() && part<QPushButton>("cmmUpdateHistory_1").isEnabled() &&
           !part<ProgressControl>("myJinDuCTL1").isVisible() && part<QLabel>("StatusBar_2").text().isEmpty();
  }
};

TEST_F(DownloadTest, AListIsMergedAndShown) {
  const std::string list = "=336= 2026091 2026/08/20 02 03 04 05 06 07 08";
  download(reply(list, list.size()), false);
  EXPECT_EQ(told(), "已成功更新!\r\n新增 1 期，更新 0 期，跳过 0 条无效数据，最新一期 2026091");
  EXPECT_EQ(draws(), 2);
  EXPECT_EQ(store().value(R"(SELECT "和值" FROM "历史记录" WHERE "期号"=2026091)"), 27);
  EXPECT_TRUE(part<QLabel>("StatusBar_1").text().contains(QStringLiteral("已更新")));
  EXPECT_TRUE(part<QLabel>("StatusBar_3").text().contains(QStringLiteral("2026092 期")));
  EXPECT_FALSE(stored_Address(store(), AddressUse::draw_list).empty());
  EXPECT_TRUE(all_Enabled());
}

TEST_F(DownloadTest, GarbageAndABrokenReplyChangeNothing) {
  const std::string broken = "=336= 2026091 2026/08/20 02 03 04 05 06 07 08";
  const std::pair<std::string, const char*> answers[] = {
      {reply("<html>404</html>", 16), "原因：这不是开奖数据，开头没有 336 标记。"},
      {reply(broken, 500), "原因：连接断开，数据没有收全。"},
      {"HTTP/1.1 404 Not Found\r\n\r\n", "原因：网站答复 404，没有这个网页。"}};
  for (const auto& [answer, cause] : answers) {
    download(answer, false);
    EXPECT_TRUE(told().ends_with(cause)) << told();
    EXPECT_TRUE(told().starts_with("服务器忙或网络链接断开,无法完成更新!")) << answer;
    EXPECT_EQ(desk_.told.back().tone, Tone::error);
    EXPECT_EQ(draws(), 1);
    EXPECT_EQ(stored_Address(store(), AddressUse::draw_list), "") << "a bad address is asked for again";
    EXPECT_TRUE(all_Enabled());
  }
}

TEST_F(DownloadTest, ASilentServerIsLeftAtTheStopButtonEachTime) {
  int served = 0;
  desk_.on_serve = [&] {
    auto& control = part<ProgressControl>("myJinDuCTL1");
    if (++served != 5) return;  // the first times the server may not have taken the call yet
    EXPECT_TRUE(control.isVisible());
    EXPECT_FALSE(part<QTabBar>("TabStrip_Top").isEnabled());
    QTest::mousePress(control.findChild<QPushButton*>(QStringLiteral("cmm_stop")), Qt::LeftButton);
  };
  for (int times = 1; times <= 2; ++times) {
    served = 0;
    EXPECT_TRUE(download("", true));
    EXPECT_TRUE(desk_.told.empty());
    EXPECT_EQ(draws(), 1);
    EXPECT_TRUE(all_Enabled());
  }
}

}  // namespace
}  // namespace lotmere::ui::test

#include "history/curl_fetcher.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "history/addresses.hpp"
#include "history/detail.hpp"
#include "history/download.hpp"
#include "support/loopback.hpp"
#include "support/store_test.hpp"

namespace lotmere::test {
namespace {

Fetched fetchFrom(const std::string& answer) {
  ScriptedDesk desk;
  Fetched fetched;
  withServer(answer, false,
             [&](const auto& address) { fetched = makeCurlFetcher(desk.course())->fetch(address); });
  return fetched;
}

TEST(CurlFetcher, TakesOnlyWholeAnswers) {
  const TempHome home;
  const auto secret = home.path() / "secret.txt";
  std::ofstream(secret) << "secret";
  const std::string good = "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\n=336=";
  const std::string broken = "连接断开，数据没有收全";
  const std::pair<std::string, std::string> bad[] = {
      {"HTTP/1.1 500 Internal Server Error\r\nContent-Length: 5\r\n\r\n=336=", "网站答复 500"},
      {"HTTP/1.1 404 Not Found\r\nContent-Length: 5\r\n\r\n=336=", "网站答复 404，没有这个网页"},
      {"HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n=336=", broken},
      {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\n=336=\r\n9\r\n20", broken},
      {"HTTP/1.1 302 Found\r\nLocation: file://" + secret.string() + "\r\n\r\n",
       "网站把请求转到了不能用的地址"},
      {"", broken}};
  EXPECT_EQ(fetchFrom(good).reply, "=336=");
  for (const auto& [answer, cause] : bad) {
    const Fetched fetched = fetchFrom(answer);
    EXPECT_EQ(fetched.reply, std::nullopt) << answer;
    EXPECT_EQ(fetched.cause, cause) << answer;
  }
  ScriptedDesk desk;
  const std::string no_host(70, 'a');  // a name so long that no name server is asked, and waited for
  const std::pair<std::string, const char*> unreachable[] = {{"http://127.0.0.1:1/", "连接不上网站"},
                                                             {"http://" + no_host, "找不到这个网站"},
                                                             {"http://", "网址不对"}};
  for (const auto& [address, cause] : unreachable)
    EXPECT_EQ(makeCurlFetcher(desk.course())->fetch(address).cause, cause) << address;
}

// Before the server says a word, and in the middle of its list.
TEST(CurlFetcher, AStopOrAFailureWhileTheServerIsSilent) {
  for (const std::string answer : {"", "HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n=336= 2007001"})
    for (const bool fails : {false, true}) {
      TempHome home;
      ScriptedDesk desk;
      int served = 0;
      desk.course().on_look = [&] {
        EXPECT_TRUE(desk.course().open);
        if (++served != 5) return;
        if (fails) throw std::runtime_error("desk");
        desk.course().requestStop();
      };
      const auto fetcher = makeCurlFetcher(desk.course());
      EXPECT_TRUE(withServer(answer, true, [&](const auto& address) {
        const auto fetch = [&] {
          return downloadDraws(home.store(), desk, *fetcher, address, Date::max()).outcome ==
                 Outcome::stopped;
        };
        EXPECT_NE(valueOrNothing(fetch), fails);
      }));
      EXPECT_TRUE(desk.told.empty() && !desk.course().open && !desk.course().stopRequested());
      EXPECT_EQ(desk.statuses.back(), "");
      EXPECT_EQ(storedAddress(home.store(), AddressUse::draw_list), "");
    }
}

TEST(CurlFetcher, AStopEndsTheSearchForAPage) {
  TempHome home;
  ScriptedDesk desk;
  int served = 0;  // the first times the caller may not have come yet
  desk.course().on_look = [&] {
    if (++served == 5) desk.course().requestStop();
  };
  EXPECT_TRUE(withServer("", true, [&](const auto& address) {
    rememberAddress(home.store(), AddressUse::detail_page, address);
    std::string typed;
    EXPECT_FALSE(findDetailPage(home.store(), desk, *makeCurlFetcher(desk.course()), "2008118", typed));
  }));
  EXPECT_TRUE(desk.told.empty() && !desk.course().stopRequested());
}

TEST(CurlFetcher, ReadsFilesUpToALimit) {
  const TempHome home;
  const auto list = home.path() / "开奖.txt";
  std::ofstream(list) << "=336=\n2007001";
  ScriptedDesk desk;
  const auto fetcher = makeCurlFetcher(desk.course());
  EXPECT_EQ(fetcher->fetch("file://" + list.string()).reply, "=336=\n2007001");
  std::filesystem::resize_file(list, std::uintmax_t{32} << 20);
  EXPECT_TRUE(fetcher->fetch("file://" + list.string()).reply.has_value());
  std::filesystem::resize_file(list, (std::uintmax_t{32} << 20) + 1);
  EXPECT_EQ(fetcher->fetch("file://" + list.string()).cause, "数据太大，不是开奖数据");
}

TEST(CurlFetcher, ReadsNothingThatMayNeverEnd) {
  const TempHome home;
  std::filesystem::create_symlink("/dev/zero",
                                  home.path() / "device");  // ends where it is read: at the limit
  const std::string folder = home.path().string();
  const std::pair<std::string, const char*> refused[] = {
      {"file://" + folder + "/device", "不是普通文件"},
      {"FILE://localhost" + folder + "/%64evice", "不是普通文件"},
      {"file://" + folder, "不是普通文件"},
      {"file:///none", "没有这个文件"},
      {"file:", "网址不对"}};
  ScriptedDesk desk;
  for (const auto& [address, cause] : refused)
    EXPECT_EQ(makeCurlFetcher(desk.course())->fetch(address).cause, cause) << address;
}

}  // namespace
}  // namespace lotmere::test

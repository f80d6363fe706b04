#include "history/curl_fetcher.hpp"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "support/test_store.hpp"

namespace lotmere::test {
namespace {

// What the fetcher makes of a server on the loopback that gives one answer and closes.
std::optional<std::string> fetch_From(const std::string& answer) {
  const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in place{};
  place.sin_family = AF_INET;
  place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof place;
  auto* const generic = reinterpret_cast<sockaddr*>(&place);
  if (::bind(listener, generic, size) != 0 || ::listen(listener, 1) != 0 ||
      ::getsockname(listener, generic, &size) != 0)
    throw std::runtime_error("no loopback");
  const std::jthread server([&] {
    pollfd waiting{listener, POLLIN, 0};  // gives up by itself when nobody comes
    const int client = ::poll(&waiting, 1, /*ms*/ 5000) == 1 ? ::accept(listener, nullptr, nullptr) : -1;
    char request[4096];  // small enough to come in one piece
    if (::recv(client, request, sizeof request, 0) > 0)
      ::send(client, answer.data(), answer.size(), MSG_NOSIGNAL);
    ::close(client);
    ::close(listener);
  });
  return make_CurlFetcher()->fetch("http://127.0.0.1:" + std::to_string(ntohs(place.sin_port)) + "/list");
}

TEST(CurlFetcher, TakesOnlyWholeAnswers) {
  ::setenv("no_proxy", "127.0.0.1", 1);
  const TempHome home;
  const auto secret = home.path() / "secret.txt";
  std::ofstream(secret) << "secret";
  const std::string good = "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\n=336=";
  const std::string bad[] = {"HTTP/1.1 500 Internal Server Error\r\nContent-Length: 5\r\n\r\n=336=",
                             "HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n=336=",
                             "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\n=336=\r\n9\r\n20",
                             "HTTP/1.1 302 Found\r\nLocation: file://" + secret.string() + "\r\n\r\n", ""};
  EXPECT_EQ(fetch_From(good), "=336=");
  for (const std::string& answer : bad) EXPECT_EQ(fetch_From(answer), std::nullopt) << answer;
}

TEST(CurlFetcher, ReadsFilesUpToALimit) {
  const TempHome home;
  const auto list = home.path() / "list.txt";
  std::ofstream(list) << "=336=\n2007001";
  const auto fetcher = make_CurlFetcher();
  EXPECT_EQ(fetcher->fetch("file://" + list.string()), "=336=\n2007001");
  std::filesystem::resize_file(list, std::uintmax_t{32} << 20);
  EXPECT_TRUE(fetcher->fetch("file://" + list.string()).has_value());
  std::filesystem::resize_file(list, (std::uintmax_t{32} << 20) + 1);
  EXPECT_EQ(fetcher->fetch("file://" + list.string()), std::nullopt);
}

}  // namespace
}  // namespace lotmere::test

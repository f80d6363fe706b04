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

// Answers one request on the loopback with given bytes and closes; gives up by itself when nobody comes.
class OneAnswerServer {
 public:
  explicit OneAnswerServer(std::string answer)
      : answer_(std::move(answer)), listener_(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(listener_, generic, size) != 0 || ::listen(listener_, 1) != 0 ||
        ::getsockname(listener_, generic, &size) != 0)
      throw std::runtime_error("no loopback");
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { serve(); });
  }
  OneAnswerServer(const OneAnswerServer&) = delete;
  OneAnswerServer& operator=(const OneAnswerServer&) = delete;
  ~OneAnswerServer() {
    thread_.join();
    ::close(listener_);
  }
  [[nodiscard]] std::string address() const { return "http://127.0.0.1:" + std::to_string(port_) + "/list"; }

 private:
  void serve() const {
    constexpr int patience_ms = 5000;
    pollfd waiting{listener_, POLLIN, 0};
    if (::poll(&waiting, 1, patience_ms) != 1) return;
    const int client = ::accept(listener_, nullptr, nullptr);
    std::string request;
    char part[512];
    for (ssize_t n = 1; n > 0 && request.find("\r\n\r\n") == std::string::npos;) {
      n = ::recv(client, part, sizeof part, 0);
      if (n > 0) request.append(part, static_cast<std::size_t>(n));
    }
    ::send(client, answer_.data(), answer_.size(), MSG_NOSIGNAL);
    ::close(client);
  }

  std::string answer_;
  int listener_;
  int port_ = 0;
  std::thread thread_;
};

std::string http_Answer(const std::string& status, const std::string& headers, const std::string& body) {
  return "HTTP/1.1 " + status + "\r\nConnection: close\r\n" + headers + "\r\n" + body;
}

TEST(CurlFetcher, TakesOnlyWholeAnswers) {
  ::setenv("no_proxy", "127.0.0.1", 1);
  const TempHome home;
  const auto secret = home.path() / "secret.txt";
  std::ofstream(secret) << "secret";
  const struct {
    const char* name;
    std::string answer;
    std::optional<std::string> text;
  } cases[] = {
      {"a good answer", http_Answer("200 OK", "Content-Length: 5\r\n", "=336="), "=336="},
      {"a server error", http_Answer("500 Internal Server Error", "Content-Length: 5\r\n", "=336="),
       std::nullopt},
      {"a missing page", http_Answer("404 Not Found", "Content-Length: 5\r\n", "=336="), std::nullopt},
      {"fewer bytes than announced", http_Answer("200 OK", "Content-Length: 500\r\n", "=336="), std::nullopt},
      {"a chunk that breaks off",
       http_Answer("200 OK", "Transfer-Encoding: chunked\r\n", "5\r\n=336=\r\n9\r\n20"), std::nullopt},
      {"a way out to a file", http_Answer("302 Found", "Location: file://" + secret.string() + "\r\n", ""),
       std::nullopt},
      {"no answer at all", "", std::nullopt},
  };
  for (const auto& [name, answer, text] : cases) {
    const OneAnswerServer server(answer);
    EXPECT_EQ(make_CurlFetcher()->fetch(server.address()), text) << name;
  }
}

TEST(CurlFetcher, ReadsFilesUpToALimit) {
  const TempHome home;
  const auto list = home.path() / "list.txt";
  std::ofstream(list) << "=336=\n2007001";
  const auto fetcher = make_CurlFetcher();
  EXPECT_EQ(fetcher->fetch("file://" + list.string()), "=336=\n2007001");
  EXPECT_EQ(fetcher->fetch("file://" + (home.path() / "missing.txt").string()), std::nullopt);
  std::filesystem::resize_file(list, std::uintmax_t{32} << 20);
  EXPECT_TRUE(fetcher->fetch("file://" + list.string()).has_value());
  std::filesystem::resize_file(list, (std::uintmax_t{32} << 20) + 1);
  EXPECT_EQ(fetcher->fetch("file://" + list.string()), std::nullopt);
}

TEST(CurlFetcher, RefusesWhatIsNoAddress) {
  const auto fetcher = make_CurlFetcher();
  for (const char* address :
       {"", " ", "http://", "ftp://127.0.0.1/list", "gopher://127.0.0.1/", "not an address"})
    EXPECT_EQ(fetcher->fetch(address), std::nullopt) << address;
}

}  // namespace
}  // namespace lotmere::test

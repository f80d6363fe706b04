#include "support/loopback.hpp"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace lotmere::test {

bool withServer(const std::string& answer, bool holds, const std::function<void(std::string)>& work) {
  const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in place{};
  place.sin_family = AF_INET;
  place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof place;
  auto* const generic = reinterpret_cast<sockaddr*>(&place);
  if (::bind(listener, generic, size) != 0 || ::listen(listener, 1) != 0 ||
      ::getsockname(listener, generic, &size) != 0)
    throw std::runtime_error("no loopback");
  ::setenv("no_proxy", "127.0.0.1", 1);
  bool left = false;
  std::jthread server([&] {
    const auto wait = [](int fd) {
      pollfd waiting{fd, POLLIN, 0};  // gives up by itself when nobody comes or leaves
      return ::poll(&waiting, 1, /*ms*/ 5000) == 1;
    };
    const int client = wait(listener) ? ::accept(listener, nullptr, nullptr) : -1;
    char request[4096];  // small enough to come in one piece
    if (::recv(client, request, sizeof request, 0) > 0)
      ::send(client, answer.data(), answer.size(), MSG_NOSIGNAL);
    if (holds) left = wait(client) && ::recv(client, request, sizeof request, 0) <= 0;
    ::close(client);
    ::close(listener);
  });
  work("http://127.0.0.1:" + std::to_string(ntohs(place.sin_port)) + "/list");
  server.join();
  return left;
}

}  // namespace lotmere::test

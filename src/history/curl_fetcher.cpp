#include "history/curl_fetcher.hpp"

#include <curl/curl.h>

#include <new>

namespace lotmere {
namespace {

constexpr long kConnectSeconds = 10;
constexpr long kSilenceSeconds = 20;
constexpr long kMostRedirects = 5;
constexpr std::size_t kLargestReply = std::size_t{32} << 20;

struct CurlCleanup {
  void operator()(CURL* curl) const { curl_easy_cleanup(curl); }
};
using CurlHandle = std::unique_ptr<CURL, CurlCleanup>;

// Takes a part of the reply; any other answer than its size breaks the transfer off.
std::size_t take_Part(const char* bytes, std::size_t /*one*/, std::size_t count, void* target) noexcept {
  auto& reply = *static_cast<std::string*>(target);
  if (count > kLargestReply - reply.size()) return 0;
  try {
    reply.append(bytes, count);
  } catch (const std::bad_alloc&) {
    return 0;
  }
  return count;
}

class CurlFetcher final : public Fetcher {
 public:
  std::optional<std::string> fetch(const std::string& address) override {
    const CurlHandle curl(curl_easy_init());
    if (!curl) return std::nullopt;
    std::string reply;
    if (!set_Up(curl.get(), address, reply) || curl_easy_perform(curl.get()) != CURLE_OK) return std::nullopt;
    return reply;
  }

 private:
  static bool set_Up(CURL* curl, const std::string& address, std::string& reply) {
    bool fine = true;
    const auto set = [&](CURLoption option, auto value) {
      fine &= curl_easy_setopt(curl, option, value) == CURLE_OK;
    };
    set(CURLOPT_URL, address.c_str());
    set(CURLOPT_PROTOCOLS_STR, "http,https,file");
    set(CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    set(CURLOPT_FOLLOWLOCATION, 1L);
    set(CURLOPT_MAXREDIRS, kMostRedirects);
    set(CURLOPT_FAILONERROR, 1L);
    set(CURLOPT_CONNECTTIMEOUT, kConnectSeconds);
    set(CURLOPT_LOW_SPEED_LIMIT, 1L);
    set(CURLOPT_LOW_SPEED_TIME, kSilenceSeconds);
    set(CURLOPT_ACCEPT_ENCODING, "");  // every compression that the library knows
    set(CURLOPT_USERAGENT, "Lotmere");
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_WRITEFUNCTION, &take_Part);
    set(CURLOPT_WRITEDATA, static_cast<void*>(&reply));
    return fine;
  }
};

}  // namespace

std::unique_ptr<Fetcher> make_CurlFetcher() {
  static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
  static_cast<void>(ready);
  return std::make_unique<CurlFetcher>();
}

}  // namespace lotmere

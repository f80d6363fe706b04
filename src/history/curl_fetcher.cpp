#include "history/curl_fetcher.hpp"

#include <curl/curl.h>

#include <filesystem>
#include <new>
#include <system_error>

namespace lotmere {
namespace {

constexpr long kConnectSeconds = 10;
constexpr long kSilenceSeconds = 20;
constexpr long kMostRedirects = 5;
constexpr std::size_t kLargestReply = std::size_t{32} << 20;
constexpr int kMillisecondsBetweenServes = 15;

struct CurlCleanup {
  void operator()(CURL* curl) const { curl_easy_cleanup(curl); }
};
struct MultiCleanup {
  void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
};
struct UrlCleanup {
  void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
using CurlHandle = std::unique_ptr<CURL, CurlCleanup>;
using MultiHandle = std::unique_ptr<CURLM, MultiCleanup>;
using UrlHandle = std::unique_ptr<CURLU, UrlCleanup>;

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

// What an address means to the library; nothing where it is none.
UrlHandle parse_Address(const std::string& address) {
  UrlHandle url(curl_url());
  if (url && curl_url_set(url.get(), CURLUPART_URL, address.c_str(), CURLU_GUESS_SCHEME) != CURLUE_OK)
    url.reset();
  return url;
}

// A part of an address in plain characters; empty where it has none.
std::string part_Of(CURLU* url, CURLUPart part) {
  char* text = nullptr;
  if (curl_url_get(url, part, &text, CURLU_URLDECODE) != CURLUE_OK) return {};
  const std::unique_ptr<char, void (*)(void*)> owned(text, &curl_free);
  return text;
}

// A pipe or a device would be read to its end, which may never come.
bool is_Readable(CURLU* url) {
  std::error_code unknown;
  return part_Of(url, CURLUPART_SCHEME) != "file" ||
         std::filesystem::is_regular_file(part_Of(url, CURLUPART_PATH), unknown);
}

// One transfer under way; it lets go of its handle before the handle goes.
class Transfer {
 public:
  explicit Transfer(CURL* curl)
      : curl_(curl),
        multi_(curl_multi_init()),
        added_(multi_ && curl_multi_add_handle(multi_.get(), curl_) == CURLM_OK) {}
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;
  ~Transfer() {
    if (added_) curl_multi_remove_handle(multi_.get(), curl_);
  }

  // True once the whole reply came; false when it failed or the person stopped it.
  [[nodiscard]] bool run(Desk& desk) {
    int running = added_ ? 1 : 0;
    while (running != 0) {
      if (curl_multi_perform(multi_.get(), &running) != CURLM_OK) return false;
      if (running == 0) break;
      desk.serve();
      if (desk.stop_Requested()) return false;
      if (curl_multi_poll(multi_.get(), nullptr, 0, kMillisecondsBetweenServes, nullptr) != CURLM_OK)
        return false;
    }
    int left = 0;
    const CURLMsg* end = added_ ? curl_multi_info_read(multi_.get(), &left) : nullptr;
    return end != nullptr && end->msg == CURLMSG_DONE && end->data.result == CURLE_OK;
  }

 private:
  CURL* curl_;
  MultiHandle multi_;
  bool added_;
};

class CurlFetcher final : public Fetcher {
 public:
  explicit CurlFetcher(Desk& desk) : desk_(desk) {}

  std::optional<std::string> fetch(const std::string& address) override {
    const UrlHandle url = parse_Address(address);
    const CurlHandle curl(curl_easy_init());
    std::string reply;
    if (!url || !curl || !is_Readable(url.get()) || !set_Up(curl.get(), url.get(), reply))
      return std::nullopt;
    if (!Transfer(curl.get()).run(desk_)) return std::nullopt;
    return reply;
  }

 private:
  static bool set_Up(CURL* curl, CURLU* url, std::string& reply) {
    bool fine = true;
    const auto set = [&](CURLoption option, auto value) {
      fine &= curl_easy_setopt(curl, option, value) == CURLE_OK;
    };
    set(CURLOPT_CURLU, url);
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
    set(CURLOPT_QUICK_EXIT, 1L);  // a stop doesn't wait for a name server
    set(CURLOPT_WRITEFUNCTION, &take_Part);
    set(CURLOPT_WRITEDATA, static_cast<void*>(&reply));
    return fine;
  }

  Desk& desk_;
};

}  // namespace

std::unique_ptr<Fetcher> make_CurlFetcher(Desk& desk) {
  static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
  static_cast<void>(ready);
  return std::make_unique<CurlFetcher>(desk);
}

}  // namespace lotmere

#include "history/curl_fetcher.hpp"

#include <curl/curl.h>
#include <fmt/format.h>

#include <filesystem>
#include <new>
#include <system_error>

namespace lotmere {
namespace {

constexpr long kConnectSeconds = 10;
constexpr long kSilenceSeconds = 20;
constexpr long kMostRedirects = 5;
constexpr std::size_t kLargestReply = std::size_t{32} << 20;
constexpr int kMillisecondsBetweenLooks = 15;

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
std::size_t takePart(const char* bytes, std::size_t /*one*/, std::size_t count, void* target) noexcept {
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
UrlHandle parseAddress(const std::string& address) {
  UrlHandle url(curl_url());
  if (url && curl_url_set(url.get(), CURLUPART_URL, address.c_str(), CURLU_GUESS_SCHEME) != CURLUE_OK)
    url.reset();
  return url;
}

// A part of an address in plain characters; empty where it has none.
std::string partOf(CURLU* url, CURLUPart part) {
  char* text = nullptr;
  if (curl_url_get(url, part, &text, CURLU_URLDECODE) != CURLUE_OK) return {};
  const std::unique_ptr<char, void (*)(void*)> owned(text, &curl_free);
  return text;
}

// Why the file that an address names can't be read; empty where it can and for other addresses. A pipe or a
// device would be read to its end, which may never come.
std::string fileFault(CURLU* url) {
  if (partOf(url, CURLUPART_SCHEME) != "file") return {};
  std::error_code unknown;
  const auto status = std::filesystem::status(partOf(url, CURLUPART_PATH), unknown);
  if (status.type() == std::filesystem::file_type::regular) return {};
  if (unknown == std::errc::permission_denied) return reasonText(unknown);
  return std::filesystem::exists(status) ? "不是普通文件" : "没有这个文件";
}

// Why a transfer failed, in the user's words.
std::string causeText(CURL* curl, CURLcode code) {
  switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
      return "找不到这个网站";
    case CURLE_COULDNT_CONNECT:
      return "连接不上网站";
    case CURLE_OPERATION_TIMEDOUT:
      return "网站没有回应";
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
      return "网站的证书无效";
    case CURLE_SSL_CONNECT_ERROR:
      return "无法建立安全连接";
    case CURLE_HTTP_RETURNED_ERROR: {
      long status = 0;
      curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &status);
      return fmt::format("网站答复 {}{}", status, status == 404 ? "，没有这个网页" : "");
    }
    case CURLE_PARTIAL_FILE:
    case CURLE_GOT_NOTHING:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
    case CURLE_HTTP2_STREAM:
      return "连接断开，数据没有收全";
    case CURLE_FILE_COULDNT_READ_FILE:
      return "文件无法读取";
    case CURLE_WRITE_ERROR:
      return "数据太大，不是开奖数据";
    case CURLE_TOO_MANY_REDIRECTS:
    case CURLE_UNSUPPORTED_PROTOCOL:
      return "网站把请求转到了不能用的地址";
    case CURLE_BAD_CONTENT_ENCODING:
      return "数据的压缩格式有误";
    default:
      return curl_easy_strerror(code);
  }
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

  // CURLE_OK once the whole reply came; CURLE_ABORTED_BY_CALLBACK when the user stopped it.
  [[nodiscard]] CURLcode run(Course& course) {
    int running = added_ ? 1 : 0;
    while (running != 0) {
      if (curl_multi_perform(multi_.get(), &running) != CURLM_OK) return CURLE_OUT_OF_MEMORY;
      if (running == 0) break;
      if (course.advance(0)) return CURLE_ABORTED_BY_CALLBACK;
      if (curl_multi_poll(multi_.get(), nullptr, 0, kMillisecondsBetweenLooks, nullptr) != CURLM_OK)
        return CURLE_OUT_OF_MEMORY;
    }
    int left = 0;
    const CURLMsg* end = added_ ? curl_multi_info_read(multi_.get(), &left) : nullptr;
    return end != nullptr && end->msg == CURLMSG_DONE ? end->data.result : CURLE_OUT_OF_MEMORY;
  }

 private:
  CURL* curl_;
  MultiHandle multi_;
  bool added_;
};

class CurlFetcher final : public Fetcher {
 public:
  explicit CurlFetcher(Course& course) : course_(course) {}

  Fetched fetch(const std::string& address) override {
    const UrlHandle url = parseAddress(address);
    const CurlHandle curl(curl_easy_init());
    std::string reply;
    if (!url) return {std::nullopt, "网址不对"};
    if (std::string fault = fileFault(url.get()); !fault.empty()) return {std::nullopt, std::move(fault)};
    if (!curl || !setUp(curl.get(), url.get(), reply)) return {std::nullopt, "下载组件无法使用"};
    const CURLcode code = Transfer(curl.get()).run(course_);
    if (code == CURLE_OK) return {std::move(reply), {}};
    if (course_.stopRequested()) return {std::nullopt, {}, true};
    return {std::nullopt, causeText(curl.get(), code)};
  }

 private:
  static bool setUp(CURL* curl, CURLU* url, std::string& reply) {
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
    set(CURLOPT_WRITEFUNCTION, &takePart);
    set(CURLOPT_WRITEDATA, static_cast<void*>(&reply));
    return fine;
  }

  Course& course_;
};

}  // namespace

std::unique_ptr<Fetcher> makeCurlFetcher(Course& course) {
  static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
  static_cast<void>(ready);
  return std::make_unique<CurlFetcher>(course);
}

}  // namespace lotmere

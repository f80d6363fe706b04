#include "history/detail.hpp"

#include <algorithm>

#include "core/periods.hpp"
#include "core/text.hpp"
#include "history/addresses.hpp"
#include "history/fetch_job.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kKeyLength = 5;  // two digits of the year, three of the draw

constexpr std::string_view kNotFound = "很抱歉，没有找到该期的开奖数据。请稍后再试。。。";

// Nothing where the text doesn't end in so many digits.
std::optional<std::string> page_Key(std::string_view period) {
  if (period.size() < kKeyLength) return std::nullopt;
  const std::string_view key = period.substr(period.size() - kKeyLength);
  if (!std::ranges::all_of(key, [](char c) { return c >= '0' && c <= '9'; })) return std::nullopt;
  return std::string(key);
}

// The name of the game, in either of the encodings that pages come in.
bool is_AboutTheGame(const std::string& page) {
  constexpr std::string_view utf8 = "双色球";
  constexpr std::string_view gb18030 = "\xCB\xAB\xC9\xAB\xC7\xF2";
  return page.find(utf8) != std::string::npos || page.find(gb18030) != std::string::npos;
}

}  // namespace

std::optional<std::string> find_DetailPage(Store& store, Desk& desk, Fetcher& fetcher,
                                           std::string_view period) {
  const std::string_view typed = trim(period);
  if (typed.empty()) return std::nullopt;
  if (const auto key = page_Key(typed)) {
    const auto prefix = known_Address(store, desk, AddressUse::detail_page);
    if (!prefix) return std::nullopt;
    std::string address = *prefix + *key + ".html";
    const Fetched page = fetch_AsJob(desk, fetcher, address);
    if (page.stopped) return std::nullopt;
    if (is_AboutTheGame(page.reply.value_or(""))) {
      remember_Address(store, AddressUse::detail_page, *prefix);
      return address;
    }
  }
  desk.tell(kNotFound, Tone::warning);
  return std::nullopt;
}

std::optional<std::string> query_DetailPage(Store& store, Desk& desk, Fetcher& fetcher) {
  const auto period = desk.ask_Text("请输入您要查询的期号（如:2008118）：", "输入要查询的期号",
                                    std::to_string(latestPeriod(store)));
  return period ? find_DetailPage(store, desk, fetcher, *period) : std::nullopt;
}

}  // namespace lotmere

#include "history/detail.hpp"

#include <algorithm>
#include <array>

#include "core/periods.hpp"
#include "core/text.hpp"
#include "history/addresses.hpp"

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

// Anything else would be handed to the system to be opened by whatever program takes it.
bool is_WebAddress(std::string_view address) {
  constexpr std::array<std::string_view, 3> schemes{"http://", "https://", "file://"};
  return std::ranges::any_of(schemes, [&](std::string_view scheme) { return address.starts_with(scheme); });
}

// The name of the game, in either of the encodings that pages come in.
bool is_AboutTheGame(const std::string& page) {
  constexpr std::string_view utf8 = "双色球";
  constexpr std::string_view gb18030 = "\xCB\xAB\xC9\xAB\xC7\xF2";
  return page.find(utf8) != std::string::npos || page.find(gb18030) != std::string::npos;
}

std::optional<std::string> prefix_Of(Store& store, Desk& desk) {
  std::string prefix = stored_Address(store, AddressUse::detail_page);
  if (!prefix.empty()) return prefix;
  const auto typed = desk.ask_Text("请输入详细开奖页面的网址中期号之前的部分（如:https://网站/目录/）：",
                                   "输入开奖页面的网址", "");
  prefix = trim(typed.value_or(""));
  if (prefix.empty()) return std::nullopt;
  if (is_WebAddress(prefix)) return prefix;
  desk.tell("网址应以 http:// 或 https:// 开头。", Tone::warning);
  return std::nullopt;
}

}  // namespace

std::optional<std::string> find_DetailPage(Store& store, Desk& desk, Fetcher& fetcher,
                                           std::string_view period) {
  const std::string_view typed = trim(period);
  if (typed.empty()) return std::nullopt;
  if (const auto key = page_Key(typed)) {
    const auto prefix = prefix_Of(store, desk);
    if (!prefix) return std::nullopt;
    std::string address = *prefix + *key + ".html";
    if (is_AboutTheGame(fetcher.fetch(address).value_or(""))) {
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

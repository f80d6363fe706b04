#include "history/detail.hpp"

#include <fmt/format.h>

#include "base/text.hpp"
#include "game/game.hpp"
#include "history/addresses.hpp"
#include "history/fetch_job.hpp"
#include "store/periods.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kKeyLength = 5;  // two digits of the year, three of the draw

constexpr std::string_view kNotFound = "很抱歉，没有找到该期的开奖数据。请稍后再试。。。";

// Nothing, told, where the text is neither a period nor its last five digits.
std::optional<std::string> pageKey(Desk& desk, std::string_view typed) {
  const std::string digits = plainDigits(typed);
  const bool is_key = digits.size() == kKeyLength && parsePeriod("20" + digits);
  const auto period = is_key ? parsePeriod("20" + digits) : readPeriod(desk, typed);
  return period ? std::optional(std::to_string(*period).substr(2)) : std::nullopt;
}

// The name of the game, in either of the encodings that pages come in.
bool isAboutTheGame(const std::string& page) {
  constexpr std::string_view utf8 = "双色球";
  constexpr std::string_view gb18030 = "\xCB\xAB\xC9\xAB\xC7\xF2";
  return page.find(utf8) != std::string::npos || page.find(gb18030) != std::string::npos;
}

}  // namespace

std::optional<std::string> findDetailPage(Store& store, Desk& desk, Fetcher& fetcher, std::string_view period,
                                          std::string& prefix_typed) {
  const auto key = pageKey(desk, period);
  const auto prefix = key ? knownAddress(store, desk, AddressUse::detail_page, prefix_typed) : std::nullopt;
  if (!prefix) return std::nullopt;
  std::string address = *prefix + *key + ".html";
  const Fetched page = fetchAsJob(desk, fetcher, address);
  if (page.stopped) return std::nullopt;
  if (isAboutTheGame(page.reply.value_or(""))) {
    rememberAddress(store, AddressUse::detail_page, *prefix);
    return address;
  }
  std::string text(kNotFound);
  if (!page.cause.empty()) text += fmt::format("{0}{0}原因：{1}。", kLineBreak, page.cause);
  desk.tell(text, Tone::warning);
  return std::nullopt;
}

std::optional<std::string> queryDetailPage(Store& store, Desk& desk, Fetcher& fetcher,
                                           std::string& prefix_typed) {
  const auto period = desk.askText("请输入您要查询的期号（如:2008118）：", "输入要查询的期号",
                                   std::to_string(latestPeriod(store)));
  return period ? findDetailPage(store, desk, fetcher, *period, prefix_typed) : std::nullopt;
}

}  // namespace lotmere

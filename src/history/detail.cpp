#include "history/detail.hpp"

#include <fmt/format.h>

#include "core/periods.hpp"
#include "core/text.hpp"
#include "history/addresses.hpp"
#include "history/fetch_job.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kKeyLength = 5;  // two digits of the year, three of the draw

constexpr std::string_view kNotFound = "很抱歉，没有找到该期的开奖数据。请稍后再试。。。";

// Nothing, told, where the text is neither a period nor its last five digits.
std::optional<std::string> page_Key(Desk& desk, std::string_view typed) {
  const std::string digits = plain_Digits(typed);
  const bool is_Key = digits.size() == kKeyLength && parse_Period("20" + digits);
  const auto period = is_Key ? parse_Period("20" + digits) : read_Period(desk, typed);
  return period ? std::optional(std::to_string(*period).substr(2)) : std::nullopt;
}

// The name of the game, in either of the encodings that pages come in.
bool is_AboutTheGame(const std::string& page) {
  constexpr std::string_view utf8 = "双色球";
  constexpr std::string_view gb18030 = "\xCB\xAB\xC9\xAB\xC7\xF2";
  return page.find(utf8) != std::string::npos || page.find(gb18030) != std::string::npos;
}

}  // namespace

std::optional<std::string> find_DetailPage(Store& store, Desk& desk, Fetcher& fetcher,
                                           std::string_view period, std::string& prefix_typed) {
  const auto key = page_Key(desk, period);
  const auto prefix = key ? known_Address(store, desk, AddressUse::detail_page, prefix_typed) : std::nullopt;
  if (!prefix) return std::nullopt;
  std::string address = *prefix + *key + ".html";
  const Fetched page = fetch_AsJob(desk, fetcher, address);
  if (page.stopped) return std::nullopt;
  if (is_AboutTheGame(page.reply.value_or(""))) {
    remember_Address(store, AddressUse::detail_page, *prefix);
    return address;
  }
  std::string text(kNotFound);
  if (!page.cause.empty()) text += fmt::format("{0}{0}原因：{1}。", kLineBreak, page.cause);
  desk.tell(text, Tone::warning);
  return std::nullopt;
}

std::optional<std::string> query_DetailPage(Store& store, Desk& desk, Fetcher& fetcher,
                                            std::string& prefix_typed) {
  const auto period = desk.ask_Text("请输入您要查询的期号（如:2008118）：", "输入要查询的期号",
                                    std::to_string(latestPeriod(store)));
  return period ? find_DetailPage(store, desk, fetcher, *period, prefix_typed) : std::nullopt;
}

}  // namespace lotmere

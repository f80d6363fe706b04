#include "history/addresses.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "base/text.hpp"

namespace lotmere {
namespace {

struct Question {
  std::string_view prompt;
  std::string_view title;
};

Question questionFor(AddressUse use) {
  if (use == AddressUse::draw_list)
    return {
        "请输入开奖数据的下载地址（http、https 或 file 地址，如:https://网站/开奖数据.txt）或文件的路径：",
        "输入下载地址"};
  return {"请输入详细开奖页面的网址中期号之前的部分（如:https://网站/目录/）：", "输入开奖页面的网址"};
}

bool beginsWith(std::string_view text, std::string_view beginning) {
  return text.size() > beginning.size() &&
         std::ranges::equal(text.substr(0, beginning.size()), beginning,
                            [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + ('a' - 'A') : a) == b; });
}

// Anything else would be handed to the system to be opened by whatever program takes it.
bool isWebAddress(std::string_view address) {
  constexpr std::string_view schemes[] = {"http://", "https://", "file:/"};
  return std::ranges::any_of(schemes, [&](auto scheme) { return beginsWith(address, scheme); });
}

// Blanks and what steers a terminal, as an address writes them, and these `signs` as well.
std::string encode(std::string_view text, std::string_view signs) {
  std::string encoded;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte <= ' ' || byte == 0x7F || signs.find(c) != std::string_view::npos)
      encoded += fmt::format("%{:02X}", byte);
    else
      encoded += c;
  }
  return encoded;
}

// What the user types, as an address. Nothing when they cancel, and empty when they leave it empty.
std::optional<std::string> askAddress(Desk& desk, AddressUse use, std::string proposed) {
  const Question question = questionFor(use);
  for (;;) {
    const std::string shown = shownAddress(proposed);
    auto typed = desk.askText(question.prompt, question.title, shown);
    if (!typed) return std::nullopt;
    if (trim(*typed).empty()) return std::string();
    if (*typed != shown) proposed = *std::move(typed);  // else its password stays
    if (auto address = readAddress(desk, proposed)) return address;
  }
}

}  // namespace

std::string storedAddress(Store& store, AddressUse use) {
  Query rows = store.query(R"(SELECT "地址" FROM "下载地址" ORDER BY rowid LIMIT 1 OFFSET ?)");
  rows.bind(static_cast<int>(use));
  return rows.next() ? rows.text(0) : std::string();
}

void rememberAddress(Store& store, AddressUse use, const std::string& address) {
  if (storedAddress(store, use) == address) return;
  const int place = static_cast<int>(use);
  StoreChange change(store);
  for (auto rows = store.value(R"(SELECT count(*) FROM "下载地址")"); rows <= place; ++rows)
    store.query(R"(INSERT INTO "下载地址" VALUES (''))").run();
  store
      .query(R"(UPDATE "下载地址" SET "地址"=?1
                WHERE rowid=(SELECT rowid FROM "下载地址" ORDER BY rowid LIMIT 1 OFFSET ?2))")
      .bind(address, place)
      .run();
  change.commit();
}

std::optional<std::string> makeAddress(std::string_view typed) {
  constexpr std::string_view signs_of_addresses = "%?#";
  const std::string_view text = trim(typed);
  if (isWebAddress(text)) return encode(text, {});
  const std::filesystem::path path(text);
  std::error_code unknown;
  if (!path.is_absolute() && !std::filesystem::is_regular_file(path, unknown)) return std::nullopt;
  return "file://" + encode(std::filesystem::absolute(path).string(), signs_of_addresses);
}

std::optional<std::string> readAddress(Desk& desk, std::string_view typed) {
  auto address = makeAddress(typed);
  if (!address)
    desk.tell("网址应以 http://、https:// 或 file:// 开头，或者是一个文件的路径。", Tone::warning);
  return address;
}

std::string shownAddress(const std::string& address) {
  const auto scheme = address.find("://");
  if (scheme == std::string::npos) return address;
  const auto host = scheme + 3;
  const auto at = address.substr(0, address.find_first_of("/?#", host)).rfind('@');
  const auto colon = address.find(':', host);
  if (at == std::string::npos || at < host || colon > at) return address;
  return address.substr(0, colon) + address.substr(at);
}

std::optional<std::string> knownAddress(Store& store, Desk& desk, AddressUse use, std::string& typed) {
  if (std::string stored = storedAddress(store, use); !stored.empty()) return stored;
  auto address = askAddress(desk, use, typed);
  if (!address || address->empty()) return std::nullopt;
  typed = *address;
  return address;
}

Outcome changeAddress(Store& store, Desk& desk, AddressUse use) {
  const auto address = askAddress(desk, use, storedAddress(store, use));
  if (address) rememberAddress(store, use, *address);
  return doneIf(address.has_value());
}

}  // namespace lotmere

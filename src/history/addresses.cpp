#include "history/addresses.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "core/text.hpp"

namespace lotmere {
namespace {

struct Question {
  std::string_view prompt;
  std::string_view title;
};

Question question_For(AddressUse use) {
  if (use == AddressUse::draw_list)
    return {
        "请输入开奖数据的下载地址（http、https 或 file 地址，如:https://网站/开奖数据.txt）或文件的路径：",
        "输入下载地址"};
  return {"请输入详细开奖页面的网址中期号之前的部分（如:https://网站/目录/）：", "输入开奖页面的网址"};
}

bool begins_With(std::string_view text, std::string_view beginning) {
  return text.size() > beginning.size() &&
         std::ranges::equal(text.substr(0, beginning.size()), beginning,
                            [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + ('a' - 'A') : a) == b; });
}

// Anything else would be handed to the system to be opened by whatever program takes it.
bool is_WebAddress(std::string_view address) {
  constexpr std::string_view schemes[] = {"http://", "https://", "file:/"};
  return std::ranges::any_of(schemes, [&](auto scheme) { return begins_With(address, scheme); });
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
std::optional<std::string> ask_Address(Desk& desk, AddressUse use, std::string proposed) {
  const Question question = question_For(use);
  for (;;) {
    const std::string shown = shown_Address(proposed);
    auto typed = desk.ask_Text(question.prompt, question.title, shown);
    if (!typed) return std::nullopt;
    if (trim(*typed).empty()) return std::string();
    if (*typed != shown) proposed = *std::move(typed);  // else its password stays
    if (auto address = read_Address(desk, proposed)) return address;
  }
}

}  // namespace

std::string stored_Address(Store& store, AddressUse use) {
  Query rows = store.query(R"(SELECT "地址" FROM "下载地址" ORDER BY rowid LIMIT 1 OFFSET ?)");
  rows.bind(static_cast<int>(use));
  return rows.next() ? rows.text(0) : std::string();
}

void remember_Address(Store& store, AddressUse use, const std::string& address) {
  if (stored_Address(store, use) == address) return;
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

std::optional<std::string> make_Address(std::string_view typed) {
  constexpr std::string_view signs_of_addresses = "%?#";
  const std::string_view text = trim(typed);
  if (is_WebAddress(text)) return encode(text, {});
  const std::filesystem::path path(text);
  std::error_code unknown;
  if (!path.is_absolute() && !std::filesystem::is_regular_file(path, unknown)) return std::nullopt;
  return "file://" + encode(std::filesystem::absolute(path).string(), signs_of_addresses);
}

std::optional<std::string> read_Address(Desk& desk, std::string_view typed) {
  auto address = make_Address(typed);
  if (!address)
    desk.tell("网址应以 http://、https:// 或 file:// 开头，或者是一个文件的路径。", Tone::warning);
  return address;
}

std::string shown_Address(const std::string& address) {
  const auto scheme = address.find("://");
  if (scheme == std::string::npos) return address;
  const auto host = scheme + 3;
  const auto at = address.substr(0, address.find_first_of("/?#", host)).rfind('@');
  const auto colon = address.find(':', host);
  if (at == std::string::npos || at < host || colon > at) return address;
  return address.substr(0, colon) + address.substr(at);
}

std::optional<std::string> known_Address(Store& store, Desk& desk, AddressUse use, std::string& typed) {
  if (std::string stored = stored_Address(store, use); !stored.empty()) return stored;
  auto address = ask_Address(desk, use, typed);
  if (!address || address->empty()) return std::nullopt;
  typed = *address;
  return address;
}

bool change_Address(Store& store, Desk& desk, AddressUse use) {
  const auto address = ask_Address(desk, use, stored_Address(store, use));
  if (address) remember_Address(store, use, *address);
  return address.has_value();
}

}  // namespace lotmere

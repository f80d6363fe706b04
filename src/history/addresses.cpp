#include "history/addresses.hpp"

#include <strings.h>

#include <algorithm>
#include <string_view>

#include "core/text.hpp"

namespace lotmere {
namespace {

struct Question {
  std::string_view prompt;
  std::string_view title;
};

Question question_For(AddressUse use) {
  if (use == AddressUse::draw_list)
    return {"请输入开奖数据的下载地址（http、https 或 file 地址，如:https://网站/开奖数据.txt）：",
            "输入下载地址"};
  return {"请输入详细开奖页面的网址中期号之前的部分（如:https://网站/目录/）：", "输入开奖页面的网址"};
}

// Anything else would be handed to the system to be opened by whatever program takes it.
bool is_WebAddress(std::string_view address) {
  constexpr std::string_view schemes[] = {"http://", "https://", "file://"};
  return std::ranges::any_of(schemes, [&](std::string_view scheme) {
    return address.size() > scheme.size() && ::strncasecmp(address.data(), scheme.data(), scheme.size()) == 0;
  });
}

// What the person types, without blanks around it. Nothing when they cancel, and nothing, and told, when it
// is neither an address nor empty.
std::optional<std::string> ask_Address(Desk& desk, AddressUse use, const std::string& proposed) {
  const Question question = question_For(use);
  const auto typed = desk.ask_Text(question.prompt, question.title, proposed);
  if (!typed) return std::nullopt;
  const std::string_view address = trim(*typed);
  if (address.empty() || is_WebAddress(address)) return std::string(address);
  desk.tell("网址应以 http://、https:// 或 file:// 开头。", Tone::warning);
  return std::nullopt;
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

std::optional<std::string> known_Address(Store& store, Desk& desk, AddressUse use) {
  if (std::string stored = stored_Address(store, use); !stored.empty()) return stored;
  auto typed = ask_Address(desk, use, {});
  if (!typed || typed->empty()) return std::nullopt;
  return typed;
}

bool change_Address(Store& store, Desk& desk, AddressUse use) {
  const auto typed = ask_Address(desk, use, stored_Address(store, use));
  if (typed) remember_Address(store, use, *typed);
  return typed.has_value();
}

}  // namespace lotmere

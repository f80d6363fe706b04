// The web addresses that the store remembers, rows of `下载地址`.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/desk.hpp"
#include "base/outcome.hpp"
#include "store/store.hpp"

namespace lotmere {

// What an address is for; the value is the place of its row. A row comes into being when its address is first
// remembered, so a store that has fewer rows needs no upgrade.
enum class AddressUse : int {
  draw_list = 0,   // serves the list of all draws
  detail_page = 1  // what stands in front of the period in the address of a draw's page
};

// Empty until the first one is remembered.
[[nodiscard]] std::string storedAddress(Store& store, AddressUse use);
void rememberAddress(Store& store, AddressUse use, const std::string& address);

// The address that a typed text means: an http, https or file address, or the path of a file, which becomes a
// file address (a path that isn't absolute only where such a file exists). Blanks around it go, those inside
// are encoded. Nothing for anything else, other schemes among it.
[[nodiscard]] std::optional<std::string> makeAddress(std::string_view typed);
// The same, told in one line where it is none.
[[nodiscard]] std::optional<std::string> readAddress(Desk& desk, std::string_view typed);

// An address as it may be shown: without the password that stands in it.
[[nodiscard]] std::string shownAddress(const std::string& address);

// The stored address, or while none is stored the one that the user types then, without remembering it.
// `typed` is what they typed the last time and is proposed; it becomes what they type now. What is no address
// is told, and asked for again with the typed text in the box. Nothing when they cancel or leave it empty.
[[nodiscard]] std::optional<std::string> knownAddress(Store& store, Desk& desk, AddressUse use,
                                                      std::string& typed);

// The command: asks for the address, the stored one proposed, and remembers it; an empty one forgets it. What
// is no address is told and asked for again. False, and nothing has changed, when the user cancels.
Outcome changeAddress(Store& store, Desk& desk, AddressUse use);

}  // namespace lotmere

// The web addresses that the store remembers, rows of `下载地址`.
#pragma once

#include <optional>
#include <string>

#include "core/desk.hpp"
#include "core/store.hpp"

namespace lotmere {

// What an address is for; the value is the place of its row. A row comes into being when its address is first
// remembered, so a store that has fewer rows needs no upgrade.
enum class AddressUse : int {
  draw_list = 0,   // serves the list of all draws
  detail_page = 1  // what stands in front of the period in the address of a draw's page
};

// Empty until the first one is remembered.
[[nodiscard]] std::string stored_Address(Store& store, AddressUse use);
void remember_Address(Store& store, AddressUse use, const std::string& address);

// The stored address, or while none is stored the one that the person types then, without remembering it.
// Nothing when they cancel or leave it empty; nothing, and told, when it is no http, https or file address.
[[nodiscard]] std::optional<std::string> known_Address(Store& store, Desk& desk, AddressUse use);

// The command: asks for the address, the stored one proposed, and remembers it; an empty one forgets it. False
// when the person cancels, and, told, when it is no http, https or file address: nothing changes then.
bool change_Address(Store& store, Desk& desk, AddressUse use);

}  // namespace lotmere

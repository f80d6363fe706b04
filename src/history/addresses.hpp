// The web addresses that the store remembers, rows of `下载地址`.
#pragma once

#include <string>

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

}  // namespace lotmere

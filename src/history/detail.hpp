// The page of a single draw on a web site (`cmm_kjqk`).
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/desk.hpp"
#include "core/platform.hpp"
#include "core/store.hpp"

namespace lotmere {

// The address of a draw's page for the browser: the stored prefix, the last five characters of the typed
// period (08118 of 2008118), ".html". While no prefix is stored, the person is asked for one, and it is
// remembered once it has led to a page. Nothing when the period is empty or the person cancels or stops the
// fetch; nothing, and told, when the prefix is no http, https or file address, when the five characters aren't
// all digits, or when no page about the game stands there.
[[nodiscard]] std::optional<std::string> find_DetailPage(Store& store, Desk& desk, Fetcher& fetcher,
                                                         std::string_view period);

// The command: asks for the period, the newest one proposed, and finds its page.
[[nodiscard]] std::optional<std::string> query_DetailPage(Store& store, Desk& desk, Fetcher& fetcher);

}  // namespace lotmere

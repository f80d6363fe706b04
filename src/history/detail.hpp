// The page of a single draw on a web site.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/desk.hpp"
#include "base/platform.hpp"
#include "store/store.hpp"

namespace lotmere {

// The address of a draw's page for the browser: the stored prefix, the last five digits of the typed period
// (08118 of 2008118, or these five alone), ".html". While no prefix is stored, the user is asked for one,
// `prefix_typed` proposed (see knownAddress), and it is remembered once it has led to a page. Nothing when
// the user cancels or stops the fetch; nothing, and told, when what was typed is no period or when no page
// about the game stands there, with the cause where the fetch failed.
[[nodiscard]] std::optional<std::string> findDetailPage(Store& store, Desk& desk, Fetcher& fetcher,
                                                        std::string_view period, std::string& prefix_typed);

// The command: asks for the period, the newest one proposed, and finds its page.
[[nodiscard]] std::optional<std::string> queryDetailPage(Store& store, Desk& desk, Fetcher& fetcher,
                                                         std::string& prefix_typed);

}  // namespace lotmere

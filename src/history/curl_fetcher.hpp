// Web addresses read through libcurl.
#pragma once

#include <memory>

#include "core/platform.hpp"

namespace lotmere {

// Reads http, https and file addresses; a redirect may lead to http or https only. A fetch gives nothing when
// the address can't be reached in 10 seconds, when no byte comes for 20 seconds, when the server answers with
// status 400 or above, when the reply breaks off before its announced end, or when it is longer than 32 MiB.
// Never throws.
[[nodiscard]] std::unique_ptr<Fetcher> make_CurlFetcher();

}  // namespace lotmere

// Web addresses read through libcurl.
#pragma once

#include <memory>

#include "base/desk.hpp"
#include "base/platform.hpp"

namespace lotmere {

// Reads http, https and file addresses; a redirect may lead to http or https only. A fetch gives a cause when
// the address can't be reached in 10 seconds, when no byte comes for 20 seconds, when the server answers with
// status 400 or above, when the reply breaks off before its announced end, or when it is longer than 32 MiB;
// and at once when a file address names anything but a regular file, which could stay silent for ever.
//
// The desk is served all the while, on the caller's thread; a stop asked for there breaks the fetch off. It
// is the caller's to clear. Nothing is thrown but what the desk throws while it is served; the connection is
// closed then.
[[nodiscard]] std::unique_ptr<Fetcher> makeCurlFetcher(Desk& desk);

}  // namespace lotmere

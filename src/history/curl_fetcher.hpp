// Web addresses read through libcurl.
#pragma once

#include <memory>

#include "base/course.hpp"
#include "base/platform.hpp"

namespace lotmere {

// Reads http, https and file addresses; a redirect may lead to http or https only. A fetch gives a cause when
// the address can't be reached in 10 seconds, when no byte comes for 20 seconds, when the server answers with
// status 400 or above, when the reply breaks off before its announced end, or when it is longer than 32 MiB;
// and at once when a file address names anything but a regular file, which could stay silent for ever.
//
// A fetch is a leg of the course, begun by the caller, and looks at it every few milliseconds; a stop breaks
// it off and is the caller's to clear. Nothing is thrown but what the course throws; the connection is closed
// then.
[[nodiscard]] std::unique_ptr<Fetcher> makeCurlFetcher(Course& course);

}  // namespace lotmere

// A fetch that the user watches and can stop.
#pragma once

#include <string>

#include "base/desk.hpp"
#include "base/platform.hpp"

namespace lotmere {

// Fetches under a bar without a length. A stop in the last moment counts, even if the whole reply came by
// then.
[[nodiscard]] Fetched fetchAsJob(Desk& desk, Fetcher& fetcher, const std::string& address);

}  // namespace lotmere

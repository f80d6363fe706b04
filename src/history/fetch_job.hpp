// A fetch that the person watches and can stop.
#pragma once

#include <optional>
#include <string>

#include "core/desk.hpp"
#include "core/platform.hpp"

namespace lotmere {

struct Fetched {
  std::optional<std::string> reply;  // nothing where the address can't be read, or after a stop
  bool stopped = false;
};

// Fetches under a bar without a length. A stop in the last moment counts, even if the whole reply came by then.
[[nodiscard]] Fetched fetch_AsJob(Desk& desk, Fetcher& fetcher, const std::string& address);

}  // namespace lotmere

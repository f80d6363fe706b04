// A web server on the loopback, for one caller.
#pragma once

#include <functional>
#include <string>

namespace lotmere::test {

// Runs `work` on the address of a server that gives one caller one answer, and then closes or holds the line.
// Whether the caller left while it was held. The server ends by itself when nobody comes or leaves.
bool withServer(const std::string& answer, bool holds, const std::function<void(std::string)>& work);

}  // namespace lotmere::test

// How a password is kept: as a salted hash that is slow to compute, so that nobody reads it in the store.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace lotmere {

// What one hash costs. A stored hash names its own cost, so hashes of different limits stand side by side.
struct HashLimits {
  unsigned long long passes;
  std::size_t memory;  // bytes

  // For somebody who waits for a login: 64 MiB, about a tenth of a second.
  [[nodiscard]] static HashLimits interactive();
  // The cheapest that the library has; for tests.
  [[nodiscard]] static HashLimits lowest();
};

// A hash of the password with a new salt: ASCII, at most 127 characters. Two calls give two texts. Throws
// std::runtime_error when the machine has no memory for it.
[[nodiscard]] std::string hashPassword(std::string_view password, HashLimits limits);

// Whether a stored hash was made of this password; false for a text that is no hash. Throws like
// hashPassword().
[[nodiscard]] bool isHashOf(const std::string& hash, std::string_view password);

}  // namespace lotmere

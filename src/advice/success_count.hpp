// How many of some independent trials succeed by chance alone.
#pragma once

#include <span>
#include <vector>

namespace lotmere {

// By the number of successes, 0 to all, how likely it is. `chances` are those of the trials, each 0 to 1:
// equal ones give the binomial distribution, others the Poisson binomial one. Exact but for rounding, in time
// that grows with the square of the number of trials (3,500 take some ten milliseconds).
[[nodiscard]] std::vector<double> successDistribution(std::span<const double> chances);

struct CountRange {
  int low = 0;
  int high = 0;

  [[nodiscard]] bool holds(int count) const { return count >= low && count <= high; }
  friend bool operator==(const CountRange&, const CountRange&) = default;
};
// The central range that holds the count with a probability of `confidence` (0 to 1) or more: at most half of
// the rest lies below it, and at most half above.
[[nodiscard]] CountRange centralRange(std::span<const double> distribution, double confidence = 0.95);

}  // namespace lotmere

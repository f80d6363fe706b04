#include "advice/success_count.hpp"

#include <algorithm>

namespace lotmere {
namespace {

// Below it a probability changes no figure that anybody sees; numbers near the smallest that a double holds
// would make the sums slow.
constexpr double kNothing = 1e-200;

}  // namespace

std::vector<double> successDistribution(std::span<const double> chances) {
  std::vector<double> distribution(chances.size() + 1);
  distribution[0] = 1;
  std::size_t trials = 0;
  for (const double chance : chances) {
    ++trials;
    for (std::size_t k = trials; k > 0; --k) {
      const double p = distribution[k] * (1 - chance) + distribution[k - 1] * chance;
      distribution[k] = p < kNothing ? 0 : p;
    }
    distribution[0] *= 1 - chance;
    if (distribution[0] < kNothing) distribution[0] = 0;
  }
  return distribution;
}

CountRange centralRange(std::span<const double> distribution, double confidence) {
  const double outside = (1 - confidence) / 2;
  CountRange range;
  double up_to = 0;
  int count = 0;
  for (const double p : distribution) {
    up_to += p;
    if (up_to <= outside) range.low = count + 1;
    if (up_to < 1 - outside) range.high = count + 1;
    ++count;
  }
  const int most = count - 1;
  return {std::min(range.low, most), std::min(range.high, most)};
}

}  // namespace lotmere

#include "game/prizes.hpp"

#include <numeric>

namespace lotmere {

int prizeTier(const Hits& hits) {
  switch (hits.reds + hits.blue) {
    case 7:
      return 1;
    case 6:
      return hits.blue == 0 ? 2 : 3;
    case 5:
      return 4;
    case 4:
      return 5;
    default:
      return hits.blue == 1 ? 6 : 0;
  }
}

int leastPrize(int shared) {
  int least = 1;
  for (const int blue : {0, 1}) {
    const Hits hits{shared - blue, blue};
    if (hits.reds < 0 || hits.reds > kRedsPerTicket) continue;
    const int tier = prizeTier(hits);
    if (tier == 0) return 0;
    least = tier > least ? tier : least;
  }
  return least;
}

std::int64_t fixedWinnings(const PrizeTally& tally) {
  return std::inner_product(tally.begin(), tally.end(), kFixedPrizes.begin(), std::int64_t{0});
}

}  // namespace lotmere

// Numbers of chance, the same in every run.
#pragma once

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include "game/game.hpp"

namespace lotmere::test {

// Six different reds of 1 to `reds`, ascending, and a blue.
inline DrawNumbers randomNumbers(std::mt19937& random, int reds = kRedCount) {
  std::vector<int> pool(reds);
  std::iota(pool.begin(), pool.end(), 1);
  DrawNumbers numbers{{}, std::uniform_int_distribution(1, kBlueCount)(random)};
  std::sample(pool.begin(), pool.end(), numbers.reds.begin(), kRedsPerTicket, random);
  return numbers;
}

}  // namespace lotmere::test

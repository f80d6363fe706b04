#include "core/game.hpp"

namespace lotmere {

bool is_Draw(const DrawNumbers& numbers) {
  int before = 0;
  for (const int red : numbers.reds) {
    if (red <= before || red > kRedCount) return false;
    before = red;
  }
  return numbers.blue >= 1 && numbers.blue <= kBlueCount;
}

}  // namespace lotmere

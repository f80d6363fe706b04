// What the analyses share: reds or blues, the walk over the numbers of a draw, and the course of a walk over
// many draws.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "base/desk.hpp"
#include "game/game.hpp"
#include "store/store.hpp"

namespace lotmere {

// Which numbers an analysis is about.
enum class BallColour { red, blue };

// Numbers run from 1 to this.
[[nodiscard]] constexpr int ballCount(BallColour balls) {
  return balls == BallColour::red ? kRedCount : kBlueCount;
}

// "红球" or "蓝球".
[[nodiscard]] std::string_view ballName(BallColour balls);

// Calls `visit(number)` for each number of a draw, a red that stands twice once; nothing for the missing
// number.
template <class Visit>
void forEachBall(BallColour balls, const DrawNumbers& numbers, Visit visit) {
  if (balls == BallColour::blue) {
    if (numbers.blue != 0) visit(numbers.blue);
    return;
  }
  std::uint64_t seen = 0;
  for (const int red : numbers.reds) {
    if (red == 0 || (seen >> red & 1) != 0) continue;
    seen |= std::uint64_t{1} << red;
    visit(red);
  }
}

// The bar over a walk of `rows` steps; a short walk is over before a bar could be seen and gets none. Can't
// be stopped: the longest walk is a matter of tenths of a second.
class WalkProgress {
 public:
  WalkProgress(Desk& desk, std::int64_t rows);
  // One row more is done; looks at the course now and then.
  void step();

 private:
  std::optional<CourseLeg> job_;
  std::int64_t done_ = 0;
};

}  // namespace lotmere

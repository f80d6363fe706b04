// The prizes of the game: which tier a ticket reaches, and what is paid for it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "game/game.hpp"

namespace lotmere {

inline constexpr std::size_t kPrizeTiers = 6;
// How many tickets reach each tier, the first prize first.
using PrizeTally = std::array<std::int64_t, kPrizeTiers>;

// What a ticket has in common with a draw: 0 to 6 reds, the blue or not. A red that stands twice on an
// imported ticket counts twice.
struct Hits {
  int reds = 0;
  int blue = 0;

  friend bool operator==(const Hits&, const Hits&) = default;
};

// The prize, 1 to 6; 0 where there is none. Six reds alone are the second, five reds with the blue the third.
[[nodiscard]] int prizeTier(const Hits& hits);
// The prize that a ticket has at least when it shares `shared` (0 to 7) of its seven numbers with the draw,
// whichever they are; 0 where it may have none.
[[nodiscard]] int leastPrize(int shared);

// In yuan. The first two prizes float with the pool and count as 0 here.
inline constexpr std::int64_t kTicketPrice = 2;
inline constexpr PrizeTally kFixedPrizes{0, 0, 3000, 200, 10, 5};
[[nodiscard]] std::int64_t fixedWinnings(const PrizeTally& tally);

}  // namespace lotmere

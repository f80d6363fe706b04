// What the tickets that a run left promise, were the draw one of those that it began with.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "base/course.hpp"
#include "game/prizes.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {

struct Guarantee {
  std::int64_t draws = 0;  // tickets that were taken in turn as the draw
  std::int64_t held = 0;   // tickets that were checked against each
  // Draws by the best prize among the held tickets; [0] those that leave nothing.
  std::array<std::int64_t, kPrizeTiers + 1> best{};
  PrizeTally won{};  // tickets that won each prize, over all draws together

  friend bool operator==(const Guarantee&, const Guarantee&) = default;
};

// Takes each of `draws` in turn as the draw and checks all of `held` against it. Tickets of any kind: out of
// order, twice, with a red repeated or a number missing. `threads` work side by side; the outcome is the
// same. Nothing when the course stops it.
[[nodiscard]] std::optional<Guarantee> checkGuarantee(std::span<const Balls> draws,
                                                      std::span<const Balls> held, Course& course,
                                                      int threads = 1);

// A line a prize, separated by tabs: best prize, draws, percent of the draws, mean number of tickets that win
// it. Then the cost and the mean of the fixed prizes, and what all of it rests on. `taken` names the tickets
// taken as the draw, "过滤前".
[[nodiscard]] std::string guaranteeText(const Guarantee& guarantee, std::string_view taken);

}  // namespace lotmere

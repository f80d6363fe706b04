// The search for larger sets of reds in a set of sixes.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "game/game.hpp"

namespace lotmere {

// Sixes to be taken apart into sets of reds. For each five reds it knows the sixth ones that make up a six
// with them, so that whether a set can take another red is a few look-ups, however many sixes there are.
class RedJoiner {
 public:
  RedJoiner();

  // Sets of reds, ascending each: six, or seven to `most` of which all sixes stood there.
  using RedSets = std::vector<std::vector<int>>;

  // Takes apart sixes that are ascending and differ from each other. Each is in one of the sets: the largest
  // sets that a step-by-step search finds are taken first. `ended` is asked behind each set; once it answers
  // true the sets found so far are the answer.
  [[nodiscard]] RedSets takeApart(const std::vector<Reds>& sixes, int most,
                                  const std::function<bool()>& ended);

 private:
  using Mask = std::uint64_t;  // bit n for red n

  [[nodiscard]] bool holds(const Reds& six) const;
  void flip(const Reds& six);
  [[nodiscard]] Mask partners(const std::vector<int>& reds) const;
  [[nodiscard]] Mask partnersWith(const std::vector<int>& reds, int red, Mask partners) const;
  [[nodiscard]] std::vector<int> grow(const Reds& six, int most) const;
  void takeSet(const std::vector<int>& reds);

  std::vector<Mask> sixths_;  // by the rank of five reds
};

}  // namespace lotmere

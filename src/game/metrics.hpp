// The figures of six reds. Filters and draw statistics take them from here, so that a figure has one rule
// wherever it is needed.
//
// The functions take the six numbers as they stand: out of order or repeated numbers (imported tickets may
// hold them) count as they are. Every number must lie in 0 to 33; 0 stands for a missing number and belongs
// to no group.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "game/game.hpp"

namespace lotmere {

// One small number for each red, index 0 unused.
using RedTable = std::array<std::int16_t, kRedCount + 1>;

// The per-number values behind the sums and counts.
enum class NumberValue { number, odd, even, tail, digit_root, big, small, is_odd, is_even };

// The value of one red: `big` is the number itself from 17 up and else 0, `small` the number up to 16; `tail`
// the last digit; `digit_root` runs 1 to 9 and starts again; `is_odd` and `is_even` are 1 or 0. 0 for the
// missing number.
[[nodiscard]] int numberValue(NumberValue kind, int number);
[[nodiscard]] const RedTable& numberTable(NumberValue kind);

[[nodiscard]] constexpr int sumOf(const RedTable& table, const Reds& reds) {
  int sum = 0;
  for (const int red : reds) sum += table[red];
  return sum;
}

// Largest red minus smallest red.
[[nodiscard]] int spanOf(const Reds& reds);
// The largest gap between neighbouring reds in ascending order; the way to 1 and to 33 doesn't count.
[[nodiscard]] int largestGap(const Reds& reds);
// The number of different differences among the fifteen pairs, minus 5: 0 to 10 for six different reds, below
// 0 when reds repeat.
[[nodiscard]] int acValue(const Reds& reds);
// The run shape, an index of runShapes(): which runs of consecutive numbers the reds make.
[[nodiscard]] int runShape(const Reds& reds);
// "0", "2", "2+2", ... "6".
[[nodiscard]] const std::array<std::string_view, 11>& runShapes();

// A table with 1 for each number that stands in a relation to the numbers of an earlier draw. A missing (0)
// number marks nothing as a red, but its tail and its digit root are those of the number zero: the draw
// before the first one counts as six zeros.
[[nodiscard]] RedTable markReds(const Reds& previous);
[[nodiscard]] RedTable markTails(const Reds& previous);
[[nodiscard]] RedTable markDigitRoots(const Reds& previous);
// Neighbours: n is marked when n - 1 or n + 1 stands in the draw.
[[nodiscard]] RedTable markNeighbours(const Reds& previous);

// How many of the current reds repeat a red, a tail, a digit root of the previous draw, or lie next to one of
// its reds.
[[nodiscard]] int countRepeats(const Reds& previous, const Reds& current);
[[nodiscard]] int countTailRepeats(const Reds& previous, const Reds& current);
[[nodiscard]] int countDigitRootRepeats(const Reds& previous, const Reds& current);
[[nodiscard]] int countNeighbours(const Reds& previous, const Reds& current);

}  // namespace lotmere

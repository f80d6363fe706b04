// How long each number stayed away: the gaps between its draws, up to a chosen period.
//
// A gap is the number of draws between two draws of a number: 0 when it came twice running. The draws before
// its first hit are a gap too.
#pragma once

#include <optional>
#include <vector>

#include "analysis/draw_range.hpp"
#include "base/desk.hpp"
#include "game/game.hpp"
#include "store/store.hpp"

namespace lotmere {

// The gaps that a hit has closed.
struct ClosedGaps {
  int largest = 0;
  // All gaps, the one before the first hit among them, divided by the hits less one; a half goes to the even
  // number.
  int average = 0;
  int last = 0;  // between the last two hits

  friend bool operator==(const ClosedGaps&, const ClosedGaps&) = default;
};

struct OmissionFigures {
  int hits = 0;                      // draws that hold the number
  int running = 0;                   // draws since its last hit; all of them where it never came
  std::optional<ClosedGaps> closed;  // nothing with fewer than two hits

  friend bool operator==(const OmissionFigures&, const OmissionFigures&) = default;
};

// The figures of all numbers of one colour.
struct Omission {
  BallColour balls = BallColour::red;
  PeriodNo period = 0;                   // the chosen one, or the newest where that lay behind it
  std::vector<OmissionFigures> numbers;  // of number n at place n - 1
  int largest = 0;                       // closed gap of any number

  [[nodiscard]] const OmissionFigures& of(int number) const { return numbers[number - 1]; }
};

// Works the figures out in one walk over the draws up to `period`; one above the newest period means the
// newest. Writes two work columns of those draws in one change and leaves later draws alone: `总期号` becomes
// the place of the draw in the history, from 0; `遗漏数据` its largest red after reds and 0 after blues.
// Nothing, told in one line, where the period isn't stored; no row has changed then.
[[nodiscard]] std::optional<Omission> analyseRedOmission(Store& store, Desk& desk, PeriodNo period);
[[nodiscard]] std::optional<Omission> analyseBlueOmission(Store& store, Desk& desk, PeriodNo period);

// The newest fifty periods, newest first: the list to choose the period from. latestPeriod() is chosen at
// first.
[[nodiscard]] std::vector<PeriodNo> loadOmissionPeriods(Store& store);

// The quotient rounded to the nearest whole number, a half to the even one. `dividend` from 0 on, `divisor`
// from 1 on.
[[nodiscard]] constexpr int divideHalfToEven(int dividend, int divisor) {
  const int quotient = dividend / divisor;
  const int twice = 2 * (dividend % divisor);
  return twice > divisor || (twice == divisor && quotient % 2 == 1) ? quotient + 1 : quotient;
}

}  // namespace lotmere

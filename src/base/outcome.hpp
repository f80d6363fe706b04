// How an operation ended. One type for all of them, on both faces.
#pragma once

namespace lotmere {

enum class Outcome {
  done,     // what was asked for stands
  refused,  // nothing has changed, and the user was told why, unless their own answer was the reason
  stopped   // the user stopped it; the operation says what stands then
};

// Of an operation that wrote a file; what isn't done has written nothing.
struct Exported {
  Outcome outcome = Outcome::refused;
  int rows = 0;
};

[[nodiscard]] constexpr Outcome doneIf(bool done) { return done ? Outcome::done : Outcome::refused; }

}  // namespace lotmere

// How much work a search for a smaller cover may do, and what it tells on the way.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "base/course.hpp"

namespace lotmere {

// Called with the number of tickets of each better cover, on the thread that searches.
using BetterCover = std::function<void(std::size_t)>;

// Work is counted in entries looked at (about a nanosecond each), never in time: the same tickets and the
// same limit end with the same cover on every machine. Only a stop by the user cuts it short elsewhere.
class SearchRun {
 public:
  SearchRun(Course& course, std::int64_t limit)
      : leg_(course, limit / kLookEvery, Course::Stop::possible), limit_(limit) {}

  // So much more is done; true when the search is to end.
  bool spend(std::int64_t work) {
    done_ += work;
    if (done_ >= next_look_) look();
    return over();
  }
  [[nodiscard]] bool over() const {
    return stopped_ || done_ >= limit_ || (impatient_ && done_ >= limit_ / 2 && done_ / 4 >= better_at_);
  }
  // From now on it is over too once nothing better came for long: half of the limit, and three quarters of
  // what was done.
  void beImpatient() { impatient_ = true; }
  // A better cover was found.
  void noteBetter() { better_at_ = done_; }
  [[nodiscard]] bool stopped() const { return stopped_; }
  [[nodiscard]] std::int64_t done() const { return done_; }
  [[nodiscard]] std::int64_t left() const { return limit_ - done_; }

 private:
  static constexpr std::int64_t kLookEvery = 2'000'000;

  void look() {
    next_look_ = done_ + kLookEvery;
    if (leg_.advance((done_ < limit_ ? done_ : limit_) / kLookEvery)) stopped_ = true;
  }

  CourseLeg leg_;
  std::int64_t limit_;
  bool impatient_ = false;
  std::int64_t done_ = 0;
  std::int64_t better_at_ = 0;
  std::int64_t next_look_ = kLookEvery;
  bool stopped_ = false;
};

// Numbers that look random and are the same on every machine.
class SearchRandom {
 public:
  explicit SearchRandom(std::uint64_t seed) : state_(seed) {}

  std::uint64_t next() {
    state_ += 0x9E37'79B9'7F4A'7C15;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ mixed >> 30) * 0xBF58'476D'1CE4'E5B9;
    mixed = (mixed ^ mixed >> 27) * 0x94D0'49BB'1331'11EB;
    return mixed ^ mixed >> 31;
  }
  // 0 to `bound` - 1; `bound` is 1 to 2^32.
  std::uint32_t below(std::uint64_t bound) {
    return static_cast<std::uint32_t>((next() >> 32) * bound >> 32);
  }

 private:
  std::uint64_t state_;
};

}  // namespace lotmere

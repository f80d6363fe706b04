// A course that asks the work to stop at a look chosen ahead.
#pragma once

#include "base/course.hpp"

namespace lotmere::test {

class ScriptedCourse final : public Course {
 public:
  // Stops at the n-th look, counted from 1; with 0 never.
  explicit ScriptedCourse(int stop_at = 0) : stop_at_(stop_at) {}

  void begin(std::int64_t /*total*/, Stop /*stop*/) override {}
  bool advance(std::int64_t /*done*/) override { return ++looks_, stopRequested(); }
  void end() override {}
  [[nodiscard]] bool stopRequested() const override { return stop_at_ > 0 && looks_ >= stop_at_; }

  [[nodiscard]] int looks() const { return looks_; }

 private:
  int stop_at_;
  int looks_ = 0;
};

}  // namespace lotmere::test

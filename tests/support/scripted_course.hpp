// Courses that stop the work, or fail it, at a look chosen ahead.
#pragma once

#include <functional>
#include <stdexcept>

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

// Does what a test wants at every look; legs that nest are refused.
class WatchedCourse : public StoppableCourse {
 public:
  std::function<void()> on_look;
  bool open = false;
  std::int64_t total = 0;  // of the last leg
  std::int64_t done = 0;

  void begin(std::int64_t leg, Stop /*stop*/) override {
    if (open) throw std::logic_error("a leg inside another one");
    open = true;
    total = leg;
  }
  bool advance(std::int64_t parts) override {
    done = parts;
    if (on_look) on_look();
    return stopRequested();
  }
  void end() override { open = false; }
};

}  // namespace lotmere::test

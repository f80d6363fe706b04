// The course of the commands of the window: the window reads how far they are, and asks them to stop.
#pragma once

#include <atomic>

#include "base/course.hpp"
#include "ui/shell/work_thread.hpp"

namespace lotmere::ui {

// The work looks at it from its own thread and never waits for the window; begin and end of a leg reach the
// window in their order.
class WindowCourse : public StoppableCourse {
 public:
  using Begun = std::function<void(std::int64_t total, bool can_stop)>;
  using Ended = std::function<void()>;
  WindowCourse(WorkThread& work, Begun begun, Ended ended)
      : work_(work), begun_(std::move(begun)), ended_(std::move(ended)) {}

  void begin(std::int64_t total, Stop stop) override {
    done_ = 0;
    work_.tellWindow([this, total, stop] { begun_(total, stop == Stop::possible); });
  }
  bool advance(std::int64_t done) override {
    done_ = done;
    return stopRequested();
  }
  void end() override { work_.tellWindow(ended_); }

  // How many parts of the leg are done.
  [[nodiscard]] std::int64_t done() const { return done_; }

 private:
  WorkThread& work_;
  Begun begun_;
  Ended ended_;
  std::atomic<std::int64_t> done_{0};
};

}  // namespace lotmere::ui

// How far a long piece of work is, and whether it is to end early. All that the engine knows of whoever waits
// for it.
#pragma once

#include <atomic>
#include <cstdint>

namespace lotmere {

class Course {
 public:
  Course() = default;
  Course(const Course&) = delete;
  Course& operator=(const Course&) = delete;
  virtual ~Course() = default;

  enum class Stop { possible, impossible };

  // A leg of the work begins, of `total` parts. Legs don't nest; each ends with end(), on the route of a
  // failure too.
  virtual void begin(std::int64_t total, Stop stop) = 0;
  // So many parts are done; true when the work shall stop. Called at least every few milliseconds, by one
  // thread.
  virtual bool advance(std::int64_t done) = 0;
  virtual void end() = 0;
  // Whether the work shall stop. It stays so until the operation is over.
  [[nodiscard]] virtual bool stopRequested() const = 0;
  // The operation is over: a stop asked for during it holds no longer.
  virtual void clearStop() {}
};

// An operation that can be stopped: a stop asked for is forgotten when it ends, on the route of a failure
// too, so that the next one doesn't stop at once.
class StopScope {
 public:
  explicit StopScope(Course& course) : course_(course) {}
  StopScope(const StopScope&) = delete;
  StopScope& operator=(const StopScope&) = delete;
  ~StopScope() { course_.clearStop(); }

 private:
  Course& course_;
};

// One leg, ended on every route.
class CourseLeg {
 public:
  CourseLeg(Course& course, std::int64_t total, Course::Stop stop) : course_(course), stop_(stop) {
    course_.begin(total, stop);
  }
  CourseLeg(const CourseLeg&) = delete;
  CourseLeg& operator=(const CourseLeg&) = delete;
  ~CourseLeg() { course_.end(); }

  // True when the work shall stop and can.
  bool advance(std::int64_t done) { return course_.advance(done) && stop_ == Course::Stop::possible; }

 private:
  Course& course_;
  Course::Stop stop_;
};

// A course with its `StopFlag`, which any thread may set.
class StoppableCourse : public Course {
 public:
  [[nodiscard]] bool stopRequested() const override { return stop_; }
  void requestStop() { stop_ = true; }
  void clearStop() override { stop_ = false; }

 private:
  std::atomic<bool> stop_{false};
};

// Nobody waits, nobody stops it.
class FreeCourse final : public Course {
 public:
  void begin(std::int64_t /*total*/, Stop /*stop*/) override {}
  bool advance(std::int64_t /*done*/) override { return false; }
  void end() override {}
  [[nodiscard]] bool stopRequested() const override { return false; }
};

}  // namespace lotmere

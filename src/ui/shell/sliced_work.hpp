// Long work over the store that the window does a slice at a time.
#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <semaphore>
#include <thread>

namespace lotmere::ui {

// The work has a thread of its own, which runs only while resume() waits for it: so it may use the store,
// which one thread at a time may, and the window is served between two slices. Whoever changes what the work
// reads drops it first.
class SlicedWork {
 public:
  // Asked by the work every few milliseconds, with no half-done change of the store: waits here for the next
  // slice when this one is used up. True: the work is dropped and comes to its end at once.
  using Pause = std::function<bool()>;

  // Nothing runs before the first resume(). Throws std::system_error where no thread can be had.
  SlicedWork(std::function<void(const Pause&)> work, std::chrono::milliseconds slice);
  SlicedWork(const SlicedWork&) = delete;
  SlicedWork& operator=(const SlicedWork&) = delete;
  // Drops work that isn't over, and waits for its end.
  ~SlicedWork();

  // Runs for one slice. True when the work is over; it isn't resumed again then. Throws what the work threw.
  bool resume();

 private:
  bool pause();
  void run(const std::function<void(const Pause&)>& work);

  const std::chrono::milliseconds slice_;
  // Handed from one side to the other by the semaphores, as everything that the work touches.
  std::chrono::steady_clock::time_point begun_;
  bool dropped_ = false;
  bool over_ = false;
  std::exception_ptr failure_;
  std::binary_semaphore go_{0};
  std::binary_semaphore back_{0};
  std::thread thread_;
};

}  // namespace lotmere::ui

#include "ui/shell/sliced_work.hpp"

#include <utility>

namespace lotmere::ui {

SlicedWork::SlicedWork(std::function<void(const Pause&)> work, std::chrono::milliseconds slice)
    : slice_(slice), thread_([this, work = std::move(work)] { run(work); }) {}

SlicedWork::~SlicedWork() {
  if (!over_) {
    dropped_ = true;
    go_.release();
    back_.acquire();
  }
  thread_.join();
}

bool SlicedWork::resume() {
  begun_ = std::chrono::steady_clock::now();
  go_.release();
  back_.acquire();
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
  return over_;
}

bool SlicedWork::pause() {
  if (dropped_ || std::chrono::steady_clock::now() - begun_ < slice_) return dropped_;
  back_.release();
  go_.acquire();
  return dropped_;
}

void SlicedWork::run(const std::function<void(const Pause&)>& work) {
  go_.acquire();
  try {
    if (!dropped_) work([this] { return pause(); });
  } catch (...) {
    failure_ = std::current_exception();
  }
  over_ = true;
  back_.release();
}

}  // namespace lotmere::ui

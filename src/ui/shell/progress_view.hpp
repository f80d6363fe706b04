// Where the course of a job is shown.
#pragma once

#include <cstdint>

namespace lotmere::ui {

class ProgressView {
 public:
  ProgressView() = default;
  ProgressView(const ProgressView&) = delete;
  ProgressView& operator=(const ProgressView&) = delete;
  virtual ~ProgressView() = default;

  // From 0 to `maximum`; a maximum of 0 has no known end.
  virtual void begin(std::int64_t maximum, bool can_stop) = 0;
  virtual void advance(std::int64_t value) = 0;
  virtual void end() = 0;
};

}  // namespace lotmere::ui

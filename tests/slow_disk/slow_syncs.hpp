// A disk that takes its time: every flush of a file or a folder by this program is delayed, and counted by
// the thread that asked for it.
#pragma once

#include <chrono>

namespace lotmere::test {

struct Flushes {
  int all = 0;
  int of_window = 0;  // on the thread that called delayFlushes
};

// From now on each flush takes so much longer. To be called on the window's thread.
void delayFlushes(std::chrono::milliseconds delay);
// Those since the last call.
[[nodiscard]] Flushes takeFlushes();

}  // namespace lotmere::test

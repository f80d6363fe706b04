#include "slow_syncs.hpp"

#include <dlfcn.h>

#include <atomic>
#include <thread>

namespace {

std::atomic<int> delay_in_ms{0};
std::atomic<int> all{0};
std::atomic<int> of_window{0};
std::atomic<std::thread::id> window;

int flush(const char* name, int fd) {
  ++all;
  if (std::this_thread::get_id() == window.load()) ++of_window;
  std::this_thread::sleep_for(std::chrono::milliseconds(delay_in_ms));
  using Real = int (*)(int);
  return reinterpret_cast<Real>(dlsym(RTLD_NEXT, name))(fd);
}

}  // namespace

// In the place of the C library's, for every library of the program.
extern "C" {
__attribute__((visibility("default"))) int fsync(int fd) { return flush("fsync", fd); }
__attribute__((visibility("default"))) int fdatasync(int fd) { return flush("fdatasync", fd); }
}

namespace lotmere::test {

void delayFlushes(std::chrono::milliseconds delay) {
  window = std::this_thread::get_id();
  delay_in_ms = static_cast<int>(delay.count());
}

Flushes takeFlushes() { return {all.exchange(0), of_window.exchange(0)}; }

}  // namespace lotmere::test

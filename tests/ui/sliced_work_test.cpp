// Work in slices: its thread runs only while the window waits for it, and it comes to its end when it is
// dropped.
#include "ui/shell/sliced_work.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>

namespace lotmere::ui::test {
namespace {

using namespace std::chrono_literals;

TEST(SlicedWork, RunsOnlyWhileItIsResumedUntilItIsOver) {
  std::atomic<int> done = 0;
  SlicedWork work(
      [&](const SlicedWork::Pause& pause) {
        for (int step = 0; step < 3; ++step) {
          ++done;
          EXPECT_FALSE(pause());
        }
      },
      0ms);
  EXPECT_EQ(done, 0);
  for (int slice = 1; slice <= 3; ++slice) {
    EXPECT_FALSE(work.resume());
    EXPECT_EQ(done, slice);
  }
  EXPECT_TRUE(work.resume());
}

TEST(SlicedWork, ALongSliceTakesManyLooks) {
  SlicedWork work(
      [&](const SlicedWork::Pause& pause) {
        for (int step = 0; step < 1000; ++step) static_cast<void>(pause());
      },
      1h);
  EXPECT_TRUE(work.resume());
}

TEST(SlicedWork, DroppedWorkEndsAtItsNextLookAndAFailureReachesTheCaller) {
  for (const int slices : {0, 1, 2}) {
    int looks = 0;
    {
      SlicedWork work(
          [&](const SlicedWork::Pause& pause) {
            do ++looks;
            while (!pause());
          },
          0ms);
      for (int slice = 0; slice < slices; ++slice) EXPECT_FALSE(work.resume());
    }
    EXPECT_EQ(looks, slices);
  }
  SlicedWork failing([](const SlicedWork::Pause&) { throw std::runtime_error("the store"); }, 0ms);
  EXPECT_THROW(static_cast<void>(failing.resume()), std::runtime_error);
}

}  // namespace
}  // namespace lotmere::ui::test

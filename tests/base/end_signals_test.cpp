// How the process learns that it is to end.
#include <gtest/gtest.h>
#include <poll.h>

#include <atomic>
#include <csignal>

#include "base/platform.hpp"

namespace lotmere::test {
namespace {

std::atomic<int> reactions{0};
void react() { ++reactions; }

TEST(EndSignals, TellOncePerKindAndLeaveTheHandlersAsTheyWere) {
  reactions = 0;
  std::signal(SIGHUP, SIG_IGN);  // as below nohup
  {
    const EndSignals signals(&react);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::raise(signal);
    EXPECT_EQ(reactions, 2) << "what was ignored stays ignored";
  }
  std::raise(SIGHUP);
  std::signal(SIGHUP, SIG_DFL);
  for (const int signal : {SIGINT, SIGTERM}) {
    const auto second = [signal] {
      const EndSignals signals(&react);
      std::raise(signal);
      std::raise(signal);
    };
    EXPECT_EXIT(second(), testing::KilledBySignal(signal), "") << "the second one ends the process";
    EXPECT_EXIT(std::raise(signal), testing::KilledBySignal(signal), "");
  }
}

TEST(EndSignalPipe, CanBeReadOnceASignalCame) {
  const EndSignalPipe pipe;
  const auto is_readable = [&] {
    pollfd waiting{pipe.descriptor(), POLLIN, 0};
    return ::poll(&waiting, 1, 0) == 1;
  };
  for (const int signal : {SIGTERM, SIGHUP}) {
    EXPECT_FALSE(is_readable());
    std::raise(signal);
    EXPECT_TRUE(is_readable());
    pipe.drain();
  }
  EXPECT_FALSE(is_readable());
}

}  // namespace
}  // namespace lotmere::test

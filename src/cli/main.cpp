#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "base/platform.hpp"
#include "cli/app.hpp"
#include "cli/desk_terminal.hpp"

namespace {

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

}  // namespace

int main(int argc, char** argv) {
  lotmere::openStandardStreams();
  ::umask(S_IRWXG | S_IRWXO);  // what the program writes is its owner's to read
  // The first Ctrl-C asks the job to stop in good order, and so does an end of the session; the second one
  // ends the process, which loses nothing that was stored.
  const lotmere::EndSignals signals(&lotmere::TerminalCourse::interrupt);
  std::signal(SIGXFSZ, SIG_IGN);  // a file that may grow no further is a full disk, which is told
  std::ios::sync_with_stdio(false);
  std::error_code unknown;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", unknown);
  const lotmere::Surroundings surroundings{program.parent_path(), variable("XDG_DATA_HOME"), variable("HOME"),
                                           ::isatty(STDERR_FILENO) != 0};
  return lotmere::runCli({argv + 1, argv + argc}, std::cout, std::cerr, surroundings);
}

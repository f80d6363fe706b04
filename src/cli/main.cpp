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
  lotmere::prepareProcess();
  // The first Ctrl-C asks the job to stop in good order, and so does an end of the session; the second one
  // ends the process, which loses nothing that was stored.
  const lotmere::EndSignals signals(&lotmere::TerminalCourse::interrupt);
  std::ios::sync_with_stdio(false);
  const lotmere::Surroundings surroundings{lotmere::programFile().parent_path(), variable("XDG_DATA_HOME"),
                                           variable("HOME"), lotmere::errorsGoToTerminal()};
  return lotmere::runCli({argv + 1, argv + argc}, std::cout, std::cerr, surroundings);
}

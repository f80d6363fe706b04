// The command line as a function: arguments in, text and an exit status out.
#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

#include "users/password.hpp"

namespace lotmere {

// What the process knows of its surroundings.
struct Surroundings {
  std::filesystem::path program_folder;
  std::string data_home;  // XDG_DATA_HOME, empty when unset
  std::string user_home;  // HOME
  bool show_bar = false;  // the error stream is a terminal
  HashLimits password_limits = HashLimits::interactive();
};

// Runs one command: `arguments` without the program's name. Returns 0 when it is done, 1 when it was refused
// or failed (with one line on `err`), 2 when the arguments are no command, 130 when
// TerminalCourse::interrupt() stopped it before its end. Nothing is thrown.
int runCli(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
           const Surroundings& surroundings);

}  // namespace lotmere

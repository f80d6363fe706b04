// Who a command works for, where several people use the program.
#pragma once

#include <optional>
#include <string>

#include "base/desk.hpp"
#include "start/startup.hpp"
#include "users/login.hpp"

namespace lotmere {

// The first line of a password file, UTF-8 or GB18030, without blanks at its ends; "-" is the standard input,
// and a pipe (/dev/fd/N) is read no further than that line. Told and nothing for what is no short text.
// Throws std::filesystem::filesystem_error when it can't be read.
[[nodiscard]] std::optional<std::string> readPassword(Desk& desk, const std::string& file);

// The login step of a start: in multi-user mode it goes on with the session of the user or opens one, which
// stands whatever becomes of the command, and is said; in single-user mode there is nobody to be. False when
// it was told why not.
[[nodiscard]] bool enterAsUser(const ProgramStart& start, Desk& desk, const Credentials& typed,
                               HashLimits limits);

}  // namespace lotmere

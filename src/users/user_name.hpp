// Which names a user can have.
#pragma once

#include <string_view>

namespace lotmere {

// Whether a text shows nothing: it is empty or holds only blanks and invisible characters, of whatever
// script.
[[nodiscard]] bool isBlankName(std::string_view name);

// Whether a new user can have this name: UTF-8, not blank, without characters that steer the text instead of
// standing in it (control characters, direction marks, line separators and other format characters), and no
// longer than a file name may be (200 bytes as encoded for one).
[[nodiscard]] bool isUserName(std::string_view name);

}  // namespace lotmere

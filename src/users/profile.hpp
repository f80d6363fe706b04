// A user's profile: a file of the four tables that belong to a user, written when the user leaves and read
// when the user comes. In between the working copy stands in the store.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "base/desk.hpp"
#include "base/platform.hpp"
#include "start/home.hpp"
#include "store/store.hpp"

namespace lotmere {

// The file of a user. Bytes of the name that a file name can't hold everywhere, or that would lead out of the
// folder, are percent-encoded: slashes, control characters, the characters that other systems forbid, the
// percent sign itself, a point or blank at either end.
[[nodiscard]] std::filesystem::path profileFile(const Home& home, std::string_view name);

// Fills the template with the working tables and puts a copy of it in the place of the user's file: after a
// failure or a power cut either the old or the new file stands. False, told through the desk, when the
// template is missing. Throws when the store or the machine refuses.
[[nodiscard]] bool saveProfile(Store& store, const Home& home, Desk& desk, std::string_view name,
                               FileSystem& files = realFiles());

// Copies the tables of a user's file into the store, table by table, inside the caller's change. No file: the
// tables stay as they are. A file that breaks off is told and kept under another name; the tables read before
// the break stay copied.
void restoreProfile(Store& store, const Home& home, Desk& desk, std::string_view name,
                    FileSystem& files = realFiles());

}  // namespace lotmere

// Everything that lasts in one file, for another computer or for safe keeping: the store with draws, tickets,
// settings and users, and the profile of each user.
#pragma once

#include <filesystem>

#include "base/desk.hpp"
#include "base/outcome.hpp"
#include "base/platform.hpp"
#include "start/home.hpp"
#include "store/store.hpp"

namespace lotmere {

// What is stopped has left everything as it was.

// Writes store and profiles as they stand to `file`; asks before a file is replaced, and refuses the
// program's own. Throws when the machine refuses; what stood there stays.
[[nodiscard]] Outcome saveEverything(Store& store, const Home& home, Desk& desk,
                                     const std::filesystem::path& file, FileSystem& files = realFiles());

// Reads what saveEverything wrote, checks it, asks, and lays it down in the home, which this process has
// locked. From the return of `done` on it counts: finishRestore() puts it in the place of what stands, now
// or, should the power fail, at the next start. A damaged store that stands is kept beside it; one of a newer
// program is not replaced. An open connection to the store has to be closed before the finish.
[[nodiscard]] Outcome prepareRestore(const Home& home, Desk& desk, const std::filesystem::path& file,
                                     FileSystem& files = realFiles());

// Whether a prepared restore waits for its finish.
[[nodiscard]] bool restoreWaits(const Home& home);

// Puts a prepared restore in place: store and profiles of the file and no others, and the backup made anew.
// Nothing to do where none waits. Throws when the machine refuses; the next call goes on from there.
void finishRestore(const Home& home, FileSystem& files = realFiles());

}  // namespace lotmere

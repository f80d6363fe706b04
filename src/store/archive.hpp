// A file that carries whole files from one computer to another: a database of its own format with the bytes
// of each and a checksum over them, so that damage on the way is seen before anything is put in place.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "base/desk.hpp"
#include "base/platform.hpp"

namespace lotmere {

struct ArchivedFile {
  std::string name;  // without a folder
  std::string bytes;
};

// Writes the files into a new archive at `path`, whole or not at all, readable by its owner only. False when
// the user stopped it; then, and where it throws (StoreFailure, std::filesystem::filesystem_error), `path`
// stays as it was.
[[nodiscard]] bool writeArchive(const std::filesystem::path& path, const std::vector<ArchivedFile>& archived,
                                Desk& desk, FileSystem& files = realFiles());

enum class ArchiveState {
  sound,
  foreign,  // no archive of this program
  damaged,
  newer,   // of a format that this program doesn't know
  stopped  // by the user
};
struct Archive {
  ArchiveState state = ArchiveState::sound;
  std::vector<ArchivedFile> files;  // of a sound one
};

// Whether a file begins as an archive does, of any format; the first hundred bytes tell.
[[nodiscard]] bool isArchive(std::string_view bytes);

// Reads an archive whole and checks it; the file is only read. Throws std::filesystem::filesystem_error where
// there is no file, and StoreFailure when it can't be read at present.
[[nodiscard]] Archive readArchive(const std::filesystem::path& path, Desk& desk);

}  // namespace lotmere

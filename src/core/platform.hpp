// The doors to the machine: files, the clock, web addresses. Tests put others in their place to fill a disk,
// cut the power between two steps or move the day on by a year.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include "core/dates.hpp"

namespace lotmere {

// File steps that matter for what survives a crash. Every function throws std::filesystem::filesystem_error
// with the path when the machine refuses.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  [[nodiscard]] virtual bool exists(const std::filesystem::path& path) = 0;
  // Removes a file; a missing one is no failure.
  virtual void remove(const std::filesystem::path& path) = 0;
  // Flushes a file's contents to the disk.
  virtual void sync(const std::filesystem::path& path) = 0;
  // Puts `from` in the place of `to` in one step and flushes the folder: after a power failure either the old
  // or the new file stands.
  virtual void replace(const std::filesystem::path& from, const std::filesystem::path& to) = 0;
  // Writes a whole file beside `path`, flushes it and puts it in the place of `path`. Readable by the owner
  // only.
  virtual void write_Whole(const std::filesystem::path& path, const std::string& bytes) = 0;
};

// Why the machine refused, in a few words for the person: "磁盘已满".
[[nodiscard]] std::string reason_Text(const std::error_code& code);

// The real machine.
[[nodiscard]] FileSystem& real_Files();

class Clock {
 public:
  virtual ~Clock() = default;
  [[nodiscard]] virtual Date today() = 0;
};

[[nodiscard]] Clock& real_Clock();

// Fetches the text behind a web address.
class Fetcher {
 public:
  virtual ~Fetcher() = default;
  // The whole reply, or nothing where the address can't be read, the reply breaks off or the person stops it.
  [[nodiscard]] virtual std::optional<std::string> fetch(const std::string& address) = 0;
};

}  // namespace lotmere

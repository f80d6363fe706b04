// The doors to the machine: files, the clock, web addresses. Tests put others in their place to fill a disk,
// cut the power between two steps or move the day on by a year.
#pragma once

#include <array>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/dates.hpp"

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
  // The same without flushing the folder: the caller flushes once behind several.
  virtual void move(const std::filesystem::path& from, const std::filesystem::path& to) = 0;
  // Writes a whole file beside `path`, flushes it and puts it in the place of `path`; where `path` is a link,
  // in the place of the file that it leads to. A new file is readable by its owner only, one that stands
  // there keeps its mode. Refused is anything but a file (a device, a pipe, a folder), a file that may not be
  // written, and one that belongs to another user: it would change hands.
  virtual void writeWhole(const std::filesystem::path& path, const std::string& bytes) = 0;
  // Writes a whole new file and flushes it, but not its folder. Readable by the owner only. Fails where a
  // file stands already.
  virtual void writeNew(const std::filesystem::path& path, const std::string& bytes) = 0;
};

// Where a path leads in the end: every link in it followed, also a last one that leads to no file yet. Throws
// std::filesystem::filesystem_error for links that go round in a circle.
[[nodiscard]] std::filesystem::path followLinks(const std::filesystem::path& path);

// Lets `react` know when somebody asks the process to end: by Ctrl-C, by SIGTERM, or by the end of its
// terminal or session (SIGHUP). A signal that the process was started to ignore stays ignored. `react` runs
// inside the signal's handler and may do no more than set a lock-free flag or write to a pipe; the second
// signal of a kind ends the process as if nobody listened. The signals are let go of when the object goes;
// there may be one at a time.
class EndSignals {
 public:
  explicit EndSignals(void (*react)());
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;
  ~EndSignals();
};

// The same for a program with an event loop: a descriptor that can be read once the process was asked to end.
// There may be one at a time. Throws std::system_error when the machine has no descriptor left.
class EndSignalPipe {
 public:
  EndSignalPipe();
  EndSignalPipe(const EndSignalPipe&) = delete;
  EndSignalPipe& operator=(const EndSignalPipe&) = delete;
  ~EndSignalPipe();

  [[nodiscard]] int descriptor() const { return ends_[0]; }
  // Takes out what stands in the pipe, so that it is silent until the next signal.
  void drain() const;

 private:
  static void writeByte();

  std::array<int, 2> ends_{};  // to read from, to write to
  std::optional<EndSignals> signals_;
};

// The bytes of the first line of a file without its line feed; "-" is the standard input. A pipe or a
// terminal is waited for until `stopped`, asked some times a second, answers true; nothing behind the line is
// taken from it. Nothing when the line is longer than `longest` bytes or the wait was stopped. Throws
// std::filesystem::filesystem_error with the path when it can't be read.
[[nodiscard]] std::optional<std::string> readFirstLine(const std::filesystem::path& path, std::size_t longest,
                                                       const std::function<bool()>& stopped = {});

// All bytes of the standard input, waited for until `stopped`, asked some times a second, answers true: then
// what came so far. Throws std::filesystem::filesystem_error when it can't be read or holds more than `most`
// bytes.
[[nodiscard]] std::string readStandardInput(std::size_t most, const std::function<bool()>& stopped);

// Refuses what stands in the place of a file and is none: a pipe, which would be waited for, a device, a
// socket or a folder. A missing file is none of these; a link counts as what it leads to. Throws
// std::filesystem::filesystem_error with the path.
void requirePlainFile(const std::filesystem::path& path);

// Whether a path may be written by this process.
[[nodiscard]] bool mayWrite(const std::filesystem::path& path);

// A file that one process at a time holds, as long as the object lives; the system lets go of it when the
// process ends, however it ends. The file is made where it is missing, readable by its owner only.
class FileLock {
 public:
  // Nothing when another process holds it. Throws std::filesystem::filesystem_error when the file can't be
  // opened.
  [[nodiscard]] static std::unique_ptr<FileLock> take(const std::filesystem::path& path);
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  ~FileLock();

 private:
  explicit FileLock(int descriptor) : descriptor_(descriptor) {}
  int descriptor_;
};

// A file without a place in any folder, under a name that a library can open. Throws
// std::filesystem::filesystem_error when the machine refuses.
class MemoryFile {
 public:
  MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile();

  [[nodiscard]] std::filesystem::path name() const;
  [[nodiscard]] std::string bytes() const;

 private:
  int descriptor_;
};

// Text of another encoding to UTF-8, as the system knows it ("GB18030").
class TextConverter {
 public:
  // `chunk` is how many bytes a call takes at most. Throws std::system_error for an unknown encoding.
  TextConverter(const char* encoding, std::size_t chunk);
  TextConverter(const TextConverter&) = delete;
  TextConverter& operator=(const TextConverter&) = delete;
  ~TextConverter();

  // Converts up to a chunk of the rest, takes it off the rest and adds it to `text`. False when it ended at a
  // byte that begins no whole character.
  bool convert(std::string_view& rest, std::string& text);

 private:
  void* handle_;
  std::size_t chunk_;
  std::vector<char> buffer_;
};

// What a program does before anything else. Makes sure that the descriptors 0 to 2 are open, so that no file
// of the program's takes the place of one and gets what is printed: one that was closed reads nothing and
// refuses what is written. What the program writes is its owner's to read, and a file that may grow no
// further is a failure that can be told, as a full disk is.
void prepareProcess();
// Whether warnings and questions go to a terminal.
[[nodiscard]] bool errorsGoToTerminal();
// The file of the program that runs; empty where the machine doesn't say.
[[nodiscard]] std::filesystem::path programFile();

// Why the machine refused, in a few words for the user: "磁盘已满".
[[nodiscard]] std::string reasonText(const std::error_code& code);

// The real machine.
[[nodiscard]] FileSystem& realFiles();

class Clock {
 public:
  virtual ~Clock() = default;
  [[nodiscard]] virtual Date today() = 0;
};

[[nodiscard]] Clock& realClock();

// What came from an address: the whole reply, or the cause why there is none.
struct Fetched {
  std::optional<std::string> reply;
  std::string cause;  // in a few words for the user: "没有这个文件"; empty with a reply and after a stop
  bool stopped = false;  // the user broke the fetch off
};

// Fetches the text behind a web address.
class Fetcher {
 public:
  virtual ~Fetcher() = default;
  // There is no reply where the address can't be read, the reply breaks off or the user stops it.
  [[nodiscard]] virtual Fetched fetch(const std::string& address) = 0;
};

}  // namespace lotmere

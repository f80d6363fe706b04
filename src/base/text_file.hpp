// Reading a text file of a user, in whatever encoding it came.
#pragma once

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

#include "base/desk.hpp"

namespace lotmere {

// A file that is there and may be read. Opening it throws std::filesystem::filesystem_error when it is
// missing, a folder, a device, larger than 1 GiB, or not for this user to read.
class TextFile {
 public:
  explicit TextFile(const std::filesystem::path& path);

  [[nodiscard]] std::size_t size() const { return size_; }
  // The bytes of the file, which `job` is served for. Throws std::filesystem::filesystem_error when the
  // machine breaks off. Cut short when the user asks to stop, and behind a byte of 0: that is no text.
  [[nodiscard]] std::string bytes(CourseLeg& job);
  // In the place of all of them: at most the first `most` bytes. Throws as bytes().
  [[nodiscard]] std::string head(std::size_t most);

 private:
  std::filesystem::path path_;
  std::size_t size_ = 0;
  std::ifstream file_;
};

// The bytes of a file, or of the standard input where it is called "-". Throws and is cut short as TextFile.
[[nodiscard]] std::string readBytes(const std::filesystem::path& path, CourseLeg& job);

// Whether bytes begin with the mark of UTF-16.
[[nodiscard]] bool isUtf16(std::string_view bytes);

// A text as UTF-8 without mark: it is taken for UTF-16 where it begins with the mark of that, for UTF-8
// where all of it is, else for GB18030; these two may begin with their mark. Bytes that are no character
// there become "?" and don't swallow what follows. Nothing when a byte (in UTF-16: a character) is 0: that
// is no text. Cut short when the user asks to stop.
[[nodiscard]] std::optional<std::string> decodeBytes(std::string bytes, CourseLeg& job);

// Takes the first line off a text and gives it without its end: LF, CR or CR LF. Each call takes at least one
// character off a text that isn't empty.
[[nodiscard]] std::string_view takeLine(std::string_view& text);

}  // namespace lotmere

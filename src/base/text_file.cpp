#include "base/text_file.hpp"

#include <algorithm>
#include <string_view>
#include <system_error>

#include "base/platform.hpp"

namespace lotmere {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kChunk = std::size_t{256} * 1024;     // a millisecond or two of conversion
constexpr std::size_t kLargestFile = std::size_t{1} << 30;  // all tickets that there are, with some room
constexpr std::string_view kMark = "\xEF\xBB\xBF";
constexpr std::string_view kLittleEndianMark = "\xFF\xFE";
constexpr std::string_view kBigEndianMark = "\xFE\xFF";
constexpr std::size_t kWideUnit = 2;  // bytes of a unit of UTF-16

[[noreturn]] void fail(const fs::path& path, std::errc reason) {
  throw fs::filesystem_error("read", path, std::make_error_code(reason));
}

enum class Strict { yes, no };

// Nothing when a byte is no character and the conversion is strict. A unit that begins no character is passed
// over whole, so that those behind it are read.
std::optional<std::string> convertText(std::string_view rest, const char* from, Strict strict, CourseLeg& job,
                                       std::size_t unit = 1) {
  TextConverter converter(from, std::min(rest.size(), kChunk));
  std::string text;
  text.reserve(rest.size() + rest.size() / 2);
  std::size_t serve_at = rest.size();
  while (!rest.empty()) {
    if (!converter.convert(rest, text)) {
      if (strict == Strict::yes) return std::nullopt;
      text += '?';
      rest.remove_prefix(std::min(unit, rest.size()));
    }
    if (rest.size() + kChunk > serve_at) continue;
    if (job.advance(0)) break;
    serve_at = rest.size();
  }
  return text;
}

std::string convertWide(std::string_view bytes, CourseLeg& job) {
  const char* from = bytes.starts_with(kLittleEndianMark) ? "UTF-16LE" : "UTF-16BE";
  bytes.remove_prefix(kWideUnit);
  return *convertText(bytes, from, Strict::no, job, kWideUnit);
}

// Whether a converted text holds a code above the last character, which the library lets pass.
bool isBeyondUnicode(std::string_view text) {
  const auto beyond = [](unsigned char lead, unsigned char next) {
    return lead > 0xF4 || (lead == 0xF4 && next >= 0x90);
  };
  return std::adjacent_find(text.begin(), text.end(), beyond) != text.end();
}

}  // namespace

TextFile::TextFile(const fs::path& path) : path_(path) {
  const fs::file_status status = fs::status(path);
  if (!fs::exists(status)) fail(path, std::errc::no_such_file_or_directory);
  if (fs::is_directory(status)) fail(path, std::errc::is_a_directory);
  if (!fs::is_regular_file(status)) fail(path, std::errc::invalid_argument);
  size_ = fs::file_size(path);
  if (size_ > kLargestFile) fail(path, std::errc::file_too_large);
  file_.open(path, std::ios::binary);
  if (!file_) fail(path, std::errc::permission_denied);
}

std::string TextFile::bytes(CourseLeg& job) {
  std::string bytes;
  bytes.reserve(size_ + kChunk);
  while (file_ && !job.advance(0)) {
    const std::size_t size = bytes.size();
    bytes.resize(size + kChunk);
    file_.read(bytes.data() + size, kChunk);
    bytes.resize(size + static_cast<std::size_t>(file_.gcount()));
    // No text, and often much more of it.
    if (bytes.find('\0', size) != std::string::npos && !isUtf16(bytes)) break;
  }
  if (file_.bad()) fail(path_, std::errc::io_error);
  return bytes;
}

std::string TextFile::head(std::size_t most) {
  std::string bytes(std::min(most, size_), '\0');
  file_.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(file_.gcount()));
  if (file_.bad()) fail(path_, std::errc::io_error);
  return bytes;
}

bool isUtf16(std::string_view bytes) {
  return bytes.starts_with(kLittleEndianMark) || bytes.starts_with(kBigEndianMark);
}

std::string readBytes(const fs::path& path, CourseLeg& job) {
  if (path != "-") return TextFile(path).bytes(job);
  return readStandardInput(kLargestFile, [&job] { return job.advance(0); });
}

std::optional<std::string> decodeBytes(std::string bytes, CourseLeg& job) {
  if (isUtf16(bytes)) bytes = convertWide(bytes, job);
  if (bytes.find('\0') != std::string::npos) return std::nullopt;
  const bool plain = std::all_of(bytes.begin(), bytes.end(), [](unsigned char c) { return c < 0x80; });
  if (plain) return bytes;
  auto text = convertText(bytes, "UTF-8", Strict::yes, job);
  if (!text || isBeyondUnicode(*text)) text = convertText(bytes, "GB18030", Strict::no, job);
  // Either encoding has a mark, and both come out as the same character.
  if (text->starts_with(kMark)) text->erase(0, kMark.size());
  return text;
}

std::string_view takeLine(std::string_view& text) {
  std::size_t end = 0;
  while (end < text.size() && text[end] != '\n' && text[end] != '\r') ++end;
  const std::string_view line = text.substr(0, end);
  if (text.substr(end).starts_with("\r\n")) ++end;
  text.remove_prefix(std::min(text.size(), end + 1));
  return line;
}

}  // namespace lotmere

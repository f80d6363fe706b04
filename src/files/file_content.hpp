// What a file that somebody opens or drops on the window holds.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include "base/dates.hpp"
#include "base/desk.hpp"
#include "files/import.hpp"

namespace lotmere {

enum class FileKind {
  draws,       // a list of draws, each with its date (readAnyDrawList)
  tickets,     // a line a ticket or a compound bet (importLine, readCompoundLine)
  conditions,  // the text of a set (readSetText), also of a later version
  everything,  // all data in one file (readArchive)
  other_text,  // nothing of these
  no_text
};

struct FileContent {
  FileKind kind = FileKind::no_text;
  // Of tickets: the format that reads most of the lines, none of their numbers left over where there is a
  // choice.
  ImportFormat format = ImportFormat::numbers;

  friend bool operator==(const FileContent&, const FileContent&) = default;
};

// As much of a file as has to be looked at.
inline constexpr std::size_t kContentHead = std::size_t{64} * 1024;

// Tells by the first bytes of a file, in any encoding, `whole` where these are all. A draw with its period
// and date makes it a list of draws, unless more lines are tickets in some format; of tickets they have to be
// at least half of the lines that aren't empty. Where neither holds, dated lines with a period or numbers are
// a list of draws, whose faults its import tells. No draw is dated after `today`.
[[nodiscard]] FileContent contentOf(std::string bytes, bool whole, Date today);

// The same of a file. Throws std::filesystem::filesystem_error as TextFile does, and when the machine breaks
// off.
[[nodiscard]] FileContent readFileContent(const std::filesystem::path& file, Date today);

}  // namespace lotmere

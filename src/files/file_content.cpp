#include "files/file_content.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "base/text.hpp"
#include "base/text_file.hpp"
#include "conditions/set_text.hpp"
#include "files/compound_line.hpp"
#include "history/any_draw_list.hpp"
#include "store/archive.hpp"

namespace lotmere {
namespace {

// The formats of ticket lines, those first that a line is rather taken for.
constexpr std::array kFormats{ImportFormat::numbers, ImportFormat::period_numbers, ImportFormat::seq_numbers,
                              ImportFormat::compound};

// How many lines are tickets in a format.
struct FormatCount {
  ImportFormat format;
  int exact = 0;  // without further numbers
  int all = 0;
};

void countLine(std::string_view line, FormatCount& count) {
  if (count.format == ImportFormat::compound) {
    const bool is_bet = readCompoundLine(line).has_value();
    count.exact += is_bet ? 1 : 0;
    count.all += is_bet ? 1 : 0;
    return;
  }
  const auto ticket = importLine(line, {count.format, 0});
  count.exact += ticket && !ticket->more ? 1 : 0;
  count.all += ticket ? 1 : 0;
}

struct TicketCount {
  FormatCount best;
  int lines = 0;  // that aren't empty
};

TicketCount countTicketLines(std::string_view text) {
  std::array<FormatCount, kFormats.size()> counts{};
  std::ranges::transform(kFormats, counts.begin(), [](ImportFormat format) { return FormatCount{format}; });
  int lines = 0;
  while (!text.empty()) {
    const std::string_view line = takeLine(text);
    if (trim(line).empty()) continue;
    ++lines;
    for (FormatCount& count : counts) countLine(line, count);
  }
  const auto better = [](const FormatCount& one, const FormatCount& other) {
    return std::pair(one.exact, one.all) < std::pair(other.exact, other.all);
  };
  return {*std::ranges::max_element(counts, better), lines};  // the first of equal ones
}

// Without the last line, which the end of the head has cut.
std::string wholeLines(std::string bytes) {
  // Two bytes a character: the text behind it is cut instead.
  if (isUtf16(bytes)) return bytes.substr(0, bytes.size() / 2 * 2);
  const std::size_t end = bytes.find_last_of("\r\n");
  if (end != std::string::npos) bytes.resize(end + 1);
  return bytes;
}

FileContent contentOfText(std::string_view text, Date today) {
  if (isSetText(text)) return {FileKind::conditions};
  const AnyDrawList list = readAnyDrawList(text, today);
  const auto draws =
      std::ranges::count_if(list.rows, [](const ListedRow& row) { return row.entry.draw.has_value(); });
  const auto [tickets, lines] = countTicketLines(text);
  if (draws > 0 && draws >= tickets.all) return {FileKind::draws};
  if (tickets.all > 0 && 2 * tickets.all >= lines) return {FileKind::tickets, tickets.format};
  return {list.dated || draws > 0 ? FileKind::draws : FileKind::other_text};
}

}  // namespace

FileContent contentOf(std::string bytes, bool whole, Date today) {
  if (isArchive(bytes)) return {FileKind::everything};
  FreeCourse course;
  CourseLeg job(course, 0, Course::Stop::impossible);
  const auto text = decodeBytes(whole ? std::move(bytes) : wholeLines(std::move(bytes)), job);
  return text ? contentOfText(*text, today) : FileContent{};
}

FileContent readFileContent(const std::filesystem::path& path, Date today) {
  TextFile file(path);
  return contentOf(file.head(kContentHead), file.size() <= kContentHead, today);
}

}  // namespace lotmere

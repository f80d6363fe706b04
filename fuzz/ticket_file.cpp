// The bytes of a ticket file: the first one chooses how it is read, the others are its text.
#include <fmt/format.h>

#include <algorithm>
#include <cstdint>

#include "base/text.hpp"
#include "base/text_file.hpp"
#include "files/compound_line.hpp"
#include "files/export.hpp"
#include "files/import.hpp"
#include "fuzzing.hpp"

namespace lotmere::fuzz {
namespace {

constexpr PeriodNo kPeriod = 2024007;
constexpr int kSeq = 12;

// The length of the character that a text begins with; 0 where it begins with none of UTF-8.
std::size_t characterLength(std::string_view text) {
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  const std::size_t length = byte(0) < 0x80   ? 1
                             : byte(0) < 0xC2 ? 0
                             : byte(0) < 0xE0 ? 2
                             : byte(0) < 0xF0 ? 3
                                              : 4;
  if (length < 2 || text.size() < length || byte(0) > 0xF4) return length == 1 ? 1 : 0;
  for (std::size_t at = 1; at < length; ++at)
    if ((byte(at) & 0xC0) != 0x80) return 0;
  const bool in_range = !(byte(0) == 0xE0 && byte(1) < 0xA0) && !(byte(0) == 0xED && byte(1) > 0x9F) &&
                        !(byte(0) == 0xF0 && byte(1) < 0x90) && !(byte(0) == 0xF4 && byte(1) > 0x8F);
  return in_range ? length : 0;
}

// Characters of a text; nothing when it isn't UTF-8.
std::optional<std::size_t> countUtf8(std::string_view text) {
  std::size_t count = 0;
  for (; !text.empty(); ++count) {
    const std::size_t length = characterLength(text);
    if (length == 0) return std::nullopt;
    text.remove_prefix(length);
  }
  return count;
}

std::optional<std::string> decode(const std::string& bytes) {
  CountingDesk desk;
  CourseLeg job(desk.course(), 0, Course::Stop::possible);
  return decodeBytes(bytes, job);
}

// One call in many is for slow checks: the first as well, so that an input alone repeats its finding.
bool hasTime() {
  static unsigned calls = 0;
  constexpr unsigned turn = 512;
  return calls++ % turn == 0;
}

// A text far in front moves what follows over the edge of a block, and changes nothing in it.
void checkBlockEdge(const std::string& bytes, const std::string& text) {
  constexpr std::size_t block = std::size_t{256} * 1024;
  const std::string front(block - bytes.size() / 2, 'x');
  expect(decode(front + bytes) == front + text, "a block's edge changes no text");
}

void checkDecoding(const std::string& bytes, const std::string& text) {
  constexpr std::string_view mark = "\xEF\xBB\xBF", mark_of_gb = "\x84\x31\x95\x33";
  expect(countUtf8(text).has_value(), "a text is UTF-8");
  if (isUtf16(bytes)) return;
  if (bytes.starts_with(mark) || bytes.starts_with(mark_of_gb)) return;
  const auto characters = countUtf8(bytes);
  if (characters) expect(text == bytes, "UTF-8 is taken as it stands");
  if (characters) expect(decode(std::string(mark) + bytes) == text, "a mark is no part of the text");
  if (characters == bytes.size())
    expect(decode(std::string(mark_of_gb) + bytes) == text, "a mark in GB18030 is no part of the text");
  if (hasTime()) checkBlockEdge(bytes, text);
}

// What the program writes of a ticket, it reads again.
void checkExport(const ImportTicket& ticket) {
  for (const int layout : {0, 1}) {
    for (const auto format :
         {ImportFormat::numbers, ImportFormat::period_numbers, ImportFormat::seq_numbers}) {
      const bool with_period = format == ImportFormat::period_numbers;
      if (with_period && ticket.period < 1'000'000) continue;  // written with fewer than seven digits
      const ExportSwitches switches{format == ImportFormat::seq_numbers, with_period, true, false, layout};
      expect(importLine(exportLine(kSeq, ticket.period, ticket.numbers, switches), {format, ticket.period}) ==
                 ticket,
             "an exported line reads back");
    }
  }
}

void checkTicket(std::string_view line, const ImportChoice& choice, const ImportTicket& ticket) {
  constexpr std::size_t shortest = 15;
  const auto& [reds, blue] = ticket.numbers;
  expect(std::all_of(reds.begin(), reds.end(), [](int red) { return red >= 1 && red <= kRedCount; }),
         "the reds lie in their range");
  expect(blue >= 1 && blue <= kBlueCount, "the blue lies in its range");
  expect(countUtf8(trim(line)) >= shortest, "a usable line has fifteen characters");
  if (choice.format == ImportFormat::period_numbers) {
    expect(ticket.period >= 1 &&
               plainDigits(line).find(fmt::format("{:07}", ticket.period)) != std::string::npos,
           "the period stands in the line");
  } else {
    expect(ticket.period == choice.period, "the period is the chosen one");
  }
  expect(importLine(fmt::format("\t {} \r", line), choice) == ticket, "blanks around a line change nothing");
  const ImportTicket with_more{ticket.period, ticket.numbers, true};
  expect(importLine(fmt::format("{} 99", line), choice) == with_more,
         "an eighth number changes nothing but that there is more");
  checkExport({ticket.period, ticket.numbers, false});
}

// A bet is written so that it reads back, and is as many tickets as its line says.
void checkBet(std::string_view line, const CompoundBet& bet) {
  const std::string written = compoundLine(bet);
  expect(readCompoundLine(written) == bet, "a written bet reads back");
  expect(hasTicketCount(written), "a written bet tells its tickets");
  if (!hasTicketCount(line))
    expect(readCompoundLine(fmt::format("{} (0注)", line)) == std::nullopt, "no bet is empty");
  std::int64_t tickets = 0;
  constexpr std::int64_t many = 1000;
  if (countTickets(bet) > many) return;
  expandBet(bet, [&](const DrawNumbers& numbers) {
    ++tickets;
    expect(numbers.reds.front() >= 1 && numbers.reds.back() <= kRedCount,
           "the reds of a bet lie in their range");
  });
  expect(tickets == countTickets(bet), "a bet is its tickets");
}

void checkLines(std::string_view text, const ImportChoice& choice) {
  while (!text.empty()) {
    const std::size_t before = text.size();
    const std::string_view line = takeLine(text);
    expect(line.size() < before || text.empty(), "a line takes its end along");
    expect(line.find_first_of("\r\n") == std::string_view::npos, "a line holds no line end");
    if (const auto bet = readCompoundLine(line)) checkBet(line, *bet);
    if (const auto ticket = importLine(line, choice)) checkTicket(line, choice, *ticket);
  }
}

}  // namespace
}  // namespace lotmere::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lotmere;
  if (size == 0) return 0;
  constexpr int formats = 3;
  const ImportChoice choice{static_cast<ImportFormat>(data[0] % formats), fuzz::kPeriod};
  const std::string bytes(data + 1, data + size);
  const auto text = fuzz::decode(bytes);
  fuzz::expect(text.has_value() == (bytes.find('\0') == std::string::npos) || isUtf16(bytes),
               "only a 0 byte is no text");
  if (!text) return 0;
  fuzz::checkDecoding(bytes, *text);
  fuzz::checkLines(*text, choice);
  return 0;
}

// The reply of a web address. Whatever it holds, only draws come out that stand in it as they are read.
#include "history/draw_list.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <set>

#include "base/text_file.hpp"
#include "fuzzing.hpp"
#include "history/any_draw_list.hpp"

namespace lotmere::fuzz {
namespace {

constexpr std::size_t kPeriodLength = 7;
constexpr std::size_t kEntryLength = 39;

bool isLineEnd(char c) { return c == '\n' || c == '\r'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

void checkCompaction(std::string_view raw, const std::string& text) {
  const auto is_kept = [](char c) { return isDigit(c) || c == '/'; };
  std::string kept, kept_before;
  std::copy_if(text.begin(), text.end(), std::back_inserter(kept), is_kept);
  std::copy_if(raw.begin(), raw.end(), std::back_inserter(kept_before), is_kept);
  expect(kept == kept_before, "digits and slashes stay");
  expect(std::all_of(text.begin(), text.end(), [&](char c) { return is_kept(c) || c == '#'; }),
         "all else becomes a mark");
  expect(text.find("##") == std::string::npos, "marks stand alone");
  expect(compactDrawText(text) == text, "a compacted text stays");
}

// The periods of a text, each with the place of its first entry: seven digits without an eighth, and a mark.
std::map<PeriodNo, std::size_t> findPeriods(const std::string& text) {
  std::map<PeriodNo, std::size_t> places;
  for (std::size_t at = 0; at + kPeriodLength < text.size(); ++at) {
    const std::string run = text.substr(at, kPeriodLength);
    if (text[at + kPeriodLength] != '#' || !std::all_of(run.begin(), run.end(), isDigit)) continue;
    if (at == 0 || !isDigit(text[at - 1])) places.try_emplace(std::stoi(run), at);
  }
  return places;
}

void checkDraw(std::string entry, PeriodNo period, const ListedDraw& draw) {
  expect(isPeriod(period) && isDraw(draw.numbers), "a listed draw is a draw");
  expect(entry.size() <= kEntryLength || !isDigit(entry[kEntryLength]), "the blue has two digits");
  std::string written = fmt::format("{:07}#{}", period, formatDate(draw.date));
  for (const int red : draw.numbers.reds) written += fmt::format("#{:02}", red);
  written += fmt::format("#{:02}", draw.numbers.blue);
  std::replace(written.begin(), written.end(), '-', '/');
  // What separates the numbers isn't looked at.
  for (std::size_t at = 18; at < kEntryLength; at += 3)
    if (entry.size() > at && !isDigit(entry[at])) entry[at] = '#';
  expect(entry.substr(0, kEntryLength) == written, "a draw is what its first entry says");
}

void checkList(const std::string& raw, const std::string& text) {
  const Date today = std::chrono::sys_days{std::chrono::January / 1 / 2030};
  const DrawList list(raw, today);
  // A reply of UTF-16 is read by its characters; the rules below look at bytes.
  if (list.isOfAnotherForm() || isUtf16(raw)) return;
  PeriodNo newest = 0;
  for (const auto& [period, place] : findPeriods(text)) {
    expect(list.names(period), "every entry is found");
    const ListedEntry entry = list.parseDraw(period);
    expect(entry.draw.has_value() == entry.fault.empty(), "an entry is a draw or tells why not");
    expect(entry.line >= 1 && entry.line <= 1 + std::count_if(raw.begin(), raw.end(), isLineEnd),
           "an entry stands in a line");
    if (!entry.draw) continue;
    newest = std::max(newest, period);
    expect(entry.draw->date <= today, "no draw comes from tomorrow");
    checkDraw(text.substr(place, kEntryLength + 1), period, *entry.draw);
  }
  expect(list.newest() == newest, "the newest is the highest whole one");
}

void checkAnyForm(const std::string& raw) {
  const Date today = std::chrono::sys_days{std::chrono::January / 1 / 2030};
  std::set<PeriodNo> draws;
  for (const auto& [period, entry] : readAnyDrawList(raw, today).rows) {
    expect(entry.draw.has_value() == entry.fault.empty(), "a line is a draw or tells why not");
    if (!entry.draw) continue;
    const auto& [date, numbers] = *entry.draw;
    expect(isPeriod(period) && draws.insert(period).second, "each period is a draw once");
    expect(isDraw(numbers) && date <= today && yearOf(date) == period / 1000, "a draw of any form is a draw");
  }
}

}  // namespace
}  // namespace lotmere::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lotmere;
  const std::string raw(data, data + size);
  const std::string text = compactDrawText(raw);
  fuzz::checkCompaction(raw, text);
  fuzz::checkList(raw, text);
  fuzz::checkAnyForm(raw);
  return 0;
}

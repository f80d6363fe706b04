#include "conditions/set_text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "base/text.hpp"
#include "conditions/set_lines.hpp"

namespace lotmere {
namespace {

constexpr std::string_view kTitle = "Lotmere 条件 ";
constexpr std::string_view kColon = "：";
constexpr std::string_view kEnd = "完";

std::string_view withoutMark(std::string_view text) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  if (text.starts_with(mark)) text.remove_prefix(mark.size());
  return text;
}

bool isKnownTitle(std::string_view line) {
  if (!line.starts_with(kTitle)) return false;
  line.remove_prefix(kTitle.size());
  int version = 0;
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), version);
  return error == std::errc{} && end == line.data() + line.size() && version >= 1 &&
         version <= kSetTextVersion;
}

enum class LineFate { read, passed, unknown, broken };

LineFate readLine(std::string_view line, ReadSet& read, WithPicks with_picks) {
  const std::size_t colon = line.find(kColon);
  if (colon == std::string_view::npos) return LineFate::unknown;
  const auto found = std::ranges::find(setLines(), trim(line.substr(0, colon)), &SetLine::name);
  if (found == setLines().end()) return LineFate::unknown;
  ConditionSet changed = read.set;
  if (!found->read(trim(line.substr(colon + kColon.size())), changed)) return LineFate::broken;
  read.with_picks = read.with_picks || found->picks;
  if (found->picks && with_picks == WithPicks::no) return LineFate::passed;
  read.set = std::move(changed);
  return LineFate::read;
}

}  // namespace

std::string setText(const ConditionSet& set, WithPicks with_picks) {
  std::string text = fmt::format("{}{}\n", kTitle, kSetTextVersion);
  for (const SetLine& line : setLines())
    if (!line.picks || with_picks == WithPicks::yes)
      text += line.name + std::string(kColon) + line.write(set) + '\n';
  return text + std::string(kEnd) + '\n';
}

bool isSetText(std::string_view text) { return withoutMark(text).starts_with(kTitle); }

std::optional<ReadSet> readSetText(std::string_view text, const ConditionSet& base, WithPicks with_picks) {
  text = withoutMark(text);
  ReadSet read{base, {}};
  int number = 0;
  for (std::size_t from = 0; from < text.size();) {
    const std::size_t end = std::min(text.find('\n', from), text.size());
    const std::string_view line = trim(text.substr(from, end - from));
    from = end + 1;
    if (++number == 1) {
      if (!isKnownTitle(line)) return std::nullopt;
    } else if (line == kEnd) {
      read.complete = true;
    } else if (!line.empty()) {
      const LineFate fate = readLine(line, read, with_picks);
      if (fate == LineFate::unknown || fate == LineFate::broken)
        read.skipped.push_back({number, std::string(line), fate == LineFate::broken});
    }
  }
  if (number == 0) return std::nullopt;
  return read;
}

std::vector<SetDifference> differencesBetween(const ConditionSet& before, const ConditionSet& after,
                                              WithPicks with_picks) {
  std::vector<SetDifference> differences;
  for (const SetLine& line : setLines()) {
    if (line.picks && with_picks == WithPicks::no) continue;
    std::string was = line.write(before), is = line.write(after);
    if (was != is) differences.push_back({line.name, std::move(was), std::move(is)});
  }
  return differences;
}

std::string differenceNames(const std::vector<SetDifference>& differences) {
  constexpr std::size_t most = 3;
  std::string names;
  for (std::size_t i = 0; i < std::min(most, differences.size()); ++i)
    names += (i == 0 ? "" : "、") + differences[i].name;
  if (differences.size() > most) names += fmt::format(" 等 {} 项", differences.size());
  return names;
}

}  // namespace lotmere

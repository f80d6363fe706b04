// A condition set as a text that people can read and edit, and back.
//
//   Lotmere 条件 1
//   红球拖码：1-9,15
//   总和值：开 60-140,150
//   连号：关 0;2;2+2
//   号码定位1：开 1-12
//   自定义组1的号码：3,8,11
//   历史数据过滤：开 2026001-2026050 6 自选
//   缩水类型：6
//   精简缩水：开 3
//   完
//
// The version stands on top, then a line a condition or setting, in any order, and a last line by which a
// text that was cut off is known. What is missing stays as it is in the set that the text is read into. A
// switch says 开 or 关, or its number where the store holds another. The groups of the families are no user's
// and are left out.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "conditions/condition_set.hpp"

namespace lotmere {

inline constexpr int kSetTextVersion = 1;

// Whether the lines of the picked numbers belong to it.
enum class WithPicks { no, yes };

[[nodiscard]] std::string setText(const ConditionSet& set, WithPicks with_picks = WithPicks::yes);

struct SkippedLine {
  int number = 0;  // from 1 on
  std::string text;
  bool broken = false;  // its name is known, its value breaks a rule; else nobody knows the name

  friend bool operator==(const SkippedLine&, const SkippedLine&) = default;
};

struct ReadSet {
  ConditionSet set;
  std::vector<SkippedLine> skipped{};
  bool with_picks = false;  // lines of picked numbers stand there, whether they were taken or not
  bool complete = false;    // the last line stands there: nothing is cut off
};
// Whether a text begins as that of a set does, of this version or another.
[[nodiscard]] bool isSetText(std::string_view text);

// Reads a text into a copy of `base`. Nothing for a text without the first line, or of a later version.
[[nodiscard]] std::optional<ReadSet> readSetText(std::string_view text, const ConditionSet& base,
                                                 WithPicks with_picks = WithPicks::yes);

// A line that the texts of two sets hold otherwise.
struct SetDifference {
  std::string name;
  std::string before;
  std::string after;

  friend bool operator==(const SetDifference&, const SetDifference&) = default;
};
// The lines that differ, in the order of the text.
[[nodiscard]] std::vector<SetDifference> differencesBetween(const ConditionSet& before,
                                                            const ConditionSet& after,
                                                            WithPicks with_picks = WithPicks::yes);
// The names of what differs as one short text: "总和值", "总和值、奇数个数、连号 等 5 项"; empty where nothing
// does.
[[nodiscard]] std::string differenceNames(const std::vector<SetDifference>& differences);

}  // namespace lotmere

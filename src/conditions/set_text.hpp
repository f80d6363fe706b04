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
//
// The version stands on top, then a line a condition or setting, in any order. What is missing stays as it is
// in the set that the text is read into. A switch says 开 or 关, or its number where the store holds another.
// The groups of the families are no user's and are left out.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "conditions/condition_set.hpp"

namespace lotmere {

inline constexpr int kSetTextVersion = 1;

[[nodiscard]] std::string setText(const ConditionSet& set);

struct SkippedLine {
  int number = 0;  // from 1 on
  std::string text;

  friend bool operator==(const SkippedLine&, const SkippedLine&) = default;
};

struct ReadSet {
  ConditionSet set;
  std::vector<SkippedLine> skipped;  // lines that name nothing known or whose value breaks a rule
};
// Reads a text into a copy of `base`. Nothing for a text without the first line, or of a later version.
[[nodiscard]] std::optional<ReadSet> readSetText(std::string_view text, const ConditionSet& base);

}  // namespace lotmere

// All conditions in the groups of the one list that shows them.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "conditions/condition_set.hpp"

namespace lotmere {

// What stands in a row of the list.
enum class RowKind {
  condition,  // one of the catalogue
  match,      // 历史数据过滤, which stands outside it
  shrink      // the shrink type, always on
};

struct ConditionRow {
  RowKind kind = RowKind::condition;
  const Condition* condition = nullptr;  // of a condition
  std::string_view name;
  int tab = 0;            // of the page that shows it with its like, 0 where it has none
  std::string_view step;  // the row of the funnel that tells what it takes away
};

struct ConditionGroup {
  std::string_view caption;
  bool open = true;  // as the list first shows it
  std::vector<ConditionRow> rows;
};

// Every condition stands in exactly one group.
[[nodiscard]] std::span<const ConditionGroup> conditionGroups();

// Whether the row's box is ticked, and what it lets through in words: "60～143", "2,2,1,1 …". 号码定位 tells
// its numbers, a custom group its numbers and counts.
[[nodiscard]] bool isTicked(const ConditionSet& set, const ConditionRow& row);
[[nodiscard]] std::string valueText(const ConditionSet& set, const ConditionRow& row);

}  // namespace lotmere

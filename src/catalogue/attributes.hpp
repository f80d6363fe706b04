// The yes/no columns of the attribute tables `号码特性`, `号码特性2` and `号码特性3`: which red number
// belongs to which group of which family, and what the factory puts there.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "game/game.hpp"

namespace lotmere {

// Which of the three tables holds a column.
enum class AttributeTable : int { first = 0, second = 1, third = 2 };

// "号码特性", "号码特性2", "号码特性3".
[[nodiscard]] std::string_view tableName(AttributeTable table);

// A run of columns `name`first to `name`(first + count - 1). A family of count 0 is one column with the bare
// name.
struct AttributeFamily {
  AttributeTable table;
  std::string_view name;
  int first;
  int count;
  // Whether the factory puts a number (1 to 33) into group g, counted from 0.
  bool (*holds)(int g, int number);
  int since = 1;  // the schema version that brought it
};

// The families of the first two tables in the order of their columns.
[[nodiscard]] std::span<const AttributeFamily> attributeFamilies();

// The columns of a table in order, without the key columns `INDEX` and `号码`.
[[nodiscard]] std::vector<std::string> attributeColumns(AttributeTable table);

// The custom interval divisions: 6 to 12 intervals each, 63 intervals in all.
struct CustomInterval {
  int turn;           // `序号`, 1 to 63
  std::string name;   // "六区间1" to "十二区间12", also its column of `号码特性3`
  UsageId usage;      // 401 to 463
  ConditionId first;  // 7000 + 10 (turn - 1), ten cells
  ConditionId last;
  int division;  // 6 to 12
  int index;     // 0-based place within the division
};
inline constexpr int kCustomIntervalCount = 63;
[[nodiscard]] const std::vector<CustomInterval>& factoryCustomIntervals();

// Whether the factory puts a number into an interval of a division: n runs as even as can be, the longer ones
// first.
[[nodiscard]] bool divisionHolds(int division, int index, int number);

}  // namespace lotmere

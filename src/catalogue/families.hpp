// The group families: partitions and covers of the 33 reds, and the shapes that six reds make across the
// groups of a family. Shape filters, combination turns, draw statistics and panels read one table of
// families.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "catalogue/attributes.hpp"
#include "game/game.hpp"

namespace lotmere {

// The numbered lists of shape texts. A shape is the sorted list of group counts, such as "2,2,1,1"; its
// number is its place in the list.
enum class ShapeSet { six, four, three };
[[nodiscard]] std::span<const std::string_view> shapeTexts(ShapeSet set);

// Which pairs (largest count in one group, number of groups hit) a family has a shape for; a pair inside that
// its set doesn't list takes shape number 0.
struct ShapeBounds {
  int largest;        // 1 to this
  int fewest_groups;  // this to 6
};

struct Family {
  std::string_view name;  // of the shape filter, as its lines and lists show it
  UsageId usage;
  ConditionId first;  // cell of shape number 0
  ConditionId last;
  AttributeTable table;
  std::string_view column;  // prefix of the columns
  int first_suffix;
  int groups;       // groups that the filter looks at
  int draw_groups;  // groups that the draw statistics and the combination turn look at
  ShapeSet set;
  ShapeBounds bounds;
  std::string_view draw_column;  // column of `历史记录`, empty for the family that has none
  int turn;                      // combination turn 0 to 31, -1 for none
  int first_group_id;            // the id of group 0 in group texts: tails count from 0, all others from 1
  std::string_view factory;      // the shapes that the factory allows, as a number list
  std::string_view grouping;     // how the reds are grouped, in words
  std::string_view page = {};    // caption of the page that the filter has for itself
  int since = 1;                 // the schema version that brought it
};

// All 33 families in the order in which a run passes them.
[[nodiscard]] std::span<const Family> families();
// The family of a combination turn, 0 to 31.
[[nodiscard]] const Family& familyOfTurn(int turn);
// The family of a shape filter's switch, or nullptr.
[[nodiscard]] const Family* familyOfUsage(UsageId usage);

// The group counts of six reds in one word: three bits for each group, group 0 lowest.
using GroupCounts = std::uint64_t;
inline constexpr int kGroupBits = 3;

// For each number (index 0 unused) a word with a 1 in the field of every group that holds it.
struct GroupTable {
  std::array<GroupCounts, kRedCount + 1> word{};
};
[[nodiscard]] constexpr GroupCounts countGroups(const GroupTable& table, const Reds& reds) {
  GroupCounts counts = 0;
  for (const int red : reds) counts += table.word[red];
  return counts;
}

// The largest count of a word, 0 to 6.
[[nodiscard]] constexpr int largestCount(GroupCounts counts) {
  constexpr GroupCounts ones = 0'111111111111111111111;
  if (const GroupCounts fours = counts >> 2 & ones) {
    if (fours & counts >> 1) return 6;
    return fours & counts ? 5 : 4;
  }
  if (const GroupCounts twos = counts >> 1 & ones) return twos & counts ? 3 : 2;
  return counts ? 1 : 0;
}

// How many groups have a red.
[[nodiscard]] constexpr int hitGroups(GroupCounts counts) {
  constexpr GroupCounts ones = 0'111111111111111111111;
  return std::popcount((counts | counts >> 1 | counts >> 2) & ones);
}

// The shape number of a word of counts; nothing for a pair beyond the family's bounds (all six in one group
// of a set without "6", or no red in any group), which no condition allows.
[[nodiscard]] std::optional<int> shapeNumber(const Family& family, GroupCounts counts);

// The groups hit, ascending, each once for every red in it: "[1,1,3,4,7,9]"; "[]" with none.
[[nodiscard]] std::string groupText(GroupCounts counts, int first_group_id);

// What the draw statistics store: the group text and the shape in full-width brackets. Beyond the bounds the
// largest count stands in the place of the shape.
[[nodiscard]] std::string drawText(const Family& family, GroupCounts counts);

}  // namespace lotmere

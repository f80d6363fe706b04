// The catalogue of conditions: each condition once, with its switch, its cells and what they stand for.
// Lists, command line and passes read this table.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "conditions/families.hpp"
#include "core/attributes.hpp"
#include "core/game.hpp"
#include "core/metrics.hpp"
#include "core/store.hpp"

namespace lotmere {

// What the cells of a condition stand for.
enum class CellKind {
  value,        // cell k: the figure equals k
  count,        // cell k: k reds, 0 to 6
  run_shape,    // cell k: run shape number k
  shape,        // cell k: shape number k of the family's set
  sum_family,   // cell k: sum family k takes part
  position,     // no cells: the numbers allowed at a place stand in a column of `号码特性`
  combination,  // no cells: a turn of 组合（具体）
  setting       // a switch alone
};

// How the figure of a condition comes from six reds.
struct MembersIn {  // how many of them stand in a yes/no column, or with `inside` false don't
  AttributeTable table;
  std::string column;
  bool inside = true;
};
struct AgainstPrevious {  // how many are marked by the draw before the period
  RedTable (*mark)(const Reds& previous);
};
struct DrawnIn {  // how many came up in the newest draws
  int draws;
};
struct HeatOver {  // how often they came up in the newest draws, together
  int draws;
};
using FigureRule =
    std::variant<std::monostate,  // no figure: its cells, if any, stand for something else
                 NumberValue,     // the sum of a number value
                 int (*)(const Reds&), MembersIn, const Family*, AgainstPrevious, DrawnIn, HeatOver>;

struct Condition {
  UsageId usage = 0;
  std::string name;
  CellKind kind = CellKind::setting;
  ConditionId first = 0;  // first and last row of `过滤条件`; 0 where it has no cells
  ConditionId last = 0;
  std::string item_text = {};  // what list items show in front of the number, "总和值="
  int first_item = 0;          // numbers of the first and last list item
  int last_item = 0;
  const Family* family = nullptr;  // of a shape or combination condition
  int turn = 0;  // place (1 to 7) of a position, turn (0 to 31) of a combination, `序号` of a custom interval
  FigureRule figure = {};
  std::string log_name = {};  // as the lines of a run carry it, "[ 总和值 ]"
  int pass = 0;               // its place in the order of a run
};

// Whether a condition judges six reds against the draws before their period, and how many of those it takes at most.
[[nodiscard]] bool looksBack(const Condition& condition);
inline constexpr int kDrawsLookedBack = 10;
inline constexpr UsageId kSumFamilyCondition = 266;  // 前2期和值相同组

// The switches of the series, each counted from 1 but for the turns of 组合（具体）, 0 to 31.
inline constexpr int kIntervalCount = 4;
inline constexpr int kGroupCount = 10;
inline constexpr int kPlaceCount = 7;  // six reds in ascending order, then the blue
inline constexpr int kTurnCount = 32;
[[nodiscard]] constexpr UsageId usage_OfInterval(int interval) { return 15 + interval; }
[[nodiscard]] constexpr UsageId usage_OfGroup(int group) { return 19 + group; }
[[nodiscard]] constexpr UsageId usage_OfPlace(int place) { return 29 + place; }
[[nodiscard]] constexpr UsageId usage_OfTurn(int turn) { return 100 + turn; }

// The conditions that every store has, by ascending switch; the custom intervals aren't among them.
[[nodiscard]] const std::vector<Condition>& catalogue();
// The same and the custom intervals.
[[nodiscard]] const std::vector<Condition>& allConditions();
// One of them; the switch must be one of the catalogue.
[[nodiscard]] const Condition& condition_OfUsage(UsageId usage);
// The same and the custom intervals that the store's `自定义区间` names.
[[nodiscard]] std::vector<Condition> all_Conditions(Store& store);

// A condition by its name or by the number of its switch.
[[nodiscard]] std::optional<Condition> find_Condition(Store& store, std::string_view name_or_usage);

// What one cell stands for, as lists show it: "总和值=100", "连号=2+2", "2,2,1,1".
[[nodiscard]] std::string item_Text(const Condition& condition, int k);

// The number of cells that can be set one by one (cells 0 to this - 1); the rows behind them are never
// tested.
[[nodiscard]] int cell_Count(const Condition& condition);

// The shrink types, and "保三型" to "保七型" for 3 to 7; empty for a number that names none.
inline constexpr int kSmallestShrink = 3;
inline constexpr int kLargestShrink = 7;  // touches no ticket, only counts them
[[nodiscard]] std::string shrink_Caption(int type);

// The column of `号码特性` with the numbers allowed at a place, "第1" to "第7".
[[nodiscard]] std::string place_Column(int place);

// The names of the seven sum families of 前2期和值相同组.
[[nodiscard]] std::span<const std::string_view> sum_FamilyTexts();

}  // namespace lotmere

// The catalogue of conditions: each condition once, one row with everything about it. To add a condition is
// to add its row.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "catalogue/attributes.hpp"
#include "catalogue/families.hpp"
#include "game/game.hpp"
#include "game/metrics.hpp"

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

// Everything about one condition. Factory rows, steps of a run, lists, pages and texts follow from it.
struct Condition {
  UsageId usage = 0;
  std::string name{};
  CellKind kind = CellKind::setting;
  ConditionId first = 0;  // first and last row of `过滤条件`; 0 where it has no cells
  ConditionId last = 0;
  // The cells that the factory allows, by their offset from `first`, as a number list: those of the smallest
  // set of most frequent figures that holds at least 95 percent of all red sixes; figures against earlier
  // draws are counted against a typical history, groups and intervals of the user's own allow every count.
  std::string_view factory{};
  bool used_at_first = false;  // the factory switches it on
  std::string item_text{};     // what list items show in front of the number, "总和值="
  int first_item = 0;          // numbers of the first and last list item
  int last_item = 0;
  const Family* family = nullptr;  // of a shape or combination condition
  int turn = 0;  // place (1 to 7) of a position, turn (0 to 31) of a combination, `序号` of a custom interval
  FigureRule figure{};
  std::string log_name{};    // as the lines of a run carry it, "[总和值]"
  std::string_view page{};   // caption of the page that it has for itself, if it has one
  std::string definition{};  // what it looks at, in a sentence or two
  std::string_view help{};   // what the button beside its list explains
  int since = 1;             // the schema version that brought it
  int pass = 0;              // its place in the order of a run: the place of its row
};

// Whether a condition judges six reds against the draws before their period, and how many of those it takes
// at most.
[[nodiscard]] bool looksBack(const Condition& condition);
inline constexpr int kDrawsLookedBack = 10;

// The settings among the rows of `过滤条件` that belong to no condition, and the switch without cells.
inline constexpr ConditionId kShrinkTypeCell = 3900;  // the shrink type, 3 to 7
inline constexpr ConditionId kToleranceCell = 3901;   // the tolerance of 号码定位, 0 to 7
inline constexpr ConditionId kFewerCell = 3902;  // 精简缩水: 1 when the shrink searches for fewer tickets
inline constexpr ConditionId kEffortCell = 3903;  // and how hard, 1 to 9
inline constexpr int kFewerSince = 4;             // the schema version that brought these two
inline constexpr int kLeastEffort = 1;
inline constexpr int kFactoryEffort = 3;
inline constexpr int kMostEffort = 9;
inline constexpr ConditionId kSetToleranceCell =
    3904;                                     // 全部条件容错值: conditions a ticket may fail, 0 to 9
inline constexpr int kSetToleranceSince = 4;  // the schema version that brought it
inline constexpr int kMostSetTolerance = 9;
inline constexpr UsageId kSmartOptimisation = 300;

// The switches of the series, each counted from 1 but for the turns of 组合（具体）, 0 to 31.
inline constexpr int kIntervalCount = 4;
inline constexpr int kGroupCount = 10;
inline constexpr int kPlaceCount = 7;  // six reds in ascending order, then the blue
inline constexpr int kTurnCount = 32;
[[nodiscard]] constexpr UsageId usageOfInterval(int interval) { return 15 + interval; }
[[nodiscard]] constexpr UsageId usageOfGroup(int group) { return 19 + group; }
[[nodiscard]] constexpr UsageId usageOfPlace(int place) { return 29 + place; }
[[nodiscard]] constexpr UsageId usageOfTurn(int turn) { return 100 + turn; }

// All conditions by ascending switch, the 63 custom intervals last. Their numbers and names are unique.
[[nodiscard]] const std::vector<Condition>& allConditions();
// One of them by its switch, which must be one of a condition.
[[nodiscard]] const Condition& conditionOfUsage(UsageId usage);
// One of them by its name, which must be one of a condition.
[[nodiscard]] const Condition& conditionNamed(std::string_view name);
// A condition by its name or by the number of its switch, as a user types either; nullptr for none.
[[nodiscard]] const Condition* findCondition(std::string_view name_or_usage);
// Whether it is one of the custom intervals.
[[nodiscard]] bool isCustomInterval(const Condition& condition);

// A row of `过滤条件` or of `过滤条件使用情况` with its factory value.
struct FactoryValue {
  int key;
  int value;
};
// Every row ascending by its key: the selection, the cells of the conditions, shrink type and tolerance; and
// the switches.
[[nodiscard]] std::vector<FactoryValue> factoryCells();
[[nodiscard]] std::vector<FactoryValue> factorySwitches();

// What one cell stands for, as lists show it: "总和值=100", "连号=2+2", "2,2,1,1".
[[nodiscard]] std::string itemText(const Condition& condition, int k);

// The number of cells that can be set one by one (cells 0 to this - 1); the rows behind them are never
// tested.
[[nodiscard]] int cellCount(const Condition& condition);

// What listings, the summary and texts of a set call the search for fewer tickets.
inline constexpr std::string_view kFewerName = "精简缩水";
// What listings, the summary and texts of a set call the tolerance over the whole set.
inline constexpr std::string_view kSetToleranceName = "全部条件容错值";

// The shrink types, and "保三型" to "保七型" for 3 to 7; empty for a number that names none.
inline constexpr int kSmallestShrink = 3;
inline constexpr int kLargestShrink = 7;  // touches no ticket, only counts them
[[nodiscard]] std::string shrinkCaption(int type);

// The column of `号码特性` with the numbers allowed at a place, "第1" to "第7".
[[nodiscard]] std::string placeColumn(int place);

// The names of the seven sum families of 前2期和值相同组.
[[nodiscard]] std::span<const std::string_view> sumFamilyTexts();

}  // namespace lotmere

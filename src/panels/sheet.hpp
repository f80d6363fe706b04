// The condition sheet: most conditions at once, each list with a line that tells its current
// value.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "panels/panel.hpp"

namespace lotmere {

inline constexpr int kSlotCount = 16;

// The condition of a slot (0 to 15); nullptr for slot 1, which is empty.
[[nodiscard]] const Condition* slotCondition(int slot);
// Whether a slot is the condition's.
[[nodiscard]] bool isOnSheet(const Condition& condition);
// 尾数重叠, 合数重叠, 前3期出现个数, 前2期和值相同组, counted from 0; 温度5 and 温度10.
inline constexpr int kRelativeCount = 4;
inline constexpr int kHeatCount = 2;
[[nodiscard]] const Condition& relativeCondition(int i);
[[nodiscard]] const Condition& heatCondition(int i);

// The list of a slot and its box, which is ticked when the switch is exactly 1, as for the passes.
[[nodiscard]] ConditionPanel slotPanel(const ConditionSet& set, int slot);

// The line beside a slot's list ("当前取值：" and the values). Empty with nothing ticked, for the empty slot,
// and for 连号, whose values are no numbers.
[[nodiscard]] std::string slotTip(const ConditionSet& set, int slot);

// Number counts of the four intervals, also a page of their own.
[[nodiscard]] std::array<ConditionPanel, kIntervalCount> intervalPanels(const ConditionSet& set);
// The panels of those.
[[nodiscard]] std::array<ConditionPanel, kRelativeCount> relativePanels(const ConditionSet& set);
[[nodiscard]] std::array<ConditionPanel, kHeatCount> heatPanels(const ConditionSet& set);
// The 32 shape lists in the order of the combination turns; captions are the columns of the history.
[[nodiscard]] std::array<ConditionPanel, kTurnCount> shapePanels(const ConditionSet& set);

// What stands over the list of the combination turns, which the draw statistics make (`combinationList`).
inline constexpr std::string_view kCombinationCaption = "过滤掉与上一期相同的具体组合形式(允许错2)";
// How many of the newest draws there are to choose from for it.
inline constexpr int kCombinationDraws = 10;

// The whole sheet but for the combination turns.
struct ConditionSheet {
  std::array<ConditionPanel, kSlotCount> slots;
  std::array<std::string, kSlotCount> tips;
  std::array<ConditionPanel, kIntervalCount> intervals;
  std::array<ConditionPanel, kRelativeCount> relatives;
  std::array<ConditionPanel, kHeatCount> heat;
  std::array<ConditionPanel, kTurnCount> shapes;
};
[[nodiscard]] ConditionSheet panelReload(const ConditionSet& set);

}  // namespace lotmere

// The condition sheet (`Frame_subtj`): most conditions at once, each list with a line that tells its current
// value.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "conditions/panel.hpp"
#include "core/store.hpp"

namespace lotmere {

inline constexpr int kSlotCount = 16;

// The condition of a slot (0 to 15); nullptr for slot 1, which is empty.
[[nodiscard]] const Condition* slot_Condition(int slot);
// Whether a slot is the condition's.
[[nodiscard]] bool is_OnSheet(const Condition& condition);
// 尾数重叠, 合数重叠, 前3期出现个数, 前2期和值相同组 (`List_wscd`), counted from 0; 温度5 and 温度10.
inline constexpr int kRelativeCount = 4;
inline constexpr int kHeatCount = 2;
[[nodiscard]] const Condition& relative_Condition(int i);
[[nodiscard]] const Condition& heat_Condition(int i);

// The list of a slot and its box, which is ticked when the switch is exactly 1, as for the passes.
[[nodiscard]] ConditionPanel tj_FillList(Store& store, int slot);

// The line beside a slot's list ("当前取值：" and the values). Empty with nothing ticked, for the empty slot,
// and for 连号, whose values are no numbers.
[[nodiscard]] std::string slot_Tip(Store& store, int slot);

// Number counts of the four intervals, also a page of their own.
[[nodiscard]] std::array<ConditionPanel, kIntervalCount> fill_Intervals(Store& store);
// The panels of those.
[[nodiscard]] std::array<ConditionPanel, kRelativeCount> fill_Relatives(Store& store);
[[nodiscard]] std::array<ConditionPanel, kHeatCount> fill_Heat(Store& store);
// The 32 shape lists in the order of the combination turns; captions are the columns of the history.
[[nodiscard]] std::array<ConditionPanel, kTurnCount> tj_FillShapes(Store& store);

// What stands over the list of the combination turns, which the draw statistics make (`build_ZuHeList`).
inline constexpr std::string_view kCombinationCaption = "过滤掉与上一期相同的具体组合形式(允许错2)";

// The whole sheet but for the combination turns.
struct ConditionSheet {
  std::array<ConditionPanel, kSlotCount> slots;
  std::array<std::string, kSlotCount> tips;
  std::array<ConditionPanel, kIntervalCount> intervals;
  std::array<ConditionPanel, kRelativeCount> relatives;
  std::array<ConditionPanel, kHeatCount> heat;
  std::array<ConditionPanel, kTurnCount> shapes;
  std::vector<PeriodNo> periods;  // the last ten, newest first: which draw the combination turns show
};
[[nodiscard]] ConditionSheet panel_Reload(Store& store);

}  // namespace lotmere

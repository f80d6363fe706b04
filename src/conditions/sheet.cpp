#include "conditions/sheet.hpp"

#include <algorithm>

#include "conditions/condition_store.hpp"
#include "conditions/values.hpp"
#include "core/periods.hpp"
#include "core/text.hpp"

namespace lotmere {
namespace {

// The condition of each slot; the second stands empty.
constexpr std::array<std::string_view, kSlotCount> kSlots = {
    "总和值",   "",         "尾数和值",   "合数和值", "大数和值", "小数和值", "奇数和值", "偶数和值",
    "奇数个数", "大数个数", "高尾码个数", "最大间距", "连号",     "AC值",     "重叠号",   "斜位码"};
constexpr std::string_view kRelatives[] = {"尾数重叠", "合数重叠", "前3期出现个数", "前2期和值相同组"};
constexpr std::string_view kHeats[] = {"温度5", "温度10"};
constexpr int kPeriodsShown = 10;

ConditionPanel named_Panel(Store& store, const Condition& condition) {
  return load_Panel(store, condition, condition.name);
}

}  // namespace

const Condition* slot_Condition(int slot) {
  const std::string_view name = kSlots[static_cast<std::size_t>(slot)];
  return name.empty() ? nullptr : &conditionNamed(name);
}

bool is_OnSheet(const Condition& condition) {
  return std::ranges::find(kSlots, condition.name) != kSlots.end();
}

const Condition& relative_Condition(int i) { return conditionNamed(kRelatives[i]); }

const Condition& heat_Condition(int i) { return conditionNamed(kHeats[i]); }

ConditionPanel tj_FillList(Store& store, int slot) {
  const Condition* condition = slot_Condition(slot);
  ConditionPanel panel;
  if (condition != nullptr) panel = load_Panel(store, *condition, condition->name);
  panel.ticked = is_Used(store, panel.usage);
  return panel;
}

std::string slot_Tip(Store& store, int slot) {
  const Condition* condition = slot_Condition(slot);
  if (condition == nullptr || condition->kind == CellKind::run_shape) return {};
  const std::string values = tj_CurrentValue(store, condition->first, condition->last);
  if (values.empty()) return {};
  const std::string line_break(kLineBreak);
  return line_break + "当前取值：" + line_break + line_break + values;
}

std::array<ConditionPanel, kIntervalCount> fill_Intervals(Store& store) {
  std::array<ConditionPanel, kIntervalCount> panels;
  for (int i = 0; i < kIntervalCount; ++i)
    panels[i] = named_Panel(store, conditionOfUsage(usage_OfInterval(i + 1)));
  return panels;
}

std::array<ConditionPanel, kRelativeCount> fill_Relatives(Store& store) {
  std::array<ConditionPanel, kRelativeCount> panels;
  for (int i = 0; i < kRelativeCount; ++i) {
    panels[i] = named_Panel(store, relative_Condition(i));
    if (relative_Condition(i).kind == CellKind::sum_family)
      panels[i].caption = "过滤掉前2期和值相同组(允许错2)";
  }
  return panels;
}

std::array<ConditionPanel, kHeatCount> fill_Heat(Store& store) {
  return {named_Panel(store, heat_Condition(0)), named_Panel(store, heat_Condition(1))};
}

std::array<ConditionPanel, kTurnCount> tj_FillShapes(Store& store) {
  std::array<ConditionPanel, kTurnCount> panels;
  for (int turn = 0; turn < kTurnCount; ++turn) {
    const Family& family = family_OfTurn(turn);
    panels[turn] = load_Panel(store, conditionOfUsage(family.usage), std::string(family.draw_column));
  }
  return panels;
}

ConditionSheet panel_Reload(Store& store) {
  ConditionSheet sheet;
  for (int slot = 0; slot < kSlotCount; ++slot) {
    sheet.slots[slot] = tj_FillList(store, slot);
    sheet.tips[slot] = slot_Tip(store, slot);
  }
  sheet.intervals = fill_Intervals(store);
  sheet.relatives = fill_Relatives(store);
  sheet.heat = fill_Heat(store);
  sheet.shapes = tj_FillShapes(store);
  sheet.periods = newestPeriods(store, kPeriodsShown);
  return sheet;
}

}  // namespace lotmere

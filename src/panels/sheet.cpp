#include "panels/sheet.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "conditions/values.hpp"

namespace lotmere {
namespace {

// The condition of each slot; the second stands empty.
constexpr std::array<std::string_view, kSlotCount> kSlots = {
    "总和值",   "",         "尾数和值",   "合数和值", "大数和值", "小数和值", "奇数和值", "偶数和值",
    "奇数个数", "大数个数", "高尾码个数", "最大间距", "连号",     "AC值",     "重叠号",   "斜位码"};
constexpr std::string_view kRelatives[] = {"尾数重叠", "合数重叠", "前3期出现个数", "前2期和值相同组"};
constexpr std::string_view kHeats[] = {"温度5", "温度10"};

ConditionPanel namedPanel(const ConditionSet& set, const Condition& condition) {
  return makePanel(set, condition, condition.name);
}

}  // namespace

const Condition* slotCondition(int slot) {
  const std::string_view name = kSlots[static_cast<std::size_t>(slot)];
  return name.empty() ? nullptr : &conditionNamed(name);
}

bool isOnSheet(const Condition& condition) {
  return std::ranges::find(kSlots, condition.name) != kSlots.end();
}

const Condition& relativeCondition(int i) { return conditionNamed(kRelatives[i]); }

const Condition& heatCondition(int i) { return conditionNamed(kHeats[i]); }

ConditionPanel slotPanel(const ConditionSet& set, int slot) {
  const Condition* condition = slotCondition(slot);
  ConditionPanel panel;
  if (condition != nullptr) panel = makePanel(set, *condition, condition->name);
  panel.ticked = set.isUsed(panel.usage);
  return panel;
}

std::string slotTip(const ConditionSet& set, int slot) {
  const Condition* condition = slotCondition(slot);
  if (condition == nullptr || condition->kind == CellKind::run_shape) return {};
  const std::string values = tickedValues(set, condition->first, condition->last);
  if (values.empty()) return {};
  const std::string line_break(kLineBreak);
  return line_break + "当前取值：" + line_break + line_break + values;
}

std::array<ConditionPanel, kIntervalCount> intervalPanels(const ConditionSet& set) {
  std::array<ConditionPanel, kIntervalCount> panels;
  for (int i = 0; i < kIntervalCount; ++i)
    panels[i] = namedPanel(set, conditionOfUsage(usageOfInterval(i + 1)));
  return panels;
}

std::array<ConditionPanel, kRelativeCount> relativePanels(const ConditionSet& set) {
  std::array<ConditionPanel, kRelativeCount> panels;
  for (int i = 0; i < kRelativeCount; ++i) {
    panels[i] = namedPanel(set, relativeCondition(i));
    if (relativeCondition(i).kind == CellKind::sum_family)
      panels[i].caption = "过滤掉前2期和值相同组(允许错2)";
  }
  return panels;
}

std::array<ConditionPanel, kHeatCount> heatPanels(const ConditionSet& set) {
  return {namedPanel(set, heatCondition(0)), namedPanel(set, heatCondition(1))};
}

std::array<ConditionPanel, kTurnCount> shapePanels(const ConditionSet& set) {
  std::array<ConditionPanel, kTurnCount> panels;
  for (int turn = 0; turn < kTurnCount; ++turn) {
    const Family& family = familyOfTurn(turn);
    panels[turn] = makePanel(set, conditionOfUsage(family.usage), std::string(family.draw_column));
  }
  return panels;
}

ConditionSheet panelReload(const ConditionSet& set) {
  ConditionSheet sheet;
  for (int slot = 0; slot < kSlotCount; ++slot) {
    sheet.slots[slot] = slotPanel(set, slot);
    sheet.tips[slot] = slotTip(set, slot);
  }
  sheet.intervals = intervalPanels(set);
  sheet.relatives = relativePanels(set);
  sheet.heat = heatPanels(set);
  sheet.shapes = shapePanels(set);
  return sheet;
}

}  // namespace lotmere

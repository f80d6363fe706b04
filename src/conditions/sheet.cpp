#include "conditions/sheet.hpp"

#include "conditions/condition_store.hpp"
#include "conditions/values.hpp"
#include "core/periods.hpp"
#include "core/text.hpp"

namespace lotmere {
namespace {

// The switch of each slot.
constexpr std::array<UsageId, kSlotCount> kSlots = {1, 0, 62, 63, 64, 65, 2, 3, 10, 12, 14, 5, 6, 9, 7, 8};
constexpr UsageId kFirstRelative = 263;
constexpr UsageId kSumFamilies = 266;
constexpr UsageId kFirstHeat = 301;
constexpr int kPeriodsShown = 10;

ConditionPanel named_Panel(Store& store, UsageId usage) {
  const Condition& condition = condition_OfUsage(usage);
  return load_Panel(store, condition, condition.name);
}

}  // namespace

const Condition* slot_Condition(int slot) {
  const UsageId usage = kSlots[static_cast<std::size_t>(slot)];
  return usage == 0 ? nullptr : &condition_OfUsage(usage);
}

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
  for (int i = 0; i < kIntervalCount; ++i) panels[i] = named_Panel(store, usage_OfInterval(i + 1));
  return panels;
}

std::array<ConditionPanel, 4> fill_Relatives(Store& store) {
  std::array<ConditionPanel, 4> panels;
  for (int i = 0; i < 4; ++i) panels[i] = named_Panel(store, kFirstRelative + i);
  panels[kSumFamilies - kFirstRelative].caption = "过滤掉前2期和值相同组(允许错2)";
  return panels;
}

std::array<ConditionPanel, 2> fill_Heat(Store& store) {
  return {named_Panel(store, kFirstHeat), named_Panel(store, kFirstHeat + 1)};
}

std::array<ConditionPanel, kTurnCount> tj_FillShapes(Store& store) {
  std::array<ConditionPanel, kTurnCount> panels;
  for (int turn = 0; turn < kTurnCount; ++turn) {
    const Family& family = family_OfTurn(turn);
    panels[turn] = load_Panel(store, condition_OfUsage(family.usage), std::string(family.draw_column));
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

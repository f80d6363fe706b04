#include "panels/panel.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "base/text.hpp"
#include "game/game.hpp"

namespace lotmere {

std::vector<PanelItem> panelItems(const ConditionSet& set, const Condition& condition) {
  if (condition.kind == CellKind::combination || condition.kind == CellKind::setting) return {};
  std::vector<PanelItem> items;
  const auto add = [&](int k, bool selected) { items.push_back({itemText(condition, k), k, selected}); };
  if (condition.kind == CellKind::position) {
    const Members allowed = set.column(AttributeTable::first, placeColumn(condition.turn));
    for (int n = condition.first_item; n <= condition.last_item; ++n) add(n, holds(allowed, n));
  } else {
    const ValueArray cells = set.cellRange(condition.first, condition.last);
    for (int k = condition.first_item; k <= condition.last_item; ++k) add(k, cells[k] > 0);
  }
  return items;
}

ConditionPanel makePanel(const ConditionSet& set, const Condition& condition, std::string caption) {
  return {condition.usage, std::move(caption), set.isTicked(condition.usage), true,
          panelItems(set, condition)};
}

std::string useCaption(std::string_view name) { return fmt::format("使用“{}”过滤", name); }

ConditionPanel pagePanel(const ConditionSet& set, const Condition& condition) {
  return makePanel(set, condition, useCaption(condition.name));
}

std::vector<PanelItem> chosenOption(const ConditionSet& set, ConditionId cell, int first, int last,
                                    std::string (*caption)(int)) {
  const int chosen = set.cells.value(cell);
  std::vector<PanelItem> options;
  for (int k = first; k <= last; ++k) options.push_back({caption(k), k, k == chosen});
  return options;
}

std::string spacedNumbers(Members members) {
  std::string text;
  for (int n = 1; n <= kRedCount; ++n)
    if (holds(members, n)) text += toFullWidth(formatBall(n)) + "  ";
  return text;
}

void clickItem(ConditionSet& set, const Condition& condition, int k, bool selected) {
  switch (condition.kind) {
    case CellKind::position:
      set.setMember(AttributeTable::first, placeColumn(condition.turn), k, selected);
      break;
    case CellKind::combination:
      set.use(condition.usage, selected);
      break;
    case CellKind::setting:
      break;
    default:
      set.allow(condition.first + k, selected);
  }
}

BoxState clickLeadingItem(ConditionSet& set, const Condition& condition, int k, bool selected) {
  clickItem(set, condition, k, selected);
  const auto items = panelItems(set, condition);
  const bool any =
      std::any_of(items.begin(), items.end(), [](const PanelItem& item) { return item.selected; });
  set.use(condition.usage, any);
  return {any, any || condition.kind == CellKind::shape};
}

}  // namespace lotmere

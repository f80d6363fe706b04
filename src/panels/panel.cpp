#include "panels/panel.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "base/text.hpp"
#include "conditions/condition_store.hpp"
#include "game/game.hpp"

namespace lotmere {

std::vector<PanelItem> panelItems(Store& store, const Condition& condition) {
  if (condition.kind == CellKind::combination || condition.kind == CellKind::setting) return {};
  std::vector<PanelItem> items;
  const auto add = [&](int k, bool selected) { items.push_back({itemText(condition, k), k, selected}); };
  if (condition.kind == CellKind::position) {
    const RedTable allowed = readAttributeColumn(store, AttributeTable::first, placeColumn(condition.turn));
    for (int n = condition.first_item; n <= condition.last_item; ++n) add(n, allowed[n] != 0);
  } else {
    const ValueArray cells = loadConditionRange(store, condition.first, condition.last);
    for (int k = condition.first_item; k <= condition.last_item; ++k) add(k, cells[k] > 0);
  }
  return items;
}

ConditionPanel loadPanel(Store& store, const Condition& condition, std::string caption) {
  return {condition.usage, std::move(caption), isTicked(store, condition.usage), true,
          panelItems(store, condition)};
}

std::string useCaption(std::string_view name) { return fmt::format("使用“{}”过滤", name); }

ConditionPanel pagePanel(Store& store, const Condition& condition) {
  return loadPanel(store, condition, useCaption(condition.name));
}

std::vector<PanelItem> storedOption(Store& store, ConditionId cell, int first, int last,
                                    std::string (*caption)(int)) {
  const int chosen = conditionValue(store, cell);
  std::vector<PanelItem> options;
  for (int k = first; k <= last; ++k) options.push_back({caption(k), k, k == chosen});
  return options;
}

std::string spacedNumbers(const RedTable& members) {
  std::string text;
  for (int n = 1; n <= kRedCount; ++n)
    if (members[n]) text += toFullWidth(formatBall(n)) + "  ";
  return text;
}

void clickItem(Store& store, const Condition& condition, int k, bool selected) {
  switch (condition.kind) {
    case CellKind::position:
      writeAttribute(store, AttributeTable::first, placeColumn(condition.turn), k, selected);
      break;
    case CellKind::combination:
      setUsage(store, condition.usage, selected);
      break;
    case CellKind::setting:
      break;
    default:
      setCell(store, condition.first + k, selected);
  }
}

BoxState clickLeadingItem(Store& store, const Condition& condition, int k, bool selected) {
  StoreChange change(store);
  clickItem(store, condition, k, selected);
  const auto items = panelItems(store, condition);
  const bool any =
      std::any_of(items.begin(), items.end(), [](const PanelItem& item) { return item.selected; });
  setUsage(store, condition.usage, any);
  change.commit();
  return {any, any || condition.kind == CellKind::shape};
}

}  // namespace lotmere

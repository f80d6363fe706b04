#include "conditions/panel.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "conditions/condition_store.hpp"
#include "core/text.hpp"

namespace lotmere {

std::vector<PanelItem> panel_Items(Store& store, const Condition& condition) {
  if (condition.kind == CellKind::combination || condition.kind == CellKind::setting) return {};
  std::vector<PanelItem> items;
  const auto add = [&](int k, bool selected) { items.push_back({item_Text(condition, k), k, selected}); };
  if (condition.kind == CellKind::position) {
    const RedTable allowed = read_AttributeColumn(store, AttributeTable::first, place_Column(condition.turn));
    for (int n = condition.first_item; n <= condition.last_item; ++n) add(n, allowed[n] != 0);
  } else {
    const ValueArray cells = load_ConditionRange(store, condition.first, condition.last);
    for (int k = condition.first_item; k <= condition.last_item; ++k) add(k, cells[k] > 0);
  }
  return items;
}

ConditionPanel load_Panel(Store& store, const Condition& condition, std::string caption) {
  return {condition.usage, std::move(caption), is_Ticked(store, condition.usage), true,
          panel_Items(store, condition)};
}

std::string use_Caption(std::string_view name) { return fmt::format("使用“{}”过滤", name); }

ConditionPanel page_Panel(Store& store, const Condition& condition) {
  return load_Panel(store, condition, use_Caption(condition.name));
}

std::vector<PanelItem> stored_Option(Store& store, ConditionId cell, int first, int last,
                                     std::string (*caption)(int)) {
  const int chosen = condition_Value(store, cell);
  std::vector<PanelItem> options;
  for (int k = first; k <= last; ++k) options.push_back({caption(k), k, k == chosen});
  return options;
}

std::string spaced_Numbers(const RedTable& members) {
  std::string text;
  for (int n = 1; n <= kRedCount; ++n)
    if (members[n]) text += to_QuanJiao(format_Ball(n)) + "  ";
  return text;
}

void click_Item(Store& store, const Condition& condition, int k, bool selected) {
  switch (condition.kind) {
    case CellKind::position:
      write_Attribute(store, AttributeTable::first, place_Column(condition.turn), k, selected);
      break;
    case CellKind::combination:
      set_Usage(store, condition.usage, selected);
      break;
    case CellKind::setting:
      break;
    default:
      set_Cell(store, condition.first + k, selected);
  }
}

BoxState click_LeadingItem(Store& store, const Condition& condition, int k, bool selected) {
  StoreChange change(store);
  click_Item(store, condition, k, selected);
  const auto items = panel_Items(store, condition);
  const bool any =
      std::any_of(items.begin(), items.end(), [](const PanelItem& item) { return item.selected; });
  set_Usage(store, condition.usage, any);
  change.commit();
  return {any, any || condition.kind == CellKind::shape};
}

}  // namespace lotmere

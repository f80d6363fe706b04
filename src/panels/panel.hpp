// A condition as every panel shows it: a box that switches it and a list of what may be ticked. What shows
// them and what a click on them stores.
//
// The panels hold nothing of their own. They are filled from the settings when they are shown and after a
// click; while the window fills a list it doesn't pass its changes on. A click on a box is
// `ConditionSet::use`, one on an option sets its cell.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "conditions/condition_set.hpp"

namespace lotmere {

// A line of a list, or one of several options.
struct PanelItem {
  std::string text;
  int k = 0;  // what a click on it passes on: value, number of a shape, of a ball, of a turn
  bool selected = false;

  friend bool operator==(const PanelItem&, const PanelItem&) = default;
};

struct ConditionPanel {
  UsageId usage = 0;    // 0: a place without a condition
  std::string caption;  // of the box
  bool ticked = false;
  bool enabled = true;
  std::vector<PanelItem> items{};
};

// The list of a condition: cells that can be ticked, numbers allowed at a place; empty for a switch alone and
// a combination turn. An item is selected when its cell is above 0.
[[nodiscard]] std::vector<PanelItem> panelItems(const ConditionSet& set, const Condition& condition);

// The list with its box, ticked when the switch is above 0.
[[nodiscard]] ConditionPanel makePanel(const ConditionSet& set, const Condition& condition,
                                       std::string caption);

// What the box of a condition page says: "使用“奇数和值”过滤".
[[nodiscard]] std::string useCaption(std::string_view name);

// A panel with that caption.
[[nodiscard]] ConditionPanel pagePanel(const ConditionSet& set, const Condition& condition);

// Options first to last, of which the value of a cell selects one.
[[nodiscard]] std::vector<PanelItem> chosenOption(const ConditionSet& set, ConditionId cell, int first,
                                                  int last, std::string (*caption)(int));

// The numbers of a set, each as two full-width digits with two blanks behind: "０５  １２  ".
[[nodiscard]] std::string spacedNumbers(Members members);

// A list item was ticked or unticked: sets its cell, the field of a number at a place, or the switch of a
// combination turn. Nothing else changes: a condition stays in use with its last item unticked.
void clickItem(ConditionSet& set, const Condition& condition, int k, bool selected);

struct BoxState {
  bool ticked;
  bool enabled;

  friend bool operator==(const BoxState&, const BoxState&) = default;
};
// The same for the lists that lead their box (the shape page, the group page, the seven places): any selected
// item switches the condition on, none switches it off. Gives the box as it is to be shown then; that of a
// group or a place is disabled when no item is left.
BoxState clickLeadingItem(ConditionSet& set, const Condition& condition, int k, bool selected);

}  // namespace lotmere

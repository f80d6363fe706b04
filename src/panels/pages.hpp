// The pages of the conditions: one for each condition or series of conditions, then the shrink settings
// and the summary. The pages of what a user makes (groups, places, match) have a header of their own.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "panels/panel.hpp"

namespace lotmere {

enum class PageKind {
  picks,          // the counts of the picked numbers
  value,          // one list of values
  counts,         // two lists of counts
  intervals,      // the four intervals
  places,         // the numbers allowed at the seven places
  shapes,         // one list of shapes
  groups,         // the custom groups
  history_match,  // the match with past draws
  shrink,         // shrink type and smart optimisation
  summary         // all settings as one text
};

struct ConditionPage {
  std::string_view caption;  // of the tab
  PageKind kind;
  std::vector<const Condition*> conditions{};  // that the page switches
};

// The pages in the order of their tabs. A condition whose row names a page has one for itself.
[[nodiscard]] std::span<const ConditionPage> conditionPages();
// A page by its tab, from 1 on.
[[nodiscard]] const ConditionPage& conditionPage(int tab);

// The box and list of a value page.
[[nodiscard]] ConditionPanel valuePage(const ConditionSet& set, int tab);

// The two lists of a count page (tabs 11 to 13). Its boxes are its own: those of the sheet stay as they are.
[[nodiscard]] std::array<ConditionPanel, 2> countPanels(const ConditionSet& set, int tab);

// The shape page of a condition (37 to 61), and the text beside the list.
struct ShapePage {
  ConditionPanel panel;
  std::string tip;
};
[[nodiscard]] ShapePage shapePage(const ConditionSet& set, UsageId usage);

struct ShrinkPage {
  std::vector<PanelItem> types;
  ConditionPanel smart;
  bool fewer = false;  // searches for fewer tickets
  std::string fewer_caption;
  std::vector<PanelItem> efforts;
  std::string_view hint;
  std::string promise;  // what the chosen type promises
};
[[nodiscard]] ShrinkPage shrinkPage(const ConditionSet& set);
// What a shrink type promises, in a sentence: the prize that N shared numbers win in the worst case. Empty
// for a number that names no type.
[[nodiscard]] std::string promiseText(int type);

}  // namespace lotmere

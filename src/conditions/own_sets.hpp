// The settings that are a person's own: custom groups, numbers allowed at the places of a ticket, the custom
// interval divisions, and the match with past draws.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/desk.hpp"
#include "catalogue/catalogue.hpp"
#include "game/game.hpp"
#include "store/store.hpp"

namespace lotmere {

// Makes `numbers` the members of a custom group (1 to 10). An empty group isn't used: its switch goes off;
// its allowed counts stay.
void setGroup(Store& store, int group, std::span<const int> numbers);

// Makes `numbers` the ones allowed at a place (1 to 7). Picking numbers switches the place on, an empty list
// switches it off.
void setPlace(Store& store, int place, std::span<const int> numbers);

// Makes `numbers` the members of a custom interval ("六区间1" to "十二区间12"). False, with nothing written,
// when no interval has the name.
bool setCustomInterval(Store& store, std::string_view name, std::span<const int> numbers);

// All 63 custom intervals hold what the factory put into them.
void restoreDivisions(Store& store);

// 历史数据过滤: a ticket that shares `match` (1 to 6) or more reds with a draw of the periods first to last
// goes.
struct HistoryMatch {
  bool used = false;
  PeriodNo first = 0;
  PeriodNo last = 0;
  int match = 0;
  bool chosen =
      false;  // the range was chosen by hand and stays; else the page moves it on to the latest draws

  friend bool operator==(const HistoryMatch&, const HistoryMatch&) = default;
};
inline constexpr std::string_view kHistoryMatchName = "历史数据过滤";
// How many draws a range that nobody chose by hand has, the latest ones.
inline constexpr int kMatchPeriods = 50;
[[nodiscard]] HistoryMatch loadHistoryMatch(Store& store);
void saveHistoryMatch(Store& store, const HistoryMatch& settings);
// Range and match value as one line: "２０２６０４１～２０２６０９０，最大匹配值 ６（自选范围）".
[[nodiscard]] std::string matchText(const HistoryMatch& settings);
// One of the settings alone; the others stay.
template <class Value>
void setHistoryMatch(Store& store, Value HistoryMatch::*setting, Value value) {
  HistoryMatch settings = loadHistoryMatch(store);
  settings.*setting = value;
  saveHistoryMatch(store, settings);
}

// Everything that can be set back to the factory ("还原默认值"): conditions, groups, intervals, custom
// divisions, 历史数据过滤; and nothing is picked.
void restoreDefaults(Store& store);
// Asks whether that may be done: a slip must not cost settings.
[[nodiscard]] bool agreesToDefaults(Desk& desk);

}  // namespace lotmere

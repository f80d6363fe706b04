// The settings that are a user's own: custom groups, numbers allowed at the places of a ticket, the custom
// interval divisions, and the match with past draws.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "base/desk.hpp"
#include "conditions/condition_set.hpp"

namespace lotmere {

// Makes `numbers` the members of a custom group (1 to 10). An empty group isn't used: its switch goes off;
// its allowed counts stay.
void setGroup(ConditionSet& set, int group, std::span<const int> numbers);

// Makes `numbers` the ones allowed at a place (1 to 7). Picking numbers switches the place on, an empty list
// switches it off.
void setPlace(ConditionSet& set, int place, std::span<const int> numbers);

// Makes `numbers` the members of a custom interval ("六区间1" to "十二区间12"). False, with nothing changed,
// when no interval has the name.
bool setCustomInterval(ConditionSet& set, std::string_view name, std::span<const int> numbers);

inline constexpr std::string_view kHistoryMatchName = "历史数据过滤";
// How many draws a range that nobody chose by hand has, the latest ones.
inline constexpr int kMatchPeriods = 50;
// Range and match value as one line: "２０２６０４１～２０２６０９０，最大匹配值 ６（自选范围）".
[[nodiscard]] std::string matchText(const HistoryMatch& settings);

// Asks whether everything may be set back to the factory ("还原默认值"): a slip must not cost settings.
[[nodiscard]] bool agreesToDefaults(Desk& desk);

}  // namespace lotmere

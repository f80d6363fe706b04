#include "conditions/own_sets.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "base/text.hpp"
#include "catalogue/catalogue.hpp"

namespace lotmere {

void setGroup(ConditionSet& set, int group, std::span<const int> numbers) {
  const Condition& condition = conditionOfUsage(usageOfGroup(group));
  set.setColumn(AttributeTable::first, condition.name, membersOf(numbers));
  if (numbers.empty()) set.use(condition.usage, false);
}

void setPlace(ConditionSet& set, int place, std::span<const int> numbers) {
  set.setColumn(AttributeTable::first, placeColumn(place), membersOf(numbers));
  set.use(usageOfPlace(place), !numbers.empty());
}

bool setCustomInterval(ConditionSet& set, std::string_view name, std::span<const int> numbers) {
  const bool known = std::ranges::find(factoryCustomIntervals(), name, &CustomInterval::name) !=
                     factoryCustomIntervals().end();
  return known && set.setColumn(AttributeTable::third, name, membersOf(numbers));
}

std::string matchText(const HistoryMatch& settings) {
  return fmt::format(
      "{}～{}，最大匹配值 {}（{}）", toFullWidth(settings.first), toFullWidth(settings.last),
      toFullWidth(settings.match),
      settings.chosen ? std::string("自选范围") : fmt::format("打开设置页面时更新为最近{}期", kMatchPeriods));
}

bool agreesToDefaults(Desk& desk) {
  constexpr std::string_view buttons[] = {"还原", "取消"};
  return desk.choose("要把全部过滤条件还原为默认值，并清空已选的号码吗？", buttons, 1) == 0;
}

}  // namespace lotmere

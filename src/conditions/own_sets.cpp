#include "conditions/own_sets.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "base/text.hpp"
#include "conditions/condition_store.hpp"
#include "store/row_copy.hpp"

namespace lotmere {

void setGroup(Store& store, int group, std::span<const int> numbers) {
  StoreChange change(store);
  setColumn(store, AttributeTable::first, conditionOfUsage(usageOfGroup(group)).name, numbers);
  if (numbers.empty()) setUsage(store, usageOfGroup(group), false);
  change.commit();
}

void setPlace(Store& store, int place, std::span<const int> numbers) {
  StoreChange change(store);
  setColumn(store, AttributeTable::first, placeColumn(place), numbers);
  setUsage(store, usageOfPlace(place), !numbers.empty());
  change.commit();
}

bool setCustomInterval(Store& store, std::string_view name, std::span<const int> numbers) {
  const auto& intervals = factoryCustomIntervals();
  const bool known = std::any_of(intervals.begin(), intervals.end(),
                                 [&](const CustomInterval& interval) { return interval.name == name; });
  if (known) setColumn(store, AttributeTable::third, name, numbers);
  return known;
}

void restoreDivisions(Store& store) {
  StoreChange change(store);
  for (const CustomInterval& interval : factoryCustomIntervals()) {
    std::vector<int> numbers;
    for (int n = 1; n <= kRedCount; ++n)
      if (divisionHolds(interval.division, interval.index, n)) numbers.push_back(n);
    setColumn(store, AttributeTable::third, interval.name, numbers);
  }
  change.commit();
}

HistoryMatch loadHistoryMatch(Store& store) {
  Query row =
      store.query(R"(SELECT "使用状态","最小值","最大值","匹配值","自选范围" FROM "历史数据过滤" LIMIT 1)");
  if (!row.next()) return {};
  return {row.number(0) == 1, row.number(1), row.number(2), row.number(3), row.number(4) == 1};
}

void saveHistoryMatch(Store& store, const HistoryMatch& settings) {
  store.query(R"(UPDATE "历史数据过滤" SET "使用状态"=?,"最小值"=?,"最大值"=?,"匹配值"=?,"自选范围"=?)")
      .bind(settings.used ? 1 : 0, settings.first, settings.last, settings.match, settings.chosen ? 1 : 0)
      .run();
}

std::string matchText(const HistoryMatch& settings) {
  return fmt::format(
      "{}～{}，最大匹配值 {}（{}）", toFullWidth(settings.first), toFullWidth(settings.last),
      toFullWidth(settings.match),
      settings.chosen ? std::string("自选范围") : fmt::format("打开设置页面时更新为最近{}期", kMatchPeriods));
}

void restoreDefaults(Store& store) {
  StoreChange change(store);
  restoreFactoryRows(store);
  clearBluePicks(store);
  clearRedPicks(store);
  restoreDivisions(store);
  saveHistoryMatch(store, {false, kDefaultPeriod, kDefaultPeriod, kRedsPerTicket, false});
  change.commit();
}

bool agreesToDefaults(Desk& desk) {
  constexpr std::string_view buttons[] = {"还原", "取消"};
  return desk.choose("要把全部过滤条件还原为默认值，并清空已选的号码吗？", buttons, 1) == 0;
}

}  // namespace lotmere

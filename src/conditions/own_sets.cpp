#include "conditions/own_sets.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "conditions/condition_store.hpp"
#include "core/row_copy.hpp"
#include "core/text.hpp"

namespace lotmere {

void set_Group(Store& store, int group, std::span<const int> numbers) {
  StoreChange change(store);
  set_Column(store, AttributeTable::first, conditionOfUsage(usage_OfGroup(group)).name, numbers);
  if (numbers.empty()) set_Usage(store, usage_OfGroup(group), false);
  change.commit();
}

void set_Place(Store& store, int place, std::span<const int> numbers) {
  StoreChange change(store);
  set_Column(store, AttributeTable::first, place_Column(place), numbers);
  set_Usage(store, usage_OfPlace(place), !numbers.empty());
  change.commit();
}

bool set_CustomInterval(Store& store, std::string_view name, std::span<const int> numbers) {
  const auto& intervals = factory_CustomIntervals();
  const bool known = std::any_of(intervals.begin(), intervals.end(),
                                 [&](const CustomInterval& interval) { return interval.name == name; });
  if (known) set_Column(store, AttributeTable::third, name, numbers);
  return known;
}

void restore_Divisions(Store& store) {
  StoreChange change(store);
  for (const CustomInterval& interval : factory_CustomIntervals()) {
    std::vector<int> numbers;
    for (int n = 1; n <= kRedCount; ++n)
      if (division_Holds(interval.division, interval.index, n)) numbers.push_back(n);
    set_Column(store, AttributeTable::third, interval.name, numbers);
  }
  change.commit();
}

HistoryMatch load_HistoryMatch(Store& store) {
  Query row =
      store.query(R"(SELECT "使用状态","最小值","最大值","匹配值","自选范围" FROM "历史数据过滤" LIMIT 1)");
  if (!row.next()) return {};
  return {row.number(0) == 1, row.number(1), row.number(2), row.number(3), row.number(4) == 1};
}

void save_HistoryMatch(Store& store, const HistoryMatch& settings) {
  store.query(R"(UPDATE "历史数据过滤" SET "使用状态"=?,"最小值"=?,"最大值"=?,"匹配值"=?,"自选范围"=?)")
      .bind(settings.used ? 1 : 0, settings.first, settings.last, settings.match, settings.chosen ? 1 : 0)
      .run();
}

std::string match_Text(const HistoryMatch& settings) {
  return fmt::format(
      "{}～{}，最大匹配值 {}（{}）", to_QuanJiao(settings.first), to_QuanJiao(settings.last),
      to_QuanJiao(settings.match),
      settings.chosen ? std::string("自选范围") : fmt::format("打开设置页面时更新为最近{}期", kMatchPeriods));
}

void restore_Defaults(Store& store) {
  StoreChange change(store);
  restoreTiaojian(store);
  clear_BluePicks(store);
  clear_RedPicks(store);
  restore_Divisions(store);
  save_HistoryMatch(store, {false, kDefaultPeriod, kDefaultPeriod, kRedsPerTicket, false});
  change.commit();
}

}  // namespace lotmere

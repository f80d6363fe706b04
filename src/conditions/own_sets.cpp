#include "conditions/own_sets.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "conditions/condition_store.hpp"

namespace lotmere {

void set_Group(Store& store, int group, std::span<const int> numbers) {
  StoreChange change(store);
  set_Column(store, AttributeTable::first, condition_OfUsage(usage_OfGroup(group)).name, numbers);
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

HistoryMatch load_HistoryMatch(Store& store) {
  Query row = store.query(R"(SELECT "使用状态","最小值","最大值","匹配值" FROM "历史数据过滤" LIMIT 1)");
  if (!row.next()) return {};
  return {row.number(0) == 1, row.number(1), row.number(2), row.number(3)};
}

void save_HistoryMatch(Store& store, const HistoryMatch& settings) {
  store.query(R"(UPDATE "历史数据过滤" SET "使用状态"=?,"最小值"=?,"最大值"=?,"匹配值"=?)")
      .bind(settings.used ? 1 : 0, settings.first, settings.last, settings.match)
      .run();
}

}  // namespace lotmere

// The factory cells against the rule they follow: the smallest set of most frequent values that holds 95
// percent of all red sixes.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <vector>

#include "conditions/condition_store.hpp"
#include "pipeline/metric.hpp"
#include "support/test_store.hpp"

namespace lotmere {
namespace {

// Typical draws: 重叠号 and its kin are counted against this one.
constexpr DrawNumbers kTypicalDraw{{3, 8, 13, 19, 26, 31}, 7};

// A table that gives `counts[h]` numbers the heat h, the hottest first.
RedTable typical_Heat(const std::vector<int>& counts) {
  RedTable table{};
  int number = 1;
  for (int heat = static_cast<int>(counts.size()) - 1; heat >= 0; --heat)
    for (int i = 0; i < counts[heat]; ++i) table[number++] = static_cast<std::int16_t>(heat);
  return table;
}

// Three draws hold fifteen different numbers on average; five and ten draws heat the 33 numbers as often as
// chance does.
RedTable typical_Table(UsageId usage) {
  if (usage == 265) return typical_Heat({18, 15});
  return usage == 301 ? typical_Heat({12, 14, 5, 2}) : typical_Heat({4, 10, 10, 6, 3});
}

struct Counted {
  Condition condition;
  Metric metric;
  std::vector<std::int64_t> sixes = std::vector<std::int64_t>(200);
};

std::vector<Counted> counted_Conditions(Store& store) {
  std::vector<Counted> list;
  for (const Condition& condition : catalogue()) {
    const bool custom_group = condition.usage >= 20 && condition.usage <= 29;
    auto metric = prepare_Metric(store, condition, 2026001);
    if (custom_group || !metric) continue;
    if (condition.usage == 265 || condition.usage >= 301) metric->table = typical_Table(condition.usage);
    list.push_back({condition, *metric});
  }
  return list;
}

void count_AllSixes(std::vector<Counted>& list) {
  Reds r{};
  for (r[0] = 1; r[0] <= 28; ++r[0])
    for (r[1] = r[0] + 1; r[1] <= 29; ++r[1])
      for (r[2] = r[1] + 1; r[2] <= 30; ++r[2])
        for (r[3] = r[2] + 1; r[3] <= 31; ++r[3])
          for (r[4] = r[3] + 1; r[4] <= 32; ++r[4])
            for (r[5] = r[4] + 1; r[5] <= 33; ++r[5])
              for (Counted& counted : list) {
                const int value = metric_Value(counted.metric, r);
                if (value >= 0) ++counted.sixes[static_cast<std::size_t>(value)];
              }
}

// Offsets of the smallest set of most frequent values with 95 percent of the sixes.
std::vector<int> frequent_Values(const std::vector<std::int64_t>& sixes) {
  std::vector<int> order(sixes.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return sixes[a] > sixes[b]; });
  std::int64_t held = 0;
  std::vector<int> chosen;
  for (const int value : order) {
    if (held * 100 >= kAllRedSixes * 95) break;
    held += sixes[value];
    chosen.push_back(value);
  }
  std::sort(chosen.begin(), chosen.end());
  return chosen;
}

// "3-5,9"
std::string as_List(const std::vector<int>& values) {
  std::string text;
  for (std::size_t i = 0; i < values.size();) {
    std::size_t end = i;
    while (end + 1 < values.size() && values[end + 1] == values[end] + 1) ++end;
    text += (text.empty() ? "" : ",") + std::to_string(values[i]);
    if (end > i) text += "-" + std::to_string(values[end]);
    i = end + 1;
  }
  return text;
}

std::vector<int> allowed_Cells(Store& store, const Condition& condition) {
  const ValueArray cells = load_ConditionRange(store, condition.first, condition.last);
  std::vector<int> allowed;
  for (int k = 0; k <= condition.last - condition.first; ++k) {
    // The ranges of three families overlap the next one's: only the cells that are tested belong to the
    // condition.
    const bool tested = condition.kind != CellKind::shape || k < cell_Count(condition);
    if (tested && cells[static_cast<std::size_t>(k)] != 0) allowed.push_back(k);
  }
  return allowed;
}

TEST(Factory, CellsHoldTheMostFrequentNinetyFivePercent) {
  test::TempHome home;
  Store& store = home.store();
  test::put_Draw(store, 2025150, "2025-12-30", kTypicalDraw);
  auto list = counted_Conditions(store);
  ASSERT_EQ(list.size(), 61U);
  count_AllSixes(list);
  for (const Counted& counted : list) {
    EXPECT_EQ(as_List(allowed_Cells(store, counted.condition)), as_List(frequent_Values(counted.sixes)))
        << counted.condition.usage << " " << counted.condition.name << " from " << counted.condition.first;
  }
}

TEST(Factory, UsersOwnSetsAllowEveryCount) {
  test::TempHome home;
  for (const Condition& condition : all_Conditions(home.store())) {
    const bool custom = (condition.usage >= 20 && condition.usage <= 29) || condition.usage > 400;
    if (custom) {
      EXPECT_EQ(as_List(allowed_Cells(home.store(), condition)), "0-6") << condition.name;
    }
  }
}

}  // namespace
}  // namespace lotmere

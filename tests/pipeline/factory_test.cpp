// The factory cells against the rule they follow: the smallest set of most frequent values that holds 95
// percent of all red sixes.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "pipeline/metric.hpp"
#include "support/test_store.hpp"
#include "tickets/init.hpp"

namespace lotmere {
namespace {

// A table that gives `counts[h]` numbers the heat h.
RedTable typicalHeat(const std::vector<int>& counts) {
  RedTable table{};
  int number = 1;
  for (std::size_t heat = 0; heat < counts.size(); ++heat)
    for (int i = 0; i < counts[heat]; ++i) table[number++] = static_cast<std::int16_t>(heat);
  return table;
}

std::vector<int> frequentValues(const std::vector<std::int64_t>& sixes) {
  std::vector<int> order(sixes.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return sixes[a] > sixes[b]; });
  std::size_t chosen = 0;
  for (std::int64_t held = 0; held * 100 < kAllRedSixes * 95; ++chosen) held += sixes[order[chosen]];
  order.resize(chosen);
  std::sort(order.begin(), order.end());
  return order;
}

TEST(Factory, CellsHoldTheMostFrequentNinetyFivePercent) {
  test::TempHome home;
  // A typical draw: 重叠号 and its kin are counted against this one.
  test::putDraw(home.store(), 2025150, "2025-12-30", {{3, 8, 13, 19, 26, 31}, 7});
  NumberSelection all;
  std::fill(all.red.begin() + 1, all.red.end(), PickState::tuo);
  int counted = 0;
  const ConditionSet& set = test::factorySet();
  const DrawTable draws = loadDrawTable(home.store());
  for (const Condition& condition : allConditions()) {
    auto metric = prepareMetric(set, condition, draws.before(2026001));
    if (!metric) continue;
    // Three draws hold fifteen different numbers on average; five and ten draws heat the numbers as chance
    // does.
    if (condition.usage == 265) metric->table = typicalHeat({18, 15});
    if (condition.usage == 301) metric->table = typicalHeat({12, 14, 5, 2});
    if (condition.usage == 302) metric->table = typicalHeat({4, 10, 10, 6, 3});
    std::vector<int> wanted = {0, 1, 2, 3, 4, 5, 6};  // of the user's own sets
    if (const bool own = condition.usage > 400 || (condition.usage >= 20 && condition.usage <= 29); !own) {
      std::vector<std::int64_t> sixes(200);
      expandSelection(all, [&](const Reds& six, const std::vector<int>&) {
        const int value = metricValue(*metric, six);
        if (value >= 0) ++sixes[value];
        return true;
      });
      wanted = frequentValues(sixes);
    }
    // The ranges of three families overlap the next one's: only the cells that are tested belong to the
    // condition.
    const ValueArray cells = set.cellRange(condition.first, condition.last);
    std::vector<int> allowed;
    for (int k = 0; k < cellCount(condition); ++k)
      if (cells[k] != 0) allowed.push_back(k);
    EXPECT_EQ(allowed, wanted) << condition.usage << " " << condition.name;
    ++counted;
  }
  EXPECT_EQ(counted, 61 + 10 + 63);
}

}  // namespace
}  // namespace lotmere

#include "conditions/families.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "conditions/condition_store.hpp"
#include "support/test_store.hpp"

namespace lotmere {
namespace {

GroupCounts pack(const std::vector<int>& counts) {
  GroupCounts word = 0;
  for (std::size_t g = 0; g < counts.size(); ++g)
    word |= static_cast<GroupCounts>(counts[g]) << (kGroupBits * static_cast<int>(g));
  return word;
}

TEST(Families, WordsAnswerLikePlainCounts) {
  std::mt19937 random(1);
  std::uniform_int_distribution<int> size(1, 21), count(0, 6), sparse(0, 3);
  for (int trial = 0; trial < 20'000; ++trial) {
    std::vector<int> counts(static_cast<std::size_t>(size(random)));
    const int cap = count(random);
    for (int& c : counts) c = sparse(random) ? 0 : std::min(cap, count(random));
    ASSERT_EQ(largest_Count(pack(counts)), *std::max_element(counts.begin(), counts.end())) << trial;
    ASSERT_EQ(hit_Groups(pack(counts)),
              static_cast<int>(counts.size()) - std::count(counts.begin(), counts.end(), 0));
  }
}

TEST(Families, ShapesOfCounts) {
  const UsageId tails = 37, interval7 = 39, interval4 = 45, waves = 69;
  const struct {
    const char* what;
    UsageId family;
    std::vector<int> counts;
    std::optional<int> shape;
    const char* text;
  } cases[] = {
      {"six groups", tails, {1, 1, 1, 0, 1, 1, 1}, 0, "[0,1,2,4,5,6]（1,1,1,1,1,1）"},
      {"two pairs of tails", tails, {2, 2, 1, 1}, 2, "[0,0,1,1,2,3]（2,2,1,1）"},
      {"the last shape of tails", tails, {0, 4, 0, 0, 0, 0, 0, 0, 0, 2}, 8, "[1,1,1,1,9,9]（4,2）"},
      {"five in a group are beyond the tails", tails, {5, 1}, std::nullopt, "[0,0,0,0,0,1]（5）"},
      {"all six in one group of four is beyond too", tails, {0, 6}, std::nullopt, "[1,1,1,1,1,1]（6）"},
      {"two groups only from one red each", interval7, {5, 0, 1}, 9, "[1,1,1,1,1,3]（5,1）"},
      {"six in one group has no shape in the long set",
       interval7,
       {0, 6},
       std::nullopt,
       "[2,2,2,2,2,2]（6）"},
      {"no red in any group", interval4, {0, 0, 0, 0}, std::nullopt, "[]（0）"},
      {"six in one group of four", interval4, {6}, 8, "[1,1,1,1,1,1]（6）"},
      {"fewer than six reds in groups read like the pair", interval4, {2, 2, 1}, 1, "[1,1,2,2,3]（2,2,2）"},
      {"a pair that isn't listed is the first shape", interval4, {1, 1, 0, 1}, 0, "[1,2,4]（2,2,1,1）"},
      {"a pair that isn't listed, of three", waves, {1, 1, 1}, 0, "[1,2,3]（2,2,2）"},
      {"the last shape of three", waves, {0, 6, 0}, 6, "[2,2,2,2,2,2]（6）"}};
  for (const auto& row : cases) {
    const Family& family = *family_OfUsage(row.family);
    EXPECT_EQ(shape_Number(family, pack(row.counts)), row.shape) << row.what;
    EXPECT_EQ(draw_Text(family, pack(row.counts)), row.text) << row.what;
  }
}

TEST(Families, TheTableIsWholeAndTurnsFindTheirs) {
  EXPECT_EQ(families().size(), 33U);
  std::vector<UsageId> usages;
  for (const Family& family : families()) {
    usages.push_back(family.usage);
    EXPECT_EQ(family.first_group_id, family.usage == 37 ? 0 : 1) << family.name;
    EXPECT_EQ(family_OfUsage(family.usage), &family);
    if (family.turn >= 0) {
      EXPECT_EQ(&family_OfTurn(family.turn), &family) << family.name;
    }
  }
  std::sort(usages.begin(), usages.end());
  std::vector<UsageId> wanted;
  for (UsageId usage = 37; usage <= 73; ++usage)
    if (usage < 62 || usage > 65) wanted.push_back(usage);
  EXPECT_EQ(usages, wanted);
  EXPECT_EQ(family_OfUsage(62), nullptr);
  EXPECT_EQ(family_OfTurn(4).draw_groups, 12);
  EXPECT_EQ(family_OfTurn(4).groups, 3);
}

TEST(Families, ANumberMayStandInTwoGroupsOrNone) {
  test::TempHome home;
  Store& store = home.store();
  const Family& intervals = *family_OfUsage(68);
  set_Column(store, AttributeTable::first, "区间1", std::vector<int>{1, 2, 33});
  set_Column(store, AttributeTable::first, "区间2", std::vector<int>{2, 3});
  set_Column(store, AttributeTable::first, "区间3", {});
  set_Column(store, AttributeTable::first, "区间4", std::vector<int>{33});
  const GroupTable table = load_GroupTable(store, intervals, intervals.groups);
  EXPECT_EQ(count_Groups(table, {1, 2, 3, 20, 21, 33}), pack({3, 2, 0, 1}));
  EXPECT_EQ(count_Groups(table, {11, 12, 13, 20, 21, 22}), 0U);
  EXPECT_EQ(count_Groups(table, {2, 2, 2, 2, 2, 2}), pack({6, 6, 0, 0}));
}

}  // namespace
}  // namespace lotmere

#include "conditions/families.hpp"

#include <gtest/gtest.h>

namespace lotmere {
namespace {

GroupCounts pack(const std::vector<int>& counts) {
  GroupCounts word = 0;
  for (std::size_t g = 0; g < counts.size(); ++g)
    word |= static_cast<GroupCounts>(counts[g]) << (kGroupBits * static_cast<int>(g));
  return word;
}

TEST(Families, ShapesOfCounts) {
  const struct {
    UsageId family;
    std::vector<int> counts;
    std::optional<int> shape;
    const char* text;
  } cases[] = {{37, {1, 1, 1, 0, 1, 1, 1}, 0, "[0,1,2,4,5,6]（1,1,1,1,1,1）"},
               {37, {0, 4, 0, 0, 0, 0, 0, 0, 0, 2}, 8, "[1,1,1,1,9,9]（4,2）"},
               {37, {5, 1}, std::nullopt, "[0,0,0,0,0,1]（5）"},
               {39, {5, 0, 1}, 9, "[1,1,1,1,1,3]（5,1）"},
               {39, {0, 6}, std::nullopt, "[2,2,2,2,2,2]（6）"},
               {45, {0, 0, 0, 0}, std::nullopt, "[]（0）"},
               {45, {6}, 8, "[1,1,1,1,1,1]（6）"},
               {45, {2, 2, 1}, 1, "[1,1,2,2,3]（2,2,2）"},   // fewer than six reds read like the pair
               {45, {1, 1, 0, 1}, 0, "[1,2,4]（2,2,1,1）"},  // a pair that isn't listed: the first shape
               {40, {1, 1, 1, 1, 1, 1, 1}, std::nullopt, "[1,2,3,4,5,6,7]（1）"},
               {69, {0, 6, 0}, 6, "[2,2,2,2,2,2]（6）"}};
  for (const auto& row : cases) {
    const Family& family = *family_OfUsage(row.family);
    EXPECT_EQ(shape_Number(family, pack(row.counts)), row.shape) << row.text;
    EXPECT_EQ(draw_Text(family, pack(row.counts)), row.text);
  }
}

TEST(Families, TurnsInTheirOrder) {
  std::string columns;
  for (int turn = 0; turn < 32; ++turn) columns += std::string(family_OfTurn(turn).column) + " ";
  EXPECT_EQ(columns,
            "尾 七 九 十一 十二 八 七分组 尾七分组 四 间距三 间距六 和数三三 和数三四 和数三五 奇偶连 偶奇连 "
            "等差16组 等差17组 间距11链 生肖链 四数八分自然段 八数四分自然段 三波排异 区间排异 间距五 间距十 "
            "区间 三波组 大小奇偶组 双尾5分组 大小奇偶尾 间距十二 ");
}

}  // namespace
}  // namespace lotmere

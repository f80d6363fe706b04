#include "core/factory.hpp"

#include <algorithm>
#include <initializer_list>

#include "core/attributes.hpp"
#include "core/number_list.hpp"

namespace lotmere {
namespace {

// Counted over all 1,107,568 sixes; tests/pipeline/factory_test.cpp counts them again.
constexpr FactoryCells kCells[] = {
    {1000, 1170, "60-143"},              // 总和值
    {2000, 2170, "0-1,3,5,7-94,96,98"},  // 奇数和值
    {3000, 3170,
     "0,6,8,10,12,14,16,18,20,22,24,26,28,30,32,34,36,38,40,42,44,46,48,50,52,54,56,58,60,62,64,66,68,70,72,"
     "74,76,78,80,82,84,86,88,90,92,94"},  // 偶数和值
    {3300, 3340, "15-32"},                 // 跨度
    {3400, 3440, "4-17"},                  // 最大间距
    {3450, 3460, "0-2,4"},                 // 连号
    {3470, 3480, "0-3"},                   // 重叠号
    {3490, 3500, "0-4"},                   // 斜位码
    {3600, 3630, "5-10"},                  // AC值
    {3640, 3649, "1-5"},                   // 奇数个数
    {3650, 3659, "1-5"},                   // 偶数个数
    {3660, 3669, "1-5"},                   // 大数个数
    {3670, 3679, "1-5"},                   // 小数个数
    {3680, 3689, "1-5"},                   // 高尾码个数
    {3690, 3699, "1-5"},                   // 低尾码个数
    {3700, 3709, "0-4"},                   // 区间1
    {3710, 3719, "0-4"},                   // 区间2
    {3720, 3729, "0-4"},                   // 区间3
    {3730, 3739, "0-2"},                   // 区间4
    {3800, 3809, "0-6"},                   // 自定义组1
    {3810, 3819, "0-6"},                   // 自定义组2
    {3820, 3829, "0-6"},                   // 自定义组3
    {3830, 3839, "0-6"},                   // 自定义组4
    {3840, 3849, "0-6"},                   // 自定义组5
    {3850, 3859, "0-6"},                   // 自定义组6
    {3860, 3869, "0-6"},                   // 自定义组7
    {3870, 3879, "0-6"},                   // 自定义组8
    {3880, 3889, "0-6"},                   // 自定义组9
    {3890, 3899, "0-6"},                   // 自定义组10
    {4000, 4019, "0-2,4"},                 // 尾数形式
    {4020, 4039, "0-2,4"},                 // 间距九
    {4040, 4049, "0-2,4-5"},               // 间距七
    {4050, 4059, "0-2"},                   // 间距十二
    {4060, 4069, "0-2"},                   // 间距十一
    {4070, 4089, "0-2,4-5"},               // 区间单双七分组
    {4090, 4109, "0-2,4-5"},               // 间距八
    {4110, 4129, "0-2,4-5"},               // 大小尾七分组
    {4130, 4149, "0-3,5-6"},               // 间距四
    {4150, 4159, "0-4"},                   // 间距3
    {4160, 4169, "1-5"},                   // 间距6
    {4170, 4179, "0-1"},                   // 和数33
    {4180, 4189, "0-1"},                   // 和数34
    {4190, 4199, "0-1"},                   // 和数35
    {4200, 4209, "0-1"},                   // 奇偶连
    {4210, 4219, "0-1"},                   // 偶奇连
    {4220, 4229, "0-1"},                   // 等差16组
    {4230, 4239, "0-1"},                   // 等差17组
    {4240, 4249, "0-1"},                   // 间距11链
    {4250, 4259, "0-1"},                   // 生肖链
    {4260, 4269, "0-2,4-5"},               // 四数八分自然段
    {4270, 4279, "0-3,5-6"},               // 八数四分自然段
    {4280, 4289, "0-4"},                   // 11数3分自然段
    {4300, 4309, "0-1"},                   // 三波排异
    {4310, 4319, "0-1"},                   // 区间排异
    {4400, 4450, "14-38"},                 // 尾数和值
    {4500, 4550, "18-39"},                 // 合数和值
    {4600, 4765, "0,17-33,39-129"},        // 大数和值
    {4800, 4965, "0,3-47"},                // 小数和值
    {5000, 5019, "0-4"},                   // 间距12三分组
    {5020, 5039, "1-5"},                   // 间距5
    {5040, 5059, "0-2,4"},                 // 间距10
    {5060, 5079, "0-6"},                   // 四区间
    {5080, 5099, "0-4"},                   // 三波组
    {5100, 5119, "0-3,5-6"},               // 大小奇偶组
    {5120, 5139, "1-5,7"},                 // 双尾5分组
    {5140, 5159, "0-3,5-6"},               // 大小奇偶尾
    {6650, 6659, "1-5"},                   // 尾数重叠
    {6660, 6669, "1-5"},                   // 合数重叠
    {6670, 6679, "1-5"},                   // 前3期出现个数
    {6680, 6689, "0-6"},                   // 前2期和值相同组
    {6700, 6720, "2-9"},                   // 温度5
    {6800, 6820, "6-16"},                  // 温度10
};

constexpr std::string_view kEveryCount = "0-6";
constexpr int kFactoryShrinkType = 6;

struct UsageSpan {
  UsageId first;
  UsageId last;
};
constexpr UsageSpan kUsages[] = {
    {1, 73}, {100, 131}, {263, 266}, {300, 302}, {401, 400 + kCustomIntervalCount}};
constexpr UsageId kUsedAtFirst[] = {1, 5, 6, 9, 10, 12};  // sum, largest gap, runs, AC, odd count, big count

void add_Span(std::vector<FactoryCell>& cells, ConditionId first, ConditionId last,
              std::string_view allowed) {
  const auto offsets = parse_NumberList(allowed, 0, last - first).value_or(std::vector<int>{});
  for (ConditionId id = first; id <= last; ++id)
    cells.push_back({id, std::binary_search(offsets.begin(), offsets.end(), id - first) ? 1 : 0});
}

}  // namespace

std::span<const FactoryCells> factory_Cells() { return kCells; }

std::vector<FactoryCell> all_FactoryCells() {
  std::vector<FactoryCell> cells;
  for (int n = 1; n <= kRedCount; ++n) cells.push_back({n, 0});
  for (int n = 1; n <= kBlueCount; ++n) cells.push_back({kBlueCodeBase + n, 0});
  for (const FactoryCells& span : kCells) add_Span(cells, span.first, span.last, span.allowed);
  cells.push_back({3900, kFactoryShrinkType});
  cells.push_back({3901, 0});  // the position filter's tolerance
  for (const CustomInterval& interval : factory_CustomIntervals())
    add_Span(cells, interval.first, interval.last, kEveryCount);
  std::sort(cells.begin(), cells.end(),
            [](const FactoryCell& a, const FactoryCell& b) { return a.id < b.id; });
  return cells;
}

std::vector<FactoryUsage> all_FactoryUsages() {
  std::vector<FactoryUsage> usages;
  for (const UsageSpan& span : kUsages)
    for (UsageId id = span.first; id <= span.last; ++id)
      usages.push_back(
          {id, std::find(std::begin(kUsedAtFirst), std::end(kUsedAtFirst), id) != std::end(kUsedAtFirst)});
  return usages;
}

}  // namespace lotmere

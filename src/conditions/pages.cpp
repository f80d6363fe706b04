#include "conditions/pages.hpp"

#include <algorithm>

#include "conditions/condition_store.hpp"
#include "core/text.hpp"

namespace lotmere {
namespace {

using enum PageKind;

constexpr ConditionPage kPages[] = {{"选取号码", picks},
                                    {"和值过滤", value, 1, 1, "和值"},
                                    {"奇数和值", value, 2, 2},
                                    {"偶数和值", value, 3, 3},
                                    {"跨度过滤", value, 4, 4},
                                    {"最大间距", value, 5, 5},
                                    {"连 号", value, 6, 6},
                                    {"重叠号", value, 7, 7},
                                    {"斜位码", value, 8, 8},
                                    {"AC值", value, 9, 9, "ＡＣ值"},
                                    {"奇偶比", counts, 10, 11},
                                    {"大小比", counts, 12, 13},
                                    {"高低尾码", counts, 14, 15},
                                    {"区间设置", intervals, 16, 19},
                                    {"定位过滤", places, 30, 36},
                                    {"尾数设置", shapes, 37, 37},
                                    {"间距九", shapes, 38, 38},
                                    {"间距七", shapes, 39, 39},
                                    {"间距十一", shapes, 40, 40},
                                    {"间距十二", shapes, 41, 41},
                                    {"区间单双七分组", shapes, 42, 42},
                                    {"间距八", shapes, 43, 43},
                                    {"大小尾七分组", shapes, 44, 44},
                                    {"间距四", shapes, 45, 45},
                                    {"间距3", shapes, 46, 46},
                                    {"间距6", shapes, 47, 47},
                                    {"和数33", shapes, 48, 48},
                                    {"和数34", shapes, 49, 49},
                                    {"和数35", shapes, 50, 50},
                                    {"奇偶连", shapes, 51, 51},
                                    {"偶奇连", shapes, 52, 52},
                                    {"等差16组", shapes, 53, 53},
                                    {"等差17组", shapes, 54, 54},
                                    {"间距11链", shapes, 55, 55},
                                    {"生肖链", shapes, 56, 56},
                                    {"4数8分自然段", shapes, 57, 57},
                                    {"8数4分自然段", shapes, 58, 58},
                                    {"11数3分自然段", shapes, 59, 59},
                                    {"三波排异", shapes, 60, 60},
                                    {"区间排异", shapes, 61, 61},
                                    {"自定义过滤", groups, 20, 29},
                                    {"历史数据过滤", history_match},
                                    {"缩水设置", shrink, kSmartOptimisation, kSmartOptimisation},
                                    {"查看全部", summary}};

constexpr UsageId kSpan = 4;

}  // namespace

std::span<const ConditionPage> condition_Pages() { return kPages; }

const ConditionPage& condition_Page(int tab) { return kPages[tab - 1]; }

ConditionPanel value_Page(Store& store, int tab) {
  const ConditionPage& page = condition_Page(tab);
  ConditionPanel panel = page_Panel(store, condition_OfUsage(page.first));
  if (!page.shown_name.empty()) panel.caption = use_Caption(page.shown_name);
  if (panel.usage != kSpan) panel.items.clear();
  return panel;
}

std::array<ConditionPanel, 2> tj_FillCounts(Store& store, int tab) {
  std::array<ConditionPanel, 2> lists;
  for (int i = 0; i < 2; ++i) {
    Condition condition = condition_OfUsage(condition_Page(tab).first + i);
    condition.item_text = condition.name + "=";  // the sheet shows 高尾码个数 by a shorter text
    lists[i] = page_Panel(store, condition);
  }
  return lists;
}

ShapePage tj_FillShape(Store& store, UsageId usage) {
  const auto page =
      std::find_if(std::begin(kPages), std::end(kPages), [usage](const ConditionPage& candidate) {
        return candidate.kind == shapes && candidate.first == usage;
      });
  return {page_Panel(store, condition_OfUsage(usage)), std::string(page->caption) + std::string(kLineBreak)};
}

ShrinkPage shrink_Page(Store& store) {
  ShrinkPage page;
  page.types = stored_Option(store, kShrinkTypeCell, kSmallestShrink, kLargestShrink, shrink_Caption);
  page.smart = load_Panel(store, condition_OfUsage(kSmartOptimisation),
                          "缩水前进行智能优化—自动分析每注号码,提高缩水后大奖命中率");
  page.hint = "提示，这里的保Ｎ型是对整注号码（包含蓝球号码）进行缩水的。";
  return page;
}

}  // namespace lotmere

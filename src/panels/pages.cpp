#include "panels/pages.hpp"

#include <fmt/format.h>

#include <array>

#include "base/text.hpp"
#include "game/prizes.hpp"

namespace lotmere {
namespace {

using enum PageKind;

// The conditions of a series, by their switches.
std::vector<const Condition*> series(UsageId (*usage_of)(int), int count) {
  std::vector<const Condition*> list;
  for (int i = 1; i <= count; ++i) list.push_back(&conditionOfUsage(usage_of(i)));
  return list;
}

// Pages of one condition each, shapes or others, by ascending switch.
void addOwnPages(std::vector<ConditionPage>& pages, PageKind kind) {
  for (const Condition& condition : allConditions())
    if (!condition.page.empty() && (condition.kind == CellKind::shape) == (kind == shapes))
      pages.push_back({condition.page, kind, {&condition}});
}

std::vector<ConditionPage> makePages() {
  const auto both = [](std::string_view one, std::string_view other) {
    return std::vector{&conditionNamed(one), &conditionNamed(other)};
  };
  std::vector<ConditionPage> pages{{"选取号码", picks}};
  addOwnPages(pages, value);
  pages.push_back({"奇偶比", counts, both("奇数个数", "偶数个数")});
  pages.push_back({"大小比", counts, both("大数个数", "小数个数")});
  pages.push_back({"高低尾码", counts, both("高尾码个数", "低尾码个数")});
  pages.push_back({"区间设置", intervals, series(usageOfInterval, kIntervalCount)});
  pages.push_back({"定位过滤", places, series(usageOfPlace, kPlaceCount)});
  addOwnPages(pages, shapes);
  pages.push_back({"自定义过滤", groups, series(usageOfGroup, kGroupCount)});
  pages.push_back({"历史数据过滤", history_match});
  pages.push_back({"缩水设置", shrink, {&conditionOfUsage(kSmartOptimisation)}});
  pages.push_back({"查看全部", summary});
  return pages;
}

}  // namespace

std::span<const ConditionPage> conditionPages() {
  static const auto pages = makePages();
  return pages;
}

const ConditionPage& conditionPage(int tab) { return conditionPages()[static_cast<std::size_t>(tab - 1)]; }

ConditionPanel valuePage(const ConditionSet& set, int tab) {
  const Condition& condition = *conditionPage(tab).conditions.front();
  return pagePanel(set, condition);
}

std::array<ConditionPanel, 2> countPanels(const ConditionSet& set, int tab) {
  std::array<ConditionPanel, 2> lists;
  for (int i = 0; i < 2; ++i) {
    Condition condition = *conditionPage(tab).conditions[i];
    condition.item_text = condition.name + "=";  // the sheet shows 高尾码个数 by a shorter text
    lists[i] = pagePanel(set, condition);
  }
  return lists;
}

ShapePage shapePage(const ConditionSet& set, UsageId usage) {
  const Condition& condition = conditionOfUsage(usage);
  return {pagePanel(set, condition), std::string(condition.page) + std::string(kLineBreak)};
}

ShrinkPage shrinkPage(const ConditionSet& set) {
  ShrinkPage page;
  page.types = chosenOption(set, kShrinkTypeCell, kSmallestShrink, kLargestShrink, shrinkCaption);
  page.smart = makePanel(set, conditionOfUsage(kSmartOptimisation),
                         "缩水前进行智能优化—自动分析每注号码,提高缩水后大奖命中率");
  page.fewer = set.cells.value(kFewerCell) == 1;
  page.fewer_caption = fmt::format("{}：同样的保证，更少的注数", kFewerName);
  page.efforts = chosenOption(set, kEffortCell, kLeastEffort, kMostEffort,
                              [](int effort) { return fmt::format("力度 {}", toFullWidth(effort)); });
  page.hint = "提示，这里的保Ｎ型是对整注号码（包含蓝球号码）进行缩水的。";
  page.promise = promiseText(set.cells.value(kShrinkTypeCell));
  return page;
}

std::string promiseText(int type) {
  if (shrinkCaption(type).empty()) return {};
  const std::string wide = toFullWidth(type);
  if (type == kLargestShrink)
    return fmt::format("{}：不缩水。开奖号码在这些号码之中时，就有一注中一等奖。", shrinkCaption(type));
  const int least = leastPrize(type);
  const std::string text =
      fmt::format("{}：开奖号码在缩水前的号码之中时，余下的号码里至少有一注与它有 {} 个号码相同",
                  shrinkCaption(type), wide);
  if (least == 0) return fmt::format("{}，但不保证中奖：{} 个红球而没有蓝球不中奖。", text, wide);
  return fmt::format("{}，至少中{}等奖。", text,
                     std::array{"一", "二", "三", "四", "五", "六"}.at(least - 1));
}

}  // namespace lotmere

#include "panels/summary.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "base/text.hpp"
#include "catalogue/catalogue.hpp"
#include "conditions/own_sets.hpp"
#include "conditions/values.hpp"
#include "game/game.hpp"
#include "panels/panel.hpp"

namespace lotmere {
namespace {

constexpr std::string_view kUnused = " 未 使 用";

// The lines of conditions, in the order in which they are read.
struct SummaryLine {
  const char* label;
  std::string_view name;
  bool as_range = false;  // its values as one range
};
constexpr SummaryLine kLines[] = {{" 最大间距取值范围： ", "最大间距", true},
                                  {" 连号取值范围： ", "连号"},
                                  {" 重叠号取值范围： ", "重叠号"},
                                  {" 斜位码取值范围： ", "斜位码"},
                                  {" ＡＣ值取值范围： ", "AC值"},
                                  {" 奇数个数取值范围： ", "奇数个数"},
                                  {" 大数个数取值范围： ", "大数个数"},
                                  {" 高尾码个数取值范围： ", "高尾码个数"},
                                  {" 区间1开出号码个数取值范围： ", "区间1"},
                                  {" 区间2开出号码个数取值范围： ", "区间2"},
                                  {" 区间3开出号码个数取值范围： ", "区间3"},
                                  {" 区间4开出号码个数取值范围： ", "区间4"},
                                  {" 尾数形式： ", "尾数形式"},
                                  {" 间距九： ", "间距九"},
                                  {" 间距七： ", "间距七"},
                                  {" 间距十一： ", "间距十一"},
                                  {" 间距十二： ", "间距十二"},
                                  {" 区间单双七分组： ", "区间单双七分组"},
                                  {" 大小尾七分组： ", "大小尾七分组"},
                                  {" 间距四： ", "间距四"},
                                  {" 间距八： ", "间距八"},
                                  {" 间距3： ", "间距3"},
                                  {" 间距6： ", "间距6"},
                                  {" 和数33： ", "和数33"},
                                  {" 和数34： ", "和数34"},
                                  {" 和数35： ", "和数35"},
                                  {" 奇偶连： ", "奇偶连"},
                                  {" 偶奇连： ", "偶奇连"},
                                  {" 等差16组： ", "等差16组"},
                                  {" 等差17组： ", "等差17组"},
                                  {" 间距11链： ", "间距11链"},
                                  {" 生肖链： ", "生肖链"},
                                  {" 4数8分自然段： ", "四数八分自然段"},
                                  {" 8数4分自然段： ", "八数四分自然段"},
                                  {" 三波排异： ", "三波排异"},
                                  {" 区间排异： ", "区间排异"}};

// The numbers of one colour with one state in the selection.
std::string pickedText(const ConditionSet& set, ConditionId first, ConditionId last, int state) {
  const ValueArray cells = set.cellRange(first, last);
  std::string text;
  for (int n = 1; n <= last - first + 1; ++n)
    if (cells[n] == state) text += toFullWidth(formatBall(n)) + "  ";
  return text;
}

std::string tickedText(const ConditionSet& set, const Condition& condition) {
  const ValueArray cells = set.cellRange(condition.first, condition.last);
  const bool shapes = condition.kind == CellKind::shape;
  const int count = shapes ? cellCount(condition) : condition.last - condition.first + 1;
  std::string text;
  for (int k = 0; k < count; ++k) {
    if (cells[k] <= 0) continue;
    if (shapes)
      text += fmt::format("（{}）   ", toFullWidth(itemText(condition, k)));
    else
      text += toFullWidth(condition.kind == CellKind::run_shape ? std::string(runShapes()[k])
                                                                : std::to_string(k)) +
              "  ";
  }
  return text;
}

std::string membersText(Members members) {
  std::string list;
  for (int n = 1; n <= kRedCount; ++n)
    if (holds(members, n)) list += (list.empty() ? "" : ",") + toFullWidth(formatBall(n));
  return list.empty() ? "（ 无 号 码 ）" : fmt::format("　号码：（{}）", list);
}

std::string countsText(const ConditionSet& set, const Condition& group) {
  const ValueArray cells = set.cellRange(group.first, group.last);
  std::string list;
  for (int k = 0; k < cellCount(group); ++k)
    if (cells[k] > 0) list += fmt::format("{}{}个", list.empty() ? "" : ",", k);
  return list.empty() ? "（条 件 未 设 置）" : fmt::format(" 允许开出个数（{}）", list);
}

// Numbers and allowed counts of a set of the user's own.
std::string ownSetText(const ConditionSet& set, const Condition& own, AttributeTable table) {
  return membersText(set.column(table, own.name)) + " ——" + countsText(set, own);
}

bool hasLine(const Condition& condition) {
  const bool group = condition.usage >= usageOfGroup(1) && condition.usage <= usageOfGroup(kGroupCount);
  return group || std::ranges::find(kLines, condition.name, &SummaryLine::name) != std::end(kLines);
}

std::string lineContent(const ConditionSet& set, const SummaryLine& line) {
  const Condition& condition = conditionNamed(line.name);
  if (!set.isTicked(condition.usage)) return std::string(kUnused);
  return line.as_range ? tickedValues(set, condition.first, condition.last) : tickedText(set, condition);
}

std::string tickedFamilies(const ConditionSet& set, const Condition& condition) {
  std::string text;
  for (const PanelItem& item : panelItems(set, condition))
    if (item.selected) text += toFullWidth(item.text) + "  ";
  return text;
}

// What stands behind the label of a setting that is on and has no line of its own.
std::string extraContent(const ConditionSet& set, const Condition& condition) {
  switch (condition.kind) {
    case CellKind::value:
      return tickedValues(set, condition.first, condition.last);
    case CellKind::count:
      return tickedValues(set, condition.first, condition.first + cellCount(condition) - 1);
    case CellKind::shape:
    case CellKind::run_shape:
      return tickedText(set, condition);
    case CellKind::sum_family:
    case CellKind::position:
      return tickedFamilies(set, condition);
    default:
      return "使 用";
  }
}

// The settings that have no line of their own: label and content of each that is on.
std::vector<std::pair<std::string, std::string>> extraLines(const ConditionSet& set) {
  std::vector<std::pair<std::string, std::string>> lines;
  bool placed = false;
  for (const Condition& condition : allConditions()) {
    if (hasLine(condition) || !set.isTicked(condition.usage)) continue;
    const bool values = condition.kind == CellKind::value || condition.kind == CellKind::count;
    if (condition.kind == CellKind::position && !std::exchange(placed, true))
      lines.emplace_back(" 号码定位容错值： ", toFullWidth(set.cells.value(kToleranceCell)));
    if (isCustomInterval(condition))
      lines.emplace_back(" " + condition.name, ownSetText(set, condition, AttributeTable::third));
    else
      lines.emplace_back(fmt::format(" {}{}： ", condition.name, values ? "取值范围" : ""),
                         extraContent(set, condition));
  }
  if (const int tolerance = set.cells.value(kSetToleranceCell); tolerance > 0)
    lines.emplace_back(fmt::format(" {}： ", kSetToleranceName), toFullWidth(tolerance));
  if (set.cells.value(kFewerCell) == 1)
    lines.emplace_back(fmt::format(" {}： ", kFewerName),
                       fmt::format("使 用，力度 {}", toFullWidth(set.cells.value(kEffortCell))));
  if (set.match.used) lines.emplace_back(fmt::format(" {}： ", kHistoryMatchName), matchText(set.match));
  return lines;
}

}  // namespace

std::array<std::string, 10> groupLines(const ConditionSet& set) {
  std::array<std::string, 10> items;
  for (int g = 1; g <= kGroupCount; ++g) {
    const Condition& group = conditionOfUsage(usageOfGroup(g));
    std::string& item = items[static_cast<std::size_t>(g - 1)];
    if (set.isTicked(group.usage))
      item = group.name + ownSetText(set, group, AttributeTable::first);
    else
      // The tenth name is a character longer; one blank less keeps the lines even.
      item = group.name + (g == kGroupCount ? "——　未 使 用 " : " ——　未 使 用 ");
  }
  return items;
}

std::string summaryText(const ConditionSet& set) {
  std::string text(kLineBreak);
  const auto add = [&](std::string_view label, std::string_view content) {
    text += fmt::format("{}{}{}{}", label, content, kLineBreak, kLineBreak);
  };
  constexpr ConditionId first_blue = kBlueCodeBase + 1;
  constexpr ConditionId last_blue = kBlueCodeBase + kBlueCount;
  add(" 红球“拖码”： ", pickedText(set, 1, kRedCount, int(PickState::tuo)));
  add(" 红球“胆码”： ", pickedText(set, 1, kRedCount, int(PickState::dan)));
  add(" 蓝球“拖码”： ", pickedText(set, first_blue, last_blue, int(PickState::tuo)));
  add(" 蓝球“胆码”： ", pickedText(set, first_blue, last_blue, int(PickState::dan)));
  for (const SummaryLine& line : kLines) add(line.label, lineContent(set, line));
  for (const std::string& item : groupLines(set)) add(" ", item);
  add(" 缩 水 类 型： ", shrinkCaption(set.cells.value(kShrinkTypeCell)));
  for (const auto& [label, content] : extraLines(set)) add(label, content);
  return text;
}

}  // namespace lotmere

#include "conditions/values.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "base/number_list.hpp"
#include "base/text.hpp"
#include "game/game.hpp"

namespace lotmere {
namespace {

constexpr std::string_view kOr = " 或 ";

void appendRun(std::string& text, int start, int end) {
  if (!text.empty()) text += kOr;
  text += start == end ? fmt::format("{}", start) : fmt::format("{}～{}", start, end);
}

bool hasTexts(CellKind kind) {
  return kind == CellKind::shape || kind == CellKind::run_shape || kind == CellKind::sum_family;
}

// The text of a cell without what lists show in front of it.
std::string bareText(const Condition& condition, int k) {
  return itemText(condition, k)
      .substr(condition.kind == CellKind::run_shape ? condition.item_text.size() : 0);
}

std::string tickedTexts(const ConditionSet& set, const Condition& condition) {
  const ValueArray cells = set.cellRange(condition.first, condition.last);
  std::string text;
  for (int k = 0; k < cellCount(condition); ++k)
    if (cells[k] > 0) text += (text.empty() ? "" : ";") + bareText(condition, k);
  return text;
}

std::string allowedAtPlace(const ConditionSet& set, const Condition& condition) {
  const Members members = set.column(AttributeTable::first, placeColumn(condition.turn));
  std::string text;
  for (int n = 1; n <= condition.last_item; ++n)
    if (holds(members, n)) text += (text.empty() ? "" : ",") + formatBall(n);
  return text;
}

std::optional<std::vector<int>> parseTexts(const Condition& condition, std::string_view values) {
  std::vector<int> cells;
  for (std::size_t from = 0; from <= values.size();) {
    const std::size_t end = std::min(values.find(';', from), values.size());
    const std::string_view wanted = trim(values.substr(from, end - from));
    int k = 0;
    while (k < cellCount(condition) && bareText(condition, k) != wanted) ++k;
    if (k == cellCount(condition)) return std::nullopt;
    cells.push_back(k);
    from = end + 1;
  }
  return cells;
}

std::string refusal(const Condition& condition) {
  if (!hasTexts(condition.kind))
    return fmt::format("“{}”的取值应为 0 到 {} 之间的数字，如 1,3-5。", condition.name,
                       cellCount(condition) - 1);
  std::string all;
  for (int k = 0; k < cellCount(condition); ++k) all += (k == 0 ? "" : ";") + bareText(condition, k);
  return fmt::format("“{}”可用的取值（用分号隔开）：{}", condition.name, all);
}

}  // namespace

std::string tickedValues(const ConditionSet& set, ConditionId first, ConditionId last) {
  std::string text;
  int start = -1;
  int offset = 0;
  for (const auto& [id, value] : set.cells.range(first, last)) {
    offset = id - first;
    const bool ticked = value > 0;
    if (ticked && start < 0) start = offset;
    if (!ticked && start >= 0) {
      appendRun(text, start, offset - 1);
      start = -1;
    }
  }
  if (start >= 0) appendRun(text, start, offset);
  return toFullWidth(text);
}

std::string currentValue(const ConditionSet& set, const Condition& condition) {
  if (hasTexts(condition.kind)) return tickedTexts(set, condition);
  if (condition.kind == CellKind::position) return allowedAtPlace(set, condition);
  if (cellCount(condition) == 0) return {};
  return tickedValues(set, condition.first, condition.last);
}

std::string formatValues(const Condition& condition, std::span<const int> cells) {
  if (!hasTexts(condition.kind)) return formatNumberList(cells);
  std::string text;
  for (const int k : cells) text += (text.empty() ? "" : ";") + bareText(condition, k);
  return text;
}

std::optional<std::vector<int>> parseValues(const Condition& condition, std::string_view values) {
  return hasTexts(condition.kind) ? parseTexts(condition, values)
                                  : parseNumberList(values, 0, cellCount(condition) - 1);
}

bool allowValues(ConditionSet& set, Desk& desk, const Condition& condition, std::string_view values) {
  if (cellCount(condition) == 0) {
    desk.tell(fmt::format("“{}”没有可以设置的取值。", condition.name), Tone::warning);
    return false;
  }
  const auto cells = parseValues(condition, values);
  if (!cells) {
    desk.tell(refusal(condition), Tone::warning);
    return false;
  }
  // Shapes have rows behind their last text; those of 间距七 overlap the cells of the next family, so only
  // the tested ones are set.
  const int count = cellCount(condition);
  for (int k = 0; k < count; ++k)
    set.allow(condition.first + k, std::ranges::find(*cells, k) != cells->end());
  return true;
}

}  // namespace lotmere

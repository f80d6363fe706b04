#include "conditions/values.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "conditions/condition_store.hpp"
#include "core/number_list.hpp"
#include "core/text.hpp"

namespace lotmere {
namespace {

constexpr std::string_view kOr = " 或 ";

void append_Run(std::string& text, int start, int end) {
  if (!text.empty()) text += kOr;
  text += start == end ? fmt::format("{}", start) : fmt::format("{}～{}", start, end);
}

bool has_Texts(CellKind kind) {
  return kind == CellKind::shape || kind == CellKind::run_shape || kind == CellKind::sum_family;
}

// The text of a cell without what lists show in front of it.
std::string bare_Text(const Condition& condition, int k) {
  return item_Text(condition, k)
      .substr(condition.kind == CellKind::run_shape ? condition.item_text.size() : 0);
}

std::string ticked_Texts(Store& store, const Condition& condition) {
  const ValueArray cells = load_ConditionRange(store, condition.first, condition.last);
  std::string text;
  for (int k = 0; k < cell_Count(condition); ++k)
    if (cells[k] > 0) text += (text.empty() ? "" : ";") + bare_Text(condition, k);
  return text;
}

std::string allowed_AtPlace(Store& store, const Condition& condition) {
  const RedTable members = read_AttributeColumn(store, AttributeTable::first, place_Column(condition.turn));
  std::string text;
  for (int n = 1; n <= condition.last_item; ++n)
    if (members[n]) text += (text.empty() ? "" : ",") + format_Ball(n);
  return text;
}

std::optional<std::vector<int>> parse_Texts(const Condition& condition, std::string_view values) {
  std::vector<int> cells;
  for (std::size_t from = 0; from <= values.size();) {
    const std::size_t end = std::min(values.find(';', from), values.size());
    const std::string_view wanted = trim(values.substr(from, end - from));
    int k = 0;
    while (k < cell_Count(condition) && bare_Text(condition, k) != wanted) ++k;
    if (k == cell_Count(condition)) return std::nullopt;
    cells.push_back(k);
    from = end + 1;
  }
  return cells;
}

std::string refusal(const Condition& condition) {
  if (!has_Texts(condition.kind))
    return fmt::format("“{}”的取值应为 0 到 {} 之间的数字，如 1,3-5。", condition.name,
                       cell_Count(condition) - 1);
  std::string all;
  for (int k = 0; k < cell_Count(condition); ++k) all += (k == 0 ? "" : ";") + bare_Text(condition, k);
  return fmt::format("“{}”可用的取值（用分号隔开）：{}", condition.name, all);
}

}  // namespace

std::string tj_CurrentValue(Store& store, ConditionId first, ConditionId last) {
  Query rows =
      store.query(R"(SELECT "ID","Value" FROM "过滤条件" WHERE "ID">=? AND "ID"<=? ORDER BY "ID" ASC)");
  rows.bind(first, last);
  std::string text;
  int start = -1;
  int offset = 0;
  while (rows.next()) {
    offset = rows.number(0) - first;
    const bool ticked = rows.number(1) > 0;
    if (ticked && start < 0) start = offset;
    if (!ticked && start >= 0) {
      append_Run(text, start, offset - 1);
      start = -1;
    }
  }
  if (start >= 0) append_Run(text, start, offset);
  return to_QuanJiao(text);
}

std::string current_Value(Store& store, const Condition& condition) {
  if (has_Texts(condition.kind)) return ticked_Texts(store, condition);
  if (condition.kind == CellKind::position) return allowed_AtPlace(store, condition);
  if (cell_Count(condition) == 0) return {};
  return tj_CurrentValue(store, condition.first, condition.last);
}

std::string formatValues(const Condition& condition, std::span<const int> cells) {
  if (!has_Texts(condition.kind)) return formatNumberList(cells);
  std::string text;
  for (const int k : cells) text += (text.empty() ? "" : ";") + bare_Text(condition, k);
  return text;
}

std::optional<std::vector<int>> parse_Values(const Condition& condition, std::string_view values) {
  return has_Texts(condition.kind) ? parse_Texts(condition, values)
                                   : parse_NumberList(values, 0, cell_Count(condition) - 1);
}

bool allow_Values(Store& store, Desk& desk, const Condition& condition, std::string_view values) {
  if (cell_Count(condition) == 0) {
    desk.tell(fmt::format("“{}”没有可以设置的取值。", condition.name), Tone::warning);
    return false;
  }
  const auto cells = parse_Values(condition, values);
  if (!cells) {
    desk.tell(refusal(condition), Tone::warning);
    return false;
  }
  StoreChange change(store);
  // Shapes have rows behind their last text; those of 间距七 overlap the cells of the next family, so only
  // the tested ones are written.
  const int count = cell_Count(condition);
  for (int k = 0; k < count; ++k)
    set_Cell(store, condition.first + k, std::find(cells->begin(), cells->end(), k) != cells->end());
  change.commit();
  return true;
}

void use_Condition(Store& store, const Condition& condition, bool on) {
  set_Usage(store, condition.usage, on);
}

}  // namespace lotmere

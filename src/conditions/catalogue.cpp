#include "conditions/catalogue.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "conditions/condition_store.hpp"
#include "core/text.hpp"

namespace lotmere {
namespace {

using enum CellKind;

constexpr int kSumFamilyCount = 7;
constexpr const char* kCountItem = "开出个数=";  // of the groups and intervals that a person makes

std::string logName(std::string_view name) { return fmt::format("[{}]", name); }
// Sums and the span stand between blanks in their lines.
std::string spacedLogName(std::string_view name) { return fmt::format("[ {} ]", name); }

// The rows in the order in which a run passes them.
class Rows {
 public:
  Condition& add(Condition condition) {
    condition.pass = static_cast<int>(list_.size());
    if (condition.log_name.empty()) condition.log_name = logName(condition.name);
    return list_.emplace_back(std::move(condition));
  }
  Condition& addValue(UsageId usage, const char* name, ConditionId first, ConditionId last, int first_item,
                      int last_item, FigureRule figure, std::string log_name = {}) {
    return add({usage, name, value, first, last, std::string(name) + "=", first_item, last_item, nullptr, 0,
                std::move(figure), std::move(log_name)});
  }
  Condition& addCount(UsageId usage, const std::string& name, ConditionId first, ConditionId last,
                      const std::string& item, FigureRule figure) {
    return add({usage, name, count, first, last, item, 0, kRedsPerTicket, nullptr, 0, std::move(figure)});
  }
  std::vector<Condition> take() { return std::move(list_); }

 private:
  std::vector<Condition> list_;
};

void addSums(Rows& rows) {
  rows.addValue(1, "总和值", 1000, 1170, 15, 165, NumberValue::number, spacedLogName("总和值"));
  rows.addValue(2, "奇数和值", 2000, 2170, 0, 155, NumberValue::odd);
  rows.addValue(3, "偶数和值", 3000, 3170, 0, 150, NumberValue::even);
  rows.addValue(62, "尾数和值", 4400, 4450, 0, 50, NumberValue::tail, spacedLogName("尾数和值"));
  rows.addValue(64, "大数和值", 4600, 4765, 0, 165, NumberValue::big, spacedLogName("大数和值"));
  rows.addValue(63, "合数和值", 4500, 4550, 0, 50, NumberValue::digit_root, spacedLogName("合数和值"));
  rows.addValue(65, "小数和值", 4800, 4965, 0, 165, NumberValue::small, spacedLogName("小数和值"));
}

void addCounts(Rows& rows) {
  const auto first = AttributeTable::first;
  rows.addCount(10, "奇数个数", 3640, 3649, "奇数个数=", NumberValue::is_odd);
  rows.addCount(11, "偶数个数", 3650, 3659, "偶数个数=", NumberValue::is_even);
  rows.addCount(12, "大数个数", 3660, 3669, "大数个数=", MembersIn{first, "大数"});
  rows.addCount(13, "小数个数", 3670, 3679, "小数个数=", MembersIn{first, "大数", false});
  rows.addCount(14, "高尾码个数", 3680, 3689, "高尾码=", MembersIn{first, "高尾码"});
  rows.addCount(15, "低尾码个数", 3690, 3699, "低尾码个数=", MembersIn{first, "高尾码", false});
  for (int i = 1; i <= kIntervalCount; ++i) {
    const ConditionId cell = 3700 + 10 * (i - 1);
    const std::string name = fmt::format("区间{}", i);
    rows.addCount(usage_OfInterval(i), name, cell, cell + 9, name + kCountItem, MembersIn{first, name});
  }
  for (int i = 1; i <= kGroupCount; ++i) {
    const ConditionId cell = 3800 + 10 * (i - 1);
    const std::string name = fmt::format("自定义组{}", i);
    rows.addCount(usage_OfGroup(i), name, cell, cell + 9, kCountItem, MembersIn{first, name});
  }
}

void addFigures(Rows& rows) {
  rows.addValue(4, "跨度", 3300, 3340, 5, 32, calc_KuaDu, "[ 跨 度 ]");
  rows.addValue(5, "最大间距", 3400, 3440, 1, 28, calc_JianJuMax);
  rows.add({6, "连号", run_shape, 3450, 3460, "连号=", 0, 10, nullptr, 0, calc_LianHaoMax});
  rows.addValue(9, "AC值", 3600, 3630, 0, 15, calc_AC);
  rows.addCount(7, "重叠号", 3470, 3480, "重叠码个数=", AgainstPrevious{mark_Reds});
  rows.addCount(8, "斜位码", 3490, 3500, "斜位码个数=", AgainstPrevious{mark_Neighbours});
}

void addPlaces(Rows& rows) {
  for (int place = 1; place <= kPlaceCount; ++place)
    rows.add({usage_OfPlace(place), fmt::format("号码定位{}", place), position, 0, 0, "", 1,
              place == kPlaceCount ? kBlueCount : kRedCount, nullptr, place});
}

void addShapes(Rows& rows) {
  for (const Family& family : families()) {
    const int items = static_cast<int>(shape_Texts(family.set).size());
    rows.add({family.usage, std::string(family.name), shape, family.first, family.last, "", 0, items - 1,
              &family, family.turn, &family});
  }
}

void addTurns(Rows& rows) {
  for (int turn = 0; turn < kTurnCount; ++turn) {
    const Family& family = family_OfTurn(turn);
    rows.add({usage_OfTurn(turn), std::string(family.draw_column) + "（具体）", combination, 0, 0, "", 0, 0,
              &family, turn});
  }
}

std::vector<Condition> makeRows() {
  Rows rows;
  addSums(rows);
  addCounts(rows);
  addFigures(rows);
  addPlaces(rows);
  rows.addValue(301, "温度5", 6700, 6720, 0, 20, HeatOver{5});
  rows.addValue(302, "温度10", 6800, 6820, 0, 20, HeatOver{10});
  addShapes(rows);
  addTurns(rows);
  rows.addCount(263, "尾数重叠", 6650, 6659, "尾数重叠=", AgainstPrevious{mark_Tails});
  rows.addCount(264, "合数重叠", 6660, 6669, "合数重叠=", AgainstPrevious{mark_DigitRoots});
  rows.addCount(265, "前3期出现个数", 6670, 6679, "前3期出现个数=", DrawnIn{3});
  rows.add({kSumFamilyCondition, "前2期和值相同组", sum_family, 6680, 6689, "", 0, kSumFamilyCount - 1});
  rows.add({kSmartOptimisation, "智能优化", setting});
  return rows.take();
}

std::vector<Condition> makeAll() {
  std::vector<Condition> list = makeRows();
  int pass = static_cast<int>(list.size());
  for (const CustomInterval& interval : factory_CustomIntervals())
    list.push_back({interval.usage, interval.name, count, interval.first, interval.last, kCountItem, 0,
                    kRedsPerTicket, nullptr, interval.turn, MembersIn{AttributeTable::third, interval.name},
                    logName(interval.name), pass++});
  std::ranges::sort(list, {}, &Condition::usage);
  return list;
}

std::vector<Condition> makeCatalogue() {
  std::vector<Condition> list = makeRows();
  std::ranges::sort(list, {}, &Condition::usage);
  return list;
}

}  // namespace

const std::vector<Condition>& catalogue() {
  static const auto list = makeCatalogue();
  return list;
}

const Condition& condition_OfUsage(UsageId usage) {
  return *std::lower_bound(
      catalogue().begin(), catalogue().end(), usage,
      [](const Condition& condition, UsageId wanted) { return condition.usage < wanted; });
}

const std::vector<Condition>& allConditions() {
  static const auto list = makeAll();
  return list;
}

bool looksBack(const Condition& condition) {
  const FigureRule& figure = condition.figure;
  return condition.usage == kSumFamilyCondition || std::holds_alternative<AgainstPrevious>(figure) ||
         std::holds_alternative<DrawnIn>(figure) || std::holds_alternative<HeatOver>(figure);
}

std::vector<Condition> all_Conditions(Store& store) {
  std::vector<Condition> list = catalogue();
  Query rows = store.query(
      R"(SELECT "序号","名称","条件使用情况","值min","值max" FROM "自定义区间" ORDER BY "序号" ASC)");
  while (rows.next()) {
    const std::string name = rows.text(1);
    list.push_back({rows.number(2), name, count, rows.number(3), rows.number(4), kCountItem, 0,
                    kRedsPerTicket, nullptr, rows.number(0), MembersIn{AttributeTable::third, name},
                    logName(name), static_cast<int>(list.size())});
  }
  return list;
}

std::optional<Condition> find_Condition(Store& store, std::string_view name_or_usage) {
  const std::string_view wanted = trim(name_or_usage);
  UsageId usage = 0;
  const auto [end, error] = std::from_chars(wanted.data(), wanted.data() + wanted.size(), usage);
  if (error != std::errc{} || end != wanted.data() + wanted.size()) usage = 0;
  const auto list = all_Conditions(store);
  const auto found = std::find_if(list.begin(), list.end(), [&](const Condition& condition) {
    return condition.name == wanted || (usage != 0 && condition.usage == usage);
  });
  if (found == list.end()) return std::nullopt;
  return *found;
}

std::string item_Text(const Condition& condition, int k) {
  switch (condition.kind) {
    case run_shape:
      return condition.item_text + std::string(run_Shapes()[k]);
    case shape:
      return std::string(shape_Texts(condition.family->set)[k]);
    case sum_family:
      return std::string(sum_FamilyTexts()[k]);
    case position:
      return format_Ball(k);
    default:
      return condition.item_text + std::to_string(k);
  }
}

int cell_Count(const Condition& condition) {
  switch (condition.kind) {
    case value:
      return condition.last - condition.first + 1;
    case count:
    case run_shape:
    case shape:
    case sum_family:
      return condition.last_item + 1;
    default:
      return 0;
  }
}

std::string shrink_Caption(int type) {
  constexpr const char* captions[] = {"保三型", "保四型", "保五型", "保六型", "保七型"};
  return type < kSmallestShrink || type > kLargestShrink ? "" : captions[type - kSmallestShrink];
}

std::string place_Column(int place) { return fmt::format("第{}", place); }

std::span<const std::string_view> sum_FamilyTexts() {
  static constexpr std::string_view texts[kSumFamilyCount] = {
      "尾数和值相同组", "合数和值相同组", "大数和值相同组", "小数和值相同组",
      "奇数和值相同组", "偶数和值相同组", "总和值相同组"};
  return texts;
}

}  // namespace lotmere

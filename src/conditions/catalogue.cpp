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

Condition value_Condition(UsageId usage, const char* name, ConditionId first, ConditionId last,
                          int first_item, int last_item) {
  return {usage, name, value, first, last, std::string(name) + "=", first_item, last_item};
}

Condition count_Condition(UsageId usage, const std::string& name, ConditionId first, ConditionId last,
                          const std::string& item) {
  return {usage, name, count, first, last, item, 0, kRedsPerTicket};
}

void add_Values(std::vector<Condition>& list) {
  list.push_back(value_Condition(1, "总和值", 1000, 1170, 15, 165));
  list.push_back(value_Condition(2, "奇数和值", 2000, 2170, 0, 155));
  list.push_back(value_Condition(3, "偶数和值", 3000, 3170, 0, 150));
  list.push_back(value_Condition(4, "跨度", 3300, 3340, 5, 32));
  list.push_back(value_Condition(5, "最大间距", 3400, 3440, 1, 28));
  list.push_back({6, "连号", run_shape, 3450, 3460, "连号=", 0, 10});
  list.push_back(value_Condition(9, "AC值", 3600, 3630, 0, 15));
  list.push_back(value_Condition(62, "尾数和值", 4400, 4450, 0, 50));
  list.push_back(value_Condition(63, "合数和值", 4500, 4550, 0, 50));
  list.push_back(value_Condition(64, "大数和值", 4600, 4765, 0, 165));
  list.push_back(value_Condition(65, "小数和值", 4800, 4965, 0, 165));
  list.push_back(value_Condition(301, "温度5", 6700, 6720, 0, 20));
  list.push_back(value_Condition(302, "温度10", 6800, 6820, 0, 20));
}

void add_Counts(std::vector<Condition>& list) {
  list.push_back(count_Condition(7, "重叠号", 3470, 3480, "重叠码个数="));
  list.push_back(count_Condition(8, "斜位码", 3490, 3500, "斜位码个数="));
  list.push_back(count_Condition(10, "奇数个数", 3640, 3649, "奇数个数="));
  list.push_back(count_Condition(11, "偶数个数", 3650, 3659, "偶数个数="));
  list.push_back(count_Condition(12, "大数个数", 3660, 3669, "大数个数="));
  list.push_back(count_Condition(13, "小数个数", 3670, 3679, "小数个数="));
  list.push_back(count_Condition(14, "高尾码个数", 3680, 3689, "高尾码="));
  list.push_back(count_Condition(15, "低尾码个数", 3690, 3699, "低尾码个数="));
  for (int i = 1; i <= kIntervalCount; ++i) {
    const ConditionId cell = 3700 + 10 * (i - 1);
    list.push_back(count_Condition(usage_OfInterval(i), fmt::format("区间{}", i), cell, cell + 9,
                                   fmt::format("区间{}{}", i, kCountItem)));
  }
  for (int i = 1; i <= kGroupCount; ++i) {
    const ConditionId cell = 3800 + 10 * (i - 1);
    list.push_back(
        count_Condition(usage_OfGroup(i), fmt::format("自定义组{}", i), cell, cell + 9, kCountItem));
  }
  list.push_back(count_Condition(263, "尾数重叠", 6650, 6659, "尾数重叠="));
  list.push_back(count_Condition(264, "合数重叠", 6660, 6669, "合数重叠="));
  list.push_back(count_Condition(265, "前3期出现个数", 6670, 6679, "前3期出现个数="));
}

void add_Others(std::vector<Condition>& list) {
  for (const Family& family : families()) {
    const int items = static_cast<int>(shape_Texts(family.set).size());
    list.push_back({family.usage, std::string(family.name), shape, family.first, family.last, "", 0,
                    items - 1, &family, family.turn});
  }
  for (int place = 1; place <= kPlaceCount; ++place)
    list.push_back({usage_OfPlace(place), fmt::format("号码定位{}", place), position, 0, 0, "", 1,
                    place == kPlaceCount ? kBlueCount : kRedCount, nullptr, place});
  for (int turn = 0; turn < kTurnCount; ++turn) {
    const Family& family = family_OfTurn(turn);
    list.push_back({usage_OfTurn(turn), std::string(family.draw_column) + "（具体）", combination, 0, 0, "",
                    0, 0, &family, turn});
  }
  list.push_back({266, "前2期和值相同组", sum_family, 6680, 6689, "", 0, kSumFamilyCount - 1});
  list.push_back({kSmartOptimisation, "智能优化", setting});
}

std::vector<Condition> make_Catalogue() {
  std::vector<Condition> list;
  add_Values(list);
  add_Counts(list);
  add_Others(list);
  std::sort(list.begin(), list.end(),
            [](const Condition& a, const Condition& b) { return a.usage < b.usage; });
  return list;
}

}  // namespace

const std::vector<Condition>& catalogue() {
  static const auto list = make_Catalogue();
  return list;
}

const Condition& condition_OfUsage(UsageId usage) {
  return *std::lower_bound(
      catalogue().begin(), catalogue().end(), usage,
      [](const Condition& condition, UsageId wanted) { return condition.usage < wanted; });
}

std::vector<Condition> all_Conditions(Store& store) {
  std::vector<Condition> list = catalogue();
  Query rows = store.query(
      R"(SELECT "序号","名称","条件使用情况","值min","值max" FROM "自定义区间" ORDER BY "序号" ASC)");
  while (rows.next()) {
    Condition interval =
        count_Condition(rows.number(2), rows.text(1), rows.number(3), rows.number(4), kCountItem);
    interval.turn = rows.number(0);
    list.push_back(std::move(interval));
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

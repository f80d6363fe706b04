#include "catalogue/catalogue.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <map>

#include "base/assert.hpp"
#include "base/number_list.hpp"
#include "base/text.hpp"
#include "game/game.hpp"

namespace lotmere {
namespace {

using enum CellKind;

constexpr int kSumFamilyCount = 7;
constexpr const char* kCountItem = "开出个数=";  // of the groups and intervals that a user makes
constexpr std::string_view kEveryCount = "0-6";
constexpr int kFactoryShrinkType = 6;

// The rows in the order in which a run passes them.
class Rows {
 public:
  // What the row leaves out follows from its name: "[name]" in the lines of a run, "name=" in front of the
  // items.
  void add(Condition condition) {
    condition.pass = static_cast<int>(list_.size());
    if (condition.log_name.empty()) condition.log_name = fmt::format("[{}]", condition.name);
    if (condition.kind == count && condition.last_item == 0) condition.last_item = kRedsPerTicket;
    const bool named = condition.kind == value || condition.kind == count || condition.kind == run_shape;
    if (named && condition.item_text.empty()) condition.item_text = condition.name + "=";
    list_.push_back(std::move(condition));
  }
  std::vector<Condition> take() { return std::move(list_); }

 private:
  std::vector<Condition> list_;
};

// How the reds are grouped, and how a shape is read.
std::string shapeDefinition(const Family& family) {
  const char* reading = family.set == ShapeSet::six ? "1,1,1,1,1,1 是六个都不同组，2,1,1,1,1 是有一对同组"
                        : family.set == ShapeSet::four ? "2,2,1,1 是四组都有，3,2,1 是三组各有 3、2、1 个"
                                                       : "2,2,2 是三组各有两个，6 是全在一组";
  return fmt::format("{}。看六个红球落在各组里的个数：{}。", family.grouping, reading);
}

// A row reads best in a few lines.
// clang-format off
void addSums(Rows& rows) {
  rows.add({.usage = 1, .name = "总和值", .kind = value, .first = 1000, .last = 1170, .factory = "60-143",
            .used_at_first = true, .first_item = 15, .last_item = 165, .figure = NumberValue::number,
            .log_name = "[ 总和值 ]", .page = "和值过滤",
            .definition = "六个红球相加的和，最小 21，最大 183。"});
  rows.add({.usage = 2, .name = "奇数和值", .kind = value, .first = 2000, .last = 2170,
            .factory = "0-1,3,5,7-94,96,98", .first_item = 0, .last_item = 155, .figure = NumberValue::odd,
            .page = "奇数和值",
            .definition = "六个红球中奇数相加的和；没有奇数为 0。"});
  rows.add({.usage = 3, .name = "偶数和值", .kind = value, .first = 3000, .last = 3170,
            .factory = "0,6,8,10,12,14,16,18,20,22,24,26,28,30,32,34,36,38,40,42,44,46,48,50,52,54,56,58,60,"
                       "62,64,66,68,70,72,74,76,78,80,82,84,86,88,90,92,94",
            .first_item = 0, .last_item = 150, .figure = NumberValue::even, .page = "偶数和值",
            .definition = "六个红球中偶数相加的和；没有偶数为 0。"});
  rows.add({.usage = 62, .name = "尾数和值", .kind = value, .first = 4400, .last = 4450, .factory = "14-38",
            .first_item = 0, .last_item = 50, .figure = NumberValue::tail, .log_name = "[ 尾数和值 ]",
            .definition = "六个红球的个位数相加的和。"});
  rows.add({.usage = 64, .name = "大数和值", .kind = value, .first = 4600, .last = 4765,
            .factory = "0,17-33,39-129", .first_item = 0, .last_item = 165, .figure = NumberValue::big,
            .log_name = "[ 大数和值 ]",
            .definition = "17 到 33 的红球相加的和；没有大数为 0。"});
  rows.add({.usage = 63, .name = "合数和值", .kind = value, .first = 4500, .last = 4550, .factory = "18-39",
            .first_item = 0, .last_item = 50, .figure = NumberValue::digit_root, .log_name = "[ 合数和值 ]",
            .definition = "每个红球的各位数字相加，直到只剩一位（29：2+9=11，1+1=2），六个一位数再相加。"});
  rows.add({.usage = 65, .name = "小数和值", .kind = value, .first = 4800, .last = 4965, .factory = "0,3-47",
            .first_item = 0, .last_item = 165, .figure = NumberValue::small,
            .log_name = "[ 小数和值 ]",
            .definition = "01 到 16 的红球相加的和；没有小数为 0。"});
}

void addCounts(Rows& rows) {
  const auto first = AttributeTable::first;
  rows.add({.usage = 10, .name = "奇数个数", .kind = count, .first = 3640, .last = 3649, .factory = "1-5",
            .used_at_first = true, .figure = NumberValue::is_odd,
            .definition = "六个红球中奇数的个数。"});
  rows.add({.usage = 11, .name = "偶数个数", .kind = count, .first = 3650, .last = 3659, .factory = "1-5",
            .figure = NumberValue::is_even,
            .definition = "六个红球中偶数的个数。"});
  rows.add({.usage = 12, .name = "大数个数", .kind = count, .first = 3660, .last = 3669, .factory = "1-5",
            .used_at_first = true, .figure = MembersIn{first, "大数"},
            .definition = "六个红球中大数（17 到 33）的个数。"});
  rows.add({.usage = 13, .name = "小数个数", .kind = count, .first = 3670, .last = 3679, .factory = "1-5",
            .figure = MembersIn{first, "大数", false},
            .definition = "六个红球中小数（01 到 16）的个数。"});
  rows.add({.usage = 14, .name = "高尾码个数", .kind = count, .first = 3680, .last = 3689, .factory = "1-5",
            .item_text = "高尾码=", .figure = MembersIn{first, "高尾码"},
            .definition = "六个红球中个位数是 5 到 9 的个数。"});
  rows.add({.usage = 15, .name = "低尾码个数", .kind = count, .first = 3690, .last = 3699, .factory = "1-5",
            .figure = MembersIn{first, "高尾码", false},
            .definition = "六个红球中个位数是 0 到 4 的个数。"});
  for (int i = 1; i <= kIntervalCount; ++i) {
    const ConditionId cell = 3700 + 10 * (i - 1);
    const std::string name = fmt::format("区间{}", i);
    rows.add({.usage = usageOfInterval(i), .name = name, .kind = count, .first = cell, .last = cell + 9,
              .factory = i == kIntervalCount ? "0-2" : "0-4", .item_text = name + kCountItem,
              .figure = MembersIn{first, name},
              .definition = fmt::format("六个红球中落在{}的个数。图中标出这个区间的号码，在“划分区间”里可以重新划分。", name)});
  }
  for (int i = 1; i <= kGroupCount; ++i) {
    const ConditionId cell = 3800 + 10 * (i - 1);
    const std::string name = fmt::format("自定义组{}", i);
    rows.add({.usage = usageOfGroup(i), .name = name, .kind = count, .first = cell, .last = cell + 9,
              .factory = kEveryCount, .item_text = kCountItem, .figure = MembersIn{first, name},
              .definition = "六个红球中这一组号码的个数。图中标出这一组的号码。"});
  }
}

void addFigures(Rows& rows) {
  rows.add({.usage = 4, .name = "跨度", .kind = value, .first = 3300, .last = 3340, .factory = "15-32",
            .first_item = 5, .last_item = 32, .figure = spanOf, .log_name = "[ 跨 度 ]",
            .page = "跨度过滤",
            .definition = "最大的红球减最小的红球。"});
  rows.add({.usage = 5, .name = "最大间距", .kind = value, .first = 3400, .last = 3440, .factory = "4-17",
            .used_at_first = true, .first_item = 1, .last_item = 28, .figure = largestGap,
            .page = "最大间距",
            .definition = "红球从小到大排好，相邻两个之差的最大值。"});
  rows.add({.usage = 6, .name = "连号", .kind = run_shape, .first = 3450, .last = 3460, .factory = "0-2,4",
            .used_at_first = true, .first_item = 0, .last_item = 10, .figure = runShape,
            .page = "连 号",
            .definition = "红球中连续号码的长度：2+2 是两段两连号，3 是一段三连号，0 是没有连号。"});
  rows.add({.usage = 9, .name = "AC值", .kind = value, .first = 3600, .last = 3630, .factory = "5-10",
            .used_at_first = true, .first_item = 0, .last_item = 15, .figure = acValue, .page = "AC值",
            .definition = "六个红球两两之差中，不同的差的个数减 5。越大号码越散，最大 10。"});
  rows.add({.usage = 7, .name = "重叠号", .kind = count, .first = 3470, .last = 3480, .factory = "0-3",
            .item_text = "重叠码个数=", .figure = AgainstPrevious{markReds}, .page = "重叠号",
            .definition = "六个红球中与上一期相同的个数。图中标出上一期的红球。"});
  rows.add({.usage = 8, .name = "斜位码", .kind = count, .first = 3490, .last = 3500, .factory = "0-4",
            .item_text = "斜位码个数=", .figure = AgainstPrevious{markNeighbours}, .page = "斜位码",
            .definition = "六个红球中与上一期某个红球相差 1 的个数。图中标出这些号码。"});
}

void addPlaces(Rows& rows) {
  for (int place = 1; place <= kPlaceCount; ++place)
    rows.add({.usage = usageOfPlace(place), .name = fmt::format("号码定位{}", place), .kind = position,
              .first_item = 1, .last_item = place == kPlaceCount ? kBlueCount : kRedCount, .turn = place,
              .definition = place == kPlaceCount
                                ? "蓝球只能是勾选的号码；不符的位置多于容错值的号码去掉。"
                                : fmt::format("从小到大的第 {} 个红球只能是勾选的号码；不符的位置多于容错值的号码去掉。", place)});
}

void addHeat(Rows& rows) {
  rows.add({.usage = 301, .name = "温度5", .kind = value, .first = 6700, .last = 6720, .factory = "2-9",
            .first_item = 0, .last_item = 20, .figure = HeatOver{5},
            .definition = "六个红球在最近 5 期中开出次数的和，反映整注号码的冷热。图中标出开出过的号码。",
            .help = "温度值5：指的是本期开奖的6个红球号码在最近前5期中各码开出次数之和。"
                    "反映的是整注号码相对于最近５期的冷热程度。"});
  rows.add({.usage = 302, .name = "温度10", .kind = value, .first = 6800, .last = 6820, .factory = "6-16",
            .first_item = 0, .last_item = 20, .figure = HeatOver{10},
            .definition = "六个红球在最近 10 期中开出次数的和，反映整注号码的冷热。图中标出开出过的号码。",
            .help = "温度值10：指的是本期开奖的6个红球号码在最近前10期中各码开出次数之和。"
                    "反映的是整注号码相对于最近１０期的冷热程度。"});
}

void addShapes(Rows& rows) {
  for (const Family& family : families())
    rows.add({.usage = family.usage, .name = std::string(family.name), .kind = shape, .first = family.first,
              .last = family.last, .factory = family.factory, .first_item = 0,
              .last_item = static_cast<int>(shapeTexts(family.set).size()) - 1, .family = &family,
              .turn = family.turn, .figure = &family, .page = family.page,
              .definition = shapeDefinition(family), .since = family.since});
}

void addTurns(Rows& rows) {
  for (int turn = 0; turn < kTurnCount; ++turn) {
    const Family& family = familyOfTurn(turn);
    rows.add({.usage = usageOfTurn(turn), .name = std::string(family.draw_column) + "（具体）",
              .kind = combination, .family = &family, .turn = turn,
              .definition = fmt::format("{}。六个红球落入的组与上一期完全相同算一次；勾选的各项合计超过容许次数的号码去掉。",
                                        family.grouping),
              .since = family.since});
  }
}

void addRelatives(Rows& rows) {
  rows.add({.usage = 263, .name = "尾数重叠", .kind = count, .first = 6650, .last = 6659, .factory = "1-5",
            .figure = AgainstPrevious{markTails},
            .definition = "六个红球中个位数在上一期出现过的个数。图中标出这些号码。"});
  rows.add({.usage = 264, .name = "合数重叠", .kind = count, .first = 6660, .last = 6669, .factory = "1-5",
            .figure = AgainstPrevious{markDigitRoots},
            .definition = "六个红球中合数（各位数字加到只剩一位）在上一期出现过的个数。图中标出这些号码。"});
  rows.add({.usage = 265, .name = "前3期出现个数", .kind = count, .first = 6670, .last = 6679,
            .factory = "1-5", .figure = DrawnIn{3},
            .definition = "六个红球中最近 3 期开出过的个数。图中标出这些号码。"});
  rows.add({.usage = 266, .name = "前2期和值相同组", .kind = sum_family, .first = 6680, .last = 6689,
            .factory = "0-6", .first_item = 0, .last_item = kSumFamilyCount - 1,
            .definition = "勾选的和值与前 2 期中某一期相同就算一次，超过 2 次的号码去掉。"});
}
// clang-format on

void addCustomIntervals(Rows& rows) {
  for (const CustomInterval& interval : factoryCustomIntervals())
    rows.add({.usage = interval.usage,
              .name = interval.name,
              .kind = count,
              .first = interval.first,
              .last = interval.last,
              .factory = kEveryCount,
              .item_text = kCountItem,
              .turn = interval.turn,
              .figure = MembersIn{AttributeTable::third, interval.name},
              .definition = "六个红球中落在这个区间的个数。图中标出这个区间的号码。"});
}

std::vector<Condition> makeRows() {
  Rows rows;
  addSums(rows);
  addCounts(rows);
  addFigures(rows);
  addPlaces(rows);
  addHeat(rows);
  addShapes(rows);
  addTurns(rows);
  addRelatives(rows);
  rows.add({.usage = kSmartOptimisation,
            .name = "智能优化",
            .kind = setting,
            .definition = "缩水前给每注号码打分，分数高的先留下。"});
  addCustomIntervals(rows);
  std::vector<Condition> list = rows.take();
  std::ranges::sort(list, {}, &Condition::usage);
  return list;
}

}  // namespace

const std::vector<Condition>& allConditions() {
  static const auto list = makeRows();
  return list;
}

const Condition& conditionOfUsage(UsageId usage) {
  const auto found = std::ranges::lower_bound(allConditions(), usage, {}, &Condition::usage);
  LOTMERE_ASSERT(found != allConditions().end() && found->usage == usage);
  return *found;
}

const Condition& conditionNamed(std::string_view name) {
  const auto found = std::ranges::find(allConditions(), name, &Condition::name);
  LOTMERE_ASSERT(found != allConditions().end());
  return *found;
}

const Condition* findCondition(std::string_view name_or_usage) {
  const std::string_view wanted = trim(name_or_usage);
  UsageId usage = 0;
  const auto [end, error] = std::from_chars(wanted.data(), wanted.data() + wanted.size(), usage);
  const bool is_number = error == std::errc{} && end == wanted.data() + wanted.size();
  const auto found = std::ranges::find_if(allConditions(), [&](const Condition& condition) {
    return condition.name == wanted || (is_number && condition.usage == usage);
  });
  return found == allConditions().end() ? nullptr : &*found;
}

bool isCustomInterval(const Condition& condition) {
  const auto* members = std::get_if<MembersIn>(&condition.figure);
  return members != nullptr && members->table == AttributeTable::third;
}

bool looksBack(const Condition& condition) {
  const FigureRule& figure = condition.figure;
  return condition.kind == sum_family || std::holds_alternative<AgainstPrevious>(figure) ||
         std::holds_alternative<DrawnIn>(figure) || std::holds_alternative<HeatOver>(figure);
}

std::vector<FactoryValue> factoryCells() {
  std::map<ConditionId, int> cells;
  for (int n = 1; n <= kRedCount; ++n) cells[n] = 0;
  for (int n = 1; n <= kBlueCount; ++n) cells[kBlueCodeBase + n] = 0;
  cells[kShrinkTypeCell] = kFactoryShrinkType;
  cells[kToleranceCell] = 0;
  cells[kFewerCell] = 0;
  cells[kEffortCell] = kFactoryEffort;
  cells[kSetToleranceCell] = 0;
  std::vector<const Condition*> rows;
  for (const Condition& condition : allConditions())
    if (condition.first != 0) rows.push_back(&condition);
  // Some ranges reach into the next one's; a row there is the next one's.
  std::ranges::sort(rows, {}, &Condition::first);
  for (const Condition* row : rows) {
    for (ConditionId id = row->first; id <= row->last; ++id) cells[id] = 0;
    const auto allowed = parseNumberList(row->factory, 0, row->last - row->first);
    LOTMERE_ASSERT(allowed);
    for (const int offset : allowed.value_or(std::vector<int>{})) cells[row->first + offset] = 1;
  }
  std::vector<FactoryValue> values;
  values.reserve(cells.size());
  for (const auto& [id, value] : cells) values.push_back({id, value});
  return values;
}

std::vector<FactoryValue> factorySwitches() {
  std::vector<FactoryValue> values;
  values.reserve(allConditions().size());
  for (const Condition& condition : allConditions())
    values.push_back({condition.usage, condition.used_at_first ? 1 : 0});
  return values;
}

std::string itemText(const Condition& condition, int k) {
  switch (condition.kind) {
    case run_shape:
      return condition.item_text + std::string(runShapes()[k]);
    case shape:
      return std::string(shapeTexts(condition.family->set)[k]);
    case sum_family:
      return std::string(sumFamilyTexts()[k]);
    case position:
      return formatBall(k);
    default:
      return condition.item_text + std::to_string(k);
  }
}

int cellCount(const Condition& condition) {
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

std::string shrinkCaption(int type) {
  constexpr const char* captions[] = {"保三型", "保四型", "保五型", "保六型", "保七型"};
  return type < kSmallestShrink || type > kLargestShrink ? "" : captions[type - kSmallestShrink];
}

std::string placeColumn(int place) { return fmt::format("第{}", place); }

std::span<const std::string_view> sumFamilyTexts() {
  static constexpr std::string_view texts[kSumFamilyCount] = {
      "尾数和值相同组", "合数和值相同组", "大数和值相同组", "小数和值相同组",
      "奇数和值相同组", "偶数和值相同组", "总和值相同组"};
  return texts;
}

}  // namespace lotmere

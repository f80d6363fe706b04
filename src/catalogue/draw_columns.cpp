#include "catalogue/draw_columns.hpp"

#include <algorithm>

#include "base/assert.hpp"

namespace lotmere {
namespace {

std::string_view runShapeText(const Reds& reds) {
  return runShapes()[static_cast<std::size_t>(runShape(reds))];
}

std::string_view completed(const Reds& /*reds*/) { return "Y"; }

const Family* familyOf(std::string_view column) {
  const auto found = std::ranges::find(families(), column, &Family::draw_column);
  LOTMERE_ASSERT(found != families().end());
  return &*found;
}

// clang-format off
std::vector<DrawColumn> makeDrawColumns() {
  using enum DrawColumnType;
  using Two = int (*)(const Reds&, const Reds&);
  std::vector<DrawColumn> columns = {{"期号", whole}, {"开奖日期", date}};
  for (int i = 1; i <= kRedsPerTicket; ++i) columns.push_back({"红球" + std::to_string(i), whole});
  const auto add = [&](const std::vector<DrawColumn>& more) {
    columns.insert(columns.end(), more.begin(), more.end());
  };
  // The big and small sums split at a fixed number, the counts follow the column that a user edits: two
  // different definitions. Both tail counts follow the column of the low tails.
  add({{"蓝球", whole},
       {"和值", whole, NumberValue::number},
       {"奇数和值", whole, NumberValue::odd},
       {"偶数和值", whole, NumberValue::even},
       {"奇数个数", whole, NumberValue::is_odd},
       {"偶数个数", whole, NumberValue::is_even},
       {"大数个数", whole, MemberCount{"大数", true}},
       {"小数个数", whole, MemberCount{"大数", false}},
       {"高尾码个数", whole, MemberCount{"低尾码", false}},
       {"低尾码个数", whole, MemberCount{"低尾码", true}}});
  for (const char* name : {"区间1", "区间2", "区间3", "区间4", "自定义组1", "自定义组2", "自定义组3",
                           "自定义组4", "自定义组5", "自定义组6", "自定义组7", "自定义组8", "自定义组9",
                           "自定义组10"})
    add({{name, whole, MemberCount{name, true}}});
  for (const char* name : {"尾数形式", "间距七", "间距八", "七分组", "大小尾七分组", "间距九", "间距十一",
                           "间距十二", "间距十二3分组", "间距四", "间距3", "间距6", "三波排异", "区间排异",
                           "和数33", "和数34", "和数35", "奇偶连", "偶奇连", "等差16组", "等差17组",
                           "间距11链", "生肖链", "四数八分自然段", "八数四分自然段", "间距5", "间距10",
                           "四区间", "三波组", "大小奇偶组", "双尾5分组", "大小奇偶尾"})
    add({{name, text, familyOf(name)}});
  add({{"跨度", whole, spanOf},
       {"最大间距", whole, largestGap},
       {"AC值", whole, acValue},
       {"连号", text, runShapeText},
       {"重叠号", whole, Two{countRepeats}},
       {"尾数重叠", whole, Two{countTailRepeats}},
       {"合数重叠", whole, Two{countDigitRootRepeats}},
       {"前3期出现个数", whole, &DrawView::repeats_of_three},
       {"斜位码", whole, Two{countNeighbours}},
       {"尾数和值", whole, NumberValue::tail},
       {"合数和值", whole, NumberValue::digit_root},
       {"大数和值", whole, NumberValue::big},
       {"小数和值", whole, NumberValue::small},
       {"温度5", whole, &DrawView::heat5},
       {"温度10", whole, &DrawView::heat10},
       {"遗漏数据", whole},
       {.name = "已完成", .type = text, .rule = completed, .is_work = true},
       {.name = "总期号", .type = whole, .is_work = true},
       {.name = "临时数据", .type = whole, .is_work = true}});
  return columns;
}
// clang-format on

}  // namespace

const std::vector<DrawColumn>& drawColumns() {
  static const auto columns = makeDrawColumns();
  return columns;
}

}  // namespace lotmere

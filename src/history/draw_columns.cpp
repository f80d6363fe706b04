#include "history/draw_columns.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "conditions/condition_store.hpp"
#include "core/schema.hpp"

namespace lotmere {
namespace {

template <class... Cases>
struct Overload : Cases... {
  using Cases::operator()...;
};
template <class... Cases>
Overload(Cases...) -> Overload<Cases...>;

std::string_view run_Shape(const Reds& reds) {
  return run_Shapes()[static_cast<std::size_t>(calc_LianHaoMax(reds))];
}

std::string_view completed(const Reds& /*reds*/) { return "Y"; }

// The big and small sums split at a fixed number, the counts follow the column that a person edits: two
// different definitions. Both tail counts follow the column of the low tails.
constexpr DrawColumnRule kFigures[] = {
    {"和值", NumberValue::number},
    {"奇数和值", NumberValue::odd},
    {"偶数和值", NumberValue::even},
    {"奇数个数", NumberValue::is_odd},
    {"偶数个数", NumberValue::is_even},
    {"大数个数", MemberCount{"大数", true}},
    {"小数个数", MemberCount{"大数", false}},
    {"高尾码个数", MemberCount{"低尾码", false}},
    {"低尾码个数", MemberCount{"低尾码", true}},
    {"区间1", MemberCount{"区间1", true}},
    {"区间2", MemberCount{"区间2", true}},
    {"区间3", MemberCount{"区间3", true}},
    {"区间4", MemberCount{"区间4", true}},
    {"自定义组1", MemberCount{"自定义组1", true}},
    {"自定义组2", MemberCount{"自定义组2", true}},
    {"自定义组3", MemberCount{"自定义组3", true}},
    {"自定义组4", MemberCount{"自定义组4", true}},
    {"自定义组5", MemberCount{"自定义组5", true}},
    {"自定义组6", MemberCount{"自定义组6", true}},
    {"自定义组7", MemberCount{"自定义组7", true}},
    {"自定义组8", MemberCount{"自定义组8", true}},
    {"自定义组9", MemberCount{"自定义组9", true}},
    {"自定义组10", MemberCount{"自定义组10", true}},
    {"跨度", calc_KuaDu},
    {"最大间距", calc_JianJuMax},
    {"AC值", calc_AC},
    {"连号", run_Shape},
    {"重叠号", calc_CongDie},
    {"尾数重叠", calc_weisuCongDie},
    {"合数重叠", calc_hesuCongDie},
    {"前3期出现个数", &DrawView::repeats_of_three},
    {"斜位码", calc_XieWeiMa},
    {"尾数和值", NumberValue::tail},
    {"合数和值", NumberValue::digit_root},
    {"大数和值", NumberValue::big},
    {"小数和值", NumberValue::small},
    {"温度5", &DrawView::heat5},
    {"温度10", &DrawView::heat10},
    {"已完成", completed},
};

std::vector<DrawColumnRule> make_Rules() {
  std::vector<DrawColumnRule> rules(std::begin(kFigures), std::end(kFigures));
  for (const Family& family : families())
    if (!family.draw_column.empty()) rules.push_back({family.draw_column, &family});
  return rules;
}

RedTable read_Members(Store& store, const MemberCount& count) {
  RedTable members = read_AttributeColumn(store, AttributeTable::first, count.column);
  if (!count.member)
    for (int n = 1; n <= kRedCount; ++n) members[n] = members[n] == 0;
  return members;
}

}  // namespace

RedTable count_Heat(std::span<const StoredDraw> draws) {
  RedTable heat{};
  for (const StoredDraw& draw : draws) {
    const RedTable drawn = mark_Reds(draw.numbers.reds);
    for (int n = 1; n <= kRedCount; ++n) heat[n] = static_cast<std::int16_t>(heat[n] + drawn[n]);
  }
  return heat;
}

RedTable mark_Drawn(std::span<const StoredDraw> draws) {
  RedTable marks = count_Heat(draws);
  for (std::int16_t& mark : marks) mark = mark > 0;
  return marks;
}

const std::vector<DrawColumnRule>& draw_ColumnRules() {
  static const auto rules = make_Rules();
  return rules;
}

DrawWriter::DrawWriter(Store& store, std::span<const std::string_view> names) : store_(store) {
  std::string assignments;
  for (const DrawColumnRule& rule : draw_ColumnRules()) {
    if (!names.empty() && std::find(names.begin(), names.end(), rule.column) == names.end()) continue;
    Column& column = columns_.emplace_back(Column{&rule});
    if (const auto* count = std::get_if<MemberCount>(&rule.rule))
      column.members = read_Members(store, *count);
    if (const auto* family = std::get_if<const Family*>(&rule.rule))
      column.groups = load_GroupTable(store, **family, (*family)->draw_groups);
    assignments += fmt::format("{}{}=?", assignments.empty() ? "" : ",", sql_Name(rule.column));
  }
  sql_ = fmt::format(R"(UPDATE "历史记录" SET {} WHERE "期号"=?)", assignments);
}

void DrawWriter::write(PeriodNo period, const DrawView& draw) {
  Query update = store_.query(sql_);
  int place = 0;
  for (Column& column : columns_) bind(update.statement(), ++place, column, draw);
  update.statement().bind(++place, period);
  update.run();
}

void DrawWriter::bind(SQLite::Statement& statement, int place, Column& column, const DrawView& draw) {
  const auto whole = [&](int value) { statement.bind(place, value); };
  // The column's own text outlives the statement's run, so the engine needs no copy of it.
  const auto text = [&](std::string_view value) {
    column.text = value;
    statement.bindNoCopy(place, column.text);
  };
  std::visit(
      Overload{
          [&](NumberValue kind) { whole(sum_Of(number_Table(kind), draw.reds)); },
          [&](const MemberCount&) { whole(sum_Of(column.members, draw.reds)); },
          [&](int (*metric)(const Reds&)) { whole(metric(draw.reds)); },
          [&](int (*metric)(const Reds&, const Reds&)) { whole(metric(draw.previous, draw.reds)); },
          [&](int DrawView::*figure) { whole(draw.*figure); },
          [&](std::string_view (*shape)(const Reds&)) { text(shape(draw.reds)); },
          [&](const Family* family) { text(draw_Text(*family, count_Groups(column.groups, draw.reds))); }},
      column.rule->rule);
}

}  // namespace lotmere

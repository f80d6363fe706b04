#include "history/draw_writer.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "base/overload.hpp"
#include "conditions/condition_store.hpp"
#include "store/schema.hpp"

namespace lotmere {
namespace {

RedTable membersCounted(const ConditionSet& set, const MemberCount& count) {
  RedTable members = tableOf(set.column(AttributeTable::first, count.column));
  if (!count.member)
    for (int n = 1; n <= kRedCount; ++n) members[n] = members[n] == 0;
  return members;
}

}  // namespace

RedTable countHeat(std::span<const StoredDraw> draws) {
  RedTable heat{};
  for (const StoredDraw& draw : draws) {
    const RedTable drawn = markReds(draw.numbers.reds);
    for (int n = 1; n <= kRedCount; ++n) heat[n] = static_cast<std::int16_t>(heat[n] + drawn[n]);
  }
  return heat;
}

RedTable markDrawn(std::span<const StoredDraw> draws) {
  RedTable marks = countHeat(draws);
  for (std::int16_t& mark : marks) mark = mark > 0;
  return marks;
}

DrawWriter::DrawWriter(Store& store, std::span<const std::string_view> names) : store_(store) {
  const ConditionSet set = loadConditionSet(store);
  std::string assignments;
  for (const DrawColumn& drawn : drawColumns()) {
    if (!drawn.hasRule() ||
        (!names.empty() && std::find(names.begin(), names.end(), drawn.name) == names.end()))
      continue;
    Column& column = columns_.emplace_back(Column{&drawn.rule});
    if (const auto* count = std::get_if<MemberCount>(&drawn.rule))
      column.members = membersCounted(set, *count);
    if (const auto* family = std::get_if<const Family*>(&drawn.rule))
      column.groups = groupTable(set, **family, (*family)->draw_groups);
    assignments += fmt::format("{}{}=?", assignments.empty() ? "" : ",", sqlName(drawn.name));
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
      Overload{[](std::monostate) {}, [&](NumberValue kind) { whole(sumOf(numberTable(kind), draw.reds)); },
               [&](const MemberCount&) { whole(sumOf(column.members, draw.reds)); },
               [&](int (*metric)(const Reds&)) { whole(metric(draw.reds)); },
               [&](int (*metric)(const Reds&, const Reds&)) { whole(metric(draw.previous, draw.reds)); },
               [&](int DrawView::*figure) { whole(draw.*figure); },
               [&](std::string_view (*shape)(const Reds&)) { text(shape(draw.reds)); },
               [&](const Family* family) { text(drawText(*family, countGroups(column.groups, draw.reds))); }},
      *column.rule);
}

}  // namespace lotmere

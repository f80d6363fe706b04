#include "history/search.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "base/text.hpp"
#include "catalogue/draw_columns.hpp"
#include "store/schema.hpp"

namespace lotmere {
namespace {

constexpr int kRecentDraws = 100;

bool isDrawColumn(const std::string& name) {
  return std::ranges::any_of(drawColumns(), [&](const DrawColumn& column) { return column.name == name; });
}

// A store that was upgraded holds the columns in another order.
std::string allNames() {
  std::vector<std::string> names;
  names.reserve(drawColumns().size());
  for (const DrawColumn& column : drawColumns()) names.push_back(column.name);
  return columnList(names);
}

}  // namespace

PeriodRange loadHistoryRows(Store& store, HistorySpan span) {
  const PeriodNo newest = latestPeriod(store);
  return {span == HistorySpan::all ? firstPeriod(store) : periodsUpTo(store, newest, kRecentDraws), newest};
}

std::optional<SearchCondition> buildSearchWhere(Desk& desk, const std::vector<ColumnFilter>& filters) {
  SearchCondition condition;
  for (const auto& [column, text] : filters) {
    if (!isDrawColumn(column)) {
      desk.tell(fmt::format("历史记录没有“{}”这一列。", column), Tone::warning);
      return std::nullopt;
    }
    if (trim(text).empty()) continue;
    condition.texts.push_back(text);
    condition.where +=
        fmt::format("{0}substr(CAST({1} AS TEXT),1,length(?{2}))=?{2}",
                    condition.where.empty() ? "" : " AND ", sqlName(column), condition.texts.size());
  }
  return condition;
}

void searchDraws(Store& store, const SearchCondition& condition,
                 const std::function<void(const Query&)>& visit) {
  // Not one of the store's statements: it would keep every combination of columns that was ever searched.
  SQLite::Statement statement(
      store.db(), fmt::format(R"(SELECT {} FROM "历史记录" {} {} ORDER BY "期号" ASC)", allNames(),
                              condition.where.empty() ? "" : "WHERE", condition.where));
  int place = 0;
  for (const std::string& text : condition.texts) statement.bind(++place, text);
  Query rows(statement);
  while (rows.next()) visit(rows);
}

void listDraws(Store& store, int last, const std::function<void(const Query&)>& visit) {
  Query rows = store.query(
      R"(SELECT * FROM (SELECT "期号","开奖日期","红球1","红球2","红球3","红球4","红球5","红球6","蓝球"
                        FROM "历史记录" ORDER BY "期号" DESC LIMIT ?) ORDER BY "期号" ASC)");
  rows.bind(last);
  while (rows.next()) visit(rows);
}

}  // namespace lotmere

// Which draws the history page shows: the newest hundred, all, or those that the filter row asks for.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/desk.hpp"
#include "store/periods.hpp"
#include "store/store.hpp"

namespace lotmere {

enum class HistorySpan { recent, all };

// The periods of the newest hundred draws (of all, where fewer stand) or of all draws. With an empty
// history a range that holds no draw.
[[nodiscard]] PeriodRange loadHistoryRows(Store& store, HistorySpan span);

// What is typed above a column of `历史记录`: its text must begin so.
struct ColumnFilter {
  std::string column;
  std::string text;
};

// The filters as a condition with a parameter for each of its texts.
struct SearchCondition {
  std::string where;               // empty: every draw
  std::vector<std::string> texts;  // in the order of the parameters
};

// Joins the filters with AND. A filter of blanks alone asks for nothing; any other text counts with its
// blanks, character for character and in its case, "%" and "_" being characters as others are. Numbers are
// compared as they are stored, without leading zeros, and dates as 2026-08-20. Nothing, told in one line,
// when a name is no column.
[[nodiscard]] std::optional<SearchCondition> buildSearchWhere(Desk& desk,
                                                              const std::vector<ColumnFilter>& filters);

// Calls `visit` for each draw that meets a condition, by period ascending. Its row holds the columns of
// drawColumns() in their order.
void searchDraws(Store& store, const SearchCondition& condition,
                 const std::function<void(const Query&)>& visit);

// Visits the newest `last` draws, all with -1, by period ascending: period, date, six reds, blue.
void listDraws(Store& store, int last, const std::function<void(const Query&)>& visit);

}  // namespace lotmere

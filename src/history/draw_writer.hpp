// Writes the derived columns of draws, as the table of their columns says.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "catalogue/draw_columns.hpp"
#include "game/game.hpp"
#include "game/metrics.hpp"
#include "store/periods.hpp"
#include "store/store.hpp"

namespace lotmere {

// How often each number came up in some draws; a draw counts a number once.
[[nodiscard]] RedTable countHeat(std::span<const StoredDraw> draws);
// 1 for each number that came up in at least one of the draws.
[[nodiscard]] RedTable markDrawn(std::span<const StoredDraw> draws);

// Computes columns of draws and writes them to their rows, by one statement over all of them. The attribute
// tables are read once, when the writer is made, so that every row of a pass follows the same groups.
class DrawWriter {
 public:
  // With no names: every column that has a rule.
  explicit DrawWriter(Store& store, std::span<const std::string_view> names = {});

  // Writes the columns of one stored draw; a period without a row changes nothing. Runs inside the caller's
  // change.
  void write(PeriodNo period, const DrawView& draw);

 private:
  struct Column {
    const DrawRule* rule;
    RedTable members{};   // of a MemberCount
    GroupTable groups{};  // of a Family
    std::string text{};   // keeps its room from row to row
  };
  static void bind(SQLite::Statement& statement, int place, Column& column, const DrawView& draw);

  Store& store_;
  std::vector<Column> columns_;
  std::string sql_;
};

}  // namespace lotmere

// The derived columns of a draw and how each is computed. The statistics write them from this one table; a
// column more is a row more.
#pragma once

#include <span>
#include <string_view>
#include <variant>
#include <vector>

#include "core/families.hpp"
#include "core/game.hpp"
#include "core/metrics.hpp"
#include "core/periods.hpp"
#include "core/store.hpp"

namespace lotmere {

// A draw and what its figures need of the draws before it.
struct DrawView {
  Reds reds{};
  Reds previous{};           // of the draw before in the table, whatever its number; six zeros with none
  int repeats_of_three = 0;  // reds that stood in the three draws before; 0 with fewer than three
  int heat5 = 0;             // over the five and the ten draws before, or as many as there are
  int heat10 = 0;
};

// How often each number came up in some draws; a draw counts a number once.
[[nodiscard]] RedTable count_Heat(std::span<const StoredDraw> draws);
// 1 for each number that came up in at least one of the draws.
[[nodiscard]] RedTable mark_Drawn(std::span<const StoredDraw> draws);

// How many reds a yes/no column of `号码特性` holds (or, with `member` false, doesn't hold).
struct MemberCount {
  std::string_view column;
  bool member;
};

using DrawRule = std::variant<NumberValue,                        // the sum of a number value over the reds
                              MemberCount,                        //
                              int (*)(const Reds&),               // a figure of the six reds
                              int (*)(const Reds&, const Reds&),  // a figure of previous draw and this draw
                              int DrawView::*,                    // a figure against several earlier draws
                              std::string_view (*)(const Reds&),  // a text of the six reds
                              const Family*>;                     // the groups hit and their shape

struct DrawColumnRule {
  std::string_view column;  // of `历史记录`
  DrawRule rule;
};

// Every column that the statistics write.
[[nodiscard]] const std::vector<DrawColumnRule>& draw_ColumnRules();

// Computes columns of draws and writes them to their rows, by one statement over all of them. The attribute
// tables are read once, when the writer is made, so that every row of a pass follows the same groups.
class DrawWriter {
 public:
  // With no names: every column of the table.
  explicit DrawWriter(Store& store, std::span<const std::string_view> names = {});

  // Writes the columns of one stored draw; a period without a row changes nothing. Runs inside the caller's
  // change.
  void write(PeriodNo period, const DrawView& draw);

 private:
  struct Column {
    const DrawColumnRule* rule;
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

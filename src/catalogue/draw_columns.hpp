// The columns of a draw in `历史记录`: each once, with its type and the rule that computes it. Schema,
// statistics, grid, search and export read this table. To add a statistic is to add its row.
#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "catalogue/families.hpp"
#include "game/game.hpp"
#include "game/metrics.hpp"

namespace lotmere {

// A draw and what its figures need of the draws before it.
struct DrawView {
  Reds reds{};
  Reds previous{};           // of the draw before in the table, whatever its number; six zeros with none
  int repeats_of_three = 0;  // reds that stood in the three draws before; 0 with fewer than three
  int heat5 = 0;             // over the five and the ten draws before, or as many as there are
  int heat10 = 0;
};

// How many reds a yes/no column of `号码特性` holds (or, with `member` false, doesn't hold).
struct MemberCount {
  std::string_view column;
  bool member;
};

using DrawRule = std::variant<std::monostate,        // an input, or a column that other work fills
                              NumberValue,           // the sum of a number value over the reds
                              MemberCount,           //
                              int (*)(const Reds&),  // a figure of the six reds
                              int (*)(const Reds&, const Reds&),  // a figure of previous draw and this draw
                              int DrawView::*,                    // a figure against several earlier draws
                              std::string_view (*)(const Reds&),  // a text of the six reds
                              const Family*>;                     // the groups hit and their shape

enum class DrawColumnType { whole, date, text };

struct DrawColumn {
  std::string name;
  DrawColumnType type;
  DrawRule rule{};
  bool is_work = false;  // says nothing about the draw: neither shown nor exported
  int since = 1;         // the schema version that brought it; from 2 on an upgrade computes it for all draws

  [[nodiscard]] bool hasRule() const { return rule.index() != 0; }
  [[nodiscard]] bool isPattern() const { return std::holds_alternative<const Family*>(rule); }
};

// All columns in the order in which they are shown: 0 `期号`, 1 `开奖日期`, 2 to 7 the reds, 8 `蓝球`, then
// the figures, texts and work columns. An upgraded store may hold them in another order: they are found by
// their names.
[[nodiscard]] const std::vector<DrawColumn>& drawColumns();

}  // namespace lotmere

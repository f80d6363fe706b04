// Everything that a user has set, as one value: picks, allowed cells, switches, groups, places, divisions,
// intervals and the match with past draws. Loaded from the store once, compared, copied, changed, handed to
// another thread, and saved back by key (conditions/condition_store.hpp). What judges a ticket is made from
// it without the store.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/attributes.hpp"
#include "catalogue/catalogue.hpp"
#include "catalogue/families.hpp"
#include "game/game.hpp"
#include "game/metrics.hpp"

namespace lotmere {

// The cells of one condition. A range that starts at a multiple of ten has the cell of value k at index k;
// the selection rows 1 to 33 and 101 to 116 land on the index of their number.
using ValueArray = std::array<int, 200>;

// Whole numbers by ascending key. A key that isn't there reads as 0 and can't be set.
class KeyedValues {
 public:
  using Row = std::pair<std::int32_t, std::int32_t>;

  [[nodiscard]] int value(int key) const;
  // False, with nothing set, where the key is missing.
  bool set(int key, int value);
  // Adds a key above all others.
  void append(int key, int value) { rows_.emplace_back(key, value); }
  [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }
  // The rows whose keys lie in first to last, ascending.
  [[nodiscard]] std::span<const Row> range(int first, int last) const;

  friend bool operator==(const KeyedValues&, const KeyedValues&) = default;

 private:
  std::vector<Row> rows_;
};

// The reds that belong to something: bit n for the red n.
using Members = std::uint64_t;
[[nodiscard]] constexpr bool holds(Members members, int number) { return (members >> number & 1) != 0; }
[[nodiscard]] RedTable tableOf(Members members);
[[nodiscard]] Members membersOf(std::span<const int> numbers);

// 历史数据过滤: a ticket that shares `match` (1 to 6) or more reds with a draw of the periods first to last
// goes.
struct HistoryMatch {
  bool used = false;
  PeriodNo first = 0;
  PeriodNo last = 0;
  int match = 0;
  // The range was chosen by hand and stays; else the page moves it on to the latest draws.
  bool chosen = false;

  friend bool operator==(const HistoryMatch&, const HistoryMatch&) = default;
};

struct ConditionSet {
  // `过滤条件` by `ID`: the selection (1 to 33, 101 to 116), the cells of the conditions, shrink type and
  // tolerance. A cell allows its value from 1 on.
  KeyedValues cells;
  // `过滤条件使用情况` by `条件`: a pass runs at exactly 1, a turn of 组合（具体） above 0.
  KeyedValues switches;
  // The yes/no columns of the three attribute tables, each in the order of attributeColumns().
  std::array<std::vector<Members>, 3> columns;
  // `区间定义`: the interval (1 to 4) of each red, index 0 unused.
  std::array<std::int8_t, kRedCount + 1> interval{};
  HistoryMatch match;

  friend bool operator==(const ConditionSet&, const ConditionSet&) = default;

  // A pass runs only when its switch is exactly 1; panels and the summary show one above 0 as on.
  [[nodiscard]] bool isUsed(UsageId usage) const { return switches.value(usage) == 1; }
  [[nodiscard]] bool isTicked(UsageId usage) const { return switches.value(usage) > 0; }
  // The members of a column, none where the table has no such column.
  [[nodiscard]] Members column(AttributeTable table, std::string_view name) const;
  // The rows of a range in their order, from index first modulo 10 on; cells beyond the range are 0.
  [[nodiscard]] ValueArray cellRange(ConditionId first, ConditionId last) const;

  // Switch and cell become 1 or 0. False, with nothing set, where there is no such switch, cell or column.
  bool use(UsageId usage, bool on) { return switches.set(usage, on ? 1 : 0); }
  bool allow(ConditionId cell, bool allowed) { return cells.set(cell, allowed ? 1 : 0); }
  bool setColumn(AttributeTable table, std::string_view name, Members members);
  // One number (1 to 33) of a column.
  bool setMember(AttributeTable table, std::string_view name, int number, bool member);
};

// The groups of a family, the first `groups` of its columns.
[[nodiscard]] GroupTable groupTable(const ConditionSet& set, const Family& family, int groups);

}  // namespace lotmere

// Everything that a user has set, as one value: picks, allowed cells, switches, groups, places, divisions,
// intervals and the match with past draws. Loaded from the store once, compared, copied, handed to another
// thread, and saved back by key. What judges a ticket is made from it without the store.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/attributes.hpp"
#include "catalogue/catalogue.hpp"
#include "catalogue/families.hpp"
#include "conditions/condition_store.hpp"
#include "conditions/own_sets.hpp"
#include "game/game.hpp"
#include "game/metrics.hpp"
#include "store/store.hpp"

namespace lotmere {

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

  [[nodiscard]] bool isUsed(UsageId usage) const { return switches.value(usage) == 1; }
  [[nodiscard]] bool isTicked(UsageId usage) const { return switches.value(usage) > 0; }
  // The members of a column, none where the table has no such column.
  [[nodiscard]] Members column(AttributeTable table, std::string_view name) const;
  // False, with nothing set, where the table has no such column.
  bool setColumn(AttributeTable table, std::string_view name, Members members);
  // The rows of a range in their order, from index first modulo 10 on, as loadConditionRange gives them.
  [[nodiscard]] ValueArray cellRange(ConditionId first, ConditionId last) const;
};

// Reads everything in one go. Throws SQLite::Exception when the store refuses.
[[nodiscard]] ConditionSet loadConditionSet(Store& store);

// Writes what `after` holds otherwise than `before`, row by row by key, in one change. Rows that the store
// lacks are passed over. Throws SQLite::Exception with nothing written when the store refuses.
void saveConditionSet(Store& store, const ConditionSet& before, const ConditionSet& after);

// The groups of a family, the first `groups` of its columns.
[[nodiscard]] GroupTable groupTable(const ConditionSet& set, const Family& family, int groups);

}  // namespace lotmere

// A store of chance: history, tickets and conditions, the same for the same generator.
#pragma once

#include <random>
#include <string>

#include "pipeline/run_model.hpp"

namespace lotmere::test {

[[nodiscard]] inline int pick(std::mt19937& random, int first, int last) {
  return std::uniform_int_distribution<int>(first, last)(random);
}

// Sets a whole-number column of a table, row by row, to `value` of what stands there.
template <class Value>
void setRows(Store& store, const std::string& table, const std::string& column, const std::string& where,
             Value value) {
  std::vector<std::pair<int, int>> rows;
  Query keys = store.query("SELECT rowid,\"" + column + "\" FROM \"" + table + "\" WHERE " + where);
  while (keys.next()) rows.emplace_back(keys.number(0), keys.number(1));
  Query update = store.query("UPDATE \"" + table + "\" SET \"" + column + "\"=? WHERE rowid=?");
  for (const auto& [row, old] : rows) update.bind(value(old), row).run();
}

// Replaces the history by `count` draws before the period and its own; the newest draw before has the
// sums that a run computes, the older ones sums of their own.
void putHistory(Store& store, std::mt19937& random, int count);

// Replaces the ticket table by `count` tickets of the period with marks of an earlier run, and tickets of
// other periods between them. Some are out of order, have a red twice, stand at the edge of a figure, or
// repeat an earlier draw.
void putTickets(Store& store, std::mt19937& random, int count);

// Sets every condition: switches to 0, 1 or 2 (in use about `used` in a hundred), cells to 0 or 1 (allowed
// about `allowed` in a hundred), places, groups, intervals, tolerance, shrink type and history match.
void putConditions(Store& store, std::mt19937& random, int used, int allowed);

}  // namespace lotmere::test

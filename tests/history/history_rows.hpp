// Invented draws, and the history as text to compare.
#pragma once

#include <string>
#include <vector>

#include "store/periods.hpp"
#include "store/store.hpp"
#include "support/random_numbers.hpp"

namespace lotmere::test {

// Draws with gaps between the periods and a year change on the way, ascending.
inline std::vector<StoredDraw> inventDraws(std::size_t count, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<StoredDraw> draws(count, {0, {{}, 7}});
  PeriodNo period = 2007100;
  for (StoredDraw& draw : draws) {
    draw.numbers.reds = randomNumbers(random).reds;
    draw.period = period;
    period += random() % 4 == 0 ? 3 : 1;
    if (period % 1000 > 153) period = (period / 1000 + 1) * 1000 + 1;
  }
  return draws;
}

// Every field of every row.
inline std::string dumpHistory(Store& store) {
  Query rows = store.query(R"(SELECT * FROM "历史记录" ORDER BY "期号" ASC)");
  std::string dump;
  while (rows.next())
    for (int i = 0; i < rows.statement().getColumnCount(); ++i) dump += rows.text(i) + "|";
  return dump;
}

// One field of one row as text.
inline std::string field(Store& store, PeriodNo period, const std::string& column) {
  Query rows = store.query("SELECT \"" + column + R"(" FROM "历史记录" WHERE "期号"=?)");
  rows.bind(period);
  return rows.next() ? rows.text(0) : "no row";
}

}  // namespace lotmere::test

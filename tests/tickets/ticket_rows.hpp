// The ticket table as plain rows, for comparing it before and after an operation.
#pragma once

#include <ostream>
#include <vector>

#include "game/game.hpp"
#include "store/store.hpp"

namespace lotmere::test {

struct Row {
  int id = 0, seq = 0, period = 0;
  Reds reds{};
  int blue = 0;
  int mark = 0, shrink = 0, pick = 0, score = 0;

  friend bool operator==(const Row&, const Row&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Row& row) {
    out << "#" << row.id << " " << row.seq << "/" << row.period;
    for (const int red : row.reds) out << " " << red;
    return out << "+" << row.blue << " marks " << row.mark << row.shrink << row.pick << " " << row.score;
  }
};

inline const std::string kRowColumns =
    R"("ID","序号","期号","红球1","红球2","红球3","红球4","红球5","红球6","蓝球","过滤标记","缩水标记","精选标记","临时数据")";

// Every row of `日志表` in the order of creation.
inline std::vector<Row> readRows(Store& store) {
  Query query = store.query("SELECT " + kRowColumns + R"( FROM "日志表" ORDER BY "ID")");
  std::vector<Row> rows;
  while (query.next()) {
    Row row{query.number(0), query.number(1), query.number(2)};
    for (int i = 0; i < kRedsPerTicket; ++i) row.reds[i] = query.number(3 + i);
    int column = 9;
    for (int* field : {&row.blue, &row.mark, &row.shrink, &row.pick, &row.score})
      *field = query.number(column++);
    rows.push_back(row);
  }
  return rows;
}

// Replaces the ticket table.
inline void writeRows(Store& store, const std::vector<Row>& rows) {
  StoreChange change(store);
  store.query(R"(DELETE FROM "日志表")").run();
  Query insert =
      store.query("INSERT INTO \"日志表\" (" + kRowColumns + ") VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?)");
  for (const auto& [id, seq, period, reds, blue, mark, shrink, pick, score] : rows) {
    const auto& [a, b, c, d, e, f] = reds;
    insert.bind(id, seq, period, a, b, c, d, e, f, blue, mark, shrink, pick, score).run();
  }
  change.commit();
}

}  // namespace lotmere::test

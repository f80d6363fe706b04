#include "core/interval_mark.hpp"

namespace lotmere {

void watch_Intervals(SQLite::Database& db) {
  // A temporary trigger belongs to the connection and leaves the file's schema alone.
  db.exec(R"(CREATE TEMP TRIGGER "区间变动" AFTER UPDATE OF "区间1","区间2","区间3","区间4" ON "号码特性"
             WHEN OLD."区间1" IS NOT NEW."区间1" OR OLD."区间2" IS NOT NEW."区间2"
               OR OLD."区间3" IS NOT NEW."区间3" OR OLD."区间4" IS NOT NEW."区间4"
             BEGIN UPDATE "用户模式" SET "区间待统计"=max("区间待统计",1); END)");
}

bool interval_CountsDue(Store& store) {
  return store.value(R"(SELECT "区间待统计" FROM "用户模式" LIMIT 1)") != 0;
}

bool new_FiguresDue(Store& store) {
  return store.value(R"(SELECT "区间待统计" FROM "用户模式" LIMIT 1)") > 1;
}

void clear_IntervalMark(Store& store) { store.query(R"(UPDATE "用户模式" SET "区间待统计"=0)").run(); }

}  // namespace lotmere

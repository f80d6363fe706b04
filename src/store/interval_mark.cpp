#include "store/interval_mark.hpp"

namespace lotmere {

void watchIntervals(SQLite::Database& db) {
  // A temporary trigger belongs to the connection and leaves the file's schema alone.
  db.exec(R"(CREATE TEMP TRIGGER "区间变动" AFTER UPDATE OF "区间1","区间2","区间3","区间4" ON "号码特性"
             WHEN OLD."区间1" IS NOT NEW."区间1" OR OLD."区间2" IS NOT NEW."区间2"
               OR OLD."区间3" IS NOT NEW."区间3" OR OLD."区间4" IS NOT NEW."区间4"
             BEGIN UPDATE "用户模式" SET "区间待统计"=max("区间待统计",1); END)");
}

bool intervalCountsDue(Store& store) {
  return store.value(R"(SELECT "区间待统计" FROM "用户模式" LIMIT 1)") != 0;
}

bool newFiguresDue(Store& store) { return store.value(R"(SELECT "区间待统计" FROM "用户模式" LIMIT 1)") > 1; }

void clearIntervalMark(Store& store) { store.query(R"(UPDATE "用户模式" SET "区间待统计"=0)").run(); }

}  // namespace lotmere

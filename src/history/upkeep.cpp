#include "history/upkeep.hpp"

#include "history/draw_stats.hpp"

namespace lotmere {

void saveDraw(Store& store, Desk& desk, PeriodNo period, Date date, const DrawNumbers& numbers,
              Recalc recalc) {
  const auto& [r1, r2, r3, r4, r5, r6] = numbers.reds;
  StoreChange change(store);
  store
      .query(
          R"(INSERT INTO "历史记录" ("期号","开奖日期","红球1","红球2","红球3","红球4","红球5","红球6","蓝球","已完成")
                VALUES (?,?,?,?,?,?,?,?,?,'Y')
                ON CONFLICT ("期号") DO UPDATE SET "开奖日期"=excluded."开奖日期","红球1"=excluded."红球1",
                "红球2"=excluded."红球2","红球3"=excluded."红球3","红球4"=excluded."红球4","红球5"=excluded."红球5",
                "红球6"=excluded."红球6","蓝球"=excluded."蓝球","已完成"='Y')")
      .bind(period, format_Date(date), r1, r2, r3, r4, r5, r6, numbers.blue)
      .run();
  if (recalc == Recalc::yes) calc_DrawStats(store, desk, period, period);
  change.commit();
}

bool deleteDraw(Store& store, Desk& desk, PeriodNo period) {
  if (store.query(R"(DELETE FROM "历史记录" WHERE "期号"=?)").bind(period).run() == 0) {
    desk.tell("无法完成，历史记录表格中没有该期记录！", Tone::error, "删除失败");
    return false;
  }
  desk.tell("删除完成！");
  return true;
}

}  // namespace lotmere

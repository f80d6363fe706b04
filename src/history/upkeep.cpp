#include "history/upkeep.hpp"

#include <fmt/format.h>

#include <optional>

#include "base/text.hpp"
#include "game/game.hpp"
#include "history/draw_stats.hpp"
#include "store/periods.hpp"

namespace lotmere {
namespace {

// A stored draw as drawInWords() writes it; nothing where none is stored.
std::optional<std::string> storedText(Store& store, std::int64_t number) {
  Query row = store.query(
      R"(SELECT "开奖日期","红球1","红球2","红球3","红球4","红球5","红球6","蓝球" FROM "历史记录" WHERE
         "期号"=?)");
  row.bind(number);
  if (!row.next()) return std::nullopt;
  return drawInWords(row.text(0), readNumbers(row, 1));
}

}  // namespace

void saveDraw(Store& store, Desk& desk, PeriodNo period, Date date, const DrawNumbers& numbers,
              Recalc recalc) {
  const auto& [r1, r2, r3, r4, r5, r6] = numbers.reds;
  StoreChange change(store);
  store
      .query(
          R"(INSERT INTO "历史记录" ("期号","开奖日期","红球1","红球2","红球3","红球4","红球5","红球6","蓝球",
             "已完成")
                VALUES (?,?,?,?,?,?,?,?,?,'Y')
                ON CONFLICT ("期号") DO UPDATE SET "开奖日期"=excluded."开奖日期","红球1"=excluded."红球1",
                "红球2"=excluded."红球2","红球3"=excluded."红球3","红球4"=excluded."红球4",
                "红球5"=excluded."红球5",
                "红球6"=excluded."红球6","蓝球"=excluded."蓝球","已完成"='Y')")
      .bind(period, formatDate(date), r1, r2, r3, r4, r5, r6, numbers.blue)
      .run();
  if (recalc == Recalc::yes) computeDrawStatistics(store, desk, period, period);
  change.commit();
}

std::string drawInWords(std::string_view date, const DrawNumbers& numbers) {
  return fmt::format("{}  {}", date, numbersText(numbers));
}

Outcome enterDraw(Store& store, Desk& desk, PeriodNo period, Date date, const DrawNumbers& numbers) {
  const auto stored = storedText(store, period);
  const std::string entered = drawInWords(formatDate(date), numbers);
  if (stored && *stored != entered) {
    constexpr std::string_view buttons[] = {"替换", "不替换"};
    const std::string question = fmt::format("{1} 期已经有开奖记录，要替换吗？{0}{0}原有：{2}{0}新的：{3}",
                                             kLineBreak, period, *stored, entered);
    if (desk.choose(question, buttons, 1, "添加记录") != 0) return Outcome::refused;
  }
  saveDraw(store, desk, period, date, numbers, Recalc::yes);
  return Outcome::done;
}

Outcome deleteDraw(Store& store, Desk& desk, std::string_view typed, std::string_view done) {
  const auto number = parseWhole(typed);
  if (!number) {
    static_cast<void>(readPeriod(desk, typed));  // tells what a period looks like
    return Outcome::refused;
  }
  const auto draw = storedText(store, *number);
  if (!draw) {
    desk.tell("无法完成，历史记录表格中没有该期记录！", Tone::error, "删除失败");
    return Outcome::refused;
  }
  constexpr std::string_view buttons[] = {"删除", "不删除"};
  const std::string question =
      fmt::format("要删除这一期开奖记录吗？{0}{0}{1} 期  {2}", kLineBreak, *number, *draw);
  if (desk.choose(question, buttons, 1, "删除记录") != 0) return Outcome::refused;
  store.query(R"(DELETE FROM "历史记录" WHERE "期号"=?)").bind(*number).run();
  desk.tell(done);
  return Outcome::done;
}

}  // namespace lotmere

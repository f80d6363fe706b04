#include "tickets/ticket_steps.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "base/text.hpp"
#include "store/row_function.hpp"
#include "tickets/packed_tickets.hpp"

namespace lotmere {
namespace {

// Where a row of `号码步骤` or `运行条件` belongs.
enum Place : int { now, undo, redo };  // as the rows hold it

constexpr std::string_view kActions[] = {"初始化", "过滤缩水", "导入", "删除", "生成"};
constexpr std::string_view kRun = kActions[static_cast<std::size_t>(TicketAction::run)];
constexpr std::size_t kBlock = 4096;  // rows between two looks at the desk

std::string_view nameOf(TicketAction action) { return kActions[static_cast<std::size_t>(action)]; }

// All rows of a period, or of all periods for 0, packed.
std::string packStored(Store& store, PeriodNo period) {
  RowPacker rows;
  RowFunction function(store, "lotmere_row", RowFunction::kMostValues, [&](std::span<const std::int32_t> v) {
    rows.add({v[0],
              v[1],
              v[2],
              {{v[3], v[4], v[5], v[6], v[7], v[8]}, v[9]},
              v[10],
              v[11],
              v[12],
              v[13],
              v[14],
              v[15]});
    return 0;
  });
  function.run(
      R"(SELECT lotmere_row("ID","序号","期号","红球1","红球2","红球3","红球4","红球5","红球6","蓝球",
         "过滤标记","缩水标记","精选标记","临时数据","红球中","蓝球中")
         FROM "日志表" WHERE ?1=0 OR "期号"=?1 ORDER BY "ID")",
      period);
  return rows.finish();
}

void writeRows(Store& store, const std::vector<TicketFields>& rows, CourseLeg& job) {
  Query insert = store.query(
      R"(INSERT INTO "日志表" ("ID","序号","期号","红球1","红球2","红球3","红球4","红球5","红球6","蓝球",
         "过滤标记","缩水标记","精选标记","临时数据","红球中","蓝球中")
         VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?))");
  for (std::size_t at = 0; at < rows.size(); ++at) {
    const auto& [id, seq, period, numbers, mark, shrink, chosen, score, red_hits, blue_hits] = rows[at];
    const auto& [a, b, c, d, e, f] = numbers.reds;
    insert
        .bind(id, seq, period, a, b, c, d, e, f, numbers.blue, mark, shrink, chosen, score, red_hits,
              blue_hits)
        .run();
    if (at % kBlock == 0) job.advance(static_cast<std::int64_t>(at));
  }
}

struct Step {
  std::string action;
  PeriodNo period = 0;  // whose tickets it keeps; 0 for those of all periods
  std::string tickets;
  std::string before_shrink;
};

std::optional<Step> readStep(Store& store, Place place) {
  Query row = store.query(R"(SELECT "动作","期号","号码","缩水前" FROM "号码步骤" WHERE "方向"=?)");
  row.bind(static_cast<int>(place));
  if (!row.next()) return std::nullopt;
  return Step{row.text(0), row.number(1), row.bytes(2), row.bytes(3)};
}

std::optional<std::string> readAction(Store& store, Place place) {
  Query row = store.query(R"(SELECT "动作" FROM "号码步骤" WHERE "方向"=?)");
  row.bind(static_cast<int>(place));
  if (!row.next()) return std::nullopt;
  return row.text(0);
}

void writeStep(Store& store, Place place, const Step& step) {
  Query insert = store.query(
      R"(INSERT OR REPLACE INTO "号码步骤" ("方向","动作","期号","号码","缩水前") VALUES (?,?,?,?,?))");
  SQLite::Statement& row = insert.statement();
  int at = 0;
  row.bind(++at, static_cast<int>(place));
  row.bind(++at, step.action);
  row.bind(++at, step.period);
  for (const std::string* bytes : {&step.tickets, &step.before_shrink})
    row.bind(++at, bytes->data(), static_cast<int>(bytes->size()));
  insert.run();
}

// Moves what sets the runs had from one place to another, which loses its own.
void moveRunSettings(Store& store, Place from, Place to) {
  store.query(R"(DELETE FROM "运行条件" WHERE "方向"=?)").bind(static_cast<int>(to)).run();
  store.query(R"(UPDATE "运行条件" SET "方向"=? WHERE "方向"=?)")
      .bind(static_cast<int>(to), static_cast<int>(from))
      .run();
}

// Makes room for the step of a new action.
void beginStep(Store& store) {
  store.query(R"(DELETE FROM "号码步骤" WHERE "方向"=?)").bind(static_cast<int>(redo)).run();
  store.query(R"(DELETE FROM "运行条件" WHERE "方向"=?)").bind(static_cast<int>(redo)).run();
}

void deleteTickets(Store& store, PeriodNo period) {
  store.query(R"(DELETE FROM "日志表" WHERE ?1=0 OR "期号"=?1)").bind(period).run();
}

Outcome makeStep(Store& store, Desk& desk, Place place) {
  const bool back = place == undo;
  StoreChange change(store);
  const auto step = readStep(store, place);
  const auto rows = step ? unpackRows(step->tickets) : std::nullopt;
  if (!rows) {
    desk.tell(back ? "没有可以撤销的号码操作。" : "没有可以重做的号码操作。", Tone::warning);
    return Outcome::refused;
  }
  CourseLeg job(desk.course(), static_cast<std::int64_t>(rows->size()), Course::Stop::impossible);
  const Place other = back ? redo : undo;
  // The bits belong to the tickets that the run began with, in either direction.
  writeStep(store, other, {step->action, step->period, packStored(store, step->period), step->before_shrink});
  deleteTickets(store, step->period);
  writeRows(store, *rows, job);
  store.query(R"(DELETE FROM "号码步骤" WHERE "方向"=?)").bind(static_cast<int>(place)).run();
  moveRunSettings(store, now, other);
  moveRunSettings(store, place, now);
  change.commit();
  desk.tell(fmt::format("已{}[{}]，表格中现有 {} 注。", back ? "撤销" : "重做", step->action,
                        toFullWidth(store.value(R"(SELECT count(*) FROM "日志表")"))));
  return Outcome::done;
}

}  // namespace

void keepTickets(Store& store, TicketAction action) {
  beginStep(store);
  writeStep(store, undo, {std::string(nameOf(action)), 0, packStored(store, 0), {}});
  moveRunSettings(store, now, undo);
}

BeforeRun::BeforeRun(Store& store, const TicketSet& tickets)
    : period_(tickets.period), rows_(tickets.size()) {
  // Numbers outside their range aren't in the set; then the rows tell.
  const bool plain = std::ranges::all_of(tickets.balls, [](Balls balls) {
    const Reds reds = redsOf(balls);
    return blueOf(balls) != 0 && std::ranges::find(reds, 0) == reds.end();
  });
  if (!plain) {
    packed_ = packStored(store, period_);
    return;
  }
  const TicketSet::Stored& stored = tickets.stored;
  RowPacker rows;
  for (std::size_t row = 0; row < rows_; ++row)
    rows.add({stored.id[row],
              stored.seq[row],
              period_,
              {redsOf(tickets.balls[row]), blueOf(tickets.balls[row])},
              stored.mark[row],
              stored.shrink[row],
              stored.chosen[row],
              stored.score[row],
              stored.red_hits[row],
              stored.blue_hits[row]});
  packed_ = rows.finish();
}

void BeforeRun::markBeforeShrink(const TicketSet& tickets) {
  ColumnPacker bits;
  std::size_t at = 0;
  for (std::size_t row = 0; row < rows_; ++row) {
    const bool stands = at < tickets.size() && tickets.origin[at] == row;
    at += stands ? 1 : 0;
    bits.add(stands ? 1 : 0);
  }
  before_shrink_ = bits.finish();
}

void BeforeRun::keep(Store& store, const std::string& set_name, const std::string& set_text) const {
  beginStep(store);
  writeStep(store, undo, {std::string(kRun), period_, packed_, before_shrink_});
  store.query(R"(DELETE FROM "运行条件" WHERE "方向"=?)").bind(static_cast<int>(undo)).run();
  store
      .query(R"(INSERT INTO "运行条件" ("方向","期号","方案","内容")
                SELECT ?,"期号","方案","内容" FROM "运行条件" WHERE "方向"=?)")
      .bind(static_cast<int>(undo), static_cast<int>(now))
      .run();
  saveRunSettings(store, period_, {set_name, set_text});
}

std::optional<RunOrigin> loadRunOrigin(Store& store, PeriodNo period) {
  const auto step = readStep(store, undo);
  if (!step || step->action != kRun || step->period != period) return std::nullopt;
  const auto rows = unpackRows(step->tickets);
  if (!rows) return std::nullopt;
  RunOrigin origin;
  for (const TicketFields& row : *rows)
    origin.tickets.push_back(packBalls(row.numbers.reds, row.numbers.blue));
  std::string_view bits = step->before_shrink;
  const auto stood = unpackColumn(bits, rows->size());
  if (!stood) return std::nullopt;
  for (const std::int64_t bit : *stood) origin.before_shrink.push_back(bit != 0);
  return origin;
}

std::optional<RunSettings> loadRunSettings(Store& store, PeriodNo period) {
  Query row = store.query(R"(SELECT "方案","内容" FROM "运行条件" WHERE "方向"=? AND "期号"=?)");
  row.bind(static_cast<int>(now), period);
  if (!row.next()) return std::nullopt;
  return RunSettings{row.text(0), row.text(1)};
}

std::vector<PeriodNo> runPeriods(Store& store) {
  Query rows = store.query(R"(SELECT "期号" FROM "运行条件" WHERE "方向"=? ORDER BY "期号")");
  rows.bind(static_cast<int>(now));
  std::vector<PeriodNo> periods;
  while (rows.next()) periods.push_back(rows.number(0));
  return periods;
}

void saveRunSettings(Store& store, PeriodNo period, const RunSettings& settings) {
  store.query(R"(INSERT OR REPLACE INTO "运行条件" ("方向","期号","方案","内容") VALUES (?,?,?,?))")
      .bind(static_cast<int>(now), period, settings.name, settings.text)
      .run();
}

NextTicketSteps nextTicketSteps(Store& store) { return {readAction(store, undo), readAction(store, redo)}; }

Outcome undoTickets(Store& store, Desk& desk) { return makeStep(store, desk, undo); }

Outcome redoTickets(Store& store, Desk& desk) { return makeStep(store, desk, redo); }

}  // namespace lotmere

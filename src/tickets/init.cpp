#include "tickets/init.hpp"

#include <fmt/format.h>

#include <optional>

#include "base/text.hpp"
#include "conditions/condition_store.hpp"
#include "tickets/ticket_steps.hpp"

namespace lotmere {
namespace {

constexpr std::int64_t kBlock = 512;  // rows between two looks at the desk, some milliseconds of inserts

// Writes the tickets one behind the other; `done` gets the rows written so far and answers whether to stop.
template <class Done>
std::int64_t writeTickets(Store& store, const NumberSelection& selection, PeriodNo period, std::int64_t id,
                          Done&& done) {
  Query insert = store.query(
      R"(INSERT INTO "日志表" ("ID","序号","期号","红球1","红球2","红球3","红球4","红球5","红球6","蓝球")
         VALUES (?,?,?,?,?,?,?,?,?,?))");
  std::int64_t seq = 0;
  SQLite::Statement& row = insert.statement();
  row.bind(3, period);
  expandSelection(selection, [&](const Reds& six, const std::vector<int>& blues) {
    for (int i = 0; i < kRedsPerTicket; ++i) row.bind(4 + i, six[i]);
    for (const int blue : blues) {
      row.bind(1, ++id);
      row.bind(2, ++seq);
      row.bind(4 + kRedsPerTicket, blue);
      row.exec();
      row.reset();
      if (seq % kBlock == 0 && done(seq)) return false;
    }
    return true;
  });
  return seq;
}

}  // namespace

std::optional<Existing> settleExisting(Store& store, Desk& desk, PeriodNo period, Existing existing) {
  if (existing != Existing::ask || countTickets(store, period) == 0) return existing;
  constexpr std::string_view buttons[] = {"删除", "保留", "取消"};
  constexpr std::optional<Existing> meanings[] = {Existing::replace, Existing::keep, std::nullopt};
  return meanings[desk.choose("该期数已有记录存在日志表中!要删除它吗？", buttons, 2, "信息提示")];
}

std::int64_t makeRoom(Store& store, PeriodNo period, Existing settled) {
  store.query(R"(DELETE FROM "日志表" WHERE "期号"<>?)").bind(period).run();
  const std::int64_t last_id = store.value(R"(SELECT max("ID") FROM "日志表")");
  if (settled != Existing::keep) store.query(R"(DELETE FROM "日志表" WHERE "期号"=?)").bind(period).run();
  return last_id;
}

InitResult initTickets(Store& store, Desk& desk, PeriodNo period, Existing existing) {
  InitResult result;
  if (period < 1) return result;
  const NumberSelection selection = selectionOf(loadConditionSet(store));
  if (!checkSelection(selection, desk, Tell::yes)) return result;
  const auto settled = settleExisting(store, desk, period, existing);
  if (!settled) return result;

  const StopScope stop(desk.course());
  StoreChange change(store);
  keepTickets(store, TicketAction::init);
  const std::int64_t last_id = makeRoom(store, period, *settled);
  const auto kept = static_cast<std::int64_t>(countTickets(store, period));
  {
    CourseLeg job(desk.course(), countCombos(selection).tickets, Course::Stop::possible);
    result.rows = kept + writeTickets(store, selection, period, last_id,
                                      [&](std::int64_t written) { return job.advance(kept + written); });
  }
  change.commit();

  result.outcome = desk.course().stopRequested() ? Outcome::stopped : Outcome::done;
  if (result.outcome != Outcome::done) return result;
  const std::string text = fmt::format("初始化选号完成!共 {} 注！", toFullWidth(result.rows));
  desk.tell(text);
  desk.runningText().set(fmt::format("{0}{1}{0}{0}", kLineBreak, text));
  return result;
}

}  // namespace lotmere

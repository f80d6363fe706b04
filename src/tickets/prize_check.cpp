#include "tickets/prize_check.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "base/text.hpp"
#include "store/periods.hpp"
#include "store/row_function.hpp"

namespace lotmere {
namespace {

constexpr std::int64_t kBlock = 2048;  // rows between two looks at the desk, a few milliseconds
constexpr std::array<const char*, kPrizeTiers> kLabels = {"一等奖： ", "二等奖： ", "三等奖： ",
                                                          "四等奖： ", "五等奖： ", "六等奖： "};

std::string refusalText(PeriodNo period) {
  if (period < 1) return "没有要核对的号码！请先选号！";
  return fmt::format("当前表格或历史开奖数据中没有第{0}期的数据！{1}{1}{2:10}无法核对哦^_^！！",
                     toFullWidth(period), kLineBreak, "");
}

// Adds every ticket to its tier; nothing is written yet.
void tallyTickets(Store& store, PeriodNo period, Balls draw, CourseLeg& job, CheckResult& result) {
  Query rows = store.query(
      R"(SELECT "红球1","红球2","红球3","红球4","红球5","红球6","蓝球" FROM "日志表" WHERE "期号"=?)");
  rows.bind(period);
  for (std::int64_t read = 1; rows.next(); ++read) {
    Reds reds{};
    for (int i = 0; i < kRedsPerTicket; ++i) reds[i] = rows.number(i);
    const Hits hits = countHits(packBalls(reds, rows.number(kRedsPerTicket)), draw);
    const int tier = prizeTier(hits);
    if (tier > 0) ++result.tally.at(static_cast<std::size_t>(tier) - 1);
    result.max_hit = std::max(result.max_hit, hits.reds + hits.blue);
    if (read % kBlock == 0) job.advance(0);
  }
}

void writeHits(Store& store, PeriodNo period, Balls draw, CourseLeg& job) {
  std::int64_t written = 0;
  RowFunction function(store, "lotmere_hits", kRedsPerTicket, [&](std::span<const std::int32_t> values) {
    if (++written % kBlock == 0) job.advance(written);
    Reds reds{};
    std::copy(values.begin(), values.end(), reds.begin());
    return countHits(packBalls(reds, 0), draw).reds;
  });
  function.run(R"(UPDATE "日志表" SET "蓝球中"=("蓝球"=?1 AND ?1>0),
                  "红球中"=lotmere_hits("红球1","红球2","红球3","红球4","红球5","红球6") WHERE "期号"=?2)",
               blueOf(draw), period);
}

}  // namespace

Hits countHits(Balls ticket, Balls draw) {
  Hits hits;
  const std::uint64_t drawn = redMask(draw);
  for (const int red : redsOf(ticket)) hits.reds += static_cast<int>(drawn >> red & 1);
  hits.blue = blueOf(ticket) > 0 && blueOf(ticket) == blueOf(draw) ? 1 : 0;
  return hits;
}

std::string tallyText(const CheckResult& result) {
  std::string text = fmt::format("开奖核对结果如下——{0}{0}", kLineBreak);
  for (std::size_t tier = 0; tier < kPrizeTiers; ++tier)
    text += fmt::format("{0}{1} 注{2}{2}", kLabels.at(tier), toFullWidth(result.tally.at(tier)), kLineBreak);
  return text;
}

std::string moneyText(const CheckResult& result) {
  return fmt::format(
      "共 {} 注，成本 {} 元；三等奖至六等奖的奖金共 {} 元，一、二等奖的奖金浮动，没有计算在内。",
      toFullWidth(result.tickets), toFullWidth(result.tickets * kTicketPrice),
      toFullWidth(fixedWinnings(result.tally)));
}

CheckResult checkPrizes(Store& store, Desk& desk, PeriodNo period) {
  CheckResult result;
  const auto draw = findDraw(store, period);
  const std::size_t tickets = draw ? countTickets(store, period) : 0;
  if (tickets == 0) {
    result.refusal = refusalText(period);
    return result;
  }
  result.tickets = static_cast<std::int64_t>(tickets);
  const Balls numbers = packBalls(draw->numbers.reds, draw->numbers.blue);
  StoreChange change(store);
  {
    CourseLeg job(desk.course(), static_cast<std::int64_t>(tickets), Course::Stop::impossible);
    tallyTickets(store, period, numbers, job, result);
    writeHits(store, period, numbers, job);
  }
  change.commit();
  result.outcome = Outcome::done;
  desk.runningText().appendLine(tallyText(result));
  return result;
}

CheckResult checkCommand(Store& store, Desk& desk, PeriodNo period) {
  CheckResult result = checkPrizes(store, desk, period);
  if (result.outcome != Outcome::done)
    desk.tell(result.refusal, Tone::information, "出错啦!");
  else if (result.max_hit != 0)
    desk.tell("开奖核对完成,结果请查看右边的操作提示！");
  return result;
}

}  // namespace lotmere

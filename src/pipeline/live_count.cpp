#include "pipeline/live_count.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "core/desk.hpp"
#include "core/periods.hpp"
#include "core/text.hpp"
#include "pipeline/run.hpp"
#include "tickets/init.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kBlock = 4096;
constexpr std::size_t kGatherBlock = 128 * kBlock;  // some milliseconds

// Nobody sits here: what the passes say is lost, and a count that is dropped stops as a run does.
class SilentDesk final : public Desk {
 public:
  explicit SilentDesk(const LiveCount::Dropped& dropped) : dropped_(dropped) {}

  void tell(std::string_view /*text*/, Tone /*tone*/, std::string_view /*title*/) override {}
  bool ask(std::string_view /*text*/, std::string_view /*title*/) override { return false; }
  std::size_t choose(std::string_view /*text*/, std::span<const std::string_view> /*buttons*/,
                     std::size_t cancel, std::string_view /*title*/) override {
    return cancel;
  }
  std::optional<std::string> ask_Text(std::string_view /*prompt*/, std::string_view /*title*/,
                                      std::string_view /*proposed*/) override {
    return std::nullopt;
  }
  void show_Tip(std::string_view /*text*/, std::string_view /*title*/) override {}
  void serve() override {
    if (dropped_ && !stop_Requested() && dropped_()) request_Stop();
  }

 private:
  const LiveCount::Dropped& dropped_;
};

}  // namespace

std::optional<PeriodNo> LiveCount::first_Period(const Dropped& dropped) {
  Query rows = store_.query(R"(SELECT "期号" FROM "日志表")");
  PeriodNo first = 0;
  for (std::size_t row = 0; rows.next(); ++row) {
    if (row % kBlock == kBlock - 1 && dropped && dropped()) return std::nullopt;
    first = row == 0 ? rows.number(0) : std::min(first, rows.number(0));
  }
  return first;
}

bool LiveCount::hold_Table(const Dropped& dropped) {
  held_ = Held::nothing;
  tickets_ = {};
  const auto period = first_Period(dropped);
  if (!period) return false;
  auto tickets = load_Tickets(store_, *period, [&](std::size_t) { return dropped && dropped(); });
  if (!tickets) return false;
  if (dropped && dropped()) return false;
  tickets->stored = {};  // nothing is written back
  if (tickets->size() == 0) return true;
  tickets_ = std::move(*tickets);
  held_ = Held::table;
  return true;
}

void LiveCount::hold_Selection(const NumberSelection& selection) {
  if (held_ == Held::selection && selection_ == selection) return;
  tickets_.truncate(0);
  expand_Selection(selection, [&](const Reds& six, const std::vector<int>& blues) {
    for (const int blue : blues) tickets_.add(pack_Balls(six, blue));
    return true;
  });
  selection_ = selection;
  held_ = Held::selection;
}

bool LiveCount::copy_Tickets(const Dropped& dropped) {
  left_.period = tickets_.period;
  const auto copy = [&](auto column) {
    left_.*column = tickets_.*column;
    return !dropped || !dropped();
  };
  return copy(&TicketSet::balls) && copy(&TicketSet::origin) && copy(&TicketSet::seq) &&
         copy(&TicketSet::mark) && copy(&TicketSet::shrink) && copy(&TicketSet::score);
}

bool LiveCount::gather_Groups(const Dropped& dropped) {
  groups_.truncate(0);
  groups_.period = left_.period;
  group_rows_.clear();
  Balls six = ~Balls{0};
  for (std::size_t row = 0; row < left_.size(); ++row) {
    if (row % kGatherBlock == kGatherBlock - 1 && dropped && dropped()) return false;
    if ((left_.balls[row] & kRedBytes) == six) continue;
    six = left_.balls[row] & kRedBytes;
    groups_.add(six);
    groups_.mark.back() = left_.mark[row];
    group_rows_.push_back(row);
  }
  group_rows_.push_back(left_.size());
  return true;
}

void LiveCount::keep_Groups() {
  std::size_t kept = 0;
  for (const std::uint32_t group : groups_.origin)
    for (std::size_t row = group_rows_[group]; row < group_rows_[group + 1]; ++row)
      left_.move_Row(row, kept++);
  left_.truncate(kept);
}

std::optional<LiveCount::Result> LiveCount::count(PeriodNo next_period, const Dropped& dropped) {
  if (held_ == Held::nothing && !hold_Table(dropped)) return std::nullopt;
  Result result;
  if (held_ != Held::table) {
    const NumberSelection selection = load_Selection(store_);
    result.period = next_period;
    result.from_selection = true;
    result.tickets = count_Combos(selection).tickets;
    result.too_many = result.tickets > kMaxTickets;
    if (result.too_many) return result;
    hold_Selection(selection);
    tickets_.period = next_period;
  }
  result.period = tickets_.period;
  result.tickets = static_cast<std::int64_t>(tickets_.size());

  SilentDesk desk(dropped);
  if (!copy_Tickets(dropped)) return std::nullopt;
  PipelineRun rows{store_, desk, left_, left_.period};
  PipelineRun groups{store_, desk, groups_, left_.period};
  const CombinationTurns turns = load_Combinations(store_, periodsBack(store_, left_.period, 1));
  const auto run_Kinds = [&](PipelineRun& run, auto&& wanted) {
    for (const PassStep& step : pass_Order())
      if (wanted(step.kind) && !desk.stop_Requested()) run_Step(run, step, turns);
  };
  // Which tickets the passes leave doesn't depend on their order, but for a mark above 0 behind the first
  // that ran, which the combinations count down from. So those that look at the blue can go first and last.
  run_Kinds(rows, [](PassKind kind) { return kind == PassKind::positions; });
  if (!gather_Groups(dropped)) return std::nullopt;
  run_Kinds(groups, [](PassKind kind) { return kind != PassKind::positions && kind != PassKind::reduction; });
  keep_Groups();
  run_Kinds(rows, [](PassKind kind) { return kind == PassKind::reduction; });
  if (desk.stop_Requested()) return std::nullopt;
  result.survivors = static_cast<std::int64_t>(left_.size());
  return result;
}

std::string live_Text(const LiveCount::Result& result) {
  if (result.too_many)
    return fmt::format("已选的号码超过 {} 注，不能计算余下的注数。", to_QuanJiao(kMaxTickets));
  if (result.tickets == 0) return "还没有投注号，也没有选好号码。";
  return fmt::format(
      "{} {} 注，按当前条件过滤缩水后余 {} 注。",
      result.from_selection ? "已选号码展开共" : fmt::format("表格中第 {} 期共", to_QuanJiao(result.period)),
      to_QuanJiao(result.tickets), to_QuanJiao(result.survivors));
}

}  // namespace lotmere

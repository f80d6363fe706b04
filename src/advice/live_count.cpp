#include "advice/live_count.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <bit>
#include <numeric>
#include <utility>

#include "base/text.hpp"
#include "pipeline/judge_block.hpp"
#include "reduction/cover.hpp"
#include "tickets/init.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kBlock = kJudgeBlock;

// The lowest period of the table, found row by row so that a large table is looked at in pieces. Nothing when
// it was dropped.
std::optional<PeriodNo> firstPeriod(Store& store, const Dropped& dropped) {
  Query rows = store.query(R"(SELECT "期号" FROM "日志表")");
  PeriodNo first = 0;
  for (std::size_t row = 0; rows.next(); ++row) {
    if (row % kBlock == kBlock - 1 && dropped && dropped()) return std::nullopt;
    first = row == 0 ? rows.number(0) : std::min(first, rows.number(0));
  }
  return first;
}

}  // namespace

LiveTickets::LiveTickets(PeriodNo period, std::vector<Balls> tickets)
    : period_(period), tickets_(std::move(tickets)) {
  if (!std::ranges::all_of(tickets_, isRegular)) repeats_ = OverlapMarks::Repeats::yes;
  Balls six = ~Balls{0};
  for (std::size_t row = 0; row < tickets_.size(); ++row) {
    if ((tickets_[row] & kRedBytes) == six) continue;
    six = tickets_[row] & kRedBytes;
    sixes_.push_back(six);
    first_row_.push_back(static_cast<std::uint32_t>(row));
  }
  first_row_.push_back(static_cast<std::uint32_t>(tickets_.size()));
}

std::shared_ptr<const LiveTickets> loadLiveTickets(Store& store, const Dropped& dropped) {
  const auto period = firstPeriod(store, dropped);
  if (!period) return nullptr;
  auto tickets = loadTickets(store, *period, [&](std::size_t) { return dropped && dropped(); });
  if (!tickets || (dropped && dropped())) return nullptr;
  return std::make_shared<LiveTickets>(*period, std::move(tickets->balls));
}

// Which tickets the steps leave doesn't depend on their order, so the sixes go through those that look at the
// reds alone, block by block, and the tickets of what is left through the places and the cover.
std::optional<std::int64_t> LiveTickets::countLeft(const FilterPlan& plan, Course& course) const {
  const FilterRules& rules = plan.rules();
  const auto steps = filterSteps();
  std::size_t places = steps.size();
  std::vector<std::size_t> by_reds;
  for (std::size_t step = 0; step < steps.size(); ++step) {
    if (!plan.runs(step)) continue;
    if (steps[step].kind == StepKind::places)
      places = step;
    else
      by_reds.push_back(step);
  }
  std::optional<Cover> cover;
  if (rules.shrink_type < kLargestShrink) cover.emplace(rules.shrink_type, repeats_);

  CourseLeg leg(course, static_cast<std::int64_t>(tickets_.size()), Course::Stop::possible);
  std::int64_t left = 0;
  std::uint32_t blues = 0, kept_blues = 0;
  const auto keep = [&](Balls ticket) {
    const std::uint32_t blue = 1U << blueOf(ticket);
    blues |= blue;
    if (cover && !cover->take(ticket)) return;
    ++left;
    kept_blues |= blue;
  };
  // The search for fewer tickets keeps every blue, where the plain cover may lose one; bit 0 is no blue.
  const auto total = [&] {
    return cover && rules.effort > 0 ? left + std::popcount(blues & ~kept_blues & ~1U) : left;
  };
  if (rules.tolerance > 0) {
    for (std::size_t begin = 0; begin < tickets_.size(); begin += kBlock) {
      const auto block = std::span(tickets_).subspan(begin, std::min(kBlock, tickets_.size() - begin));
      std::array<std::uint8_t, kBlock> failed{}, rejected{};
      for (std::size_t step = 0; step < steps.size(); ++step)
        if (plan.runs(step))
          addFailures(plan, step, block, step == matchStep() ? rejected.data() : failed.data());
      for (std::size_t row = 0; row < block.size(); ++row)
        if (rejected[row] == 0 && failed[row] <= rules.tolerance) keep(block[row]);
      if (leg.advance(static_cast<std::int64_t>(begin + block.size()))) return std::nullopt;
    }
    return total();
  }
  std::vector<std::uint32_t> groups;
  for (std::size_t begin = 0; begin < sixes_.size(); begin += kBlock) {
    groups.resize(std::min(kBlock, sixes_.size() - begin));
    std::iota(groups.begin(), groups.end(), static_cast<std::uint32_t>(begin));
    for (const std::size_t step : by_reds)
      plan.withTest(step, [&](auto test) {
        std::erase_if(groups, [&](std::uint32_t group) { return !test(sixes_[group]); });
      });
    std::size_t looked_at = 0;
    for (const std::uint32_t group : groups) {
      for (std::size_t row = first_row_[group]; row < first_row_[group + 1]; ++row) {
        if (places < steps.size() && rules.places.countWrong(tickets_[row]) > rules.places.tolerance)
          continue;
        keep(tickets_[row]);
        if (++looked_at % kBlock == 0 && leg.advance(first_row_[group])) return std::nullopt;
      }
    }
    if (leg.advance(first_row_[std::min(begin + kBlock, sixes_.size())])) return std::nullopt;
  }
  return total();
}

const LiveTickets& LiveCount::expanded(const NumberSelection& selection, PeriodNo period) {
  if (selection_ != selection || expanded_.period() != period) {
    std::vector<Balls> tickets;
    expandSelection(selection, [&](const Reds& six, const std::vector<int>& blues) {
      for (const int blue : blues) tickets.push_back(packBalls(six, blue));
      return true;
    });
    expanded_ = LiveTickets(period, std::move(tickets));
    selection_ = selection;
  }
  return expanded_;
}

std::optional<LiveCount::Result> LiveCount::count(const Question& question, Course& course) {
  Result result;
  const LiveTickets* tickets = question.table.get();
  if (tickets->size() == 0) {
    const NumberSelection selection = selectionOf(question.set);
    result.period = question.next_period;
    result.from_selection = true;
    result.tickets = countCombos(selection).tickets;
    result.too_many = result.tickets > kMaxTickets;
    if (result.too_many) return result;
    tickets = &expanded(selection, question.next_period);
  }
  result.period = tickets->period();
  result.tickets = tickets->size();
  const FilterPlan plan(compileRules(question.set), question.draws, result.period);
  result.at_most = plan.rules().effort > 0 && plan.rules().shrink_type < kLargestShrink;
  const auto left = tickets->countLeft(plan, course);
  if (!left) return std::nullopt;
  result.survivors = *left;
  return result;
}

std::string liveText(const LiveCount::Result& result) {
  if (result.too_many)
    return fmt::format("已选的号码超过 {} 注，不能计算余下的注数。", toFullWidth(kMaxTickets));
  if (result.tickets == 0) return "还没有投注号，也没有选好号码。";
  return fmt::format(
      "{} {} 注，按当前条件过滤缩水后{}余 {} 注。",
      result.from_selection ? "已选号码展开共" : fmt::format("表格中第 {} 期共", toFullWidth(result.period)),
      toFullWidth(result.tickets), result.at_most ? "最多" : "", toFullWidth(result.survivors));
}

}  // namespace lotmere

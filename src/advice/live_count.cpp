#include "advice/live_count.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

#include "base/text.hpp"
#include "pipeline/funnel_rows.hpp"
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

template <class Keep>
bool LiveTickets::walkTolerant(const FilterPlan& plan, Left& left, CourseLeg& leg, Keep&& keep) const {
  const std::size_t steps = filterSteps().size();
  std::vector<std::int64_t> failing(steps);
  for (std::size_t begin = 0; begin < tickets_.size(); begin += kBlock) {
    const auto block = std::span(tickets_).subspan(begin, std::min(kBlock, tickets_.size() - begin));
    std::array<std::uint8_t, kBlock> failed{}, rejected{};
    for (std::size_t step = 0; step < steps; ++step)
      if (plan.runs(step))
        failing[step] +=
            addFailures(plan, step, block, step == matchStep() ? rejected.data() : failed.data());
    for (std::size_t row = 0; row < block.size(); ++row)
      if (rejected[row] == 0 && failed[row] <= plan.rules().tolerance) keep(block[row]);
    if (leg.advance(static_cast<std::int64_t>(begin + block.size()))) return false;
  }
  for (std::size_t step = 0; step < steps; ++step)
    if (plan.isOn(step))
      left.funnel.push_back({filterSteps()[step].plainName(), size(), size() - failing[step]});
  left.funnel.push_back({toleranceRowName(plan), size(), left.filtered});
  return true;
}

// Block by block, each in the order of the steps. A group of equal sixes goes through the steps that look at
// the reds alone once, with the number of its tickets that are left; only the places look at its tickets.
template <class Keep>
bool LiveTickets::walkSteps(const FilterPlan& plan, Left& left, CourseLeg& leg, Keep&& keep) const {
  struct Group {
    std::uint32_t number;
    std::uint32_t tickets;  // of it, that are left
  };
  const auto steps = filterSteps();
  const PlaceTest& places = plan.rules().places;
  const auto at_place = [&](Balls ticket) { return places.countWrong(ticket) <= places.tolerance; };
  std::vector<std::int64_t> behind(steps.size());
  std::vector<Group> groups;
  for (std::size_t begin = 0; begin < sixes_.size(); begin += kBlock) {
    groups.resize(std::min(kBlock, sixes_.size() - begin));
    for (std::size_t i = 0; i < groups.size(); ++i)
      groups[i] = {static_cast<std::uint32_t>(begin + i), first_row_[begin + i + 1] - first_row_[begin + i]};
    bool placed = false;
    for (std::size_t step = 0; step < steps.size(); ++step) {
      if (!plan.isOn(step)) continue;
      if (plan.runs(step) && steps[step].kind == StepKind::places) {
        placed = true;
        for (Group& group : groups)
          group.tickets = static_cast<std::uint32_t>(
              std::count_if(tickets_.begin() + first_row_[group.number],
                            tickets_.begin() + first_row_[group.number + 1], at_place));
        std::erase_if(groups, [](const Group& group) { return group.tickets == 0; });
      } else if (plan.runs(step)) {
        plan.withTest(step, [&](auto test) {
          std::erase_if(groups, [&](const Group& group) { return !test(sixes_[group.number]); });
        });
      }
      for (const Group& group : groups) behind[step] += group.tickets;
    }
    std::size_t looked_at = 0;
    for (const Group& group : groups) {
      for (std::size_t row = first_row_[group.number]; row < first_row_[group.number + 1]; ++row) {
        if (placed && !at_place(tickets_[row])) continue;
        keep(tickets_[row]);
        if (++looked_at % kBlock == 0 && leg.advance(first_row_[group.number])) return false;
      }
    }
    if (leg.advance(first_row_[std::min(begin + kBlock, sixes_.size())])) return false;
  }
  std::int64_t before = size();
  for (std::size_t step = 0; step < steps.size(); ++step)
    if (plan.isOn(step)) {
      left.funnel.push_back({steps[step].plainName(), before, behind[step]});
      before = behind[step];
    }
  return true;
}

std::optional<LiveTickets::Left> LiveTickets::countLeft(const FilterPlan& plan, Course& course) const {
  const FilterRules& rules = plan.rules();
  std::optional<Cover> cover;
  if (rules.shrink_type < kLargestShrink) cover.emplace(rules.shrink_type, repeats_);
  CourseLeg leg(course, size(), Course::Stop::possible);
  Left left;
  std::uint32_t blues = 0, kept_blues = 0;
  const auto keep = [&](Balls ticket) {
    ++left.filtered;
    const std::uint32_t blue = 1U << blueOf(ticket);
    blues |= blue;
    if (cover && !cover->take(ticket)) return;
    ++left.left;
    kept_blues |= blue;
  };
  const bool whole =
      rules.tolerance > 0 ? walkTolerant(plan, left, leg, keep) : walkSteps(plan, left, leg, keep);
  if (!whole) return std::nullopt;
  // The search for fewer tickets keeps every blue, where the plain cover may lose one; bit 0 is no blue.
  if (cover && rules.effort > 0) left.left += std::popcount(blues & ~kept_blues & ~1U);
  return left;
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
  auto left = tickets->countLeft(plan, course);
  if (!left) return std::nullopt;
  result.survivors = left->left;
  result.filtered = left->filtered;
  result.funnel = std::move(left->funnel);
  result.shrink = shrinkCaption(plan.rules().shrink_type);
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

#include "pipeline/live_count.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <vector>

#include "conditions/condition_set.hpp"
#include "core/course.hpp"
#include "core/draw_table.hpp"
#include "core/text.hpp"
#include "pipeline/plan.hpp"
#include "reduction/cover.hpp"
#include "tickets/init.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kBlock = 8192;

// A count is dropped where a run is stopped.
class DroppableCourse final : public Course {
 public:
  explicit DroppableCourse(const LiveCount::Dropped& dropped) : dropped_(dropped) {}

  void begin(std::int64_t /*total*/, Stop /*stop*/) override {}
  bool advance(std::int64_t /*done*/) override {
    stop_ = stop_ || (dropped_ && dropped_());
    return stop_;
  }
  void end() override {}
  [[nodiscard]] bool stopRequested() const override { return stop_; }

 private:
  const LiveCount::Dropped& dropped_;
  bool stop_ = false;
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
  gather_Groups();
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
  gather_Groups();
  selection_ = selection;
  held_ = Held::selection;
}

void LiveCount::gather_Groups() {
  sixes_.clear();
  first_row_.clear();
  Balls six = ~Balls{0};
  for (std::size_t row = 0; row < tickets_.size(); ++row) {
    if ((tickets_.balls[row] & kRedBytes) == six) continue;
    six = tickets_.balls[row] & kRedBytes;
    sixes_.push_back(six);
    first_row_.push_back(static_cast<std::uint32_t>(row));
  }
  first_row_.push_back(static_cast<std::uint32_t>(tickets_.size()));
}

// Which tickets the steps leave doesn't depend on their order, so the sixes go through those that look at the reds
// alone, block by block, and the tickets of what is left through the places and the cover.
std::optional<std::int64_t> LiveCount::countLeft(const FilterPlan& plan, Course& course) const {
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
  if (rules.shrink_type < kLargestShrink) cover.emplace(rules.shrink_type);

  CourseLeg leg(course, static_cast<std::int64_t>(tickets_.size()), Course::Stop::possible);
  std::int64_t left = 0;
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
        if (places < steps.size() && rules.places.countWrong(tickets_.balls[row]) > rules.places.tolerance)
          continue;
        if (!cover || cover->take(tickets_.balls[row])) ++left;
        if (++looked_at % kBlock == 0 && leg.advance(first_row_[group])) return std::nullopt;
      }
    }
    if (leg.advance(first_row_[std::min(begin + kBlock, sixes_.size())])) return std::nullopt;
  }
  return left;
}

std::optional<LiveCount::Result> LiveCount::count(PeriodNo next_period, const Dropped& dropped) {
  DroppableCourse course(dropped);
  if (held_ == Held::nothing && !hold_Table(dropped)) return std::nullopt;
  const ConditionSet set = loadConditionSet(store_);
  const DrawTable draws = loadDrawTable(store_);
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
  const auto left = countLeft(FilterPlan(compileRules(set), draws, tickets_.period), course);
  if (!left) return std::nullopt;
  result.survivors = *left;
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

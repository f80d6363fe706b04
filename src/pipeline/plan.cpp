#include "pipeline/plan.hpp"

#include <algorithm>

#include "catalogue/catalogue.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kSmartDraws = 10;

PlaceTest compilePlaces(const ConditionSet& set) {
  PlaceTest places;
  places.tolerance = set.cells.value(kToleranceCell);
  for (int p = 0; p < kPlaceCount; ++p) {
    if (!set.isUsed(usageOfPlace(p + 1))) continue;
    ++places.used;
    const Members allowed = set.column(AttributeTable::first, placeColumn(p + 1));
    for (int n = 0; n <= kRedCount; ++n) places.wrong[p][n] = !holds(allowed, n);
  }
  return places;
}

bool isSwitchedOn(const ConditionSet& set, const FilterRules& rules, const FilterStep& step) {
  switch (step.kind) {
    case StepKind::places:
      return rules.places.used > 0;
    case StepKind::match:
      return set.match.used;
    case StepKind::combinations:
      return std::ranges::any_of(rules.turns, [](bool used) { return used; });
    default:
      return set.isUsed(step.condition->usage);
  }
}

}  // namespace

std::shared_ptr<const FilterRules> compileRules(const ConditionSet& set) {
  auto rules = std::make_shared<FilterRules>();
  rules->set = set;
  rules->places = compilePlaces(set);
  rules->turn_groups.resize(kTurnCount);
  for (int turn = 0; turn < kTurnCount; ++turn) {
    rules->turns[turn] = set.isTicked(usageOfTurn(turn));
    const Family& family = familyOfTurn(turn);
    if (rules->turns[turn]) rules->turn_groups[turn] = groupTable(set, family, family.draw_groups);
  }
  const auto steps = filterSteps();
  rules->figures.resize(steps.size());
  for (std::size_t i = 0; i < steps.size(); ++i) {
    const FilterStep& step = steps[i];
    rules->on[i] = isSwitchedOn(set, *rules, step);
    if (!rules->on[i] || step.kind != StepKind::figure) continue;
    rules->figures[i].verdicts = verdictsOf(set, *step.condition);
    if (!step.looks_back) rules->figures[i].metric = *prepareMetric(set, *step.condition, {});
  }
  rules->tolerance = std::clamp(set.cells.value(kSetToleranceCell), 0, kMostSetTolerance);
  const int type = set.cells.value(kShrinkTypeCell);
  // A value that names no type would otherwise delete tickets that nobody asked to delete.
  rules->shrink_type = type < kSmallestShrink || type > kLargestShrink ? kLargestShrink : type;
  if (set.cells.value(kFewerCell) == 1)
    rules->effort = std::clamp(set.cells.value(kEffortCell), kLeastEffort, kMostEffort);
  rules->smart = set.isUsed(kSmartOptimisation);
  return rules;
}

FilterPlan::FilterPlan(std::shared_ptr<const FilterRules> rules, const DrawTable& draws, PeriodNo period)
    // cppcheck-suppress accessMoved ; it reads a delegating constructor twice
    : FilterPlan(PlanSeries(std::move(rules), draws).at(period)) {}

FilterPlan::FilterPlan(std::shared_ptr<const FilterRules> rules, const DrawTable& draws, PeriodNo period,
                       std::shared_ptr<const DrawMatch> match)
    : rules_(std::move(rules)), period_(period), runs_(rules_->on), match_(std::move(match)) {
  const ConditionSet& set = rules_->set;
  const auto before = draws.before(period);
  own_place_.fill(-1);
  const auto steps = filterSteps();
  for (std::size_t i = 0; i < steps.size(); ++i) {
    if (!rules_->on[i] || steps[i].kind != StepKind::figure || !steps[i].looks_back) continue;
    own_place_[i] = static_cast<std::int8_t>(own_.size());
    own_.push_back({*prepareMetric(set, *steps[i].condition, before), rules_->figures[i].verdicts});
  }
  for (int turn = 0; turn < kTurnCount && !before.empty(); ++turn) {
    if (!rules_->turns[turn]) continue;
    const GroupTable& groups = rules_->turn_groups[turn];
    turns_.push_back({turn, groups, countGroups(groups, before.back().numbers.reds)});
  }
  for (std::size_t i = 0; i < steps.size(); ++i) {
    switch (steps[i].kind) {
      case StepKind::places:
        runs_[i] = rules_->on[i] && rules_->places.canReject();
        break;
      case StepKind::match:
        runs_[i] = rules_->on[i] && match_ != nullptr;
        break;
      case StepKind::sums:
        if (rules_->on[i])
          sums_.emplace(set.cellRange(steps[i].condition->first, steps[i].condition->last), before);
        break;
      default:
        break;
    }
  }
  for (std::size_t i = 0; i < combinationStep(); ++i)
    if (runs_[i]) combination_tolerance_ = 2;
  const auto newest = draws.before(period, kSmartDraws);
  newest_.assign(newest.rbegin(), newest.rend());
}

int FilterPlan::countHits(const Reds& reds) const {
  return static_cast<int>(
      std::ranges::count_if(turns_, [&](const TurnTest& turn) { return turn.hits(reds); }));
}

bool FilterPlan::passes(std::size_t step, Balls ticket) const {
  return withTest(step, [&](auto test) { return test(ticket); });
}

StepBits FilterPlan::failures(Balls ticket) const {
  StepBits failed;
  for (std::size_t step = 0; step < filterSteps().size(); ++step)
    if (runs_[step] && !passes(step, ticket)) failed.set(step);
  return failed;
}

bool FilterPlan::rejects(const StepBits& failed) const {
  return failed[matchStep()] || failed.count() > static_cast<std::size_t>(rules_->tolerance);
}

PlanSeries::PlanSeries(std::shared_ptr<const FilterRules> rules, const DrawTable& draws)
    : rules_(std::move(rules)), draws_(draws) {
  const HistoryMatch& match = rules_->set.match;
  if (match.used) to_mark_ = draws_.range(match.first, match.last);
}

FilterPlan PlanSeries::at(PeriodNo period) {
  for (; !to_mark_.empty() && to_mark_.front().period < period; to_mark_ = to_mark_.subspan(1)) {
    if (match_ == nullptr)
      match_ = std::make_shared<DrawMatch>(rules_->set.match.match);
    else if (match_.use_count() > 1)
      match_ = std::make_shared<DrawMatch>(*match_);
    match_->add(packBalls(to_mark_.front().numbers.reds, 0));
  }
  return {rules_, draws_, period, match_};
}

}  // namespace lotmere

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
  const int type = set.cells.value(kShrinkTypeCell);
  // A value that names no type would otherwise delete tickets that nobody asked to delete.
  rules->shrink_type = type < kSmallestShrink || type > kLargestShrink ? kLargestShrink : type;
  if (set.cells.value(kFewerCell) == 1)
    rules->effort = std::clamp(set.cells.value(kEffortCell), kLeastEffort, kMostEffort);
  rules->smart = set.isUsed(kSmartOptimisation);
  return rules;
}

FilterPlan::FilterPlan(std::shared_ptr<const FilterRules> rules, const DrawTable& draws, PeriodNo period)
    : rules_(std::move(rules)), period_(period), runs_(rules_->on) {
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
      case StepKind::match: {
        const auto range = draws.range(set.match.first, std::min(set.match.last, period - 1));
        runs_[i] = rules_->on[i] && !range.empty();
        if (!runs_[i]) break;
        auto match = std::make_shared<DrawMatch>(set.match.match);
        for (const PastDraw& draw : range) match->add(packBalls(draw.numbers.reds, 0));
        match_ = std::move(match);
        break;
      }
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

}  // namespace lotmere

#include "pipeline/steps.hpp"

#include <algorithm>
#include <vector>

namespace lotmere {
namespace {

StepKind kindOf(const Condition& condition) {
  switch (condition.kind) {
    case CellKind::position:
      return StepKind::places;
    case CellKind::combination:
      return StepKind::combinations;
    case CellKind::sum_family:
      return StepKind::sums;
    default:
      return StepKind::figure;
  }
}

// All places are one step, all turns are one, and 历史数据过滤, which has no row of its own, follows the
// places.
std::vector<FilterStep> makeSteps() {
  std::vector<const Condition*> order;
  for (const Condition& condition : allConditions())
    if (condition.kind != CellKind::setting) order.push_back(&condition);
  std::ranges::sort(order, {}, &Condition::pass);

  std::vector<FilterStep> steps;
  for (const Condition* condition : order) {
    const StepKind kind = kindOf(*condition);
    if (kind == StepKind::figure || kind == StepKind::sums) {
      steps.push_back({kind, condition, condition->log_name, looksBack(*condition)});
    } else if (steps.back().kind != kind && steps.back().kind != StepKind::match) {
      if (kind == StepKind::places) {
        steps.push_back({kind, nullptr, "[号码定位]", false});
        steps.push_back({StepKind::match, nullptr, "[历史数据过滤]", true});
      } else {
        steps.push_back({kind, nullptr, "[组合（具体）]", true});
      }
    }
  }
  return steps;
}

}  // namespace

std::string FilterStep::plainName() const {
  std::string plain;
  for (const char c : name)
    if (c != '[' && c != ']' && c != ' ') plain += c;
  return plain;
}

std::span<const FilterStep> filterSteps() {
  static const auto steps = makeSteps();
  return steps;
}

namespace {

std::size_t placeOf(StepKind kind) {
  return static_cast<std::size_t>(std::ranges::find(filterSteps(), kind, &FilterStep::kind) -
                                  filterSteps().begin());
}

}  // namespace

std::size_t combinationStep() {
  static const std::size_t place = placeOf(StepKind::combinations);
  return place;
}

std::size_t matchStep() {
  static const std::size_t place = placeOf(StepKind::match);
  return place;
}

}  // namespace lotmere

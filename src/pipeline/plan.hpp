// The conditions compiled: each step with what it lets through ready as tables. Made from values alone, never
// changed afterwards, so any number of threads may judge by one plan.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "conditions/condition_set.hpp"
#include "game/game.hpp"
#include "pipeline/metric.hpp"
#include "pipeline/past_draws.hpp"
#include "pipeline/steps.hpp"
#include "store/draw_table.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {

// 号码定位: a ticket stays that is wrong at no more places than the tolerance.
struct PlaceTest {
  std::array<std::array<std::int8_t, kRedCount + 1>, kPlaceCount>
      wrong{};   // 1: this number is wrong at this place
  int used = 0;  // places in use
  int tolerance = 0;

  [[nodiscard]] int countWrong(Balls balls) const {
    int errors = 0;
    for (int p = 0; p < kPlaceCount; ++p) errors += wrong[p][balls >> (8 * p) & 0xFF];
    return errors;
  }
  // A tolerance as large as the number of places can't reject anything.
  [[nodiscard]] bool canReject() const { return tolerance < used; }
};

// 组合（具体）: a turn is hit when the reds fall into exactly the groups of the reference draw.
struct TurnTest {
  int turn = 0;
  GroupTable groups;
  GroupCounts reference = 0;

  [[nodiscard]] bool hits(const Reds& reds) const { return countGroups(groups, reds) == reference; }
};

// What the set decides by itself, whatever the period.
struct FilterRules {
  ConditionSet set;
  StepBits on;                      // steps that are switched on
  std::vector<FigureTest> figures;  // by step; of a step that looks back only the verdicts hold
  PlaceTest places;
  std::array<bool, kTurnCount> turns{};  // in use
  std::vector<GroupTable> turn_groups;   // by turn, of those in use
  int tolerance = 0;                     // over the whole set: how many conditions a ticket may fail
  int shrink_type = 0;                   // 3 to 7; what names no type is 7
  int effort = 0;                        // of the search for fewer tickets, 1 to 9; 0 where it is off
  bool smart = false;                    // 智能优化 is switched on
};
[[nodiscard]] std::shared_ptr<const FilterRules> compileRules(const ConditionSet& set);

class FilterPlan {
 public:
  // The rules for the tickets of one period, judged against the draws before it.
  FilterPlan(std::shared_ptr<const FilterRules> rules, const DrawTable& draws, PeriodNo period);

  [[nodiscard]] PeriodNo period() const { return period_; }
  [[nodiscard]] const FilterRules& rules() const { return *rules_; }

  // Whether a step is switched on; and whether it can reject anything: a tolerance of the places that is too
  // large, and a match without a draw in its range, run for nothing.
  [[nodiscard]] bool isOn(std::size_t step) const { return rules_->on[step]; }
  [[nodiscard]] bool runs(std::size_t step) const { return runs_[step]; }
  [[nodiscard]] const StepBits& running() const { return runs_; }

  // How many turns of 组合（具体） a ticket may hit: two when any step in front of it runs, else one.
  [[nodiscard]] int combinationTolerance() const { return combination_tolerance_; }
  [[nodiscard]] const std::vector<TurnTest>& turns() const { return turns_; }
  [[nodiscard]] int countHits(const Reds& reds) const;

  // Whether a ticket passes a step that runs. Seven numbers of any kind: out of order, repeated, 0 where
  // missing.
  [[nodiscard]] bool passes(std::size_t step, Balls ticket) const;
  // The running steps that a ticket fails, each judged by itself.
  [[nodiscard]] StepBits failures(Balls ticket) const;
  // Whether a ticket that fails these steps goes: 历史数据过滤 rejects it, or it fails more of the others than
  // the tolerance over the whole set lets through.
  [[nodiscard]] bool rejects(const StepBits& failed) const;

  // The figure of a step of the kind `figure` that runs, with its verdicts.
  [[nodiscard]] const FigureTest& figure(std::size_t step) const {
    return own_place_[step] < 0 ? rules_->figures[step] : own_[static_cast<std::size_t>(own_place_[step])];
  }

  // Hands `use` a function (balls) that tells whether a ticket passes the step, with the kind of the step and
  // of its figure known when it is compiled: for loops over very many tickets. All steps but the places look
  // at the reds alone.
  template <class Use>
  decltype(auto) withTest(std::size_t step, Use&& use) const;

  // The numbers that the smart score compares with, newest first; rows without a draw are 0.
  [[nodiscard]] std::span<const PastDraw> newestDraws() const { return newest_; }

 private:
  friend class PlanSeries;
  // `match` holds the draws of the range of 历史数据过滤 that stand before the period; nullptr without any.
  FilterPlan(std::shared_ptr<const FilterRules> rules, const DrawTable& draws, PeriodNo period,
             std::shared_ptr<const DrawMatch> match);

  std::shared_ptr<const FilterRules> rules_;
  PeriodNo period_;
  StepBits runs_;
  std::array<std::int8_t, 192> own_place_{};  // of a figure that looks back among own_, else -1
  std::vector<FigureTest> own_;
  std::vector<TurnTest> turns_;
  int combination_tolerance_ = 1;
  std::optional<SumFamilies> sums_;
  std::shared_ptr<const DrawMatch> match_;
  std::vector<PastDraw> newest_;
};

// Plans for one period after another, from the oldest on, each made in microseconds: the draws that
// 历史数据过滤 has marked are kept, and only those that came since are added.
class PlanSeries {
 public:
  // The draws must outlive the series; the plans need them no more.
  PlanSeries(std::shared_ptr<const FilterRules> rules, const DrawTable& draws);

  // The plan of a period that isn't below the one asked for before.
  [[nodiscard]] FilterPlan at(PeriodNo period);

 private:
  std::shared_ptr<const FilterRules> rules_;
  const DrawTable& draws_;
  std::span<const PastDraw> to_mark_;  // of the range, not marked so far
  std::shared_ptr<DrawMatch> match_;   // written to only while no plan holds it
};

template <class Use>
decltype(auto) FilterPlan::withTest(std::size_t step, Use&& use) const {
  switch (filterSteps()[step].kind) {
    case StepKind::places:
      return use(
          [&places = rules_->places](Balls balls) { return places.countWrong(balls) <= places.tolerance; });
    case StepKind::match:
      return use([&match = *match_](Balls balls) { return !match.matches(balls); });
    case StepKind::combinations:
      return use([this](Balls balls) { return countHits(redsOf(balls)) <= combination_tolerance_; });
    case StepKind::sums:
      return use([&sums = *sums_](Balls balls) { return sums.keeps(redsOf(balls)); });
    case StepKind::figure:
      break;
  }
  const FigureTest& test = figure(step);
  return withFigure(test.metric, [&](auto value) {
    return use(
        [&test, value](Balls balls) { return allows(test.verdicts, value(test.metric, redsOf(balls))); });
  });
}

}  // namespace lotmere

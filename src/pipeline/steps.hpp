// The steps of a run in their order, each once.
#pragma once

#include <bitset>
#include <cstddef>
#include <span>
#include <string>

#include "catalogue/catalogue.hpp"
#include "game/game.hpp"

namespace lotmere {

enum class StepKind {
  figure,        // one condition whose cells stand for figures of the six reds
  places,        // 号码定位, all places together
  match,         // 历史数据过滤
  combinations,  // 组合（具体）, all turns together
  sums           // 前2期和值相同组
};

struct FilterStep {
  StepKind kind = StepKind::figure;
  const Condition* condition = nullptr;  // of a figure and of the sums
  std::string name;                      // as its lines carry it, "[ 总和值 ]"
  bool looks_back = false;               // judges against the draws before the period

  // What the name says without brackets and blanks, "总和值".
  [[nodiscard]] std::string plainName() const;
};

// First to last; the reduction comes behind them. Figures first that are cheap sums and counts, then shapes,
// then what depends on other draws.
[[nodiscard]] std::span<const FilterStep> filterSteps();
// Where the steps of 组合（具体） and of 历史数据过滤 stand among them.
[[nodiscard]] std::size_t combinationStep();
[[nodiscard]] std::size_t matchStep();

// A bit a step, by its place in filterSteps().
using StepBits = std::bitset<192>;

}  // namespace lotmere

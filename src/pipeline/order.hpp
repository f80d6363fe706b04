// The passes of a run in their order.
#pragma once

#include <span>
#include <string_view>

#include "core/game.hpp"

namespace lotmere {

enum class PassKind {
  figure,            // one condition whose cells stand for figures
  intervals,         // 区间1 to 区间4
  custom_groups,     // 自定义组1 to 自定义组10
  positions,         // 号码定位
  history_match,     // 历史数据过滤
  combinations,      // the 32 turns of 组合（具体）, then their closing, which runs after a stop too
  sum_families,      // 前2期和值相同组
  custom_intervals,  // turns 1 to 63 of `自定义区间`
  reduction          // the cover shrink with the smart optimisation in front
};

struct PassStep {
  PassKind kind;
  UsageId usage;              // of a figure pass, else 0
  std::string_view log_name;  // of a figure pass, as its lines carry it
};

// Every step of a run, first to last. The figure passes are cheap sums and counts first, then shapes, then
// what depends on other draws.
[[nodiscard]] std::span<const PassStep> pass_Order();

}  // namespace lotmere

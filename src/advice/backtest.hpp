// How a set of conditions would have fared against past draws, beside what chance gives. It tells about the
// past: no filter predicts a draw.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "advice/success_count.hpp"
#include "base/course.hpp"
#include "pipeline/plan.hpp"
#include "store/draw_table.hpp"

namespace lotmere {

// A draw judged as a ticket of its own period, against the draws before it.
struct DrawVerdict {
  PeriodNo period = 0;
  StepBits failed;  // the steps that it fails, each judged by itself
  bool passed = false;
};

// The newest `last` draws (or as many as there are), from the oldest on, judged by the whole set.
[[nodiscard]] std::vector<DrawVerdict> judgeDraws(const std::shared_ptr<const FilterRules>& rules,
                                                  const DrawTable& draws, std::size_t last);

struct VerdictCounts {
  int passed = 0;
  // By n, how many draws fail at most n of the conditions; up to the n that the worst draw needs. A draw that
  // 历史数据过滤 rejects is out for every n.
  std::vector<int> failing_at_most;
  int rejected_by_match = 0;
  // By step, the draws that would have passed but for this one condition.
  std::vector<int> stopped_alone;
};
[[nodiscard]] VerdictCounts countVerdicts(std::span<const DrawVerdict> draws, int tolerance);

// What chance gives: the share of all sixes (or tickets) that the set lets through at each of the draws.
struct ChanceOfSet {
  std::int64_t all = 0;
  std::vector<std::int64_t> passing;  // at each draw looked at, from the oldest on
  int every = 1;                      // the share is counted at each draw, or at each second, third ...
  double expected = 0;                // draws that pass
  CountRange range;                   // in which 95 percent of all chances end

  // The share at the draws, together, 0 to 1.
  double share = 0;
};
// Shares are counted at this many draws at most.
inline constexpr std::size_t kMostShares = 100;
// Of the same draws. Nothing when the course stops it. `threads` count side by side; the result is the same.
[[nodiscard]] std::optional<ChanceOfSet> chanceOfSet(const std::shared_ptr<const FilterRules>& rules,
                                                     const DrawTable& draws, std::size_t last, Course& course,
                                                     int threads = 1);

struct BackTest {
  int tolerance = 0;
  std::vector<DrawVerdict> draws;
  VerdictCounts counts;
  ChanceOfSet chance;
};
// All of it. Nothing when the course stops it.
[[nodiscard]] std::optional<BackTest> backTest(const ConditionSet& set, const DrawTable& draws,
                                               std::size_t last, Course& course, int threads = 1);

}  // namespace lotmere

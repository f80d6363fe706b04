// What a set of conditions lets through of all that could be drawn: what chance gives a draw.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "base/course.hpp"
#include "pipeline/plan.hpp"

namespace lotmere {

// Counts how many of all red sixes (of all tickets, where a place looks at the blue) a set lets through, its
// tolerance included, at one period after another. What doesn't look back is judged once, when the share is
// made. `threads` judge side by side; the counts are the same.
class SetShare {
 public:
  // Nothing when the course stops it.
  [[nodiscard]] static std::optional<SetShare> make(const std::shared_ptr<const FilterRules>& rules,
                                                    Course& course, int threads = 1);

  // kAllRedSixes, or sixteen times as many.
  [[nodiscard]] std::int64_t all() const { return all_; }
  // Whether a condition that looks back is on: only then the counts differ from period to period.
  [[nodiscard]] bool looksBack() const { return !later_.empty(); }
  // How many are let through by the plan of a period, made of the same rules.
  [[nodiscard]] std::int64_t count(const FilterPlan& plan) const;

 private:
  // Tickets that stand for `weight` each, with the number of conditions that they fail so far.
  struct Part {
    std::int64_t weight = 1;
    std::vector<Balls> tickets;
    std::vector<std::uint8_t> failed;
  };

  std::int64_t all_ = 0;
  int tolerance_ = 0;
  int threads_ = 1;
  std::vector<std::size_t> later_;  // the steps that look back
  std::vector<Part> parts_;
};

}  // namespace lotmere

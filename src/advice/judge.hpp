// Every ticket of a set judged by every step, none removed.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/course.hpp"
#include "pipeline/plan.hpp"

namespace lotmere {

// How many of the running steps each ticket fails, each step judged by itself.
using FailureCounts = std::vector<std::uint8_t>;

// As FilterPlan::failures() counts them, for very many tickets. `threads` judge parts of a large set side by
// side. Nothing when the course stops it.
[[nodiscard]] std::optional<FailureCounts> countFailures(const FilterPlan& plan,
                                                         std::span<const Balls> tickets, Course& course,
                                                         int threads = 1);

}  // namespace lotmere

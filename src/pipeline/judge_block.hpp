// Very many tickets judged by one step of a plan.
#pragma once

#include <cstdint>
#include <span>

#include "pipeline/plan.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {

// How many tickets are judged together: what is noted of them stays in the cache from step to step.
inline constexpr std::size_t kJudgeBlock = 8192;

// Judges each ticket by a running step and adds 1 at its place in `counts` (none for nullptr) when it fails;
// gives the number of tickets that do (ticketsOf). Tickets with the same six reds that stand together share
// the verdict where the step looks at the reds alone.
std::int64_t addFailures(const FilterPlan& plan, std::size_t step, std::span<const Balls> tickets,
                         std::uint8_t* counts);

}  // namespace lotmere

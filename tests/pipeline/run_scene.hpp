// Random stores for runs: draws, conditions and a ticket table that a run has to cope with.
#pragma once

#include <random>
#include <vector>

#include "pipeline/run_model.hpp"
#include "support/test_store.hpp"

namespace lotmere::test {

inline constexpr PeriodNo kPeriod = 2026050;

// Six different reds in order and a blue.
[[nodiscard]] DrawNumbers random_Numbers(std::mt19937& random);

// Replaces the history by `count` draws before the period and two from it on; the newest draw before has the
// sums that a run computes, the older ones sums of their own.
std::vector<PastDraw> put_History(Store& store, std::mt19937& random, int count);

// Replaces the ticket table by `count` tickets of the period, some of them out of order or with a red twice,
// with marks of an earlier run and with tickets of other periods between them.
void put_Tickets(Store& store, std::mt19937& random, int count);

// Sets every condition: switches to 0, 1 or 2 (in use about `used` in a hundred), cells to 0 or 1 (allowed
// about `allowed` in a hundred), places, groups, intervals, tolerance, shrink type and history match.
void put_Conditions(Store& store, std::mt19937& random, int used, int allowed);

// Switches everything off and allows every value; no shrink.
void open_Conditions(Store& store);

}  // namespace lotmere::test

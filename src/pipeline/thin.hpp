// A ticket set walked through the steps of a plan. Works on values alone: who shows what happens watches it,
// who writes the outcome down takes the set afterwards.
#pragma once

#include <cstdint>
#include <vector>

#include "base/course.hpp"
#include "pipeline/plan.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {

struct StepResult {
  enum class State {
    off,          // switched off
    unable,       // on, but can't reject anything: a tolerance too large, no draw in the range
    not_reached,  // a stop came before it
    done,
    cut_short  // a stop came in the middle; tickets that it hadn't reached stay
  };
  State state = State::off;
  std::int64_t before = 0;  // tickets in front of it
  std::int64_t after = 0;   // and behind it
};

// What each step left, by its place in filterSteps().
struct Funnel {
  std::vector<StepResult> steps;
  bool stopped = false;
};

// Told of each step, on the thread that walks, between two steps.
class StepWatcher {
 public:
  StepWatcher() = default;
  StepWatcher(const StepWatcher&) = delete;
  StepWatcher& operator=(const StepWatcher&) = delete;
  virtual ~StepWatcher() = default;

  // A step that is switched on is next, with so many tickets left; it may not run for want of tickets.
  virtual void stepBegins(std::size_t /*step*/, std::int64_t /*tickets*/) {}
  // Every step, those that are off or weren't reached too.
  virtual void stepEnds(std::size_t /*step*/, const StepResult& /*result*/) {}
};

// Walks the set through every step. A step removes what fails it; what passes gets mark 1 and the running
// numbers from 1 on, in the order of the rows. A stop ends the step under way: tickets that it hadn't reached
// stay as they stood, in front of it, and no further step runs. Behind the combinations, after a stop too,
// every ticket has mark 1 and running numbers in the order of the old ones. `threads` walk parts of a large
// set side by side; the outcome is the same.
Funnel thin(const FilterPlan& plan, TicketSet& tickets, Course& course, StepWatcher& watcher,
            int threads = 1);

}  // namespace lotmere

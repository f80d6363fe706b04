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
  // And behind it. With a tolerance over the whole set, where each step judges every ticket by itself, those
  // that don't fail it.
  std::int64_t after = 0;
};

// What each step left, by its place in filterSteps().
struct Funnel {
  std::vector<StepResult> steps;
  std::int64_t left = 0;  // tickets that stand behind the last
  bool stopped = false;
  // Whether the tickets are numbered by their places; else, as no step but the combinations looked at them,
  // in the order of the numbers that they had.
  bool by_place = false;
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
  // With a tolerance over the whole set: all steps are judged together, behind the beginning of all of them
  // and before the end of the first; and so many tickets are left behind the end of the last.
  virtual void judgingBegins() {}
  virtual void judgingEnds(std::int64_t /*left*/) {}
};

// Walks the set through every step. A step removes what fails it; what passes gets mark 1 and the running
// numbers from 1 on, in the order of the rows. A stop ends the step under way: tickets that it hadn't reached
// stay as they stood, in front of it, and no further step runs. Behind the combinations, after a stop too,
// every ticket has mark 1 and running numbers in the order of the old ones. `threads` walk parts of a large
// set side by side; the outcome is the same. An entry may stand for several tickets (ticketsOf): the counts
// are those of tickets, while marks and running numbers belong to entries.
//
// With a tolerance over the whole set one walk judges every ticket by all steps and removes what
// FilterPlan::rejects; whatever stays, after a stop what wasn't reached too, has mark 1 and running numbers
// in the order of the rows. 历史数据过滤, which stands outside the tolerance, ends last.
Funnel thin(const FilterPlan& plan, TicketSet& tickets, Course& course, StepWatcher& watcher,
            int threads = 1);

}  // namespace lotmere

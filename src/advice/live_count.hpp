// How many tickets the conditions leave as they stand, counted beside the user's clicks.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/course.hpp"
#include "conditions/condition_set.hpp"
#include "game/game.hpp"
#include "pipeline/plan.hpp"
#include "reduction/subsets.hpp"
#include "store/draw_table.hpp"
#include "store/store.hpp"
#include "tickets/selection.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {

// What stands in front of a step and behind it.
struct FunnelStep {
  std::string name;  // "总和值"
  std::int64_t before = 0;
  std::int64_t after = 0;

  friend bool operator==(const FunnelStep&, const FunnelStep&) = default;
};

// Tickets to be counted, never changed once made. The same six reds with several blues stand together: what
// looks at the reds alone judges each such group once.
class LiveTickets {
 public:
  // What a run would leave of the tickets.
  struct Left {
    // The steps that are on, in the order of a run: what stands in front of each and behind it. With a
    // tolerance over the whole set each has the whole set in front of it, and a last row tells what all
    // together leave.
    std::vector<FunnelStep> funnel;
    std::int64_t filtered = 0;  // behind the filters
    // Behind the reduction; where it searches for fewer tickets, how many at most: those of the plain shrink,
    // and one for each blue that the plain shrink loses.
    std::int64_t left = 0;
  };

  LiveTickets() = default;
  // In the order of their creation.
  LiveTickets(PeriodNo period, std::vector<Balls> tickets);

  [[nodiscard]] PeriodNo period() const { return period_; }
  [[nodiscard]] std::int64_t size() const { return static_cast<std::int64_t>(tickets_.size()); }
  // Nothing when the course stops it.
  [[nodiscard]] std::optional<Left> countLeft(const FilterPlan& plan, Course& course) const;

 private:
  // Each gives the tickets behind the filters to `keep` and counts them in the funnel of `left`; false when
  // the course stops it.
  template <class Keep>
  bool walkTolerant(const FilterPlan& plan, Left& left, CourseLeg& leg, Keep&& keep) const;
  template <class Keep>
  bool walkSteps(const FilterPlan& plan, Left& left, CourseLeg& leg, Keep&& keep) const;

  PeriodNo period_ = 0;
  std::vector<Balls> tickets_;
  std::vector<Balls> sixes_;              // the reds of each group,
  std::vector<std::uint32_t> first_row_;  // where its tickets start, and the end
  OverlapMarks::Repeats repeats_ = OverlapMarks::Repeats::no;
};

// Reads the tickets of the first period in the table; without any, an empty value. `dropped` is asked every
// few milliseconds, with no statement half done that changes the store; nothing comes back once it answers
// true.
using Dropped = std::function<bool()>;
[[nodiscard]] std::shared_ptr<const LiveTickets> loadLiveTickets(Store& store, const Dropped& dropped = {});

// Counts what a run would leave. Works on values alone, so it may stand on a thread of its own; it keeps the
// tickets that the last selection made.
class LiveCount {
 public:
  struct Question {
    std::shared_ptr<const LiveTickets> table;  // of the store; empty: those that the selection would make
    ConditionSet set;
    DrawTable draws;
    PeriodNo next_period = 0;  // that the selection would make tickets for
  };
  struct Result {
    PeriodNo period = 0;
    std::int64_t tickets = 0;  // before the run
    std::int64_t survivors = 0;
    bool from_selection = false;       // the table holds no ticket
    bool too_many = false;             // the selection makes more than kMaxTickets; nothing is counted
    bool at_most = false;              // the run searches for fewer tickets, so that it may leave less
    std::int64_t filtered = 0;         // behind the filters, in front of the reduction
    std::vector<FunnelStep> funnel{};  // as LiveTickets::Left tells it
    std::string shrink{};              // "保六型"

    friend bool operator==(const Result&, const Result&) = default;
  };

  // Nothing when the course stops it.
  [[nodiscard]] std::optional<Result> count(const Question& question, Course& course);

 private:
  const LiveTickets& expanded(const NumberSelection& selection, PeriodNo period);

  NumberSelection selection_;  // that expanded_ was made of
  LiveTickets expanded_;
};

// The line at the foot of the condition page; and what stands there while a count takes its time.
inline constexpr std::string_view kCountingText = "正在计算按当前条件过滤缩水后余下的注数．．．";
[[nodiscard]] std::string liveText(const LiveCount::Result& result);

}  // namespace lotmere

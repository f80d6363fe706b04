// How many tickets the conditions leave as they stand, counted beside the person's clicks.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/course.hpp"
#include "core/game.hpp"
#include "core/store.hpp"
#include "pipeline/plan.hpp"
#include "tickets/selection.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {

// Counts what a run would leave, by the steps of the run over a copy in memory: every step is in it, the
// reduction too. Nothing is written and nothing is told. The tickets are read at the first count and held, at
// most some 75 bytes each; conditions, groups and draws are read anew at every count.
class LiveCount {
 public:
  explicit LiveCount(Store& store) : store_(store) {}

  // The tickets of the table have changed: the next count reads them again. Clicks on conditions and on the
  // selection need no call.
  void forget() { held_ = Held::nothing; }

  struct Result {
    PeriodNo period = 0;
    std::int64_t tickets = 0;  // before the run
    std::int64_t survivors = 0;
    bool from_selection = false;  // the table holds no ticket: those that the selection would make
    bool too_many = false;        // the selection makes more than kMaxTickets; nothing is counted

    friend bool operator==(const Result&, const Result&) = default;
  };

  // Called every few milliseconds of a count; true drops it. It may serve the person, and must answer true
  // once that has changed a table, as the passes read the tables one after another. It must not count, nor
  // run a command that reads or changes the tickets.
  using Dropped = std::function<bool()>;

  // Counts the tickets of the first period in the table, or with none those that the selection makes for
  // `next_period`. Nothing when it was dropped.
  [[nodiscard]] std::optional<Result> count(PeriodNo next_period, const Dropped& dropped = {});

 private:
  enum class Held { nothing, table, selection };

  // The period that first_TicketPeriod() gives, found row by row so that a large table is looked at in
  // pieces.
  std::optional<PeriodNo> first_Period(const Dropped& dropped);
  // False when it was dropped while the tickets were read.
  bool hold_Table(const Dropped& dropped);
  void hold_Selection(const NumberSelection& selection);

  // The same six with several blues stand together: steps that look at the reds alone judge each such group once.
  void gather_Groups();
  [[nodiscard]] std::optional<std::int64_t> countLeft(const FilterPlan& plan, Course& course) const;

  Store& store_;
  Held held_ = Held::nothing;
  TicketSet tickets_;
  NumberSelection selection_;             // that tickets_ were made of
  std::vector<Balls> sixes_;              // the reds of each group,
  std::vector<std::uint32_t> first_row_;  // where its tickets start, and the end
};

// The line at the foot of the condition page; and what stands there while a count takes its time.
inline constexpr std::string_view kCountingText = "正在计算按当前条件过滤缩水后余下的注数．．．";
[[nodiscard]] std::string live_Text(const LiveCount::Result& result);

}  // namespace lotmere

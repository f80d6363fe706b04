// The one skeleton that all passes run on, and the rules that a pass brings to it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "conditions/catalogue.hpp"
#include "core/desk.hpp"
#include "core/game.hpp"
#include "core/store.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {

// What the passes of one run work on.
struct PipelineRun {
  Store& store;
  Desk& desk;
  TicketSet& tickets;
  PeriodNo period;
};

// The lines of a pass in the running text: both stand on the same base, so that the second replaces the
// first.
struct PassLines {
  std::string start;   // "[连号]过滤正在进行中．．．"
  std::string result;  // "[连号]过滤后余：", the count follows
};
// The lines of a pass by the name that they carry, blanks and brackets included: "[ 总和值 ]".
[[nodiscard]] PassLines lines_Of(std::string_view log_name);

// Judges one block of tickets: [first, end) of the set; keeps those that pass by moving them to `kept` and
// onward with `keep_Row`. Returns the place behind the last kept ticket.
using JudgeBlock =
    std::function<std::size_t(TicketSet& tickets, std::size_t first, std::size_t end, std::size_t kept)>;

// Keeps one ticket: moves its numbers to their new place. Marks and running numbers follow when the walk
// ends.
inline void keep_Row(TicketSet& tickets, std::size_t row, std::size_t kept) {
  tickets.balls[kept] = tickets.balls[row];
  tickets.origin[kept] = tickets.origin[row];
}

// A judge by the six reds: tickets with the same six stand together and share the verdict of the first.
// `keep` takes the balls of a ticket and answers whether it stays.
template <class Keep>
[[nodiscard]] JudgeBlock judge_ByReds(Keep keep) {
  return [keep = std::move(keep)](TicketSet& tickets, std::size_t first, std::size_t end, std::size_t kept) {
    Balls six = ~Balls{0};
    bool stays = false;
    for (std::size_t row = first; row < end; ++row) {
      const Balls balls = tickets.balls[row];
      if ((balls & kRedBytes) != six) {
        six = balls & kRedBytes;
        stays = keep(balls);
      }
      if (stays) keep_Row(tickets, row, kept++);
    }
    return kept;
  };
}

// Walks the tickets through a judge, block by block: shows the start line, serves the desk, stops when asked
// to (the tickets not reached stay as they are), removes what was rejected, and shows the result line unless
// stopped. Without tickets nothing happens and nothing is shown. Returns the number of tickets kept.
std::int64_t walk_Tickets(PipelineRun& run, const PassLines& lines, const JudgeBlock& judge);

// The pass of a condition whose cells stand for figures: returns at once when its switch is off. A
// figure that depends on earlier draws warns first.
struct FigurePass {
  std::string log_name;
  const Condition* condition;
};
std::int64_t filter_ByFigure(PipelineRun& run, const FigurePass& pass);

}  // namespace lotmere

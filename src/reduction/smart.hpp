// The smart optimisation: a score for every ticket against the last ten draws.
#pragma once

#include "base/desk.hpp"
#include "store/store.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {

// The numbers of the last ten draws by row (0 the newest) and place (six reds, then the blue as a plain
// value). With fewer draws the newest rows stay zero: the oldest draw lies in the last row.
using DrawMatrix = std::array<std::array<int, kRedsPerTicket + 1>, 10>;

// Scores a ticket by how many differences it has in common with the newest draw: its differences to the nine
// draws before and among its own numbers, against those of the newest draw to the nine before that one and
// among its own. The differences to draws depend on one number of the ticket each, so they are counted ahead
// by place and number.
class SmartScore {
 public:
  explicit SmartScore(const DrawMatrix& draws);
  // The score, 1 to 463, in two parts: what the six reds add among themselves and to the draws (the blue
  // isn't looked at), and what the blue adds beside these reds.
  [[nodiscard]] int scoreReds(Balls ticket) const;
  [[nodiscard]] int scoreBlue(Balls ticket) const;

 private:
  static constexpr int kPlaces = kRedsPerTicket + 1;
  [[nodiscard]] Balls distances(
      Balls ticket) const;  // of each number to that of the newest draw, 128 for none

  std::array<std::array<int, kRedCount + 1>, kPlaces> agreeing_{};  // by place and number
  Balls newest_word_ = 0;
};

// Scores the tickets of the set into `临时数据` and sets the lower 60 percent (rounded up; ties by `序号`) to
// 0. Only where it is `used` and the type is below 7; otherwise it says that it isn't used. Says nothing
// without a ticket.
void optimiseSmart(Store& store, Desk& desk, TicketSet& tickets, int type, bool used);

}  // namespace lotmere

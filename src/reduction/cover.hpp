// The cover: which numbers of a ticket are already covered by the tickets kept so far.
#pragma once

#include <cstdint>
#include <vector>

#include "core/game.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {

// How many of a ticket's seven numbers stand in a centre. A red that the ticket holds twice counts twice.
[[nodiscard]] int count_Shared(Balls centre, Balls ticket);

// Keeps the tickets that share fewer than N numbers with every ticket kept before, in the order in which they
// are asked for. The answers equal those of comparing each ticket with each centre, in time that doesn't grow
// with the number of centres: a bitmap holds every N-subset of the 49 numbers that a centre has, and a ticket
// is covered when one of its own at most 35 subsets is marked.
class Cover {
 public:
  // `shared` is N, 1 to 6.
  explicit Cover(int shared);

  // True when the ticket becomes a centre, false when an earlier centre covers it.
  bool take(Balls ticket);

 private:
  bool is_Covered(const std::array<int, kRedsPerTicket + 1>& codes, int count) const;
  bool is_CoveredLiterally(Balls ticket) const;
  void mark(const std::array<int, kRedsPerTicket + 1>& codes, int count);
  template <class Visit>
  bool any_Subset(const std::array<int, kRedsPerTicket + 1>& codes, int count, Visit&& visit) const;

  int shared_;
  std::vector<std::uint64_t> bits_;
  std::vector<Balls> centres_;  // for tickets with a repeated red, which the bitmap doesn't answer for
};

}  // namespace lotmere

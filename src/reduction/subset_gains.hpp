// How many open rows each ticket would cover, without a list of neighbours.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "reduction/cover_tickets.hpp"

namespace lotmere {

// Holds the weight of the open tickets by the subsets of reds that stand in them, once for all blues
// together and once for each blue. How much weight shares N reds or more with a six, or exactly N - 1,
// follows from the six's own subsets by inclusion and exclusion: at most 57 look-ups, however many tickets
// there are. A ticket that is opened or closed changes as many entries.
class SubsetGains {
 public:
  // `shared` is N, 2 to 6; the tickets must outlive the gains. No ticket is open at first.
  SubsetGains(const CoverTickets& tickets, int shared);

  // A ticket's weight among the open ones grows by this much, which may be negative.
  void change(std::uint32_t ticket, std::int32_t weight);
  // The open weight that shares N or more reds with a six; with any of its tickets at least that is covered.
  [[nodiscard]] std::int32_t ofAnyBlue(std::uint32_t six) const;
  // The open weight with a blue that shares N - 1 reds with a six, which a ticket of that blue covers too.
  [[nodiscard]] std::int32_t ofSameBlue(std::uint32_t six, int blue) const;
  // What keeping a ticket would cover.
  [[nodiscard]] std::int32_t of(std::uint32_t ticket) const {
    const std::uint32_t six = tickets_.six(ticket);
    return ofAnyBlue(six) + ofSameBlue(six, tickets_.blue(ticket));
  }
  // The work of a change or of `of`: the entries that it looks at, which take longer where the tables are
  // larger than a processor's cache.
  [[nodiscard]] std::int64_t work() const { return work_; }

 private:
  // Places of the subsets of a six, by size from N - 1 to 6, among those of all sixes.
  void placeSubsets();

  const CoverTickets& tickets_;
  int shared_;
  std::size_t per_six_ = 0;
  std::size_t table_size_ = 0;
  std::int64_t work_ = 0;
  std::vector<std::size_t> size_of_level_;  // how many subsets of a six have each size from N - 1 on
  std::vector<std::uint32_t> places_;       // per_six_ a six
  std::vector<std::int32_t> all_;
  std::vector<std::int32_t> by_blue_;  // table_size_ a blue
};

}  // namespace lotmere

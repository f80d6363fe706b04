// Which numbers of a set of tickets can change places, and small groups of such changes.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "reduction/cover_matrix.hpp"
#include "reduction/cover_tickets.hpp"
#include "reduction/search_run.hpp"

namespace lotmere {

// Where each red (1 to 33) and each blue (as CoverTickets counts them) goes.
struct NumberMap {
  std::array<std::uint8_t, kRedCount + 1> red{};
  std::array<std::uint8_t, kBlueCount> blue{};

  // Everything stays.
  [[nodiscard]] static NumberMap identity();
};
// Maps that together make a group; without any, each ticket stands for itself.
using Symmetry = std::vector<NumberMap>;

// The symmetries worth a try, each of which maps the set of tickets onto itself: few changes first, as a
// small group leaves the most freedom. The last one is the empty one. A set that a filter went through
// rarely has any other.
[[nodiscard]] std::vector<Symmetry> findSymmetries(const CoverTickets& tickets);

// The sets of tickets that a symmetry maps to each other.
struct Orbits {
  std::vector<std::uint32_t> of;  // the set of each ticket
  NumberLists tickets;            // the tickets of each set
};
[[nodiscard]] Orbits findOrbits(const CoverTickets& tickets, const Symmetry& symmetry);

// The matrix of those sets: a set covers all tickets that share `shared` or more of their seven numbers with
// one of its tickets. An extra row for each set of blues asks for one of their tickets. Nothing when it would
// have more entries than `most`, or when the run is over; about `expected` are made room for.
[[nodiscard]] std::optional<CoverMatrix> makeMatrix(const CoverTickets& tickets, int shared,
                                                    const Orbits& orbits, std::size_t expected,
                                                    std::size_t most, SearchRun& run);

}  // namespace lotmere

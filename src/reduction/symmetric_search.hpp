// The search over sets of tickets that belong together by a symmetry.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "reduction/best_cover.hpp"
#include "reduction/cover_tickets.hpp"
#include "reduction/symmetry.hpp"

namespace lotmere {

// Tries every symmetry in turn for a short while and goes on with fewer and fewer of them for longer, those
// with the cheapest covers: which symmetry fits depends on the set, and most show it soon.
//
// `most` is the number of matrix entries that may be held at a time; symmetries beyond it are left out.
// Returns once the run's work reaches `until`, the run is over, or the cover is small enough. False, with
// nothing done, where no symmetry fits.
bool searchSymmetric(const CoverTickets& tickets, int shared, const std::vector<Symmetry>& symmetries,
                     std::size_t most, SearchRun& run, std::int64_t until, BestCover& best);

// How many entries a matrix of single tickets would have, from some of the tickets.
[[nodiscard]] std::size_t estimateEntries(const CoverTickets& tickets, int shared);

}  // namespace lotmere

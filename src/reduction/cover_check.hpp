// A look at a cover from outside: whether it keeps what it promises.
#pragma once

#include <cstdint>
#include <span>

#include "tickets/ticket_set.hpp"

namespace lotmere {

enum class CoverFault { none, not_of_the_set, ticket_uncovered, blue_lost };

// Whether each ticket stays or shares `shared` (1 to 6) or more of its seven numbers with one of those at the
// places `kept`, whether these are places of tickets in ascending order, and whether every blue of the
// tickets is among them. Knows nothing of how the cover was found: it marks the subsets of what is kept and
// asks for every ticket, as the plain shrink does.
[[nodiscard]] CoverFault checkCover(std::span<const Balls> tickets, std::span<const std::uint32_t> kept,
                                    int shared);

}  // namespace lotmere

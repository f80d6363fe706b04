// The ticket table as a whole, whatever its periods.
#pragma once

#include <cstdint>

#include "store/store.hpp"

namespace lotmere {

// How many tickets of all periods there are.
[[nodiscard]] std::int64_t countAllTickets(Store& store);
// Removes them all.
void deleteAllTickets(Store& store);

}  // namespace lotmere

// The tickets that an export writes.
#pragma once

#include <cstddef>
#include <vector>

#include "base/desk.hpp"
#include "game/game.hpp"
#include "store/store.hpp"

namespace lotmere {

struct ExportRow {
  int seq = 0;
  DrawNumbers numbers;
};

inline constexpr std::size_t kRowsPerServe = 1024;  // about a millisecond of work

// The `count` tickets of a period by running number, while `job` is served; where it is to stop and can, the
// first ones that were read.
[[nodiscard]] std::vector<ExportRow> readExportRows(Store& store, PeriodNo period, std::size_t count,
                                                    CourseLeg& job);

}  // namespace lotmere

// The funnel told ahead: what a run would take away step by step, with nothing changed.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/course.hpp"
#include "game/game.hpp"
#include "pipeline/funnel_rows.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {

// What a run over the tickets (mark 0, as they are read) would do, the shrink included. Nothing when the
// course stops it.
[[nodiscard]] std::optional<std::vector<FunnelRow>> foretellFunnel(const FilterPlan& plan, TicketSet tickets,
                                                                   Course& course, int threads = 1);

// A line of a table, its fields separated by `separator`: name, tickets before, after, percent lost, and how
// many it would remove of the whole set by itself. The heading names them.
[[nodiscard]] std::string funnelHeading(char separator);
[[nodiscard]] std::string funnelLine(const FunnelRow& row, char separator);
// All of it as a spreadsheet program opens it: UTF-8 with its mark, commas, CR LF.
[[nodiscard]] std::string funnelCsv(const std::vector<FunnelRow>& rows);

}  // namespace lotmere

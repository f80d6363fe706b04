// Calendar days and the draw days of the game: Sunday, Tuesday and Thursday.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace lotmere {

using Date = std::chrono::sys_days;

// A date as the store keeps it, "2026-08-20".
[[nodiscard]] std::string formatDate(Date date);

// Reads YYYY-MM-DD or, with separator '/', YYYY/MM/DD; two-digit month and day. Nothing for a text that is no
// day of the calendar.
[[nodiscard]] std::optional<Date> parseDate(std::string_view text, char separator = '-');

// 0 for Sunday to 6 for Saturday: the days since 2 January 2000 modulo 7.
[[nodiscard]] int weekdayIndex(Date date);

// The first draw day after a date.
[[nodiscard]] Date nextDrawDate(Date date);

[[nodiscard]] int yearOf(Date date);

}  // namespace lotmere

#include "base/dates.hpp"

#include <fmt/format.h>

#include <array>

namespace lotmere {

using std::chrono::days;
using std::chrono::year_month_day;

std::string formatDate(Date date) {
  const year_month_day day{date};
  return fmt::format("{:04}-{:02}-{:02}", int(day.year()), unsigned(day.month()), unsigned(day.day()));
}

std::optional<Date> parseDate(std::string_view text, char separator) {
  if (text.size() != 10 || text[4] != separator || text[7] != separator) return std::nullopt;
  int value[3] = {0, 0, 0};
  constexpr int first[3] = {0, 5, 8};
  constexpr int length[3] = {4, 2, 2};
  for (int part = 0; part < 3; ++part) {
    for (const char c : text.substr(first[part], length[part])) {
      if (c < '0' || c > '9') return std::nullopt;
      value[part] = value[part] * 10 + (c - '0');
    }
  }
  const year_month_day day{std::chrono::year{value[0]}, std::chrono::month{unsigned(value[1])},
                           std::chrono::day{unsigned(value[2])}};
  if (!day.ok()) return std::nullopt;
  return Date{day};
}

int weekdayIndex(Date date) {
  constexpr Date origin{std::chrono::January / 2 / 2000};
  const auto rest = (date - origin).count() % 7;
  return static_cast<int>(rest < 0 ? rest + 7 : rest);
}

Date nextDrawDate(Date date) {
  constexpr std::array<bool, 7> is_draw_day = {true, false, true, false, true, false, false};
  for (int i = 0; i < 7; ++i) {
    date += days{1};
    if (is_draw_day[weekdayIndex(date)]) break;
  }
  return date;
}

int yearOf(Date date) { return int(year_month_day{date}.year()); }

}  // namespace lotmere

#include "base/number_list.hpp"

#include <algorithm>

#include "base/text.hpp"

namespace lotmere {
std::optional<std::vector<int>> parseNumberList(std::string_view typed, int first, int last) {
  const std::string text = halfWidth(typed);
  std::vector<int> numbers;
  for (std::size_t from = 0; from <= text.size();) {
    const std::size_t comma = std::min(text.find(',', from), text.size());
    const std::string_view part = std::string_view(text).substr(from, comma - from);
    const std::size_t dash = part.find('-');
    const auto low = parseWhole(part.substr(0, dash));
    const auto high = dash == std::string_view::npos ? low : parseWhole(part.substr(dash + 1));
    if (!low || !high || *low < first || *high > last || *low > *high) return std::nullopt;
    for (auto n = *low; n <= *high; ++n) numbers.push_back(static_cast<int>(n));
    from = comma + 1;
  }
  std::sort(numbers.begin(), numbers.end());
  if (std::adjacent_find(numbers.begin(), numbers.end()) != numbers.end()) return std::nullopt;
  return numbers;
}

std::string formatNumberList(std::span<const int> numbers) {
  constexpr std::size_t shortest_run = 3;
  std::string text;
  for (std::size_t from = 0; from < numbers.size();) {
    std::size_t end = from + 1;
    while (end < numbers.size() && numbers[end] == numbers[end - 1] + 1) ++end;
    if (end - from < shortest_run) end = from + 1;
    if (!text.empty()) text += ',';
    text += std::to_string(numbers[from]);
    if (end - from >= shortest_run) text += '-' + std::to_string(numbers[end - 1]);
    from = end;
  }
  return text;
}

}  // namespace lotmere

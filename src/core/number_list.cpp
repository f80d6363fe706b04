#include "core/number_list.hpp"

#include <algorithm>
#include <charconv>

#include "core/text.hpp"

namespace lotmere {
namespace {

std::optional<int> parse_Whole(std::string_view text) {
  text = trim(text);
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || text.front() == '-' || error != std::errc{} || end != text.data() + text.size())
    return std::nullopt;
  return value;
}

}  // namespace

std::optional<std::vector<int>> parse_NumberList(std::string_view text, int first, int last) {
  std::vector<int> numbers;
  for (std::size_t from = 0; from <= text.size();) {
    const std::size_t comma = std::min(text.find(',', from), text.size());
    const std::string_view part = text.substr(from, comma - from);
    const std::size_t dash = part.find('-');
    const auto low = parse_Whole(part.substr(0, dash));
    const auto high = dash == std::string_view::npos ? low : parse_Whole(part.substr(dash + 1));
    if (!low || !high || *low < first || *high > last || *low > *high) return std::nullopt;
    for (int n = *low; n <= *high; ++n) numbers.push_back(n);
    from = comma + 1;
  }
  std::sort(numbers.begin(), numbers.end());
  if (std::adjacent_find(numbers.begin(), numbers.end()) != numbers.end()) return std::nullopt;
  return numbers;
}

}  // namespace lotmere

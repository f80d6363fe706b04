// Lists of whole numbers as a user writes them: "1,2,5-9".
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lotmere {

// Reads numbers and ascending ranges separated by commas; blanks around a part are allowed, and the
// full-width characters that a Chinese keyboard makes of digits, commas and dashes. Each number must lie in
// first to last and may stand once. The answer is ascending. Nothing for a text that breaks a rule, the empty
// text included.
[[nodiscard]] std::optional<std::vector<int>> parseNumberList(std::string_view typed, int first, int last);

// Ascending numbers as parseNumberList reads them, runs of three and more with a dash: "1,2,5-9". Empty for
// none.
[[nodiscard]] std::string formatNumberList(std::span<const int> numbers);

}  // namespace lotmere

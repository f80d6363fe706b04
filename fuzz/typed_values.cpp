// What a person types behind a command: number lists, values of a condition, periods, dates. The first byte chooses
// the condition, the others are the text.
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <functional>

#include "cli/command.hpp"
#include "conditions/values.hpp"
#include "core/dates.hpp"
#include "core/number_list.hpp"
#include "core/text.hpp"
#include "fuzzing.hpp"

namespace lotmere::fuzz {
namespace {

void check_NumberList(std::string_view text, int first, int last) {
  const auto numbers = parse_NumberList(text, first, last);
  if (!numbers) return;
  expect(!numbers->empty() && numbers->front() >= first && numbers->back() <= last,
         "numbers lie in their range");
  expect(std::adjacent_find(numbers->begin(), numbers->end(), std::greater_equal<>()) == numbers->end(),
         "numbers ascend");
  expect(parse_NumberList(fmt::format(" {:02} ", fmt::join(*numbers, " , ")), first, last) == numbers,
         "numbers read back");
}

std::string cell_Text(const Condition& condition, int k) {
  if (condition.kind == CellKind::value || condition.kind == CellKind::count) return std::to_string(k);
  return item_Text(condition, k)
      .substr(condition.kind == CellKind::run_shape ? condition.item_text.size() : 0);
}

void check_Values(const Condition& condition, std::string_view text) {
  const auto cells = parse_Values(condition, text);
  if (!cells) return;
  const bool numbers = condition.kind == CellKind::value || condition.kind == CellKind::count;
  std::string written;
  for (const int k : *cells) {
    expect(k >= 0 && k < cell_Count(condition), "a value names a cell");
    written += (written.empty() ? "" : numbers ? "," : ";") + cell_Text(condition, k);
  }
  expect(!cells->empty() && parse_Values(condition, written) == cells, "values read back");
}

void check_Period(const std::string& text) {
  CountingDesk desk;
  const auto period = read_Period(desk, text);
  expect(desk.told == (period ? 0 : 1), "a refusal is told once");
  const std::string quoted = quote_Typed(text);
  constexpr std::size_t longest = 180;  // bytes
  expect(quoted.size() < longest &&
             std::none_of(quoted.begin(), quoted.end(), [](unsigned char c) { return c < ' '; }),
         "a quotation is short and plain");
  if (period)
    expect(std::to_string(*period) == plain_Digits(text) && is_Period(*period), "a period is what was typed");
}

void check_Others(std::string text) {
  if (const auto date = parse_Date(text)) expect(format_Date(*date) == text, "a date is what was typed");
  constexpr int largest = 99;
  if (whole_Number(0, largest)(text).empty())
    expect(leading_Number(text) <= largest && std::to_string(leading_Number(text)) == text,
           "a number is whole");
}

}  // namespace
}  // namespace lotmere::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lotmere;
  if (size == 0) return 0;
  const std::string text(data + 1, data + size);
  fuzz::check_NumberList(text, 1, kRedCount);
  fuzz::check_NumberList(text, 0, 170);
  fuzz::check_Values(allConditions()[data[0] % allConditions().size()], text);
  fuzz::check_Period(text);
  fuzz::check_Others(text);
  return 0;
}

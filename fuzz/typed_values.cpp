// What a person types behind a command: number lists, values of a condition, periods, dates. The first byte
// chooses the condition, the others are the text.
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <functional>

#include "base/dates.hpp"
#include "base/number_list.hpp"
#include "base/text.hpp"
#include "cli/command.hpp"
#include "conditions/values.hpp"
#include "fuzzing.hpp"

namespace lotmere::fuzz {
namespace {

void checkNumberList(std::string_view text, int first, int last) {
  const auto numbers = parseNumberList(text, first, last);
  if (!numbers) return;
  expect(!numbers->empty() && numbers->front() >= first && numbers->back() <= last,
         "numbers lie in their range");
  expect(std::adjacent_find(numbers->begin(), numbers->end(), std::greater_equal<>()) == numbers->end(),
         "numbers ascend");
  expect(parseNumberList(fmt::format(" {:02} ", fmt::join(*numbers, " , ")), first, last) == numbers,
         "numbers read back");
}

std::string cellText(const Condition& condition, int k) {
  if (condition.kind == CellKind::value || condition.kind == CellKind::count) return std::to_string(k);
  return itemText(condition, k)
      .substr(condition.kind == CellKind::run_shape ? condition.item_text.size() : 0);
}

void checkValues(const Condition& condition, std::string_view text) {
  const auto cells = parseValues(condition, text);
  if (!cells) return;
  const bool numbers = condition.kind == CellKind::value || condition.kind == CellKind::count;
  std::string written;
  for (const int k : *cells) {
    expect(k >= 0 && k < cellCount(condition), "a value names a cell");
    written += (written.empty() ? "" : numbers ? "," : ";") + cellText(condition, k);
  }
  expect(!cells->empty() && parseValues(condition, written) == cells, "values read back");
}

void checkPeriod(const std::string& text) {
  CountingDesk desk;
  const auto period = readPeriod(desk, text);
  expect(desk.told == (period ? 0 : 1), "a refusal is told once");
  const std::string quoted = quoteTyped(text);
  constexpr std::size_t longest = 180;  // bytes
  expect(quoted.size() < longest &&
             std::none_of(quoted.begin(), quoted.end(), [](unsigned char c) { return c < ' '; }),
         "a quotation is short and plain");
  if (period)
    expect(std::to_string(*period) == plainDigits(text) && isPeriod(*period), "a period is what was typed");
}

void checkOthers(std::string text) {
  if (const auto date = parseDate(text)) expect(formatDate(*date) == text, "a date is what was typed");
  constexpr int largest = 99;
  if (wholeNumber(0, largest)(text).empty())
    expect(leadingNumber(text) <= largest && std::to_string(leadingNumber(text)) == text,
           "a number is whole");
}

}  // namespace
}  // namespace lotmere::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lotmere;
  if (size == 0) return 0;
  const std::string text(data + 1, data + size);
  fuzz::checkNumberList(text, 1, kRedCount);
  fuzz::checkNumberList(text, 0, 170);
  fuzz::checkValues(allConditions()[data[0] % allConditions().size()], text);
  fuzz::checkPeriod(text);
  fuzz::checkOthers(text);
  return 0;
}

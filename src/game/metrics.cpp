#include "game/metrics.hpp"

#include <algorithm>
#include <bit>
#include <cstdlib>

namespace lotmere {
namespace {

constexpr int kFirstBig = 17;

constexpr int valueOf(NumberValue kind, int n) {
  if (n == 0) return 0;
  switch (kind) {
    case NumberValue::number:
      return n;
    case NumberValue::odd:
      return n % 2 == 1 ? n : 0;
    case NumberValue::even:
      return n % 2 == 0 ? n : 0;
    case NumberValue::tail:
      return n % 10;
    case NumberValue::digit_root:
      return (n - 1) % 9 + 1;
    case NumberValue::big:
      return n >= kFirstBig ? n : 0;
    case NumberValue::small:
      return n < kFirstBig ? n : 0;
    case NumberValue::is_odd:
      return n % 2;
    case NumberValue::is_even:
      return 1 - n % 2;
  }
  return 0;
}

constexpr auto makeTables() {
  std::array<RedTable, int(NumberValue::is_even) + 1> tables{};
  for (int kind = 0; kind < int(tables.size()); ++kind)
    for (int n = 0; n <= kRedCount; ++n)
      tables[kind][n] = static_cast<std::int16_t>(valueOf(static_cast<NumberValue>(kind), n));
  return tables;
}

constexpr auto kTables = makeTables();

// Bit n for each red n; the bit of the missing number is left out.
std::uint64_t bitsOf(const Reds& reds) {
  std::uint64_t bits = 0;
  for (const int red : reds) bits |= std::uint64_t{1} << red;
  return bits & ~std::uint64_t{1};
}

// The shape number of (longest run, numbers in runs); 0 where no such pair exists.
constexpr auto makeRunShapes() {
  std::array<std::array<std::int8_t, 7>, 7> shape{};
  shape[2][2] = 1;
  shape[2][4] = 2;
  shape[2][6] = 3;
  shape[3][3] = 4;
  shape[3][5] = 5;
  shape[3][6] = 6;
  shape[4][4] = 7;
  shape[4][6] = 8;
  shape[5][5] = 9;
  shape[6][6] = 10;
  return shape;
}

RedTable markSame(NumberValue kind, const Reds& previous) {
  const RedTable& table = numberTable(kind);
  std::uint64_t seen = 0;
  for (const int red : previous) seen |= std::uint64_t{1} << table[red];
  RedTable marks{};
  for (int n = 1; n <= kRedCount; ++n) marks[n] = (seen >> table[n]) & 1;
  return marks;
}

}  // namespace

int numberValue(NumberValue kind, int number) { return kTables[int(kind)][number]; }

const RedTable& numberTable(NumberValue kind) { return kTables[int(kind)]; }

int spanOf(const Reds& reds) {
  const auto [low, high] = std::minmax_element(reds.begin(), reds.end());
  return *high - *low;
}

int largestGap(const Reds& reds) {
  std::uint64_t bits = bitsOf(reds);
  int largest = 0;
  while (bits & (bits - 1)) {
    const int low = std::countr_zero(bits);
    bits &= bits - 1;
    largest = std::max(largest, std::countr_zero(bits) - low);
  }
  return largest;
}

int acValue(const Reds& reds) {
  std::uint64_t differences = 0;
  for (int i = 0; i < kRedsPerTicket; ++i)
    for (int j = i + 1; j < kRedsPerTicket; ++j)
      differences |= std::uint64_t{1} << std::abs(reds[i] - reds[j]);
  return std::popcount(differences) - 5;
}

int runShape(const Reds& reds) {
  static constexpr auto shape = makeRunShapes();
  std::uint64_t bits = bitsOf(reds);
  int longest = 0;
  int total = 0;
  while (bits) {
    bits >>= std::countr_zero(bits);
    const int run = std::countr_one(bits);
    bits >>= run;
    if (run < 2) continue;
    longest = std::max(longest, run);
    total += run;
  }
  return shape[longest][total];
}

const std::array<std::string_view, 11>& runShapes() {
  static constexpr std::array<std::string_view, 11> shapes = {"0",   "2", "2+2", "2+2+2", "3", "3+2",
                                                              "3+3", "4", "4+2", "5",     "6"};
  return shapes;
}

RedTable markReds(const Reds& previous) {
  RedTable marks{};
  for (const int red : previous) marks[red] = 1;
  marks[0] = 0;
  return marks;
}

RedTable markTails(const Reds& previous) { return markSame(NumberValue::tail, previous); }

RedTable markDigitRoots(const Reds& previous) { return markSame(NumberValue::digit_root, previous); }

RedTable markNeighbours(const Reds& previous) {
  RedTable marks{};
  for (const int red : previous) {
    if (red > 1) marks[red - 1] = 1;
    if (red < kRedCount) marks[red + 1] = 1;
  }
  return marks;
}

int countRepeats(const Reds& previous, const Reds& current) { return sumOf(markReds(previous), current); }

int countTailRepeats(const Reds& previous, const Reds& current) {
  return sumOf(markTails(previous), current);
}

int countDigitRootRepeats(const Reds& previous, const Reds& current) {
  return sumOf(markDigitRoots(previous), current);
}

int countNeighbours(const Reds& previous, const Reds& current) {
  return sumOf(markNeighbours(previous), current);
}

}  // namespace lotmere

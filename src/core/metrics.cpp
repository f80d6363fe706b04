#include "core/metrics.hpp"

#include <algorithm>
#include <bit>
#include <cstdlib>

namespace lotmere {
namespace {

constexpr int kFirstBig = 17;

constexpr int value_Of(NumberValue kind, int n) {
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

constexpr auto make_Tables() {
  std::array<RedTable, int(NumberValue::is_even) + 1> tables{};
  for (int kind = 0; kind < int(tables.size()); ++kind)
    for (int n = 0; n <= kRedCount; ++n)
      tables[kind][n] = static_cast<std::int16_t>(value_Of(static_cast<NumberValue>(kind), n));
  return tables;
}

constexpr auto kTables = make_Tables();

// Bit n for each red n; the bit of the missing number is left out.
std::uint64_t bits_Of(const Reds& reds) {
  std::uint64_t bits = 0;
  for (const int red : reds) bits |= std::uint64_t{1} << red;
  return bits & ~std::uint64_t{1};
}

// The shape number of (longest run, numbers in runs); 0 where no such pair exists.
constexpr auto make_RunShapes() {
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

RedTable mark_Same(NumberValue kind, const Reds& previous) {
  const RedTable& table = number_Table(kind);
  std::uint64_t seen = 0;
  for (const int red : previous) seen |= std::uint64_t{1} << table[red];
  RedTable marks{};
  for (int n = 1; n <= kRedCount; ++n) marks[n] = (seen >> table[n]) & 1;
  return marks;
}

}  // namespace

int number_Value(NumberValue kind, int number) { return kTables[int(kind)][number]; }

const RedTable& number_Table(NumberValue kind) { return kTables[int(kind)]; }

int calc_KuaDu(const Reds& reds) {
  const auto [low, high] = std::minmax_element(reds.begin(), reds.end());
  return *high - *low;
}

int calc_JianJuMax(const Reds& reds) {
  std::uint64_t bits = bits_Of(reds);
  int largest = 0;
  while (bits & (bits - 1)) {
    const int low = std::countr_zero(bits);
    bits &= bits - 1;
    largest = std::max(largest, std::countr_zero(bits) - low);
  }
  return largest;
}

int calc_AC(const Reds& reds) {
  std::uint64_t differences = 0;
  for (int i = 0; i < kRedsPerTicket; ++i)
    for (int j = i + 1; j < kRedsPerTicket; ++j)
      differences |= std::uint64_t{1} << std::abs(reds[i] - reds[j]);
  return std::popcount(differences) - 5;
}

int calc_LianHaoMax(const Reds& reds) {
  static constexpr auto shape = make_RunShapes();
  std::uint64_t bits = bits_Of(reds);
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

const std::array<std::string_view, 11>& run_Shapes() {
  static constexpr std::array<std::string_view, 11> shapes = {"0",   "2", "2+2", "2+2+2", "3", "3+2",
                                                              "3+3", "4", "4+2", "5",     "6"};
  return shapes;
}

RedTable mark_Reds(const Reds& previous) {
  RedTable marks{};
  for (const int red : previous) marks[red] = 1;
  marks[0] = 0;
  return marks;
}

RedTable mark_Tails(const Reds& previous) { return mark_Same(NumberValue::tail, previous); }

RedTable mark_DigitRoots(const Reds& previous) { return mark_Same(NumberValue::digit_root, previous); }

RedTable mark_Neighbours(const Reds& previous) {
  RedTable marks{};
  for (const int red : previous) {
    if (red > 1) marks[red - 1] = 1;
    if (red < kRedCount) marks[red + 1] = 1;
  }
  return marks;
}

int calc_CongDie(const Reds& previous, const Reds& current) { return sum_Of(mark_Reds(previous), current); }

int calc_weisuCongDie(const Reds& previous, const Reds& current) {
  return sum_Of(mark_Tails(previous), current);
}

int calc_hesuCongDie(const Reds& previous, const Reds& current) {
  return sum_Of(mark_DigitRoots(previous), current);
}

int calc_XieWeiMa(const Reds& previous, const Reds& current) {
  return sum_Of(mark_Neighbours(previous), current);
}

}  // namespace lotmere

#include "core/attributes.hpp"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace lotmere {
namespace {

template <int Interval>
bool by_Interval(int g, int n) {
  return (n - 1) % Interval == g;
}

// Twelve columns of which the first three hold members: the numbers modulo 12 in fours.
bool by_TwelveInThree(int g, int n) { return (n - 1) % 12 / 4 == g; }

bool by_Tail(int g, int n) { return n % 10 == g; }

// 1-10, 11-20, 21-30 each in two halves, then 31-33 as the seventh group.
bool by_DecadeParity(int g, int n) { return n > 30 ? g == 6 : g == (n - 1) / 10 * 2 + (n % 2 == 0); }
bool by_DecadeTail(int g, int n) { return n > 30 ? g == 6 : g == (n - 1) / 10 * 2 + (n % 10 >= 5); }

// The pairs with one sum, smallest first; the number without a partner last.
template <int Sum>
bool by_PairSum(int g, int n) {
  int group = 0;
  for (int low = 1; low < Sum - low; ++low) {
    const int high = Sum - low;
    if (high > kRedCount) continue;
    if (n == low || n == high) return g == group;
    ++group;
  }
  return g == group;
}

bool by_OddEven(int g, int n) { return (n - 1) / 2 == g; }
bool by_EvenOdd(int g, int n) { return n / 2 == g; }

// Pairs a fixed distance apart, (1, 1 + d), (2, 2 + d), ...; the number without a partner last.
template <int Distance>
bool by_Distance(int g, int n) {
  constexpr int pairs = kRedCount - Distance;
  static_assert(pairs == 16 || pairs == 17);
  if (n - Distance >= 1 && n - Distance <= 16) return g == n - Distance - 1;
  if (n <= 16) return g == n - 1;
  return g == 16;
}

// A sequence of all 33 numbers cut into pairs, the last number alone.
bool in_Pairs(const std::array<int, kRedCount>& sequence, int g, int n) {
  const auto place = std::find(sequence.begin(), sequence.end(), n) - sequence.begin();
  return place / 2 == g;
}

// 1, 1 + step, 1 + 2 step, 2, 2 + step, ...
template <int Step>
bool by_Chain(int g, int n) {
  static const auto sequence = [] {
    std::array<int, kRedCount> chain{};
    int place = 0;
    for (int start = 1; start <= Step; ++start)
      for (int number = start; number <= kRedCount; number += Step) chain[place++] = number;
    return chain;
  }();
  return in_Pairs(sequence, g, n);
}

int wave_Of(int n) {
  for (const int red : {1, 2, 7, 8, 12, 13, 18, 19, 23, 24, 29, 30})
    if (n == red) return 0;
  for (const int blue : {3, 4, 9, 10, 14, 15, 20, 25, 26, 31})
    if (n == blue) return 1;
  return 2;
}

int decade_Of(int n) { return (n - 1) / 10; }

// The first number of each class in turn, then the second of each, and so on.
template <int Classes>
std::array<int, kRedCount> dealt_InTurn(int (*class_of)(int)) {
  std::array<std::vector<int>, Classes> members;
  for (int n = 1; n <= kRedCount; ++n) members[class_of(n)].push_back(n);
  std::array<int, kRedCount> sequence{};
  int place = 0;
  for (std::size_t round = 0; place < kRedCount; ++round)
    for (const auto& numbers : members)
      if (round < numbers.size()) sequence[place++] = numbers[round];
  return sequence;
}

bool by_WaveTurn(int g, int n) {
  static const auto sequence = dealt_InTurn<3>(wave_Of);
  return in_Pairs(sequence, g, n);
}

bool by_DecadeTurn(int g, int n) {
  static const auto sequence = dealt_InTurn<4>(decade_Of);
  return in_Pairs(sequence, g, n);
}

// Runs of a length; what is left over joins the last of the whole runs.
template <int Length>
bool by_Run(int g, int n) {
  return std::min((n - 1) / Length, kRedCount / Length - 1) == g;
}

bool by_Wave(int g, int n) { return wave_Of(n) == g; }
bool by_Decade(int g, int n) { return decade_Of(n) == g; }
bool by_TailPair(int g, int n) { return n % 10 / 2 == g; }
bool by_SizeParity(int g, int n) { return g == (n >= 17 ? 0 : 2) + (n % 2 == 0); }
bool by_TailSizeParity(int g, int n) { return g == (n % 10 >= 5 ? 0 : 2) + (n % 2 == 0); }
bool is_Big(int /*g*/, int n) { return n >= 17; }
bool is_HighTail(int /*g*/, int n) { return n % 10 >= 5; }
bool is_LowTail(int /*g*/, int n) { return n % 10 < 5; }
bool is_Nobody(int /*g*/, int /*n*/) { return false; }

using enum AttributeTable;

constexpr AttributeFamily kFamilies[] = {
    {first, "区间", 1, 4, by_Decade},
    {first, "四", 0, 4, by_Interval<4>},
    {first, "七", 0, 10, by_Interval<7>},
    {first, "八", 0, 10, by_Interval<8>},
    {first, "九", 0, 10, by_Interval<9>},
    {first, "十一", 0, 11, by_Interval<11>},
    {first, "十二", 0, 12, by_TwelveInThree},
    {first, "尾", 0, 10, by_Tail},
    {first, "七分组", 0, 10, by_DecadeParity},
    {first, "尾七分组", 0, 10, by_DecadeTail},
    {first, "和数三三", 0, 17, by_PairSum<33>},
    {first, "和数三四", 0, 17, by_PairSum<34>},
    {first, "和数三五", 0, 17, by_PairSum<35>},
    {first, "奇偶连", 0, 17, by_OddEven},
    {first, "偶奇连", 0, 17, by_EvenOdd},
    {first, "等差16组", 0, 17, by_Distance<16>},
    {first, "等差17组", 0, 17, by_Distance<17>},
    {first, "间距11链", 0, 17, by_Chain<11>},
    {first, "大数", 0, 0, is_Big},
    {first, "高尾码", 0, 0, is_HighTail},
    {first, "低尾码", 0, 0, is_LowTail},
    {first, "第", 1, 7, is_Nobody},
    {first, "自定义组", 1, 10, is_Nobody},
    {second, "大小奇偶尾", 0, 4, by_TailSizeParity},
    {second, "大小奇偶组", 0, 4, by_SizeParity},
    {second, "八数四分自然段", 0, 4, by_Run<8>},
    {second, "间距三", 0, 3, by_Interval<3>},
    {second, "三波组", 0, 3, by_Wave},
    {second, "十一数三分自然段", 0, 3, by_Run<11>},
    {second, "间距五", 0, 5, by_Interval<5>},
    {second, "双尾5分组", 0, 5, by_TailPair},
    {second, "间距六", 0, 6, by_Interval<6>},
    {second, "四数八分自然段", 0, 8, by_Run<4>},
    {second, "间距十", 0, 10, by_Interval<10>},
    {second, "间距十二", 0, 12, by_Interval<12>},
    {second, "三波排异", 0, 17, by_WaveTurn},
    {second, "区间排异", 0, 17, by_DecadeTurn},
    {second, "生肖链", 0, 17, by_Chain<12>},
};

std::vector<CustomInterval> make_CustomIntervals() {
  constexpr std::string_view captions[] = {"六区间", "七区间",   "八区间",  "九区间",
                                           "十区间", "十一区间", "十二区间"};
  std::vector<CustomInterval> intervals;
  for (int division = 6; division <= 12; ++division) {
    for (int index = 0; index < division; ++index) {
      const int turn = static_cast<int>(intervals.size()) + 1;
      const ConditionId cell = 7000 + 10 * (turn - 1);
      intervals.push_back({turn, std::string(captions[division - 6]) + std::to_string(index + 1), 400 + turn,
                           cell, cell + 9, division, index});
    }
  }
  return intervals;
}

}  // namespace

std::string_view table_Name(AttributeTable table) {
  constexpr std::string_view names[] = {"号码特性", "号码特性2", "号码特性3"};
  return names[int(table)];
}

std::span<const AttributeFamily> attribute_Families() { return kFamilies; }

std::vector<std::string> attribute_Columns(AttributeTable table) {
  std::vector<std::string> columns;
  for (const AttributeFamily& family : kFamilies) {
    if (family.table != table) continue;
    if (family.count == 0) columns.emplace_back(family.name);
    for (int i = 0; i < family.count; ++i)
      columns.push_back(std::string(family.name) + std::to_string(family.first + i));
  }
  if (table == third)
    for (const CustomInterval& interval : factory_CustomIntervals()) columns.push_back(interval.name);
  return columns;
}

const std::vector<CustomInterval>& factory_CustomIntervals() {
  static const auto intervals = make_CustomIntervals();
  return intervals;
}

bool division_Holds(int division, int index, int number) {
  const int length = kRedCount / division;
  const int longer = kRedCount % division;
  const int start = index * length + std::min(index, longer);
  const int place = number - 1 - start;
  return place >= 0 && place < length + (index < longer ? 1 : 0);
}

}  // namespace lotmere

#include "catalogue/attributes.hpp"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace lotmere {
namespace {

template <int Interval>
bool byInterval(int g, int n) {
  return (n - 1) % Interval == g;
}

// Twelve columns of which the first three hold members: the numbers modulo 12 in fours.
bool byTwelveInThree(int g, int n) { return (n - 1) % 12 / 4 == g; }

bool byTail(int g, int n) { return n % 10 == g; }

// 1-10, 11-20, 21-30 each in two halves, then 31-33 as the seventh group.
bool byDecadeParity(int g, int n) { return n > 30 ? g == 6 : g == (n - 1) / 10 * 2 + (n % 2 == 0); }
bool byDecadeTail(int g, int n) { return n > 30 ? g == 6 : g == (n - 1) / 10 * 2 + (n % 10 >= 5); }

// The pairs with one sum, smallest first; the number without a partner last.
template <int Sum>
bool byPairSum(int g, int n) {
  int group = 0;
  for (int low = 1; low < Sum - low; ++low) {
    const int high = Sum - low;
    if (high > kRedCount) continue;
    if (n == low || n == high) return g == group;
    ++group;
  }
  return g == group;
}

bool byOddEven(int g, int n) { return (n - 1) / 2 == g; }
bool byEvenOdd(int g, int n) { return n / 2 == g; }

// Pairs a fixed distance apart, (1, 1 + d), (2, 2 + d), ...; the number without a partner last.
template <int Distance>
bool byDistance(int g, int n) {
  constexpr int pairs = kRedCount - Distance;
  static_assert(pairs == 16 || pairs == 17);
  if (n - Distance >= 1 && n - Distance <= 16) return g == n - Distance - 1;
  if (n <= 16) return g == n - 1;
  return g == 16;
}

// A sequence of all 33 numbers cut into pairs, the last number alone.
bool inPairs(const std::array<int, kRedCount>& sequence, int g, int n) {
  const auto place = std::find(sequence.begin(), sequence.end(), n) - sequence.begin();
  return place / 2 == g;
}

// 1, 1 + step, 1 + 2 step, 2, 2 + step, ...
template <int Step>
bool byChain(int g, int n) {
  static const auto sequence = [] {
    std::array<int, kRedCount> chain{};
    int place = 0;
    for (int start = 1; start <= Step; ++start)
      for (int number = start; number <= kRedCount; number += Step) chain[place++] = number;
    return chain;
  }();
  return inPairs(sequence, g, n);
}

int waveOf(int n) {
  for (const int red : {1, 2, 7, 8, 12, 13, 18, 19, 23, 24, 29, 30})
    if (n == red) return 0;
  for (const int blue : {3, 4, 9, 10, 14, 15, 20, 25, 26, 31})
    if (n == blue) return 1;
  return 2;
}

int decadeOf(int n) { return (n - 1) / 10; }

// The first number of each class in turn, then the second of each, and so on.
template <int Classes>
std::array<int, kRedCount> dealtInTurn(int (*class_of)(int)) {
  std::array<std::vector<int>, Classes> members;
  for (int n = 1; n <= kRedCount; ++n) members[class_of(n)].push_back(n);
  std::array<int, kRedCount> sequence{};
  int place = 0;
  for (std::size_t round = 0; place < kRedCount; ++round)
    for (const auto& numbers : members)
      if (round < numbers.size()) sequence[place++] = numbers[round];
  return sequence;
}

bool byWaveTurn(int g, int n) {
  static const auto sequence = dealtInTurn<3>(waveOf);
  return inPairs(sequence, g, n);
}

bool byDecadeTurn(int g, int n) {
  static const auto sequence = dealtInTurn<4>(decadeOf);
  return inPairs(sequence, g, n);
}

// Runs of a length; what is left over joins the last of the whole runs.
template <int Length>
bool byRun(int g, int n) {
  return std::min((n - 1) / Length, kRedCount / Length - 1) == g;
}

bool byWave(int g, int n) { return waveOf(n) == g; }
bool byDecade(int g, int n) { return decadeOf(n) == g; }
bool byTailPair(int g, int n) { return n % 10 / 2 == g; }
bool bySizeParity(int g, int n) { return g == (n >= 17 ? 0 : 2) + (n % 2 == 0); }
bool byTailSizeParity(int g, int n) { return g == (n % 10 >= 5 ? 0 : 2) + (n % 2 == 0); }
bool isBig(int /*g*/, int n) { return n >= 17; }
bool isHighTail(int /*g*/, int n) { return n % 10 >= 5; }
bool isLowTail(int /*g*/, int n) { return n % 10 < 5; }
bool isNobody(int /*g*/, int /*n*/) { return false; }

using enum AttributeTable;

constexpr AttributeFamily kFamilies[] = {
    {first, "区间", 1, 4, byDecade},
    {first, "四", 0, 4, byInterval<4>},
    {first, "七", 0, 10, byInterval<7>},
    {first, "八", 0, 10, byInterval<8>},
    {first, "九", 0, 10, byInterval<9>},
    {first, "十一", 0, 11, byInterval<11>},
    {first, "十二", 0, 12, byTwelveInThree},
    {first, "尾", 0, 10, byTail},
    {first, "七分组", 0, 10, byDecadeParity},
    {first, "尾七分组", 0, 10, byDecadeTail},
    {first, "和数三三", 0, 17, byPairSum<33>},
    {first, "和数三四", 0, 17, byPairSum<34>},
    {first, "和数三五", 0, 17, byPairSum<35>},
    {first, "奇偶连", 0, 17, byOddEven},
    {first, "偶奇连", 0, 17, byEvenOdd},
    {first, "等差16组", 0, 17, byDistance<16>},
    {first, "等差17组", 0, 17, byDistance<17>},
    {first, "间距11链", 0, 17, byChain<11>},
    {first, "大数", 0, 0, isBig},
    {first, "高尾码", 0, 0, isHighTail},
    {first, "低尾码", 0, 0, isLowTail},
    {first, "第", 1, 7, isNobody},
    {first, "自定义组", 1, 10, isNobody},
    {second, "大小奇偶尾", 0, 4, byTailSizeParity},
    {second, "大小奇偶组", 0, 4, bySizeParity},
    {second, "八数四分自然段", 0, 4, byRun<8>},
    {second, "间距三", 0, 3, byInterval<3>},
    {second, "三波组", 0, 3, byWave},
    {second, "十一数三分自然段", 0, 3, byRun<11>},
    {second, "间距五", 0, 5, byInterval<5>},
    {second, "双尾5分组", 0, 5, byTailPair},
    {second, "间距六", 0, 6, byInterval<6>},
    {second, "四数八分自然段", 0, 8, byRun<4>},
    {second, "间距十", 0, 10, byInterval<10>},
    {second, "间距十二", 0, 12, byInterval<12>},
    {second, "三波排异", 0, 17, byWaveTurn},
    {second, "区间排异", 0, 17, byDecadeTurn},
    {second, "生肖链", 0, 17, byChain<12>},
};

std::vector<CustomInterval> makeCustomIntervals() {
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

std::string_view tableName(AttributeTable table) {
  constexpr std::string_view names[] = {"号码特性", "号码特性2", "号码特性3"};
  return names[int(table)];
}

std::span<const AttributeFamily> attributeFamilies() { return kFamilies; }

std::vector<std::string> attributeColumns(AttributeTable table) {
  std::vector<std::string> columns;
  for (const AttributeFamily& family : kFamilies) {
    if (family.table != table) continue;
    if (family.count == 0) columns.emplace_back(family.name);
    for (int i = 0; i < family.count; ++i)
      columns.push_back(std::string(family.name) + std::to_string(family.first + i));
  }
  if (table == third)
    for (const CustomInterval& interval : factoryCustomIntervals()) columns.push_back(interval.name);
  return columns;
}

const std::vector<CustomInterval>& factoryCustomIntervals() {
  static const auto intervals = makeCustomIntervals();
  return intervals;
}

bool divisionHolds(int division, int index, int number) {
  const int length = kRedCount / division;
  const int longer = kRedCount % division;
  const int start = index * length + std::min(index, longer);
  const int place = number - 1 - start;
  return place >= 0 && place < length + (index < longer ? 1 : 0);
}

}  // namespace lotmere

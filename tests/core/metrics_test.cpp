#include "core/metrics.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <random>
#include <set>
#include <string>

namespace lotmere {
namespace {

int sum(NumberValue kind, const Reds& reds) { return sum_Of(number_Table(kind), reds); }

TEST(Metrics, WorkedExamples) {
  struct Row {
    const char* name;
    Reds reds;
    int span, gap, ac;
    const char* runs;
  };
  const Row rows[] = {
      {"one pair", {2, 8, 12, 13, 17, 26}, 24, 9, 7, "2"},
      {"the same out of order", {26, 17, 13, 12, 8, 2}, 24, 9, 7, "2"},
      {"six in a row", {1, 2, 3, 4, 5, 6}, 5, 1, 0, "6"},
      {"a run of three and a pair", {1, 2, 3, 7, 8, 20}, 19, 12, 6, "3+2"},
      {"a run up to the last number", {5, 9, 20, 31, 32, 33}, 28, 11, 8, "3"},
      {"three pairs", {1, 2, 4, 5, 32, 33}, 32, 27, 5, "2+2+2"},
      {"two runs of three", {1, 2, 3, 31, 32, 33}, 32, 28, 2, "3+3"},
      {"one number six times", {7, 7, 7, 7, 7, 7}, 0, 0, -4, "0"},
      {"a number twice in a pair", {3, 3, 4, 10, 20, 30}, 27, 10, 5, "2"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(calc_KuaDu(row.reds), row.span) << row.name;
    EXPECT_EQ(calc_JianJuMax(row.reds), row.gap) << row.name;
    EXPECT_EQ(calc_AC(row.reds), row.ac) << row.name;
    EXPECT_EQ(run_Shapes().at(calc_LianHaoMax(row.reds)), row.runs) << row.name;
  }
  EXPECT_EQ(sum(NumberValue::tail, {8, 9, 18, 19, 28, 29}), 51);
  EXPECT_EQ(sum(NumberValue::digit_root, {8, 9, 17, 18, 26, 27}), 51);
  EXPECT_EQ(sum(NumberValue::digit_root, {10, 19, 28, 33, 33, 33}), 21);
  EXPECT_EQ(sum(NumberValue::big, {15, 16, 17, 18, 32, 33}), 100);
  EXPECT_EQ(sum(NumberValue::small, {15, 16, 17, 18, 32, 33}), 31);
  EXPECT_EQ(sum(NumberValue::odd, {15, 16, 17, 18, 32, 33}), 65);
  EXPECT_EQ(sum(NumberValue::even, {15, 16, 17, 18, 32, 33}), 66);
}

TEST(Metrics, BeforeTheFirstDrawStandSixZeros) {
  const Reds zeros{};
  const Reds reds{1, 2, 10, 20, 30, 33};
  EXPECT_EQ(calc_CongDie(zeros, reds), 0);
  EXPECT_EQ(calc_weisuCongDie(zeros, reds), 3);  // 10, 20 and 30 share the tail of zero
  EXPECT_EQ(calc_hesuCongDie(zeros, reds), 0);
  EXPECT_EQ(calc_XieWeiMa(zeros, reds), 1);  // the number 1 lies beside zero
}

// The rules once more, on plain sets.
int largest_Step(const std::set<int>& numbers) {
  int largest = 0;
  for (auto n = numbers.begin(); n != numbers.end() && std::next(n) != numbers.end(); ++n)
    largest = std::max(largest, *std::next(n) - *n);
  return largest;
}

std::string run_Text(const std::set<int>& numbers) {
  std::multiset<int, std::greater<>> runs;
  for (int n = 1, run = 0; n <= kRedCount + 1; ++n) {
    if (!numbers.contains(n) && run > 1) runs.insert(run);
    run = numbers.contains(n) ? run + 1 : 0;
  }
  std::string text;
  for (const int run : runs) text += (text.empty() ? "" : "+") + std::to_string(run);
  return text.empty() ? "0" : text;
}

int root(int n) { return n > 9 ? root(n / 10 + n % 10) : n; }

TEST(Metrics, AgreeWithTheLiteralRulesOnAnySixNumbers) {
  std::mt19937 random(20240102);
  for (int turn = 0; turn < 30'000; ++turn) {
    // A small range makes repeats and long runs common; a third of the sixes is put in order.
    std::uniform_int_distribution<int> number(1, turn % 2 ? kRedCount : 8);
    Reds now;
    Reds before;
    for (int& red : now) red = number(random);
    for (int& red : before) red = number(random);
    if (turn % 3 == 0) std::sort(now.begin(), now.end());
    SCOPED_TRACE(::testing::PrintToString(before) + " then " + ::testing::PrintToString(now));
    std::set<int> differences;
    for (int i = 0; i < 5; ++i)
      for (int j = i + 1; j < 6; ++j) differences.insert(std::abs(now[i] - now[j]));
    const std::set<int> numbers(now.begin(), now.end());
    ASSERT_EQ(calc_KuaDu(now), *differences.rbegin());
    ASSERT_EQ(calc_AC(now), static_cast<int>(differences.size()) - 5);
    ASSERT_EQ(calc_JianJuMax(now), largest_Step(numbers));
    ASSERT_EQ(run_Shapes().at(calc_LianHaoMax(now)), run_Text(numbers));
    const auto hits = [&](auto same) {
      return std::count_if(now.begin(), now.end(), [&](int b) {
        return std::any_of(before.begin(), before.end(), [&](int a) { return same(a, b); });
      });
    };
    ASSERT_EQ(calc_CongDie(before, now), hits([](int a, int b) { return a == b; }));
    ASSERT_EQ(calc_weisuCongDie(before, now), hits([](int a, int b) { return a % 10 == b % 10; }));
    ASSERT_EQ(calc_hesuCongDie(before, now), hits([](int a, int b) { return root(a) == root(b); }));
    ASSERT_EQ(calc_XieWeiMa(before, now), hits([](int a, int b) { return std::abs(a - b) == 1; }));
  }
}

}  // namespace
}  // namespace lotmere

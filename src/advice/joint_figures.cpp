#include "advice/joint_figures.hpp"

#include <algorithm>
#include <bit>

namespace lotmere {
namespace {

constexpr int kLookupBits = 12;  // 4 KB a table: a few of them stay in the nearest cache

}  // namespace

JointFigures::JointFigures(const FilterPlan& plan, std::span<const std::size_t> steps) {
  int used = 0;  // bits of the words
  for (const std::size_t step : steps) {
    if (!plan.runs(step)) continue;
    const bool is_sum = filterSteps()[step].kind == StepKind::figure &&
                        plan.figure(step).metric.kind == Metric::Kind::table_sum;
    const FigureTest test = is_sum ? plan.figure(step) : FigureTest{};
    const auto [least, most] = std::ranges::minmax(test.metric.table);
    const int width = std::bit_width(static_cast<unsigned>(kRedsPerTicket * most));
    if (!is_sum || least < 0 || width > kLookupBits || used + width > 64) {
      others_.push_back(step);
      continue;
    }
    for (int n = 1; n <= kRedCount; ++n)
      words_[n] |= static_cast<std::uint64_t>(test.metric.table[n]) << used;
    if (lookups_.empty() || lookups_.back().failing.size() << width > 1U << kLookupBits)
      lookups_.push_back({used, 0, {0}});
    Lookup& last = lookups_.back();
    const std::vector<std::uint8_t> before = std::move(last.failing);
    last.failing.clear();
    for (int sum = 0; sum < 1 << width; ++sum)
      for (const std::uint8_t failing : before)
        last.failing.push_back(static_cast<std::uint8_t>(failing + !allows(test.verdicts, sum)));
    last.mask = last.failing.size() - 1;
    used += width;
  }
}

}  // namespace lotmere

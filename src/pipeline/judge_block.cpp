#include "pipeline/judge_block.hpp"

namespace lotmere {
namespace {

template <class Test>
std::int64_t countFailing(std::span<const Balls> tickets, Balls same, const Test& test,
                          std::uint8_t* counts) {
  std::int64_t failing = 0;
  Balls judged = ~Balls{0};
  bool fails = false;
  for (std::size_t row = 0; row < tickets.size(); ++row) {
    const Balls looked_at = tickets[row] & same;
    if (looked_at != judged) {
      judged = looked_at;
      fails = !test(looked_at);
    }
    failing += fails ? ticketsOf(tickets[row]) : 0;
    if (counts != nullptr) counts[row] += fails;
  }
  return failing;
}

}  // namespace

std::int64_t addFailures(const FilterPlan& plan, std::size_t step, std::span<const Balls> tickets,
                         std::uint8_t* counts) {
  // The places look at the blue too.
  const Balls same = filterSteps()[step].kind == StepKind::places ? ~Balls{0} : kRedBytes;
  return plan.withTest(step, [&](auto test) { return countFailing(tickets, same, test, counts); });
}

}  // namespace lotmere

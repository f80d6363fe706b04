#include "advice/judge.hpp"

#include <algorithm>
#include <atomic>
#include <future>

namespace lotmere {
namespace {

constexpr std::size_t kBlock = 8192;            // tickets; their counts stay in the cache from step to step
constexpr std::size_t kWorthAThread = 1 << 16;  // tickets; fewer are judged faster than a thread starts

// Adds 1 for each ticket that fails. `same` are the bytes that the step looks at: tickets alike in them stand
// together and share the verdict of the first.
template <class Test>
void addFailures(std::span<const Balls> tickets, Balls same, const Test& test, std::uint8_t* counts) {
  Balls judged = ~Balls{0};
  bool fails = false;
  for (std::size_t row = 0; row < tickets.size(); ++row) {
    const Balls looked_at = tickets[row] & same;
    if (looked_at != judged) {
      judged = looked_at;
      fails = !test(looked_at);
    }
    counts[row] += fails;
  }
}

void judgeBlock(const FilterPlan& plan, std::span<const Balls> tickets, std::uint8_t* counts) {
  const auto steps = filterSteps();
  for (std::size_t step = 0; step < steps.size(); ++step) {
    if (!plan.runs(step)) continue;
    const Balls same = steps[step].kind == StepKind::places ? ~Balls{0} : kRedBytes;
    plan.withTest(step, [&](auto test) { addFailures(tickets, same, test, counts); });
  }
}

}  // namespace

std::optional<FailureCounts> countFailures(const FilterPlan& plan, std::span<const Balls> tickets,
                                           Course& course, int threads) {
  FailureCounts counts(tickets.size());
  CourseLeg leg(course, static_cast<std::int64_t>(tickets.size()), Course::Stop::possible);
  std::atomic<std::size_t> next{0};
  std::atomic<bool> stopped{false};
  const auto work = [&](bool tells) {
    for (std::size_t begin = next.fetch_add(kBlock); begin < tickets.size() && !stopped;
         begin = next.fetch_add(kBlock)) {
      judgeBlock(plan, tickets.subspan(begin, std::min(kBlock, tickets.size() - begin)), &counts[begin]);
      if (tells && leg.advance(static_cast<std::int64_t>(std::min(next.load(), tickets.size()))))
        stopped = true;
    }
  };
  std::vector<std::future<void>> others;
  const std::size_t most = tickets.size() / kWorthAThread;
  for (std::size_t k = 1; k < std::min(static_cast<std::size_t>(std::max(1, threads)), most); ++k)
    others.push_back(std::async(std::launch::async, work, false));
  work(true);
  for (auto& other : others) other.get();
  if (stopped) return std::nullopt;
  return counts;
}

}  // namespace lotmere

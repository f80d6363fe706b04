#include "advice/judge.hpp"

#include <algorithm>
#include <atomic>
#include <future>

#include "pipeline/judge_block.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kWorthAThread = 1 << 16;  // tickets; fewer are judged faster than a thread starts

void judgeBlock(const FilterPlan& plan, std::span<const Balls> tickets, std::uint8_t* counts) {
  for (std::size_t step = 0; step < filterSteps().size(); ++step)
    if (plan.runs(step)) addFailures(plan, step, tickets, counts);
}

}  // namespace

std::optional<FailureCounts> countFailures(const FilterPlan& plan, std::span<const Balls> tickets,
                                           Course& course, int threads) {
  FailureCounts counts(tickets.size());
  CourseLeg leg(course, static_cast<std::int64_t>(tickets.size()), Course::Stop::possible);
  std::atomic<std::size_t> next{0};
  std::atomic<bool> stopped{false};
  const auto work = [&](bool tells) {
    for (std::size_t begin = next.fetch_add(kJudgeBlock); begin < tickets.size() && !stopped;
         begin = next.fetch_add(kJudgeBlock)) {
      judgeBlock(plan, tickets.subspan(begin, std::min(kJudgeBlock, tickets.size() - begin)), &counts[begin]);
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

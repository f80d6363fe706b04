#include "advice/set_share.hpp"

#include <algorithm>
#include <array>
#include <atomic>
#include <future>
#include <mutex>
#include <span>

#include "advice/joint_figures.hpp"
#include "pipeline/judge_block.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kBlock = kJudgeBlock;
constexpr int kOut = 100;  // more failures than any tolerance lets through

// A block under judgement: what can still pass stands at the front.
struct Block {
  std::array<Balls, kBlock> tickets;
  std::array<std::uint8_t, kBlock> failed;
  std::size_t size = 0;

  // `fails` gives what a ticket's failures grow by.
  template <class Fails>
  void judge(int tolerance, const Fails& fails) {
    std::size_t kept = 0;
    for (std::size_t row = 0; row < size; ++row) {
      const Balls ticket = tickets[row];
      const auto failures = static_cast<std::uint8_t>(failed[row] + fails(ticket));
      tickets[kept] = ticket;
      failed[kept] = failures;
      kept += failures <= tolerance;
    }
    size = kept;
  }
  void judge(const FilterPlan& plan, std::size_t step, int tolerance) {
    const int weight = step == matchStep() ? kOut : 1;
    plan.withTest(
        step, [&](auto test) { judge(tolerance, [&](Balls ticket) { return test(ticket) ? 0 : weight; }); });
  }
};

std::vector<Balls> allSixes() {
  std::vector<Balls> sixes;
  sixes.reserve(kAllRedSixes);
  for (int a = 1; a <= kRedCount - 5; ++a)
    for (int b = a + 1; b <= kRedCount - 4; ++b)
      for (int c = b + 1; c <= kRedCount - 3; ++c)
        for (int d = c + 1; d <= kRedCount - 2; ++d)
          for (int e = d + 1; e <= kRedCount - 1; ++e)
            for (int f = e + 1; f <= kRedCount; ++f) sixes.push_back(packBalls({a, b, c, d, e, f}, 0));
  return sixes;
}

// One blue of each kind that the last place tells apart, with the number of those like it.
struct BlueKind {
  int blue = 0;
  int like_it = 0;
};
std::vector<BlueKind> blueKinds(const PlaceTest& places) {
  std::array<BlueKind, 2> kinds;
  for (int blue = 1; blue <= kBlueCount; ++blue) {
    BlueKind& kind = kinds[places.wrong[kPlaceCount - 1][blue] != 0];
    kind.blue = blue;
    ++kind.like_it;
  }
  std::vector<BlueKind> there;
  for (const BlueKind& kind : kinds)
    if (kind.like_it > 0) there.push_back(kind);
  return there;
}

// Calls work(first) for the first row of each block until all are done or it returns false; `threads` call it
// side by side, this thread with `mine` true.
template <class Work>
void inBlocks(std::size_t rows, int threads, const Work& work) {
  std::atomic<std::size_t> next{0};
  std::atomic<bool> stopped{false};
  const auto take = [&](bool mine) {
    for (std::size_t first = next.fetch_add(kBlock); first < rows && !stopped; first = next.fetch_add(kBlock))
      if (!work(first, mine)) stopped = true;
  };
  std::vector<std::future<void>> others;
  const std::size_t most = rows / (8 * kBlock);
  for (std::size_t k = 1; k < std::min(static_cast<std::size_t>(std::max(1, threads)), most); ++k)
    others.push_back(std::async(std::launch::async, take, false));
  take(true);
  for (auto& other : others) other.get();
}

}  // namespace

std::optional<SetShare> SetShare::make(const std::shared_ptr<const FilterRules>& rules, Course& course,
                                       int threads) {
  SetShare share;
  share.tolerance_ = rules->tolerance;
  share.threads_ = threads;
  const PlaceTest& places = rules->places;
  const FilterPlan plan(rules, DrawTable{}, 0);
  const auto steps = filterSteps();
  std::vector<std::size_t> now;
  for (std::size_t step = 0; step < steps.size(); ++step) {
    if (steps[step].looks_back && plan.isOn(step)) share.later_.push_back(step);
    if (!steps[step].looks_back && plan.runs(step)) now.push_back(step);
  }
  // What costs most and rejects least comes last: the order changes no count.
  std::stable_partition(share.later_.begin(), share.later_.end(),
                        [&](std::size_t step) { return steps[step].condition != nullptr; });

  const bool by_blue = places.canReject() && rules->set.isUsed(usageOfPlace(kPlaceCount));
  share.all_ = kAllRedSixes * (by_blue ? kBlueCount : 1);
  const std::vector<Balls> sixes = allSixes();
  const auto kinds = by_blue ? blueKinds(places) : std::vector<BlueKind>{{0, 1}};
  CourseLeg leg(course, static_cast<std::int64_t>(sixes.size() * kinds.size()), Course::Stop::possible);
  std::int64_t done = 0;
  for (const BlueKind& kind : kinds) {
    Part& part = share.parts_.emplace_back(Part{kind.like_it, {}, {}});
    std::mutex mutex;
    std::atomic<std::size_t> judged{0};
    std::atomic<bool> stopped{false};
    inBlocks(sixes.size(), threads, [&](std::size_t first, bool mine) {
      Block block;
      block.size = std::min(kBlock, sixes.size() - first);
      for (std::size_t row = 0; row < block.size; ++row)
        block.tickets[row] = sixes[first + row] | static_cast<Balls>(kind.blue) << 48;
      std::fill_n(block.failed.begin(), block.size, std::uint8_t{0});
      judged += block.size;
      for (const std::size_t step : now) block.judge(plan, step, share.tolerance_);
      const std::lock_guard lock(mutex);
      part.tickets.insert(part.tickets.end(), block.tickets.begin(), block.tickets.begin() + block.size);
      part.failed.insert(part.failed.end(), block.failed.begin(), block.failed.begin() + block.size);
      if (mine && leg.advance(done + static_cast<std::int64_t>(judged.load()))) stopped = true;
      return !stopped;
    });
    if (stopped) return std::nullopt;
    done += static_cast<std::int64_t>(sixes.size());
  }
  return share;
}

std::int64_t SetShare::count(const FilterPlan& plan) const {
  std::atomic<std::int64_t> passed{0};
  const JointFigures figures(plan, later_);
  for (const Part& part : parts_) {
    inBlocks(part.tickets.size(), threads_, [&](std::size_t first, bool) {
      Block block;
      block.size = std::min(kBlock, part.tickets.size() - first);
      std::copy_n(part.tickets.begin() + static_cast<std::ptrdiff_t>(first), block.size,
                  block.tickets.begin());
      std::copy_n(part.failed.begin() + static_cast<std::ptrdiff_t>(first), block.size, block.failed.begin());
      if (figures.any()) block.judge(tolerance_, [&](Balls ticket) { return figures.failures(ticket); });
      for (const std::size_t step : figures.others()) block.judge(plan, step, tolerance_);
      passed += part.weight * static_cast<std::int64_t>(block.size);
      return true;
    });
  }
  return passed;
}

}  // namespace lotmere

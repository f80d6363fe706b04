#include "pipeline/thin.hpp"

#include <algorithm>
#include <array>
#include <atomic>
#include <future>
#include <numeric>
#include <span>

#include "pipeline/judge_block.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kBlock = kJudgeBlock;     // some hundred microseconds of any step
constexpr std::size_t kWorthAThread = 1 << 17;  // tickets; fewer are walked faster than a thread starts

// A part of the set. The tickets that stand lie at its front; a cut-short step leaves them in two groups,
// those that passed and, behind them, those not reached.
struct Segment {
  std::size_t begin = 0;
  std::size_t end = 0;       // behind the entries that stand,
  std::int64_t tickets = 0;  // and how many tickets these are
  std::size_t passed = 0;    // of the step under way: how many passed,
  std::size_t row = 0;       // and the first entry not reached
};

// Counts the tickets that entries stand for, in the time of one look where all stand for as many.
class EntryCount {
 public:
  explicit EntryCount(std::span<const Balls> entries) {
    for (const Balls entry : entries) {
      if (entry >> 56 == entries.front() >> 56) continue;
      each_ = 0;
      return;
    }
    if (!entries.empty()) each_ = ticketsOf(entries.front());
  }
  [[nodiscard]] std::int64_t count(std::span<const Balls> entries) const {
    if (each_ > 0) return each_ * static_cast<std::int64_t>(entries.size());
    std::int64_t tickets = 0;
    for (const Balls entry : entries) tickets += ticketsOf(entry);
    return tickets;
  }

 private:
  std::int64_t each_ = 1;  // 0 where they differ
};

// Keeps the tickets of a block that pass, moving them to `kept` and onward. `by_reds`: tickets with the same
// six reds stand together and share the verdict of the first. `Move` moves what has to move.
template <class Test, class Move>
std::size_t keepPassing(const TicketSet& tickets, std::size_t first, std::size_t end, std::size_t kept,
                        bool by_reds, const Test& test, Move move) {
  Balls same = by_reds ? kRedBytes : ~Balls{0};
  Balls judged = ~Balls{0};
  bool stays = false;
  for (std::size_t row = first; row < end; ++row) {
    const Balls looked_at = tickets.balls[row] & same;
    if (looked_at != judged) {
      judged = looked_at;
      stays = test(looked_at);
    }
    if (stays) move(row, kept++);
  }
  return kept;
}

// How far all segments are, for the one thread that tells the course.
class SharedCourse {
 public:
  explicit SharedCourse(CourseLeg& leg) : leg_(leg) {}
  void add(std::size_t rows) { done_ += rows; }
  // Only the thread that owns the course asks it.
  void tell() {
    if (leg_.advance(static_cast<std::int64_t>(done_.load()))) stop_ = true;
  }
  [[nodiscard]] bool stopped() const { return stop_; }

 private:
  CourseLeg& leg_;
  std::atomic<std::size_t> done_{0};
  std::atomic<bool> stop_{false};
};

class Walk {
 public:
  Walk(const FilterPlan& plan, TicketSet& tickets, Course& course, int threads)
      : plan_(plan), tickets_(tickets), course_(course), counter_(tickets.balls) {
    const std::size_t most = std::max<std::size_t>(1, tickets.size() / kWorthAThread);
    const std::size_t parts = std::min(static_cast<std::size_t>(std::max(1, threads)), most);
    for (std::size_t k = 0; k < parts; ++k)
      segments_.push_back(segmentOf(tickets.size() * k / parts, tickets.size() * (k + 1) / parts));
  }

  // The tickets that stand.
  [[nodiscard]] std::int64_t size() const {
    std::int64_t size = 0;
    for (const Segment& segment : segments_) size += segment.tickets;
    return size;
  }

  [[nodiscard]] bool isNumbered() const { return numbered_; }

  // Walks one step; true when a stop cut it short.
  bool step(std::size_t step) {
    const bool by_reds = filterSteps()[step].kind != StepKind::places;
    // The combinations alone don't number the tickets: those that stand keep their old numbers for the
    // closing.
    whole_ = step == combinationStep() && !numbered_;
    const bool stopped = plan_.withTest(step, [&](auto test) {
      return walk([&](std::size_t /*part*/, std::size_t row, std::size_t end, std::size_t kept) {
        return whole_ ? keepPassing(tickets_, row, end, kept, by_reds, test,
                                    [this](std::size_t from, std::size_t to) { tickets_.moveRow(from, to); })
                      : keepPassing(tickets_, row, end, kept, by_reds, test,
                                    [this](std::size_t from, std::size_t to) { moveNumbers(from, to); });
      });
    });
    if (!stopped) numbered_ = !whole_;
    return stopped;
  }

  // Judges by all running steps together; true when a stop cut it short. Adds to `failing`, by step, how many
  // tickets fail it.
  bool judge(std::vector<std::int64_t>& failing) {
    whole_ = false;
    std::vector<std::vector<std::int64_t>> by_part(segments_.size(), failing);
    const bool stopped = walk([&](std::size_t part, std::size_t row, std::size_t end, std::size_t kept) {
      std::array<std::uint8_t, kBlock> counts{}, rejected{};
      const std::span<const Balls> block(&tickets_.balls[row], end - row);
      for (std::size_t step = 0; step < failing.size(); ++step)
        if (plan_.runs(step))
          by_part[part][step] +=
              addFailures(plan_, step, block, step == matchStep() ? rejected.data() : counts.data());
      for (std::size_t k = 0; k < block.size(); ++k)
        if (rejected[k] == 0 && counts[k] <= plan_.rules().tolerance) moveNumbers(row + k, kept++);
      return kept;
    });
    for (const auto& counts : by_part)
      for (std::size_t step = 0; step < failing.size(); ++step) failing[step] += counts[step];
    numbered_ = true;
    settled_ = false;
    return stopped;
  }

  // The end of the walk, or of the part in front of the combinations' closing: one run of rows, with marks
  // and running numbers.
  void settle() {
    if (settled_) return;
    join();
    if (numbered_) {
      std::fill(tickets_.mark.begin(), tickets_.mark.end(), std::int8_t{1});
      std::iota(tickets_.seq.begin(), tickets_.seq.end(), 1);
    }
    tickets_.recallScores();
    settled_ = true;
  }

  // Behind the combinations every ticket is marked, and numbered in the order of the numbers it had.
  void close() {
    settle();
    std::fill(tickets_.mark.begin(), tickets_.mark.end(), std::int8_t{1});
    tickets_.renumber();
  }

 private:
  [[nodiscard]] Segment segmentOf(std::size_t begin, std::size_t end) const {
    return {begin, end, counter_.count(std::span(tickets_.balls).subspan(begin, end - begin))};
  }

  // Takes every segment block by block: keep(part, row, end, kept) moves what stays of the rows up to `end`
  // to `kept` and onward. True when a stop cut it short.
  template <class Keep>
  bool walk(const Keep& keep) {
    std::size_t rows = 0;
    for (const Segment& segment : segments_) rows += segment.end - segment.begin;
    CourseLeg leg(course_, static_cast<std::int64_t>(rows), Course::Stop::possible);
    SharedCourse shared(leg);
    settled_ = false;
    const auto walk_part = [&](std::size_t part) {
      Segment& segment = segments_[part];
      std::size_t kept = segment.begin;
      std::size_t row = kept;
      while (row < segment.end && !shared.stopped()) {
        const std::size_t end = std::min(row + kBlock, segment.end);
        kept = keep(part, row, end, kept);
        shared.add(end - row);
        row = end;
        if (part == 0) shared.tell();
      }
      segment.passed = kept - segment.begin;
      segment.row = row;
    };
    std::vector<std::future<void>> others;
    for (std::size_t part = 1; part < segments_.size(); ++part)
      others.push_back(std::async(std::launch::async, walk_part, part));
    walk_part(0);
    for (auto& other : others) other.get();
    if (shared.stopped()) {
      joinCutShort();
      return true;
    }
    for (Segment& segment : segments_) segment = segmentOf(segment.begin, segment.begin + segment.passed);
    return false;
  }

  // Moves the segments together to one.
  void join() {
    std::size_t size = segments_.front().end;
    for (std::size_t part = 1; part < segments_.size(); ++part)
      for (std::size_t row = segments_[part].begin; row < segments_[part].end; ++row, ++size)
        tickets_.moveRow(row, size);
    segments_ = {segmentOf(0, size)};
    tickets_.truncate(size);
  }

  // A stop in the middle of a step: in each part first what passed, then what wasn't reached, so that the
  // order of creation holds. What wasn't reached keeps its mark and number; with parts that were walked side
  // by side, whose numbers would clash, it is numbered as it stands.
  void joinCutShort() {
    const bool several = segments_.size() > 1;
    std::size_t size = 0;
    std::int32_t number = 0;
    for (const Segment& segment : segments_) {
      for (std::size_t row = segment.begin; row < segment.begin + segment.passed; ++row, ++size) {
        tickets_.moveRow(row, size);
        ++number;
        if (whole_) continue;
        tickets_.mark[size] = 1;
        tickets_.seq[size] = number;
      }
      for (std::size_t row = segment.row; row < segment.end; ++row, ++size) {
        tickets_.moveRow(row, size);
        if (numbered_) tickets_.mark[size] = 1;
        if (several && !whole_)
          tickets_.seq[size] = ++number;
        else if (numbered_)
          tickets_.seq[size] = static_cast<std::int32_t>(row - segment.begin + 1);
      }
    }
    tickets_.truncate(size);
    tickets_.recallScores();
    segments_ = {segmentOf(0, size)};
    settled_ = true;
  }

  void moveNumbers(std::size_t from, std::size_t to) {
    tickets_.balls[to] = tickets_.balls[from];
    tickets_.origin[to] = tickets_.origin[from];
  }

  const FilterPlan& plan_;
  TicketSet& tickets_;
  Course& course_;
  EntryCount counter_;
  std::vector<Segment> segments_;
  bool numbered_ = false;  // some step has run: every ticket has mark 1 and its place as its running number
  bool settled_ = false;   // and both stand in the set
  bool whole_ = false;     // the step under way moves marks and numbers with the tickets
};

// With a tolerance over the whole set.
Funnel judgeTogether(const FilterPlan& plan, Walk& walk, Course& course, StepWatcher& watcher) {
  using enum StepResult::State;
  const std::size_t steps = filterSteps().size();
  const std::int64_t rows = walk.size();
  Funnel funnel;
  funnel.steps.resize(steps, {off, rows, rows});
  funnel.stopped = course.stopRequested();
  for (std::size_t step = 0; step < steps && !funnel.stopped; ++step) {
    if (!plan.isOn(step)) continue;
    watcher.stepBegins(step, rows);
    funnel.stopped = course.stopRequested();
  }
  bool cut = false;
  std::vector<std::int64_t> failing(steps);
  const bool reached = !funnel.stopped;
  if (reached && rows > 0 && plan.running().any()) {
    watcher.judgingBegins();
    cut = walk.judge(failing);
    funnel.stopped = cut;
  }
  for (std::size_t step = 0; step < steps; ++step) {
    StepResult& result = funnel.steps[step];
    if (plan.isOn(step))
      result.state = !reached ? not_reached : !plan.runs(step) ? unable : cut ? cut_short : done;
    result.after -= failing[step];
    if (step != matchStep()) watcher.stepEnds(step, result);
  }
  watcher.stepEnds(matchStep(), funnel.steps[matchStep()]);
  if (walk.isNumbered())
    walk.settle();
  else
    walk.close();
  funnel.left = walk.size();
  funnel.by_place = walk.isNumbered();
  watcher.judgingEnds(funnel.left);
  return funnel;
}

}  // namespace

Funnel thin(const FilterPlan& plan, TicketSet& tickets, Course& course, StepWatcher& watcher, int threads) {
  using enum StepResult::State;
  Funnel funnel;
  Walk walk(plan, tickets, course, threads);
  if (plan.rules().tolerance > 0) return judgeTogether(plan, walk, course, watcher);
  const auto steps = filterSteps();
  for (std::size_t step = 0; step < steps.size(); ++step) {
    StepResult result{off, walk.size(), walk.size()};
    if (course.stopRequested()) funnel.stopped = true;
    if (!plan.isOn(step)) {
      result.state = off;
    } else if (funnel.stopped) {
      result.state = not_reached;
    } else {
      watcher.stepBegins(step, result.before);
      // Whoever watches may have asked to stop meanwhile.
      funnel.stopped = course.stopRequested();
      result.state = funnel.stopped ? not_reached : plan.runs(step) ? done : unable;
      if (result.state == done && result.before > 0 && walk.step(step)) {
        result.state = cut_short;
        funnel.stopped = true;
      }
      result.after = walk.size();
    }
    if (step == combinationStep()) walk.close();
    watcher.stepEnds(step, result);
    funnel.steps.push_back(result);
  }
  walk.settle();
  funnel.left = walk.size();
  funnel.by_place = walk.isNumbered();
  return funnel;
}

}  // namespace lotmere

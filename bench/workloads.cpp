#include "workloads.hpp"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <algorithm>
#include <random>

#include "advice/judge.hpp"
#include "advice/live_count.hpp"
#include "conditions/condition_store.hpp"
#include "conditions/set_text.hpp"
#include "floors.hpp"
#include "history/draw_stats.hpp"
#include "pipeline/generate.hpp"
#include "pipeline/run.hpp"
#include "pipeline/thin.hpp"
#include "reduction/cover.hpp"
#include "store/periods.hpp"
#include "tickets/init.hpp"
#include "tickets/ticket_steps.hpp"
#include "workload.hpp"
#include "world.hpp"

namespace lotmere::bench {
namespace {

using benchmark::State;

void init100k(State& state, const Sizes& sizes) {
  World world;
  world.pick(sizes.reds, sizes.blues);
  const TicketSet tickets = makeTickets(selectionIn(world.store()), kTarget);
  const auto other = world.otherStore();
  QuietDesk desk;
  for (auto _ : state) {
    double floor = 1e9;
    double subject = 1e9;
    for (int round = 0; round < sizes.rounds; ++round) {
      other->db().exec("DELETE FROM \"日志表\"");
      world.store().db().exec("DELETE FROM \"日志表\"");
      floor = std::min(floor, seconds([&] { insertPlainly(*other, tickets); }));
      subject = std::min(subject, seconds([&] { initTickets(world.store(), desk, kTarget); }));
    }
    check(countTickets(world.store(), kTarget) == tickets.size(), "init-100k wrote other rows");
    report(state, subject, floor, subject / floor, tickets.size());
  }
}

// A world whose table holds the tickets, every condition on.
void setUp(World& world, const Sizes& sizes) {
  world.addDraws(sizes.draws);
  world.pick(sizes.reds, sizes.blues);
  world.setShrinkType(7);
  world.useAllConditions(makeTickets(selectionIn(world.store()), kTarget));
  QuietDesk desk;
  initTickets(world.store(), desk, kTarget);
}

// What a run left, for rows whose IDs start at another number.
std::vector<PlainRow> shiftIDs(std::vector<PlainRow> rows, std::int64_t step) {
  for (PlainRow& row : rows) row.id += step;
  return rows;
}

std::int64_t firstID(Store& store) { return store.value(R"(SELECT min("ID") FROM "日志表")"); }

void run100k(State& state, const Sizes& sizes) {
  World world;
  setUp(world, sizes);
  Store& store = world.store();
  QuietDesk desk;
  for (auto _ : state) {
    double floor = 1e9;
    double subject = 1e9;
    std::size_t survivors = 0;
    std::size_t tickets = 0;
    for (int round = 0; round < sizes.rounds; ++round) {
      tickets = static_cast<std::size_t>(initTickets(store, desk, kTarget).rows);
      const std::int64_t first = firstID(store);
      subject = std::min(subject, seconds([&] { runPipeline(store, desk, kTarget); }));
      const auto left = readPlainly(store, kTarget);
      survivors = left.size();

      initTickets(store, desk, kTarget);
      const auto after = shiftIDs(left, firstID(store) - first);
      floor = std::min(floor, seconds([&] { writePlainly(store, readPlainly(store, kTarget), after); }));
      check(countTickets(store, kTarget) == survivors, "the floor left other rows");
    }
    report(state, subject, floor, subject / floor, tickets);
    state.counters["survivors"] = static_cast<double>(survivors);
  }
}

// What the way back costs a run: the tickets packed and kept, against the run itself. `keep_ms` is the same
// in front of an action that reads no tickets, `undo_ms` the way back.
void undo100k(State& state, const Sizes& sizes) {
  World world;
  setUp(world, sizes);
  Store& store = world.store();
  QuietDesk desk;
  for (auto _ : state) {
    std::vector<double> step, run, keep, undo;
    std::int64_t bytes = 0;
    std::size_t count = 0;
    for (int round = 0; round < sizes.rounds; ++round) {
      initTickets(store, desk, kTarget);
      const TicketSet tickets = loadTickets(store, kTarget, [](std::size_t) { return false; }).value();
      count = tickets.size();
      step.push_back(seconds([&] {
        StoreChange change(store);
        BeforeRun before(store, tickets);
        before.markBeforeShrink(tickets);
        before.keep(store, "", setText(loadConditionSet(store), WithPicks::no));
        change.commit();
      }));
      bytes = store.value(R"(SELECT sum(length("号码")+length("缩水前")) FROM "号码步骤")");
      keep.push_back(seconds([&] {
        StoreChange change(store);
        keepTickets(store, TicketAction::removal);
        change.commit();
      }));
      run.push_back(seconds([&] { runPipeline(store, desk, kTarget); }));
      undo.push_back(seconds([&] { undoTickets(store, desk); }));
      check(countTickets(store, kTarget) == count, "undo-100k brought other tickets back");
    }
    report(state, median(step), median(run), median(step) / median(run), count);
    state.counters["keep_ms"] = 1e3 * median(keep);
    state.counters["undo_ms"] = 1e3 * median(undo);
    state.counters["bytes"] = static_cast<double>(bytes);
  }
}

void run100kWalk(State& state, const Sizes& sizes) {
  World world;
  setUp(world, sizes);
  Store& store = world.store();
  QuietDesk desk;
  // The walk covers the figure passes; the run it stands against leaves the others off too.
  changeSettings(store, [](ConditionSet& set) {
    for (const Condition& condition : allConditions())
      if (condition.kind == CellKind::position || condition.kind == CellKind::combination ||
          condition.kind == CellKind::sum_family || condition.kind == CellKind::setting)
        set.use(condition.usage, false);
    set.match.used = false;
  });
  for (auto _ : state) {
    initTickets(store, desk, kTarget);
    const double subject = seconds([&] { runPipeline(store, desk, kTarget); });
    const std::size_t survivors = countTickets(store, kTarget);
    initTickets(store, desk, kTarget);
    int passes = 0;
    const double walk = seconds([&] { passes = walkPasses(store, kTarget); });
    check(countTickets(store, kTarget) == survivors, "the walk left other rows");
    report(state, subject, walk, walk / subject, 0);
    state.counters["passes"] = passes;
    state.counters["survivors"] = static_cast<double>(survivors);
  }
}

// What a click waits for, the tickets held since the count before; `first` is the count that reads them, and
// `expanded` the same click with an empty table, over what the selection makes.
void live100k(State& state, const Sizes& sizes, int shrink_type) {
  World world;
  setUp(world, sizes);
  world.setShrinkType(shrink_type);
  Store& store = world.store();
  QuietDesk desk;
  for (auto _ : state) {
    std::vector<double> floor, subject, first, expanded;
    std::optional<LiveCount::Result> counted, of_selection;
    LiveCount live;
    FreeCourse course;
    std::shared_ptr<const LiveTickets> table;
    const auto count = [&](auto& result) {
      result = live.count({table, loadConditionSet(store), loadDrawTable(store), kTarget}, course);
    };
    for (int round = 0; round < sizes.rounds; ++round) {
      floor.push_back(seconds([&] { benchmark::DoNotOptimize(readPlainly(store, kTarget)); }));
      first.push_back(seconds([&] {
        table = loadLiveTickets(store);
        count(counted);
      }));
      subject.push_back(seconds([&] { count(counted); }));
    }
    const auto survivors = runPipeline(store, desk, kTarget).tickets;
    store.db().exec("DELETE FROM \"日志表\"");
    table = loadLiveTickets(store);
    for (int round = 0; round <= sizes.rounds; ++round)
      expanded.push_back(seconds([&] { count(of_selection); }));
    check(counted && counted->survivors == survivors, "live-100k counts other tickets than a run leaves");
    check(of_selection && of_selection->survivors == survivors && of_selection->from_selection,
          "live-100k counts other tickets of the selection");
    report(state, median(subject), median(floor), median(subject) / median(floor),
           static_cast<std::size_t>(counted->tickets));
    state.counters["first_ms"] = 1e3 * median(first);
    state.counters["expanded_ms"] = 1e3 * median(expanded);
    state.counters["survivors"] = static_cast<double>(survivors);
  }
}

// The centres of a set by bitmaps.
std::size_t countCentres(const TicketSet& tickets, int shared,
                         OverlapMarks::Repeats repeats = OverlapMarks::Repeats::no) {
  Cover cover(shared, repeats);
  std::size_t centres = 0;
  for (const Balls balls : tickets.balls) centres += cover.take(balls);
  return centres;
}

TicketSet selectedTickets(const Sizes& sizes) {
  World world;
  world.pick(sizes.reds, sizes.blues);
  return makeTickets(selectionIn(world.store()), kTarget);
}

void shrink100k(State& state, const Sizes& sizes, int shared) {
  const TicketSet tickets = selectedTickets(sizes);
  for (auto _ : state) {
    std::size_t centres = 0;
    std::size_t literal_centres = 0;
    double subject = 1e9;
    for (int round = 0; round < sizes.rounds; ++round)
      subject = std::min(subject, seconds([&] { centres = countCentres(tickets, shared); }));
    const double literal = seconds([&] { literal_centres = shrinkLiterally(tickets, 6).size(); });
    if (shared == 6) check(centres == literal_centres, "the two shrinks differ");
    report(state, subject, literal, literal / subject, tickets.size());
    state.counters["centres"] = static_cast<double>(centres);
  }
}

// Tickets that an import may bring: all kinds of numbers, the last red as the first.
TicketSet repeatingTickets(int count) {
  std::mt19937 random(24);  // NOLINT(*-msc51-cpp): the same tickets in every run
  const auto up_to = [&](int most) { return static_cast<int>(random() % static_cast<unsigned>(most)) + 1; };
  TicketSet tickets;
  for (int i = 0; i < count; ++i) {
    Reds reds{};
    for (int& red : reds) red = up_to(kRedCount);
    reds.back() = reds.front();
    tickets.add(packBalls(reds, up_to(kBlueCount)));
  }
  return tickets;
}

void shrinkRepeats(State& state, const Sizes& sizes) {
  const TicketSet tickets = repeatingTickets(sizes.lines / 50);
  for (auto _ : state) {
    std::size_t centres = 0;
    std::size_t literal_centres = 0;
    double subject = 1e9;
    for (int round = 0; round < sizes.rounds; ++round)
      subject =
          std::min(subject, seconds([&] { centres = countCentres(tickets, 6, OverlapMarks::Repeats::yes); }));
    const double literal = seconds([&] { literal_centres = shrinkLiterally(tickets, 6).size(); });
    check(centres == literal_centres, "the two shrinks differ where reds repeat");
    report(state, subject, literal, literal / subject, tickets.size());
    state.counters["centres"] = static_cast<double>(centres);
  }
}

void shrinkAll(State& state, int shared) {
  const TicketSet small = selectedTickets(kFull);
  const TicketSet all = makeTickets(wholeGame(), kTarget);
  for (auto _ : state) {
    double floor = 1e9;
    for (int round = 0; round < 5; ++round)
      floor = std::min(floor, seconds([&] { benchmark::DoNotOptimize(countCentres(small, shared)); }));
    std::size_t centres = 0;
    const double subject = seconds([&] { centres = countCentres(all, shared); });
    const double per_ticket = subject / static_cast<double>(all.size());
    report(state, subject, floor, per_ticket / (floor / static_cast<double>(small.size())), all.size());
    state.counters["centres"] = static_cast<double>(centres);
  }
}

// All steps over a set in memory.
struct PassTime {
  double time;
  double visits;  // tickets looked at by all steps together: a step sees what those before it left
};

PassTime passTickets(World& world, TicketSet& tickets, int threads) {
  Store& store = world.store();
  const ConditionSet set = loadConditionSet(store);
  const DrawTable draws = loadDrawTable(store);
  FreeCourse course;
  StepWatcher nobody;
  Funnel funnel;
  const double time = seconds([&] {
    funnel = thin(FilterPlan(compileRules(set), draws, kTarget), tickets, course, nobody, threads);
  });
  double visits = 0;
  for (const StepResult& step : funnel.steps)
    if (step.state == StepResult::State::done) visits += static_cast<double>(step.before);
  return {time, visits};
}

void passesAll(State& state, const Sizes& sizes, int threads) {
  World world;
  world.addDraws(sizes.draws);
  world.setShrinkType(7);
  world.pick(sizes.reds, sizes.blues);
  const TicketSet small = makeTickets(selectionIn(world.store()), kTarget);
  world.useAllConditions(small);
  const TicketSet whole = makeTickets(wholeGame(), kTarget);
  const std::size_t tickets = whole.size();
  for (auto _ : state) {
    PassTime floor{1e9, 0};
    PassTime subject{1e9, 0};
    TicketSet all;
    for (int round = 0; round < sizes.rounds; ++round) {
      TicketSet copy = small;
      const PassTime timed = passTickets(world, copy, 1);
      if (timed.time < floor.time) floor = timed;
    }
    for (int round = 0; round < 3; ++round) {
      all = whole;
      const PassTime timed = passTickets(world, all, threads);
      if (timed.time < subject.time) subject = timed;
    }
    report(state, subject.time, floor.time, (subject.time / subject.visits) / (floor.time / floor.visits),
           tickets);
    state.counters["visits_per_s"] = subject.visits / subject.time;
    state.counters["survivors"] = static_cast<double>(all.size());
  }
}

// All tickets generated with every condition on and stored, against the same steps over all of them held
// singly and the shrink ticket by ticket.
void generateAll(State& state, const Sizes& sizes) {
  constexpr int shared = 4;
  World world;
  Store& store = world.store();
  world.addDraws(sizes.draws);
  world.pick(sizes.reds, sizes.blues);
  world.useAllConditions(makeTickets(selectionIn(store), kTarget));
  world.setShrinkType(shared);
  changeSettings(store, [](ConditionSet& set) { set.use(kSmartOptimisation, false); });
  QuietDesk desk;
  for (auto _ : state) {
    std::vector<double> floor, subject;
    std::size_t centres = 0;
    TicketSet all;
    for (int round = 0; round < 3; ++round) {
      GenerateResult result;
      subject.push_back(
          seconds([&] { result = generateTickets(store, desk, kTarget, wholeGame(), Existing::replace); }));
      all = makeTickets(wholeGame(), kTarget);
      const PassTime passes = passTickets(world, all, 2);
      floor.push_back(passes.time + seconds([&] { centres = countCentres(all, shared); }));
      check(result.outcome == Outcome::done && countTickets(store, kTarget) == centres,
            "generate-all leaves other tickets than the steps one by one");
    }
    report(state, median(subject), median(floor), median(subject) / median(floor),
           static_cast<std::size_t>(kAllTickets));
    state.counters["filtered"] = static_cast<double>(all.size());
    state.counters["survivors"] = static_cast<double>(centres);
  }
}

// Every failing condition counted for every red six, against the steps of a run over the same sixes, which
// judge a six only until it fails.
void judgeAll(State& state, int threads) {
  World world;
  world.addDraws(kFull.draws);
  world.setShrinkType(7);
  world.pick(kFull.reds, kFull.blues);
  world.useAllConditions(makeTickets(selectionIn(world.store()), kTarget));
  NumberSelection sixes = wholeGame();
  sixes.blue.fill(PickState::none);
  sixes.blue[1] = PickState::tuo;
  const TicketSet whole = makeTickets(sixes, kTarget);
  const FilterPlan plan(compileRules(loadConditionSet(world.store())), loadDrawTable(world.store()), kTarget);
  FreeCourse course;
  for (auto _ : state) {
    double subject = 1e9, floor = 1e9;
    FailureCounts counts;
    TicketSet left;
    for (int round = 0; round < 5; ++round) {
      left = whole;
      floor = std::min(floor, passTickets(world, left, threads).time);
      subject =
          std::min(subject, seconds([&] { counts = *countFailures(plan, whole.balls, course, threads); }));
    }
    check(static_cast<std::size_t>(std::ranges::count(counts, 0)) == left.size(),
          "judging and walking differ in what passes");
    report(state, subject, floor, subject / floor, whole.size());
    state.counters["steps"] = static_cast<double>(plan.running().count());
  }
}

void stats3500(State& state, const Sizes& sizes) {
  World world;
  world.addDraws(sizes.draws);
  QuietDesk desk;
  for (auto _ : state) {
    double subject = 1e9;
    for (int round = 0; round < sizes.rounds; ++round)
      subject = std::min(subject,
                         seconds([&] { computeDrawStatistics(world.store(), desk, 2001001, kTarget - 1); }));
    const double floor = seconds([&] { countTemperatures(world.store(), sizes.draws); });
    report(state, subject, floor, floor / subject, static_cast<std::size_t>(sizes.draws));
  }
}

}  // namespace

void registerWorkloads(bool smoke) {
  const Sizes sizes = smoke ? kSmoke : kFull;
  add("init-100k", [=](State& state) { init100k(state, sizes); });
  add("run-100k-all", [=](State& state) { run100k(state, sizes); });
  add("undo-100k", [=](State& state) { undo100k(state, sizes); });
  add("run-100k-walk", [=](State& state) { run100kWalk(state, sizes); });
  add("live-100k", [=](State& state) { live100k(state, sizes, kLargestShrink); });
  add("live-100k/shrink", [=](State& state) { live100k(state, sizes, kLargestShrink - 1); });
  for (int shared = 3; shared <= 6; ++shared)
    add(fmt::format("shrink-100k/{}", shared), [=](State& state) { shrink100k(state, sizes, shared); });
  add("shrink-repeats", [=](State& state) { shrinkRepeats(state, sizes); });
  add("stats-3500", [=](State& state) { stats3500(state, sizes); });
  registerJudgementWorkloads(sizes);
  registerStoreWorkloads(sizes);
  if (smoke) return;
  for (int shared = 3; shared <= 6; ++shared)
    add(fmt::format("shrink-all/{}", shared), [=](State& state) { shrinkAll(state, shared); });
  add("passes-all", [=](State& state) { passesAll(state, sizes, 1); });
  add("passes-all/2", [=](State& state) { passesAll(state, sizes, 2); });
  add("generate-all", [=](State& state) { generateAll(state, sizes); });
  add("judge-all", [=](State& state) { judgeAll(state, 1); });
  add("judge-all/2", [=](State& state) { judgeAll(state, 2); });
}

}  // namespace lotmere::bench

// smart-100k, match-100k, fewer-88k, guarantee-88k and backtest-3500: tickets and draws judged in memory
// against the rule done literally.
#include <fmt/format.h>

#include <algorithm>
#include <numeric>

#include "advice/backtest.hpp"
#include "advice/guarantee.hpp"
#include "conditions/condition_store.hpp"
#include "floors.hpp"
#include "pipeline/thin.hpp"
#include "reduction/cover_search.hpp"
#include "reduction/smart.hpp"
#include "store/periods.hpp"
#include "tickets/prize_check.hpp"
#include "tickets/selection.hpp"
#include "workloads.hpp"
#include "world.hpp"

namespace lotmere::bench {
namespace {

using benchmark::State;

constexpr int kPlaces = kRedsPerTicket + 1;
using Seven = std::array<std::int32_t, kPlaces>;
using Differences = std::array<std::int32_t, 463>;

// Every difference of the numbers to those of nine draws, then those among themselves; the last slot stays 0.
Differences listDifferences(const Seven* draws, const Seven& numbers) {
  Differences list{};
  std::size_t k = 0;
  for (int a = 0; a < 9; ++a)
    for (const std::int32_t drawn : draws[a])
      for (const std::int32_t number : numbers) list[k++] = drawn - number;
  for (int b = 0; b < kPlaces; ++b)
    for (int c = b + 1; c < kPlaces; ++c) list[k++] = numbers[b] - numbers[c];
  return list;
}

Seven sevenOf(const Reds& reds, int blue) {
  return {reds[0], reds[1], reds[2], reds[3], reds[4], reds[5], blue};
}

void scoreLiterally(const std::vector<StoredDraw>& newest_first, TicketSet& tickets) {
  std::array<Seven, 10> draws{};
  auto row = draws.rbegin();
  for (auto draw = newest_first.rbegin(); draw != newest_first.rend(); ++draw, ++row)
    *row = sevenOf(draw->numbers.reds, draw->numbers.blue);
  const Differences newest = listDifferences(&draws[1], draws[0]);
  for (std::size_t ticket = 0; ticket < tickets.size(); ++ticket) {
    const Balls balls = tickets.balls[ticket];
    const Differences own = listDifferences(draws.data(), sevenOf(redsOf(balls), blueOf(balls)));
    int score = 0;
    for (std::size_t k = 0; k < own.size(); ++k) score += newest[k] == own[k];
    tickets.score[ticket] = score;
  }
}

// The lower 60 percent by score and running number, cleared.
void clearLower(TicketSet& tickets) {
  std::vector<std::size_t> order(tickets.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return tickets.score[a] < tickets.score[b]; });
  order.resize((order.size() * 60 + 99) / 100);
  for (const std::size_t row : order) tickets.score[row] = 0;
}

// The floor is the scoring alone; the subject clears the lower scores as well.
void smart100k(State& state, const Sizes& sizes) {
  World world;
  world.addDraws(sizes.draws);
  world.pick(sizes.reds, sizes.blues);
  const TicketSet tickets = makeTickets(selectionIn(world.store()), kTarget);
  const auto draws = drawsBefore(world.store(), kTarget, 10);
  QuietDesk desk;
  for (auto _ : state) {
    std::vector<double> floor, subject;
    for (int round = 0; round < sizes.rounds; ++round) {
      TicketSet literal = tickets, scored = tickets;
      floor.push_back(seconds([&] { scoreLiterally(draws, literal); }));
      subject.push_back(seconds([&] { optimiseSmart(world.store(), desk, scored, 6, true); }));
      clearLower(literal);
      check(scored.score == literal.score, "smart-100k scores otherwise than the literal comparison");
    }
    report(state, median(subject), median(floor), median(floor) / median(subject), tickets.size());
  }
}

// One walk over what is left for each draw.
void matchLiterally(const std::vector<StoredDraw>& draws, int match, TicketSet& tickets) {
  for (const StoredDraw& draw : draws) {
    std::array<std::uint8_t, 256> drawn{};
    for (const int red : draw.numbers.reds) drawn[red] = 1;
    std::size_t kept = 0;
    for (std::size_t row = 0; row < tickets.size(); ++row) {
      int hits = 0;
      for (const int red : redsOf(tickets.balls[row])) hits += drawn[red];
      if (hits >= match) continue;
      if (row != kept) tickets.moveRow(row, kept);
      tickets.mark[kept] = 1;
      tickets.seq[kept] = static_cast<std::int32_t>(kept) + 1;
      ++kept;
    }
    tickets.truncate(kept);
  }
}

void match100k(State& state, const Sizes& sizes, int match, int draw_count) {
  World world;
  Store& store = world.store();
  world.addDraws(sizes.draws);
  world.pick(sizes.reds, sizes.blues);
  ConditionSet set = loadConditionSet(store);
  set.match = {true, periodsBack(store, kTarget, draw_count), kTarget, match};
  for (const auto& [usage, on] : std::vector(set.switches.rows())) set.switches.set(usage, 0);
  const TicketSet tickets = makeTickets(selectionIn(store), kTarget);
  for (auto _ : state) {
    std::vector<double> floor, subject;
    TicketSet left;
    for (int round = 0; round < sizes.rounds; ++round) {
      TicketSet literal = tickets;
      left = tickets;
      floor.push_back(seconds([&] {
        auto draws = drawsBefore(store, kTarget, draw_count);
        std::reverse(draws.begin(), draws.end());
        matchLiterally(draws, match, literal);
      }));
      subject.push_back(seconds([&] {
        FreeCourse course;
        StepWatcher nobody;
        thin(FilterPlan(compileRules(set), loadDrawTable(store), kTarget), left, course, nobody);
      }));
      check(left.balls == literal.balls && left.origin == literal.origin && left.seq == literal.seq &&
                left.mark == literal.mark,
            "match-100k leaves other tickets than one walk a draw");
    }
    report(state, median(subject), median(floor), median(floor) / median(subject), tickets.size());
    state.counters["survivors"] = static_cast<double>(left.size());
  }
}

// The factory conditions over 17 reds and 8 blues.
TicketSet filteredTickets(const Sizes& sizes) {
  constexpr int reds[] = {1, 3, 4, 6, 8, 9, 11, 14, 16, 17, 19, 22, 24, 26, 28, 30, 33};
  constexpr int blues[] = {2, 4, 5, 8, 9, 11, 13, 16};
  NumberSelection selection;
  for (int i = 0; i < sizes.reds; ++i) selection.red[reds[i * 16 / (sizes.reds - 1)]] = PickState::tuo;
  for (int i = 0; i < sizes.blues; ++i) selection.blue[blues[i]] = PickState::tuo;
  World world;
  TicketSet tickets = makeTickets(selection, kTarget);
  const ConditionSet set = loadConditionSet(world.store());
  FreeCourse course;
  StepWatcher nobody;
  thin(FilterPlan(compileRules(set), loadDrawTable(world.store()), kTarget), tickets, course, nobody);
  return tickets;
}

void fewer88k(State& state, const Sizes& sizes, int shared) {
  const TicketSet tickets = filteredTickets(sizes);
  const std::size_t plain = plainCover(tickets.balls, shared).size();
  for (auto _ : state) {
    const double literal = seconds([&] { static_cast<void>(shrinkLiterally(tickets, 6)); });
    FreeCourse course;
    SmallCover cover;
    const double subject =
        seconds([&] { cover = searchCover(tickets.balls, shared, kFactoryEffort, course); });
    check(cover.fault == CoverFault::none, "fewer-88k found no cover");
    check(tickets.size() < 10'000 || cover.kept.size() < plain,
          "fewer-88k keeps no fewer tickets than the plain shrink");
    report(state, subject, literal, subject / literal, tickets.size());
    state.counters["plain"] = static_cast<double>(plain);
    state.counters["fewer"] = static_cast<double>(cover.kept.size());
  }
}

// The tickets of the filtered set taken in turn as the draw, those of the plain shrink checked against it;
// the floor does a twentieth of that ticket by ticket.
void guarantee88k(State& state, const Sizes& sizes, int threads) {
  constexpr std::size_t part = 20;
  const TicketSet tickets = filteredTickets(sizes);
  std::vector<Balls> held, few;
  for (const std::uint32_t place : plainCover(tickets.balls, 6)) held.push_back(tickets.balls[place]);
  for (std::size_t row = 0; row < tickets.size(); row += part) few.push_back(tickets.balls[row]);
  FreeCourse course;
  for (auto _ : state) {
    std::vector<double> floor, subject;
    for (int round = 0; round < sizes.rounds; ++round) {
      std::array<std::int64_t, kPrizeTiers + 1> best{};
      floor.push_back(seconds([&] {
        for (const Balls draw : few) {
          std::size_t most = 7;
          for (const Balls ticket : held) {
            const auto tier = static_cast<std::size_t>(prizeTier(countHits(ticket, draw)));
            if (tier > 0) most = std::min(most, tier);
          }
          ++best.at(most % 7);
        }
      }));
      check(checkGuarantee(few, held, course)->best == best,
            "guarantee-88k finds other prizes than the check ticket by ticket");
      subject.push_back(seconds(
          [&] { check(checkGuarantee(tickets.balls, held, course, threads).has_value(), "stopped"); }));
    }
    const double whole = static_cast<double>(part) * median(floor);
    report(state, median(subject), whole, whole / median(subject), tickets.size());
    state.counters["held"] = static_cast<double>(held.size());
  }
}

// Every draw judged by every condition, against a plan made anew for each tenth of them; and the shares at
// the newest 100.
void backtest3500(State& state, const Sizes& sizes) {
  World world;
  Store& store = world.store();
  world.addDraws(sizes.draws);
  world.pick(sizes.reds, sizes.blues);
  world.useAllConditions(makeTickets(selectionIn(store), kTarget));
  ConditionSet set = loadConditionSet(store);
  set.match = {true, 0, kTarget, 5};
  const DrawTable draws = loadDrawTable(store);
  const auto rules = compileRules(set);
  FreeCourse course;
  for (auto _ : state) {
    std::vector<double> floor, subject, shares;
    for (int round = 0; round < sizes.rounds; ++round) {
      std::vector<DrawVerdict> verdicts;
      subject.push_back(seconds([&] { verdicts = judgeDraws(rules, draws, draws.all().size()); }));
      floor.push_back(seconds([&] {
        for (std::size_t place = 0; place < verdicts.size(); place += 10) {
          const PastDraw& draw = draws.all()[place];
          const FilterPlan plan(rules, draws, draw.period);
          check(verdicts[place].failed == plan.failures(packBalls(draw.numbers.reds, draw.numbers.blue)),
                "backtest-3500 judges otherwise than a plan of the draw's own");
        }
      }));
      shares.push_back(
          seconds([&] { check(chanceOfSet(rules, draws, kMostShares, course).has_value(), "stopped"); }));
    }
    report(state, median(subject), 10 * median(floor), 10 * median(floor) / median(subject),
           static_cast<std::size_t>(sizes.draws));
    state.counters["shares_s"] = median(shares);
  }
}

}  // namespace

void registerJudgementWorkloads(const Sizes& sizes) {
  constexpr int few_draws = 150;  // four hits of six are so common that all draws would leave nothing
  for (int shared = kRedsPerTicket; shared >= kSmallestShrink; --shared)
    add(fmt::format("fewer-88k/{}", shared), [=](State& state) { fewer88k(state, sizes, shared); });
  add("guarantee-88k", [=](State& state) { guarantee88k(state, sizes, 1); });
  add("guarantee-88k/2", [=](State& state) { guarantee88k(state, sizes, 2); });
  add("backtest-3500", [=](State& state) { backtest3500(state, sizes); });
  add("smart-100k", [=](State& state) { smart100k(state, sizes); });
  for (const auto& [match, draws] :
       {std::pair(4, std::min(few_draws, sizes.draws)), std::pair(5, sizes.draws), std::pair(6, sizes.draws)})
    add(fmt::format("match-100k/{}", match),
        [=, m = match, d = draws](State& state) { match100k(state, sizes, m, d); });
}

}  // namespace lotmere::bench

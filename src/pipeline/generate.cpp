#include "pipeline/generate.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <numeric>
#include <optional>
#include <thread>

#include "base/text.hpp"
#include "conditions/condition_store.hpp"
#include "conditions/named_sets.hpp"
#include "conditions/set_text.hpp"
#include "history/draw_stats.hpp"
#include "pipeline/grouped_tickets.hpp"
#include "pipeline/run_text.hpp"
#include "pipeline/thin.hpp"
#include "reduction/cover.hpp"
#include "reduction/shrink.hpp"
#include "reduction/smart.hpp"
#include "store/periods.hpp"
#include "tickets/init.hpp"
#include "tickets/ticket_steps.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kBlock = 2048;  // sixes or rows between two looks at the course

// The tickets under way: those of the table that are kept, in front, and the groups of the new ones.
struct Entries {
  TicketSet set;
  std::size_t kept_rows = 0;  // how many of the table there were
  const GroupedTickets& groups;

  // The place of the first new one.
  [[nodiscard]] std::size_t firstNew() const {
    const auto first = std::ranges::lower_bound(set.origin, static_cast<std::uint32_t>(kept_rows));
    return static_cast<std::size_t>(first - set.origin.begin());
  }
  // Adds a ticket of the table, or a new one, to a set that holds single tickets.
  void addKept(TicketSet& tickets, std::size_t row) const {
    tickets.add(set.balls[row]);
    tickets.origin.back() = set.origin[row];
    tickets.seq.back() = set.stored.seq[set.origin[row]];
    tickets.score.back() = set.score[row];
    tickets.mark.back() = 1;
  }
  void addNew(TicketSet& tickets, Balls reds, int blue, std::int64_t six) const {
    tickets.add(reds | static_cast<Balls>(blue) << 48);
    tickets.seq.back() = groups.numberOf(six, blue);
    tickets.origin.back() =
        static_cast<std::uint32_t>(kept_rows) + static_cast<std::uint32_t>(tickets.seq.back());
    tickets.mark.back() = 1;
  }
};

// The centres of the plain shrink among the entries, taken in the order of the tickets that they stand for;
// up to `most` of them are added to `centres`. Gives how many there are; a stop ends it early.
std::int64_t takeCentres(const Entries& entries, int type, std::int64_t most, Course& course,
                         TicketSet& centres) {
  const std::size_t first_new = entries.firstNew();
  const auto kept = std::span(entries.set.balls).first(first_new);
  using enum OverlapMarks::Repeats;
  Cover of_kept(type, std::ranges::all_of(kept, isRegular) ? no : yes);
  SixCover cover(type);
  CourseLeg leg(course, static_cast<std::int64_t>(entries.set.size()), Course::Stop::possible);
  std::int64_t count = 0;
  for (std::size_t row = 0; row < first_new; ++row) {
    if (row % kBlock == 0 && leg.advance(static_cast<std::int64_t>(row))) return count;
    if (!of_kept.take(kept[row])) continue;
    cover.keep(kept[row]);
    if (++count <= most) entries.addKept(centres, row);
  }
  std::size_t done = first_new;
  entries.groups.forEachSix(entries.set, first_new, entries.kept_rows,
                            [&](Balls reds, std::uint32_t blues, std::int64_t six) {
                              const int blue = cover.take(reds, blues);
                              if (blue != 0 && ++count <= most) entries.addNew(centres, reds, blue, six);
                              return ++done % kBlock != 0 || !leg.advance(static_cast<std::int64_t>(done));
                            });
  return count;
}

class Generation {
 public:
  Generation(Store& store, Desk& desk, PeriodNo period, const NumberSelection& selection,
             const GenerateLimits& limits)
      : store_(store),
        desk_(desk),
        limits_(limits),
        set_(loadConditionSet(store)),
        plan_(compileRules(set_), loadDrawTable(store), period),
        groups_(selection, plan_.rules().places) {}

  GenerateResult make(Existing settled) {
    GenerateResult result;
    result.outcome = Outcome::stopped;
    auto entries = read(settled);
    if (!entries) return result;
    result.expanded = static_cast<std::int64_t>(entries->kept_rows) + groups_.size();
    desk_.runningText().set({});
    desk_.runningText().appendLine(beforeLine(result.expanded));
    RunText text(desk_, plan_);
    const Funnel funnel = thin(plan_, entries->set, desk_.course(), text, threads());
    result.left = funnel.left;
    if (desk_.course().stopRequested()) return result;

    TicketSet tickets;
    auto refusal = crowded(funnel.left);
    const bool shrunk = !refusal;
    if (shrunk) {
      result.left = shrink(*entries, funnel, tickets);
      if (desk_.course().stopRequested()) return result;
      if (result.left > limits_.stored)
        refusal = fmt::format("过滤缩水后还有 {} 注，超过 {} 注，没有存储任何号码。请收紧条件。",
                              toFullWidth(result.left), toFullWidth(limits_.stored));
    }
    if (refusal) {
      result.outcome = Outcome::refused;
      result.funnel = funnelOf(funnel, shrunk ? std::optional(result.left) : std::nullopt, settled);
      desk_.tell(*refusal, Tone::warning);
      return result;
    }
    write(tickets, settled);
    desk_.runningText().appendLine(endLine(result.left, false));
    result.outcome = Outcome::done;
    return result;
  }

 private:
  static int threads() { return static_cast<int>(std::thread::hardware_concurrency()); }
  [[nodiscard]] int type() const { return plan_.rules().shrink_type; }
  [[nodiscard]] bool shrinks() const { return type() < kLargestShrink; }
  [[nodiscard]] bool scores() const { return shrinks() && plan_.rules().smart; }
  [[nodiscard]] bool searches() const { return shrinks() && plan_.rules().effort > 0; }

  // Nothing after a stop.
  std::optional<Entries> read(Existing settled) {
    Entries entries{{}, 0, groups_};
    if (settled == Existing::keep) {
      CourseLeg job(desk_.course(), static_cast<std::int64_t>(countTickets(store_, plan_.period())),
                    Course::Stop::possible);
      auto kept = loadTickets(store_, plan_.period(),
                              [&](std::size_t rows) { return job.advance(static_cast<std::int64_t>(rows)); });
      if (!kept) return std::nullopt;
      entries.set = *std::move(kept);
    }
    entries.set.period = plan_.period();
    entries.kept_rows = entries.set.size();
    groups_.addTo(entries.set);
    return entries;
  }

  // What refuses so many tickets in front of the shrink.
  [[nodiscard]] std::optional<std::string> crowded(std::int64_t tickets) const {
    const auto refuse = [&](std::string_view name, std::int64_t most) {
      return fmt::format("{0}最多处理 {1} 注，过滤后还有 {2} 注，没有存储任何号码。请收紧条件，或关掉{0}。",
                         name, toFullWidth(most), toFullWidth(tickets));
    };
    if (scores() && tickets > limits_.scored) return refuse("智能优化", limits_.scored);
    if (searches() && tickets > limits_.searched) return refuse(kFewerName, limits_.searched);
    return std::nullopt;
  }

  // The last step of the run. Puts what is left into `tickets` where it may be stored, and gives how many
  // that are.
  std::int64_t shrink(Entries& entries, const Funnel& funnel, TicketSet& tickets) {
    tickets.period = plan_.period();
    if (scores() || searches() || (!shrinks() && funnel.left <= limits_.stored)) {
      expand(entries, tickets);
      if (funnel.by_place)
        std::iota(tickets.seq.begin(), tickets.seq.end(), 1);
      else
        tickets.renumber();
      tickets.stored = std::move(entries.set.stored);
      shrinkCover(store_, desk_, tickets, type(), plan_.rules().smart, plan_.rules().effort);
      return static_cast<std::int64_t>(tickets.size());
    }
    optimiseSmart(store_, desk_, tickets, type(), false);
    ShrinkLine line(desk_.runningText(), type());
    std::int64_t left = funnel.left;
    if (shrinks()) {
      if (left > 0) line.begins();
      left = takeCentres(entries, type(), limits_.stored, desk_.course(), tickets);
      std::iota(tickets.seq.begin(), tickets.seq.end(), 1);
      std::ranges::fill(tickets.shrink, static_cast<std::int8_t>(type()));
      tickets.stored = std::move(entries.set.stored);
    }
    line.ends(left);
    return left;
  }

  static void expand(const Entries& entries, TicketSet& tickets) {
    const std::size_t first_new = entries.firstNew();
    for (std::size_t row = 0; row < first_new; ++row) entries.addKept(tickets, row);
    entries.groups.forEachSix(entries.set, first_new, entries.kept_rows,
                              [&](Balls reds, std::uint32_t blues, std::int64_t six) {
                                for (; blues != 0; blues &= blues - 1)
                                  entries.addNew(tickets, reds, std::countr_zero(blues), six);
                                return true;
                              });
  }

  // With the row of the shrink where it was reached and no stop kept it from being worked out.
  std::vector<FunnelRow> funnelOf(const Funnel& funnel, std::optional<std::int64_t> shrunk,
                                  Existing settled) {
    const auto whole = read(settled);
    if (!whole) return {};
    auto rows = funnelRows(plan_, funnel, countFailingAlone(plan_, whole->set.balls));
    if (!shrunk) return rows;
    std::int64_t alone = 0;
    if (shrinks()) {
      TicketSet nothing;
      alone = static_cast<std::int64_t>(whole->kept_rows) + groups_.size() -
              takeCentres(*whole, type(), 0, desk_.course(), nothing);
      if (desk_.course().stopRequested()) return rows;
    }
    rows.push_back(shrinkRow(plan_, funnel.left, *shrunk, alone));
    return rows;
  }

  // One change; a stop comes too late for it.
  void write(const TicketSet& tickets, Existing settled) {
    StoreChange change(store_);
    const PeriodNo previous = periodsBack(store_, plan_.period(), 1);
    computeDrawStatistics(store_, desk_, previous, previous);
    CourseLeg job(desk_.course(), static_cast<std::int64_t>(tickets.size()), Course::Stop::impossible);
    const auto tell = [&](std::size_t rows) { return job.advance(static_cast<std::int64_t>(rows)); };
    keepTickets(store_, TicketAction::generate);
    saveRunSettings(store_, plan_.period(),
                    {nameOfSet(store_, set_).value_or(std::string()), setText(set_, WithPicks::no)});
    const std::int64_t id = makeRoom(store_, plan_.period(), settled);
    const auto first_new = static_cast<std::size_t>(
        std::ranges::lower_bound(tickets.origin, static_cast<std::uint32_t>(tickets.stored.id.size())) -
        tickets.origin.begin());
    if (settled == Existing::keep) {
      TicketSet kept = tickets;
      kept.truncate(first_new);
      saveTickets(store_, kept, tell);
    }
    insertTickets(store_, tickets, first_new, id, tell);
    change.commit();
  }

  Store& store_;
  Desk& desk_;
  GenerateLimits limits_;
  ConditionSet set_;
  FilterPlan plan_;
  GroupedTickets groups_;
};

}  // namespace

GenerateResult generateTickets(Store& store, Desk& desk, PeriodNo period, const NumberSelection& selection,
                               Existing existing, const GenerateLimits& limits) {
  if (period < 1 || !checkSelection(selection, desk, Tell::yes)) return {};
  const auto settled = settleExisting(store, desk, period, existing);
  if (!settled) return {};
  const StopScope stop(desk.course());
  return Generation(store, desk, period, selection, limits).make(*settled);
}

}  // namespace lotmere

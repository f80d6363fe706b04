#include "reduction/cover_search.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/assert.hpp"
#include "reduction/blue_by_blue.hpp"
#include "reduction/cover.hpp"
#include "reduction/subset_search.hpp"
#include "reduction/symmetric_search.hpp"

namespace lotmere {
namespace {

// What the matrices of a search may hold at a time; an entry takes four bytes. From N = 5 on little memory
// is enough; N = 4 and 3 have few kept tickets that each cover many.
constexpr std::size_t kFewEntries = 8'000'000;
constexpr std::size_t kManyEntries = 60'000'000;

// The work of the factory effort, some twelve seconds, and what an effort more is worth.
constexpr double kFactoryWork = 10.5e9;
constexpr double kStep = 1.7;
// A small set is searched no longer than its size asks for.
constexpr double kLeastWork = 1e9;
constexpr double kWorkAnEntry = 40'000;

std::int64_t workOf(int effort, std::size_t entries) {
  const double scale = std::pow(kStep, effort - kFactoryEffort);
  const double size = std::max(kLeastWork, kWorkAnEntry * static_cast<double>(entries));
  return static_cast<std::int64_t>(scale * std::min(kFactoryWork, size));
}

// The plain shrink over the sorted tickets' places, with one more ticket for each blue that it loses.
std::vector<std::uint32_t> firstCover(const CoverTickets& tickets, std::span<const Balls> given, int shared) {
  std::vector<Balls> in_order(given.size());
  std::vector<std::uint32_t> number(given.size(), CoverTickets::kNone);
  for (std::uint32_t ticket = 0; ticket < tickets.size(); ++ticket) number[tickets.place(ticket)] = ticket;
  Cover cover(shared, OverlapMarks::Repeats::no);
  std::vector<std::uint32_t> kept;
  std::vector<std::uint8_t> has_blue(static_cast<std::size_t>(tickets.blueCount()));
  for (std::size_t place = 0; place < given.size(); ++place)
    if (cover.take(given[place])) {
      kept.push_back(number[place]);
      has_blue[tickets.blue(number[place])] = 1;
    }
  for (std::uint32_t ticket = 0; ticket < tickets.size(); ++ticket)
    if (!std::exchange(has_blue[tickets.blue(ticket)], 1)) kept.push_back(ticket);
  return kept;
}

// Goes through the searches that fit a set.
void searchAll(const CoverTickets& tickets, int shared, int effort, std::size_t entries, SearchRun& run,
               std::int64_t work, BestCover& best) {
  const std::vector<Symmetry> symmetries = findSymmetries(tickets);
  const std::size_t most = shared >= 5 ? kFewEntries : kManyEntries;
  const bool by_blue = shared == kRedsPerTicket && tickets.blueCount() > 1;
  const bool symmetric = symmetries.size() > 1;
  if (by_blue && !symmetric) return BlueByBlue(tickets).run(run, work, best);
  // Larger efforts use up all of their work; with N = 6 the best covers come late.
  if (symmetric && shared < kRedsPerTicket && effort <= kFactoryEffort) run.beImpatient();
  if (symmetric || (shared == kRedsPerTicket && entries <= most))
    if (searchSymmetric(tickets, shared, symmetries, most, run, work, best)) return;
  SubsetSearch search(tickets, shared, 1);
  for (int i = 0; i < 4 && !run.over() && run.done() < work / 4 && search.begin(run); ++i)
    best.offer(search.best());
  if (best.isEnough() || run.over()) return;
  search.begin(run, best.tickets());
  search.improve(run, work, static_cast<std::int64_t>(best.enough()),
                 [&](std::size_t size) { best.tell(size); });
  best.offer(search.best());
}

// The places of few regular tickets that cover all of them, ascending.
std::vector<std::uint32_t> searchRegular(std::span<const Balls> tickets, int shared, int effort,
                                         Course& course, const BetterCover& better) {
  const CoverTickets sorted(tickets);
  const std::size_t entries = estimateEntries(sorted, shared);
  const std::int64_t work = workOf(effort, entries);
  SearchRun run(course, work);
  BestCover best(firstCover(sorted, tickets, shared), static_cast<std::size_t>(sorted.blueCount()), run,
                 better);
  if (!best.isEnough()) searchAll(sorted, shared, effort, entries, run, work, best);
  std::vector<std::uint32_t> kept;
  for (const std::uint32_t ticket : best.tickets()) kept.push_back(sorted.place(ticket));
  std::ranges::sort(kept);
  return kept;
}

// Keeps the tickets too that none of those at the places `kept` covers: those that aren't regular, one after
// the other as the plain shrink does.
void addUncovered(std::span<const Balls> tickets, int shared, std::vector<std::uint32_t>& kept) {
  Cover cover(shared, OverlapMarks::Repeats::yes);
  for (const std::uint32_t place : kept) cover.keep(tickets[place]);
  const std::size_t searched = kept.size();
  std::uint32_t blues = 0;
  for (const std::uint32_t place : kept) blues |= 1U << blueOf(tickets[place]);
  for (std::size_t place = 0; place < tickets.size(); ++place) {
    const int blue = blueOf(tickets[place]);
    const bool new_blue = blue != 0 && (blues >> blue & 1) == 0;
    if (new_blue) cover.keep(tickets[place]);
    if (!new_blue && !cover.take(tickets[place])) continue;
    kept.push_back(static_cast<std::uint32_t>(place));
    blues |= 1U << blue;
  }
  std::inplace_merge(kept.begin(), kept.begin() + static_cast<std::ptrdiff_t>(searched), kept.end());
}

}  // namespace

std::vector<std::uint32_t> plainCover(std::span<const Balls> tickets, int shared) {
  const bool regular = std::ranges::all_of(tickets, isRegular);
  Cover cover(shared, regular ? OverlapMarks::Repeats::no : OverlapMarks::Repeats::yes);
  std::vector<std::uint32_t> kept;
  for (std::size_t place = 0; place < tickets.size(); ++place)
    if (cover.take(tickets[place])) kept.push_back(static_cast<std::uint32_t>(place));
  return kept;
}

SmallCover checkedCover(std::span<const Balls> tickets, std::vector<std::uint32_t> kept, int shared) {
  SmallCover cover{std::move(kept), CoverFault::none};
  cover.fault = checkCover(tickets, cover.kept, shared);
  if (cover.fault != CoverFault::none) cover.kept = plainCover(tickets, shared);
  return cover;
}

SmallCover searchCover(std::span<const Balls> tickets, int shared, int effort, Course& course,
                       const BetterCover& better) {
  LOTMERE_ASSERT(shared >= 3 && shared <= kRedsPerTicket && effort >= kLeastEffort && effort <= kMostEffort);
  // Where each regular ticket stands.
  std::vector<std::uint32_t> places;
  std::vector<Balls> regular;
  for (std::size_t place = 0; place < tickets.size(); ++place) {
    if (!isRegular(tickets[place])) continue;
    places.push_back(static_cast<std::uint32_t>(place));
    regular.push_back(tickets[place]);
  }
  std::vector<std::uint32_t> kept;
  if (!regular.empty())
    for (const std::uint32_t number : searchRegular(regular, shared, effort, course, better))
      kept.push_back(places[number]);
  if (regular.size() < tickets.size()) addUncovered(tickets, shared, kept);
  return checkedCover(tickets, std::move(kept), shared);
}

}  // namespace lotmere

#include "reduction/subset_search.hpp"

#include <algorithm>
#include <queue>
#include <tuple>

#include "base/assert.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kMostAsked = 1500;

}  // namespace

SubsetSearch::SubsetSearch(const CoverTickets& tickets, int shared, std::uint64_t seed)
    : tickets_(tickets),
      shared_(shared),
      random_(seed),
      planes_(tickets.masks()),
      gains_(tickets, shared),
      rows_(tickets.size() + static_cast<std::size_t>(tickets.blueCount())),
      loss_(tickets.size()),
      kept_place_(tickets.size(), kNone),
      stamp_(tickets.size()) {
  for (std::uint32_t row = 0; row < rows_.size(); ++row) {
    // A blue without a ticket counts about as much as the tickets that one of its tickets covers alone.
    if (row >= tickets.size())
      rows_[row].weight = 1 + static_cast<std::int32_t>(tickets.size()) / tickets.blueCount();
    openRow(row);
  }
}

void SubsetSearch::openRow(std::uint32_t row) {
  rows_[row].open_place = static_cast<std::uint32_t>(open_.size());
  open_.push_back(row);
  if (row < tickets_.size()) gains_.change(row, rows_[row].weight);
}

void SubsetSearch::closeRow(std::uint32_t row) {
  const std::uint32_t place = rows_[row].open_place;
  rows_[open_.back()].open_place = place;
  open_[place] = open_.back();
  open_.pop_back();
  rows_[row].open_place = kNone;
  if (row < tickets_.size()) gains_.change(row, -rows_[row].weight);
}

std::int32_t SubsetSearch::gainOf(std::uint32_t ticket) const {
  const Row& blue = rows_[tickets_.size() + static_cast<std::uint32_t>(tickets_.blue(ticket))];
  return gains_.of(ticket) + (blue.count == 0 ? blue.weight : 0);
}

template <class Visit>
void SubsetSearch::forCovered(std::uint32_t ticket, Visit&& visit) {
  planes_.share(tickets_.masks()[tickets_.six(ticket)], shared_, enough_, one_less_);
  work_ += static_cast<std::int64_t>(6 * planes_.words());
  forEachBit(enough_, [&](std::uint32_t six) {
    for (std::uint32_t row = tickets_.firstOf(six); row < tickets_.firstOf(six + 1); ++row) visit(row);
  });
  const int blue = tickets_.blue(ticket);
  forEachBit(one_less_, [&](std::uint32_t six) {
    const std::uint32_t row = tickets_.at(six, blue);
    if (row != kNone) visit(row);
  });
  visit(tickets_.size() + static_cast<std::uint32_t>(blue));
}

void SubsetSearch::add(std::uint32_t ticket) {
  std::int32_t loss = 0;
  forCovered(ticket, [&](std::uint32_t number) {
    Row& row = rows_[number];
    work_ += 2;
    if (row.count == 0) {
      loss += row.weight;
      closeRow(number);
      work_ += gains_.work();
    } else if (row.count == 1) {
      loss_[row.keepers] -= row.weight;
    }
    ++row.count;
    row.keepers ^= ticket;
  });
  loss_[ticket] = loss;
  kept_place_[ticket] = static_cast<std::uint32_t>(kept_.size());
  kept_.push_back(ticket);
  stamp_[ticket] = step_;
}

void SubsetSearch::remove(std::uint32_t ticket) {
  forCovered(ticket, [&](std::uint32_t number) {
    Row& row = rows_[number];
    work_ += 2;
    --row.count;
    row.keepers ^= ticket;
    if (row.count == 0) {
      openRow(number);
      work_ += gains_.work();
    } else if (row.count == 1) {
      loss_[row.keepers] += row.weight;
    }
  });
  const std::uint32_t place = kept_place_[ticket];
  kept_place_[kept_.back()] = place;
  kept_[place] = kept_.back();
  kept_.pop_back();
  kept_place_[ticket] = kNone;
  stamp_[ticket] = step_;
}

bool SubsetSearch::begin(SearchRun& run) {
  while (!kept_.empty()) remove(kept_.back());
  // Gains only fall while tickets are added, so one that still has the gain it was queued with is the best.
  using Entry = std::tuple<std::int32_t, std::uint32_t, std::uint32_t>;  // gain, tie, ticket
  std::vector<Entry> entries;
  entries.reserve(tickets_.size());
  for (std::uint32_t ticket = 0; ticket < tickets_.size(); ++ticket)
    entries.emplace_back(gainOf(ticket), random_.below(1U << 31), ticket);
  work_ += tickets_.size() * gains_.work();
  std::priority_queue<Entry> queue({}, std::move(entries));
  while (!open_.empty()) {
    auto [gain, tie, ticket] = queue.top();
    queue.pop();
    const std::int32_t now = gainOf(ticket);
    work_ += gains_.work();
    if (now == gain)
      add(ticket);
    else if (now > 0)
      queue.emplace(now, random_.below(1U << 31), ticket);
    const bool over = run.spend(work_);
    work_ = 0;
    if (over && !open_.empty()) return false;
  }
  if (best_.empty() || kept_.size() < best_.size()) keepBest(run, {});
  return true;
}

void SubsetSearch::begin(SearchRun& run, const std::vector<std::uint32_t>& cover) {
  while (!kept_.empty()) remove(kept_.back());
  for (const std::uint32_t ticket : cover) add(ticket);
  run.spend(work_);
  work_ = 0;
  LOTMERE_ASSERT(open_.empty());
  if (best_.empty() || kept_.size() < best_.size()) keepBest(run, {});
}

std::uint32_t SubsetSearch::cheapestLoss(std::uint32_t spared) const {
  std::uint32_t cheapest = kNone;
  for (const std::uint32_t ticket : kept_)
    if (ticket != spared && (cheapest == kNone || std::pair(loss_[ticket], stamp_[ticket]) <
                                                      std::pair(loss_[cheapest], stamp_[cheapest])))
      cheapest = ticket;
  return cheapest;
}

// The tickets that would close a row.
void SubsetSearch::collectFor(std::uint32_t row) {
  asked_.clear();
  if (row >= tickets_.size()) {
    const int blue = static_cast<int>(row - tickets_.size());
    for (std::uint32_t six = 0; six < tickets_.sixCount(); ++six)
      if (tickets_.at(six, blue) != kNone) asked_.push_back(tickets_.at(six, blue));
    return;
  }
  forCovered(row, [&](std::uint32_t ticket) {
    if (ticket < tickets_.size()) asked_.push_back(ticket);
  });
}

std::uint32_t SubsetSearch::bestForOpen() {
  collectFor(open_[random_.below(open_.size())]);
  // Of very many a random run of neighbours in their order is looked at, and the rest in larger steps.
  const std::size_t count = std::min(asked_.size(), kMostAsked);
  if (count < asked_.size())
    for (std::size_t i = 0; i < count; ++i)
      std::swap(asked_[i], asked_[i + random_.below(asked_.size() - i)]);
  std::uint32_t best = kNone;
  std::int32_t most = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint32_t ticket = asked_[i];
    // One that was just taken out would undo the step.
    if (stamp_[ticket] + 1 >= step_ && stamp_[ticket] != 0) continue;
    const std::int32_t gain = gainOf(ticket);
    if (best == kNone || gain > most || (gain == most && stamp_[ticket] < stamp_[best])) {
      best = ticket;
      most = gain;
    }
  }
  work_ += static_cast<std::int64_t>(count) * gains_.work();
  return best;
}

void SubsetSearch::keepBest(const SearchRun& run, const BetterCover& better) {
  best_ = kept_;
  best_at_ = run.done();
  if (better) better(kept_.size());
}

void SubsetSearch::improve(SearchRun& run, std::int64_t until, std::int64_t enough,
                           const BetterCover& better) {
  std::uint32_t added = kNone;
  while (static_cast<std::int64_t>(best_.size()) > enough && run.done() < until && !run.over()) {
    ++step_;
    while (open_.empty()) {
      if (kept_.size() < best_.size()) keepBest(run, better);
      remove(cheapestLoss(kNone));
    }
    do {
      const std::uint32_t out = cheapestLoss(added);
      if (out == kNone) break;
      remove(out);
    } while (kept_.size() >= best_.size());
    do {
      const std::uint32_t ticket = bestForOpen();
      if (ticket == kNone) break;
      add(ticket);
      added = ticket;
      for (const std::uint32_t row : open_) {
        ++rows_[row].weight;
        if (row < tickets_.size()) gains_.change(row, 1);
      }
      work_ += static_cast<std::int64_t>(open_.size()) * gains_.work();
    } while (!open_.empty() && kept_.size() + 1 < best_.size());
    run.spend(work_);
    work_ = 0;
  }
}

}  // namespace lotmere

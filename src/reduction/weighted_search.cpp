#include "reduction/weighted_search.hpp"

#include <algorithm>
#include <queue>
#include <tuple>

#include "base/assert.hpp"

namespace lotmere {
namespace {

constexpr std::int64_t kMostWeight = 1'000'000'000;  // of all rows together

// Long lists are looked at faster, entry by entry.
constexpr std::size_t kDenseList = 300;

// Whether one gain is greater for its cost than another.
bool isBetter(std::int32_t gain, std::uint32_t cost, std::int32_t other_gain, std::uint32_t other_cost) {
  return std::int64_t{gain} * other_cost > std::int64_t{other_gain} * cost;
}

}  // namespace

WeightedSearch::WeightedSearch(const CoverMatrix& matrix, std::uint64_t seed, const Limits& limits)
    : matrix_(matrix),
      random_(seed),
      is_dense_(matrix.near.entries() / std::max(matrix.columns(), 1U) > kDenseList),
      rows_(matrix.rows()),
      columns_(matrix.columns()),
      barred_(matrix.columns()),
      kept_place_(matrix.columns(), kNone),
      stamp_(matrix.columns()) {
  for (const std::uint32_t row : limits.free) rows_[row].count = kFreeCount;
  for (const std::uint32_t column : limits.banned) barred_[column] = 1;
  for (std::uint32_t row = 0; row < rows_.size(); ++row) {
    if (rows_[row].count != 0) continue;
    openRow(row);
    for (const std::uint32_t column : columnsOf(row)) ++columns_[column].gain;
  }
  for (const std::uint32_t column : limits.pinned) {
    addColumn(column);
    barred_[column] = 1;
  }
}

template <class Visit>
void WeightedSearch::forRowsOf(std::uint32_t column, Visit&& visit) {
  for (const std::uint32_t row : matrix_.near[column]) visit(row);
  if (!matrix_.extra_of.empty() && matrix_.extra_of[column] != kNone)
    visit(matrix_.near.count() + matrix_.extra_of[column]);
}

std::span<const std::uint32_t> WeightedSearch::columnsOf(std::uint32_t row) const {
  const std::uint32_t plain = matrix_.near.count();
  return row < plain ? matrix_.near[row] : matrix_.extra[row - plain];
}

void WeightedSearch::openRow(std::uint32_t row) {
  rows_[row].open_place = static_cast<std::uint32_t>(open_.size());
  open_.push_back(row);
}

void WeightedSearch::closeRow(std::uint32_t row) {
  const std::uint32_t place = rows_[row].open_place;
  rows_[open_.back()].open_place = place;
  open_[place] = open_.back();
  open_.pop_back();
  rows_[row].open_place = kNone;
}

void WeightedSearch::addColumn(std::uint32_t column) {
  // The open rows that it gains become those that it alone covers: the figure stays.
  const std::int32_t gain = columns_[column].gain;
  forRowsOf(column, [&](std::uint32_t number) {
    Row& row = rows_[number];
    ++work_;
    if (row.count == 0) {
      closeRow(number);
      const auto near = columnsOf(number);
      work_ += static_cast<std::int64_t>(near.size());
      for (const std::uint32_t other : near) {
        columns_[other].gain -= row.weight;
        columns_[other].fresh = 1;
      }
    } else if (row.count == 1) {
      columns_[row.keepers].gain -= row.weight;
    }
    ++row.count;
    row.keepers ^= column;
  });
  columns_[column].gain = gain;
  kept_place_[column] = static_cast<std::uint32_t>(kept_.size());
  kept_.push_back(column);
  cost_ += matrix_.cost[column];
  stamp_[column] = step_;
}

void WeightedSearch::removeColumn(std::uint32_t column) {
  const std::int32_t loss = columns_[column].gain;
  forRowsOf(column, [&](std::uint32_t number) {
    Row& row = rows_[number];
    ++work_;
    --row.count;
    row.keepers ^= column;
    if (row.count == 0) {
      openRow(number);
      const auto near = columnsOf(number);
      work_ += static_cast<std::int64_t>(near.size());
      for (const std::uint32_t other : near) {
        columns_[other].gain += row.weight;
        columns_[other].fresh = 1;
      }
    } else if (row.count == 1) {
      columns_[row.keepers].gain += row.weight;
    }
  });
  columns_[column] = {loss, 0};
  const std::uint32_t place = kept_place_[column];
  kept_place_[kept_.back()] = place;
  kept_[place] = kept_.back();
  kept_.pop_back();
  kept_place_[column] = kNone;
  cost_ -= matrix_.cost[column];
  stamp_[column] = step_;
}

bool WeightedSearch::begin(SearchRun& run, std::span<const std::uint32_t> columns) {
  for (const std::uint32_t column : columns)
    if (kept_place_[column] == kNone && !barred_[column]) addColumn(column);
  // Gains only fall while columns are added, so one that still has the gain it was queued with is the best.
  using Entry = std::tuple<double, std::uint32_t, std::uint32_t>;  // gain for the cost, tie, column
  const auto entry = [&](std::uint32_t column) {
    return Entry{static_cast<double>(columns_[column].gain) / matrix_.cost[column], random_.below(1U << 31),
                 column};
  };
  std::vector<Entry> entries;
  if (!open_.empty())
    for (std::uint32_t column = 0; column < matrix_.columns(); ++column)
      if (!barred_[column] && columns_[column].gain > 0) entries.push_back(entry(column));
  std::priority_queue<Entry> queue({}, std::move(entries));
  while (!open_.empty() && !queue.empty()) {
    const auto [ratio, tie, column] = queue.top();
    queue.pop();
    ++work_;
    if (kept_place_[column] != kNone || columns_[column].gain == 0) continue;
    if (static_cast<double>(columns_[column].gain) / matrix_.cost[column] < ratio)
      queue.push(entry(column));
    else
      addColumn(column);
    const bool over = run.spend(work_);
    work_ = 0;
    if (over) return false;
  }
  LOTMERE_ASSERT(open_.empty());
  best_ = kept_;
  best_cost_ = cost_;
  best_at_ = run.done();
  return open_.empty();
}

std::uint32_t WeightedSearch::cheapestLoss(std::uint32_t spared) const {
  std::uint32_t cheapest = kNone;
  for (const std::uint32_t column : kept_) {
    if (column == spared || barred_[column]) continue;
    if (cheapest != kNone) {
      const std::int32_t loss = columns_[column].gain, least = columns_[cheapest].gain;
      if (isBetter(loss, matrix_.cost[column], least, matrix_.cost[cheapest])) continue;
      if (!isBetter(least, matrix_.cost[cheapest], loss, matrix_.cost[column]) &&
          stamp_[column] >= stamp_[cheapest])
        continue;
    }
    cheapest = column;
  }
  return cheapest;
}

std::uint32_t WeightedSearch::bestFor(std::uint32_t row) {
  std::uint32_t best = kNone;
  const auto near = columnsOf(row);
  work_ += static_cast<std::int64_t>(near.size());
  for (const std::uint32_t column : near) {
    if (columns_[column].fresh == 0 || barred_[column]) continue;
    if (best != kNone) {
      const std::int32_t gain = columns_[column].gain, most = columns_[best].gain;
      if (isBetter(most, matrix_.cost[best], gain, matrix_.cost[column])) continue;
      if (!isBetter(gain, matrix_.cost[column], most, matrix_.cost[best]) && stamp_[column] >= stamp_[best])
        continue;
    }
    best = column;
  }
  return best;
}

void WeightedSearch::keepBest(const SearchRun& run, const BetterCover& better) {
  best_ = kept_;
  best_cost_ = cost_;
  best_at_ = run.done();
  if (better) better(static_cast<std::size_t>(cost_));
}

void WeightedSearch::raiseWeights() {
  for (const std::uint32_t number : open_) {
    Row& row = rows_[number];
    ++row.weight;
    const auto near = columnsOf(number);
    work_ += static_cast<std::int64_t>(near.size());
    for (const std::uint32_t column : near) ++columns_[column].gain;
  }
  weight_sum_ += static_cast<std::int64_t>(open_.size());
  if (weight_sum_ > kMostWeight) restartWeights();
}

void WeightedSearch::restartWeights() {
  weight_sum_ = 0;
  for (Column& column : columns_) column.gain = 0;
  for (std::uint32_t number = 0; number < rows_.size(); ++number) {
    Row& row = rows_[number];
    row.weight = 1;
    if (row.count == 0)
      for (const std::uint32_t column : columnsOf(number)) ++columns_[column].gain;
    else if (row.count == 1)
      ++columns_[row.keepers].gain;
  }
}

void WeightedSearch::improve(SearchRun& run, std::int64_t until, std::int64_t enough,
                             const BetterCover& better) {
  std::uint32_t added = kNone;
  while (best_cost_ > enough && run.done() < until && !run.over()) {
    ++step_;
    while (open_.empty()) {
      if (cost_ < best_cost_) keepBest(run, better);
      const std::uint32_t column = cheapestLoss(kNone);
      if (column == kNone) return;
      removeColumn(column);
    }
    do {
      const std::uint32_t column = cheapestLoss(added);
      if (column == kNone) break;
      removeColumn(column);
    } while (cost_ >= best_cost_);
    do {
      const std::uint32_t column = bestFor(open_[random_.below(open_.size())]);
      if (column == kNone) break;
      addColumn(column);
      added = column;
      raiseWeights();
    } while (!open_.empty() && cost_ < best_cost_ - 1);
    run.spend((is_dense_ ? work_ * 2 / 3 : work_) + static_cast<std::int64_t>(kept_.size()) + 1);
    work_ = 0;
  }
}

}  // namespace lotmere

// A local search for a cheap cover of a matrix, with weights on the rows.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "reduction/cover_matrix.hpp"
#include "reduction/search_run.hpp"

namespace lotmere {

// Holds for each row how many kept columns cover it and the exclusive or of their numbers: when the count
// comes down to 1 this is the column that alone covers the row. So only a row that is opened or closed walks
// its list, and the gain of every column is known at any time.
//
// A step takes out the kept column whose loss is least for its cost, then closes rows picked at random among
// the open ones, each with the column that gains most for its cost, as long as the cover stays cheaper than
// the best; the weight of every row left open grows by 1, so that rows that are hard to cover come to count.
class WeightedSearch {
 public:
  // The matrix must outlive the search. Rows in `free` need no cover; columns in `pinned` are kept
  // whatever happens, those in `banned` never; no column is both.
  struct Limits {
    std::vector<std::uint32_t> free;
    std::vector<std::uint32_t> pinned;
    std::vector<std::uint32_t> banned;
  };
  WeightedSearch(const CoverMatrix& matrix, std::uint64_t seed, const Limits& limits = {});

  // Begins with these columns and adds, greatest gain for the cost first, until every row is covered. False
  // when the run ended before that: there is no cover then.
  bool begin(SearchRun& run, std::span<const std::uint32_t> columns = {});
  // Searches on until the run's work reaches `until`, the run is over, or the cover costs `enough` or less.
  void improve(SearchRun& run, std::int64_t until, std::int64_t enough, const BetterCover& better = {});

  // The best cover so far and its cost, pinned columns included.
  [[nodiscard]] const std::vector<std::uint32_t>& best() const { return best_; }
  [[nodiscard]] std::int64_t bestCost() const { return best_cost_; }
  // The work done when it was found.
  [[nodiscard]] std::int64_t bestAt() const { return best_at_; }

 private:
  static constexpr std::uint32_t kNone = CoverMatrix::kNone;
  static constexpr std::uint32_t kFreeCount = 1U << 30;  // covers that a free row has from the start

  struct Row {
    std::uint32_t count = 0;    // kept columns that cover it
    std::uint32_t keepers = 0;  // and the exclusive or of their numbers
    std::int32_t weight = 1;
    std::uint32_t open_place = kNone;  // among the open rows
  };
  struct Column {
    std::int32_t gain =
        0;  // weight of the open rows that it covers; when kept, of those that it alone covers
    std::uint32_t fresh = 1;  // whether something near it changed since it was taken out
  };

  template <class Visit>
  void forRowsOf(std::uint32_t column, Visit&& visit);
  [[nodiscard]] std::span<const std::uint32_t> columnsOf(std::uint32_t row) const;
  void addColumn(std::uint32_t column);
  void removeColumn(std::uint32_t column);
  void openRow(std::uint32_t row);
  void closeRow(std::uint32_t row);
  [[nodiscard]] std::uint32_t cheapestLoss(std::uint32_t spared) const;
  [[nodiscard]] std::uint32_t bestFor(std::uint32_t row);
  void keepBest(const SearchRun& run, const BetterCover& better);
  void raiseWeights();
  void restartWeights();

  const CoverMatrix& matrix_;
  SearchRandom random_;
  bool is_dense_;
  std::vector<Row> rows_;
  std::vector<Column> columns_;
  std::vector<std::uint8_t> barred_;       // columns that can't be added or taken out
  std::vector<std::uint32_t> kept_place_;  // among kept_, of each column
  std::vector<std::uint32_t> kept_;
  std::vector<std::uint32_t> open_;
  std::vector<std::uint32_t> stamp_;  // the step at which a column was last moved
  std::uint32_t step_ = 0;
  std::int64_t cost_ = 0;
  std::int64_t work_ = 0;
  std::int64_t weight_sum_ = 0;
  std::vector<std::uint32_t> best_;
  std::int64_t best_cost_ = 0;
  std::int64_t best_at_ = 0;
};

}  // namespace lotmere

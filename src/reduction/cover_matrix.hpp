// Which columns cover which rows, for a search that looks at the numbers of tickets no more.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace lotmere {

// Lists of numbers behind each other.
class NumberLists {
 public:
  [[nodiscard]] std::uint32_t count() const { return static_cast<std::uint32_t>(begin_.size() - 1); }
  [[nodiscard]] std::span<const std::uint32_t> operator[](std::uint32_t list) const {
    return {entries_.data() + begin_[list], entries_.data() + begin_[list + 1]};
  }
  [[nodiscard]] std::size_t entries() const { return entries_.size(); }
  void reserve(std::size_t lists, std::size_t entries) {
    begin_.reserve(lists + 1);
    entries_.reserve(entries);
  }
  // Puts a number at the end of the list that endList() ends.
  void add(std::uint32_t number) { entries_.push_back(number); }
  void endList() { begin_.push_back(entries_.size()); }

 private:
  std::vector<std::size_t> begin_{0};
  std::vector<std::uint32_t> entries_;
};

// Columns and rows stand for the same things (tickets, or sets of tickets that a symmetry maps to each
// other), so one list serves both: column i covers the rows in near[i], and row i is covered by the columns
// in near[i]. Extra rows behind those, each covered by a list of columns, hold what else is asked for; a
// column covers at most one of them.
struct CoverMatrix {
  static constexpr std::uint32_t kNone = ~std::uint32_t{0};

  NumberLists near;
  std::vector<std::uint32_t> cost;      // of each column; 1 or more
  NumberLists extra;                    // the columns of each extra row
  std::vector<std::uint32_t> extra_of;  // the extra row of each column, or kNone; empty without extra rows

  [[nodiscard]] std::uint32_t columns() const { return near.count(); }
  [[nodiscard]] std::uint32_t rows() const { return near.count() + extra.count(); }
};

}  // namespace lotmere

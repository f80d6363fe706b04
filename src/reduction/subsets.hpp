// A bitmap over all subsets of one size of a few dozen numbers: which of them have been seen.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "core/game.hpp"

namespace lotmere {

// Up to seven different numbers as ascending codes from 0.
struct CodeList {
  static constexpr int kMost = kRedsPerTicket + 1;
  std::array<int, kMost> codes{};
  int count = 0;

  void add(int code) { codes[count++] = code; }
};

class SubsetMarks {
 public:
  // Subsets of `size` (1 to 6) out of `numbers` (up to 49): 18,424 bits for 3 of 49, 13,983,816 for 6 of 49.
  SubsetMarks(int numbers, int size);

  // Marks every subset of a list; a list shorter than the size has none.
  void mark(const CodeList& list);
  // True when any subset of the list is marked: the list shares `size` numbers with one that was marked
  // before.
  [[nodiscard]] bool any(const CodeList& list) const;

 private:
  template <class Visit>
  bool visit_Subsets(const CodeList& list, Visit&& visit) const;

  int size_;
  std::vector<std::uint64_t> bits_;
};

}  // namespace lotmere

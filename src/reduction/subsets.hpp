// A bitmap over all subsets of one size of a few dozen numbers: which of them have been seen.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "game/game.hpp"

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
  int size_;
  std::vector<std::uint64_t> bits_;
};

// The same over the reds with a set of blues for each subset, a bit n for each blue n.
class BlueMarks {
 public:
  // Subsets of `size` (1 to 6) reds.
  explicit BlueMarks(int size);

  // Adds the blues to every subset of a list of reds; a list shorter than the size has none.
  void mark(const CodeList& list, std::uint32_t blues);
  // All blues that the subsets of the list have together.
  [[nodiscard]] std::uint32_t marked(const CodeList& list) const;

 private:
  int size_;
  std::vector<std::uint32_t> blues_;
};

// Which lists of numbers have been marked, asked by how many numbers another list shares with one of them. A
// list may hold a number several times, which then counts as often: such a list shares N with a marked one
// when some of its different numbers that make up N or more by their times all stand in it, so the subsets of
// fewer numbers are marked too where such lists are to come.
class OverlapMarks {
 public:
  enum class Repeats { no, yes };
  // How often the number at each place of a list is held; 1 or more.
  using Times = std::array<int, CodeList::kMost>;

  // Asks for `shared` (1 to 6) of `numbers` (up to 49). With Repeats::no every list asked for holds each
  // number once.
  OverlapMarks(int numbers, int shared, Repeats repeats);

  void mark(const CodeList& list);
  // Whether a list that holds each number once shares enough with one that was marked before.
  [[nodiscard]] bool any(const CodeList& list) const { return marks_.back().any(list); }
  // The same for a list that may hold numbers several times; a look at its at most 128 subsets.
  [[nodiscard]] bool any(const CodeList& list, const Times& times) const;

 private:
  int shared_;
  std::vector<SubsetMarks> marks_;  // the last one of `shared` numbers, those of fewer in front of it
};

}  // namespace lotmere

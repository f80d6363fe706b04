// The tickets of a cover search, sorted and grouped by their six reds.
#pragma once

#include <bit>
#include <cstdint>
#include <span>
#include <vector>

#include "tickets/ticket_set.hpp"

namespace lotmere {

// A bit for each of many things.
using Bits = std::vector<std::uint64_t>;

// Calls visit(i) for each bit that is set, ascending.
template <class Visit>
void forEachBit(const Bits& bits, Visit&& visit) {
  for (std::size_t word = 0; word < bits.size(); ++word)
    for (std::uint64_t rest = bits[word]; rest != 0; rest &= rest - 1)
      visit(static_cast<std::uint32_t>(word * 64 + static_cast<std::size_t>(std::countr_zero(rest))));
}

// Different tickets ascending by their six, then by their blue; their order doesn't depend on the order of
// those that were given. A ticket is named by its number here.
class CoverTickets {
 public:
  static constexpr std::uint32_t kNone = ~std::uint32_t{0};

  // Regular tickets (isRegular), which may stand there twice.
  explicit CoverTickets(std::span<const Balls> tickets);

  [[nodiscard]] std::uint32_t size() const { return static_cast<std::uint32_t>(six_.size()); }
  [[nodiscard]] std::uint32_t sixCount() const { return static_cast<std::uint32_t>(masks_.size()); }
  [[nodiscard]] int blueCount() const { return blue_count_; }

  [[nodiscard]] std::uint32_t six(std::uint32_t ticket) const { return six_[ticket]; }
  // 0 to blueCount() - 1, ascending by the blues that occur.
  [[nodiscard]] int blue(std::uint32_t ticket) const { return blue_[ticket]; }
  // Where it stands among the tickets given; the first of equal ones.
  [[nodiscard]] std::uint32_t place(std::uint32_t ticket) const { return place_[ticket]; }
  // The tickets of a six are firstOf(six) to firstOf(six + 1) - 1.
  [[nodiscard]] std::uint32_t firstOf(std::uint32_t six) const { return first_[six]; }
  // The ticket of a six with a blue, or kNone.
  [[nodiscard]] std::uint32_t at(std::uint32_t six, int blue) const {
    return at_[static_cast<std::size_t>(six) * static_cast<std::size_t>(blue_count_) +
               static_cast<std::size_t>(blue)];
  }
  // Bit n for each red n, of each six, ascending.
  [[nodiscard]] std::span<const std::uint64_t> masks() const { return masks_; }
  // The six with these reds, or kNone.
  [[nodiscard]] std::uint32_t findSix(std::uint64_t mask) const;

 private:
  int blue_count_ = 0;
  std::vector<std::uint64_t> masks_;
  std::vector<std::uint32_t> first_;
  std::vector<std::uint32_t> six_;
  std::vector<std::uint8_t> blue_;
  std::vector<std::uint32_t> place_;
  std::vector<std::uint32_t> at_;
};

// Finds the sixes that share numbers with a six: a bit plane for each red holds the sixes with it, and six
// planes are added up bit by bit, 64 sixes at a time.
class RedPlanes {
 public:
  explicit RedPlanes(std::span<const std::uint64_t> masks);

  // Sets the bits of the sixes that share `least` (2 to 6) or more reds with the six of `mask`, and of those
  // that share exactly one less.
  void share(std::uint64_t mask, int least, Bits& enough, Bits& one_less) const;
  // The words that one call looks at.
  [[nodiscard]] std::size_t words() const { return words_; }

 private:
  std::size_t words_;
  std::vector<Bits> planes_;
};

}  // namespace lotmere

// Several figures of six reds judged at once: for walks over millions of sixes.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "pipeline/plan.hpp"

namespace lotmere {

// Takes the figures that are sums over the reds. Each gets as many bits of one word a number as its largest
// sum needs, so that six additions give all of them; bits that stand together are looked up together.
class JointFigures {
 public:
  // Of the steps that run.
  JointFigures(const FilterPlan& plan, std::span<const std::size_t> steps);

  // How many of the figures taken a ticket of six different reds fails.
  [[nodiscard]] int failures(Balls ticket) const {
    std::uint64_t sums = 0;
    for (int i = 0; i < kRedsPerTicket; ++i) sums += words_[ticket >> (8 * i) & 0xFF];
    int failing = 0;
    for (const Lookup& lookup : lookups_) failing += lookup.failing[sums >> lookup.shift & lookup.mask];
    return failing;
  }
  [[nodiscard]] bool any() const { return !lookups_.empty(); }
  // The steps that it couldn't take.
  [[nodiscard]] const std::vector<std::size_t>& others() const { return others_; }

 private:
  struct Lookup {
    int shift = 0;
    std::uint64_t mask = 0;
    std::vector<std::uint8_t> failing{0};  // by the sums that stand together: how many of them fail
  };

  std::array<std::uint64_t, kRedCount + 1> words_{};
  std::vector<Lookup> lookups_;
  std::vector<std::size_t> others_;
};

}  // namespace lotmere

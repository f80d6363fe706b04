// The smallest cover that the parts of a search have found so far.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "reduction/search_run.hpp"

namespace lotmere {

class BestCover {
 public:
  // `enough` is a number of tickets that no cover can be below; `better` is told of each smaller one.
  BestCover(std::vector<std::uint32_t> tickets, std::size_t enough, SearchRun& run, BetterCover better)
      : tickets_(std::move(tickets)),
        told_(tickets_.size()),
        enough_(enough),
        run_(run),
        better_(std::move(better)) {}

  [[nodiscard]] const std::vector<std::uint32_t>& tickets() const { return tickets_; }
  [[nodiscard]] std::size_t size() const { return tickets_.size(); }
  [[nodiscard]] std::size_t enough() const { return enough_; }
  [[nodiscard]] bool isEnough() const { return tickets_.size() <= enough_; }

  // Takes a complete cover, by the numbers of its tickets, if it is smaller.
  void offer(std::vector<std::uint32_t> tickets) {
    tell(tickets.size());
    if (tickets.size() < tickets_.size()) tickets_ = std::move(tickets);
  }
  // A part of the search holds a cover of this size, which it will offer when it ends.
  void tell(std::size_t size) {
    if (size >= told_) return;
    told_ = size;
    run_.noteBetter();
    if (better_) better_(size);
  }

 private:
  std::vector<std::uint32_t> tickets_;
  std::size_t told_;
  std::size_t enough_;
  SearchRun& run_;
  BetterCover better_;
};

}  // namespace lotmere

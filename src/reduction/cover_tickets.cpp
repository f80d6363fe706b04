#include "reduction/cover_tickets.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <numeric>
#include <tuple>

#include "base/assert.hpp"

namespace lotmere {

CoverTickets::CoverTickets(std::span<const Balls> tickets) {
  struct Key {
    std::uint64_t mask;
    int blue;
    std::uint32_t place;
  };
  std::vector<Key> keys;
  keys.reserve(tickets.size());
  std::uint32_t blues = 0;
  for (std::size_t place = 0; place < tickets.size(); ++place) {
    keys.push_back({redMask(tickets[place]), blueOf(tickets[place]), static_cast<std::uint32_t>(place)});
    blues |= 1U << blueOf(tickets[place]);
  }
  std::ranges::sort(keys, {}, [](const Key& key) { return std::tuple(key.mask, key.blue, key.place); });
  blue_count_ = std::popcount(blues);
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const Key& key = keys[i];
    if (i > 0 && keys[i - 1].mask == key.mask && keys[i - 1].blue == key.blue) continue;
    if (masks_.empty() || masks_.back() != key.mask) {
      masks_.push_back(key.mask);
      first_.push_back(size());
      at_.resize(at_.size() + static_cast<std::size_t>(blue_count_), kNone);
    }
    const int blue = std::popcount(blues & ((1U << key.blue) - 1));
    at_[at_.size() - static_cast<std::size_t>(blue_count_ - blue)] = size();
    six_.push_back(sixCount() - 1);
    blue_.push_back(static_cast<std::uint8_t>(blue));
    place_.push_back(key.place);
  }
  first_.push_back(size());
}

std::uint32_t CoverTickets::findSix(std::uint64_t mask) const {
  const auto found = std::ranges::lower_bound(masks_, mask);
  return found == masks_.end() || *found != mask ? kNone : static_cast<std::uint32_t>(found - masks_.begin());
}

RedPlanes::RedPlanes(std::span<const std::uint64_t> masks)
    : words_((masks.size() + 63) / 64), planes_(kRedCount + 1, Bits(words_)) {
  for (std::size_t six = 0; six < masks.size(); ++six)
    for (std::uint64_t rest = masks[six]; rest != 0; rest &= rest - 1)
      planes_[static_cast<std::size_t>(std::countr_zero(rest))][six / 64] |= std::uint64_t{1} << six % 64;
}

void RedPlanes::share(std::uint64_t mask, int least, Bits& enough, Bits& one_less) const {
  LOTMERE_ASSERT(std::popcount(mask) == kRedsPerTicket && least >= 2 && least <= kRedsPerTicket);
  std::array<const std::uint64_t*, kRedsPerTicket> planes{};
  for (auto& plane : planes) {
    plane = planes_[static_cast<std::size_t>(std::countr_zero(mask))].data();
    mask &= mask - 1;
  }
  enough.resize(words_);
  one_less.resize(words_);
  // The number of shared reds of 64 sixes in three words: ones, twos and fours.
  const auto walk = [&](auto at_least, auto exactly) {
    for (std::size_t i = 0; i < words_; ++i) {
      const std::uint64_t a = planes[0][i], b = planes[1][i], c = planes[2][i];
      const std::uint64_t d = planes[3][i], e = planes[4][i], f = planes[5][i];
      const std::uint64_t sum_left = a ^ b ^ c, sum_right = d ^ e ^ f;
      const std::uint64_t over_left = (a & b) | (c & (a ^ b)), over_right = (d & e) | (f & (d ^ e));
      const std::uint64_t ones = sum_left ^ sum_right, over = sum_left & sum_right;
      const std::uint64_t twos = over_left ^ over_right ^ over;
      const std::uint64_t fours = (over_left & over_right) | (over & (over_left ^ over_right));
      enough[i] = at_least(ones, twos, fours);
      one_less[i] = exactly(ones, twos, fours);
    }
  };
  using W = std::uint64_t;
  switch (least) {
    case 2:
      return walk([](W, W t, W f) { return t | f; }, [](W o, W t, W f) { return o & ~t & ~f; });
    case 3:
      return walk([](W o, W t, W f) { return f | (t & o); }, [](W o, W t, W f) { return t & ~o & ~f; });
    case 4:
      return walk([](W, W, W f) { return f; }, [](W o, W t, W f) { return o & t & ~f; });
    case 5:
      return walk([](W o, W t, W f) { return f & (o | t); }, [](W o, W t, W f) { return f & ~o & ~t; });
    default:
      return walk([](W, W t, W f) { return f & t; }, [](W o, W t, W f) { return f & o & ~t; });
  }
}

}  // namespace lotmere

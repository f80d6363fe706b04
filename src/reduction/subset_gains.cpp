#include "reduction/subset_gains.hpp"

#include <array>
#include <bit>

#include "base/assert.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kCachedEntries = 500'000;

constexpr std::int32_t choose(int n, int k) {
  std::int32_t ways = 1;
  for (int i = 1; i <= k; ++i) ways = ways * (n - k + i) / i;
  return ways;
}

}  // namespace

SubsetGains::SubsetGains(const CoverTickets& tickets, int shared) : tickets_(tickets), shared_(shared) {
  LOTMERE_ASSERT(shared >= 2 && shared <= kRedsPerTicket);
  placeSubsets();
  all_.resize(table_size_);
  by_blue_.resize(table_size_ * static_cast<std::size_t>(tickets.blueCount()));
  const bool is_large = all_.size() + by_blue_.size() > kCachedEntries;
  work_ = static_cast<std::int64_t>((is_large ? 6 : 2) * per_six_);
}

// A subset of fewer than six reds is placed by its rank among all subsets of its size of the reds that
// occur; a whole six by its number.
void SubsetGains::placeSubsets() {
  std::uint64_t present = 0;
  for (const std::uint64_t mask : tickets_.masks()) present |= mask;
  const int reds = std::popcount(present);
  for (int size = shared_ - 1; size <= kRedsPerTicket; ++size) {
    size_of_level_.push_back(static_cast<std::size_t>(choose(kRedsPerTicket, size)));
    per_six_ += size_of_level_.back();
  }
  places_.reserve(per_six_ * tickets_.sixCount());
  for (std::uint32_t six = 0; six < tickets_.sixCount(); ++six) {
    std::array<int, kRedsPerTicket> codes{};
    int count = 0;
    for (std::uint64_t rest = tickets_.masks()[six]; rest != 0; rest &= rest - 1)
      codes[count++] = std::popcount(present & ((rest & -rest) - 1));
    std::size_t first = 0;
    for (int size = shared_ - 1; size < kRedsPerTicket; ++size) {
      for (unsigned set = 0; set < 1U << kRedsPerTicket; ++set) {
        if (std::popcount(set) != size) continue;
        std::int32_t rank = 0;
        int k = 0;
        for (int place = 0; place < kRedsPerTicket; ++place)
          if (set >> place & 1) {
            ++k;
            rank += codes[place] >= k ? choose(codes[place], k) : 0;
          }
        places_.push_back(static_cast<std::uint32_t>(first) + static_cast<std::uint32_t>(rank));
      }
      first += static_cast<std::size_t>(choose(reds, size));
    }
    places_.push_back(static_cast<std::uint32_t>(first) + six);
    table_size_ = first + tickets_.sixCount();
  }
}

void SubsetGains::change(std::uint32_t ticket, std::int32_t weight) {
  const std::uint32_t* const places = places_.data() + tickets_.six(ticket) * per_six_;
  std::int32_t* const own = by_blue_.data() + table_size_ * static_cast<std::size_t>(tickets_.blue(ticket));
  for (std::size_t i = 0; i < size_of_level_.front(); ++i) own[places[i]] += weight;
  for (std::size_t i = size_of_level_.front(); i < per_six_; ++i) {
    own[places[i]] += weight;
    all_[places[i]] += weight;
  }
}

std::int32_t SubsetGains::ofAnyBlue(std::uint32_t six) const {
  const std::uint32_t* place = places_.data() + six * per_six_ + size_of_level_.front();
  std::int32_t gain = 0;
  std::int32_t sign = 1;
  for (int size = shared_; size <= kRedsPerTicket; ++size, sign = -sign) {
    std::int32_t sum = 0;
    for (const std::uint32_t* end = place + size_of_level_[size - shared_ + 1]; place < end; ++place)
      sum += all_[*place];
    gain += sign * choose(size - 1, shared_ - 1) * sum;
  }
  return gain;
}

std::int32_t SubsetGains::ofSameBlue(std::uint32_t six, int blue) const {
  const std::int32_t* const own = by_blue_.data() + table_size_ * static_cast<std::size_t>(blue);
  const std::uint32_t* place = places_.data() + six * per_six_;
  std::int32_t gain = 0;
  std::int32_t sign = 1;
  for (int size = shared_ - 1; size <= kRedsPerTicket; ++size, sign = -sign) {
    std::int32_t sum = 0;
    for (const std::uint32_t* end = place + size_of_level_[size - shared_ + 1]; place < end; ++place)
      sum += own[*place];
    gain += sign * choose(size, shared_ - 1) * sum;
  }
  return gain;
}

}  // namespace lotmere

#include "reduction/cover.hpp"

#include <array>
#include <bit>

namespace lotmere {
namespace {

constexpr int kNumbers = kRedsPerTicket + 1;
using Codes = std::array<int, kNumbers>;

// C(n, k) for n up to 49, k up to 6.
constexpr auto make_Choose() {
  std::array<std::array<std::uint32_t, kNumbers>, kCodeCount + 1> choose{};
  for (int n = 0; n <= kCodeCount; ++n) {
    choose[n][0] = 1;
    for (int k = 1; k < kNumbers && k <= n; ++k)
      choose[n][k] = choose[n - 1][k - 1] + (k <= n - 1 ? choose[n - 1][k] : 0);
  }
  return choose;
}
constexpr auto kChoose = make_Choose();

// The places of the N-subsets of seven (or fewer) numbers, as bit sets of places.
struct Subsets {
  std::array<std::array<std::uint8_t, kNumbers>, 35> places{};
  int count = 0;
};

constexpr Subsets make_Subsets(int numbers, int size) {
  Subsets subsets;
  for (unsigned set = 0; set < 1u << numbers; ++set) {
    if (std::popcount(set) != size) continue;
    int k = 0;
    for (int place = 0; place < numbers; ++place)
      if (set >> place & 1) subsets.places[subsets.count][k++] = static_cast<std::uint8_t>(place);
    ++subsets.count;
  }
  return subsets;
}

constexpr auto make_AllSubsets() {
  std::array<std::array<Subsets, kNumbers>, kNumbers + 1> all{};
  for (int numbers = 1; numbers <= kNumbers; ++numbers)
    for (int size = 1; size < kNumbers && size <= numbers; ++size)
      all[numbers][size] = make_Subsets(numbers, size);
  return all;
}
constexpr auto kSubsets = make_AllSubsets();

// The different numbers of a ticket as ascending codes, reds 0 to 32 and blues 33 to 48; returns how many
// there are. A number outside its range has no code.
int codes_Of(Balls ticket, Codes& codes) {
  std::uint64_t mask = red_Mask(ticket) >> 1;
  int count = 0;
  while (mask != 0) {
    codes[count++] = std::countr_zero(mask);
    mask &= mask - 1;
  }
  if (const int blue = blue_Of(ticket); blue != 0) codes[count++] = kRedCount + blue - 1;
  return count;
}

}  // namespace

int count_Shared(Balls centre, Balls ticket) {
  const std::uint64_t reds = red_Mask(centre);
  int shared = blue_Of(centre) != 0 && blue_Of(centre) == blue_Of(ticket);
  for (const int red : reds_Of(ticket)) shared += static_cast<int>(reds >> red & 1);
  return shared;
}

Cover::Cover(int shared) : shared_(shared), bits_((kChoose[kCodeCount][shared] + 63) / 64) {}

template <class Visit>
bool Cover::any_Subset(const Codes& codes, int count, Visit&& visit) const {
  const Subsets& subsets = kSubsets[count][shared_];
  for (int i = 0; i < subsets.count; ++i) {
    std::uint32_t rank = 0;
    for (int k = 0; k < shared_; ++k) rank += kChoose[codes[subsets.places[i][k]]][k + 1];
    if (visit(rank)) return true;
  }
  return false;
}

bool Cover::is_Covered(const Codes& codes, int count) const {
  return any_Subset(codes, count,
                    [this](std::uint32_t rank) { return (bits_[rank / 64] >> rank % 64 & 1) != 0; });
}

bool Cover::is_CoveredLiterally(Balls ticket) const {
  for (const Balls centre : centres_)
    if (count_Shared(centre, ticket) >= shared_) return true;
  return false;
}

void Cover::mark(const Codes& codes, int count) {
  any_Subset(codes, count, [this](std::uint32_t rank) {
    bits_[rank / 64] |= std::uint64_t{1} << rank % 64;
    return false;
  });
}

bool Cover::take(Balls ticket) {
  Codes codes{};
  const int count = codes_Of(ticket, codes);
  const bool repeats = count < kNumbers;
  if (repeats ? is_CoveredLiterally(ticket) : is_Covered(codes, count)) return false;
  if (count >= shared_) mark(codes, count);
  centres_.push_back(ticket);
  return true;
}

}  // namespace lotmere

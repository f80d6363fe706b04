#include "reduction/subsets.hpp"

#include <algorithm>
#include <bit>

namespace lotmere {
namespace {

constexpr int kMost = CodeList::kMost;

// C(n, k) for n up to 49, k up to 6.
constexpr auto makeChoose() {
  std::array<std::array<std::uint32_t, kMost>, kCodeCount + 1> choose{};
  for (int n = 0; n <= kCodeCount; ++n) {
    choose[n][0] = 1;
    for (int k = 1; k < kMost && k <= n; ++k)
      choose[n][k] = choose[n - 1][k - 1] + (k <= n - 1 ? choose[n - 1][k] : 0);
  }
  return choose;
}
constexpr auto kChoose = makeChoose();

// The places of the subsets of one size of a list of one length.
struct Subsets {
  std::array<std::array<std::uint8_t, kMost>, 35> places{};
  int count = 0;
};

constexpr Subsets makeSubsets(int numbers, int size) {
  Subsets subsets;
  for (unsigned set = 0; set < 1U << numbers; ++set) {
    if (std::popcount(set) != size) continue;
    int k = 0;
    for (int place = 0; place < numbers; ++place)
      if (set >> place & 1) subsets.places[subsets.count][k++] = static_cast<std::uint8_t>(place);
    ++subsets.count;
  }
  return subsets;
}

constexpr auto makeAllSubsets() {
  std::array<std::array<Subsets, kMost>, kMost + 1> all{};
  for (int numbers = 1; numbers <= kMost; ++numbers)
    for (int size = 1; size < kMost && size <= numbers; ++size)
      all[numbers][size] = makeSubsets(numbers, size);
  return all;
}
constexpr auto kSubsets = makeAllSubsets();

// Calls visit(rank) for the subsets of a size of a list until it returns true. The rank of a subset is the
// sum of C(code, place) over its ascending codes.
template <class Visit>
bool visitSubsets(const CodeList& list, int size, Visit&& visit) {
  const Subsets& subsets = kSubsets[list.count][size];
  for (int i = 0; i < subsets.count; ++i) {
    std::uint32_t rank = 0;
    for (int k = 0; k < size; ++k) rank += kChoose[list.codes[subsets.places[i][k]]][k + 1];
    if (visit(rank)) return true;
  }
  return false;
}

}  // namespace

SubsetMarks::SubsetMarks(int numbers, int size) : size_(size), bits_((kChoose[numbers][size] + 63) / 64) {}

void SubsetMarks::mark(const CodeList& list) {
  visitSubsets(list, size_, [this](std::uint32_t rank) {
    bits_[rank / 64] |= std::uint64_t{1} << rank % 64;
    return false;
  });
}

bool SubsetMarks::any(const CodeList& list) const {
  return visitSubsets(list, size_,
                      [this](std::uint32_t rank) { return (bits_[rank / 64] >> rank % 64 & 1) != 0; });
}

BlueMarks::BlueMarks(int size) : size_(size), blues_(kChoose[kRedCount][size]) {}

void BlueMarks::mark(const CodeList& list, std::uint32_t blues) {
  visitSubsets(list, size_, [&](std::uint32_t rank) {
    blues_[rank] |= blues;
    return false;
  });
}

std::uint32_t BlueMarks::marked(const CodeList& list) const {
  std::uint32_t blues = 0;
  visitSubsets(list, size_, [&](std::uint32_t rank) {
    blues |= blues_[rank];
    return false;
  });
  return blues;
}

OverlapMarks::OverlapMarks(int numbers, int shared, Repeats repeats) : shared_(shared) {
  for (int size = repeats == Repeats::yes ? 1 : shared; size <= shared; ++size)
    marks_.emplace_back(numbers, size);
}

void OverlapMarks::mark(const CodeList& list) {
  for (SubsetMarks& marks : marks_) marks.mark(list);
}

bool OverlapMarks::any(const CodeList& list, const Times& times) const {
  for (unsigned set = 1; set < 1U << list.count; ++set) {
    CodeList subset;
    int together = 0;
    int fewest = shared_;
    for (int place = 0; place < list.count; ++place) {
      if ((set >> place & 1) == 0) continue;
      subset.add(list.codes[place]);
      together += times[place];
      fewest = std::min(fewest, times[place]);
    }
    // A set that would do without one of its numbers is asked for without it; so none has more than `shared`.
    if (together < shared_ || together - fewest >= shared_) continue;
    if (marks_[static_cast<std::size_t>(subset.count) - 1].any(subset)) return true;
  }
  return false;
}

}  // namespace lotmere

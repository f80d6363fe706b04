#include "tickets/red_joiner.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

#include "base/assert.hpp"

namespace lotmere {
namespace {

constexpr int kFive = 5;

// choose[n][k]: how many sets of k there are out of n numbers.
constexpr auto kChoose = [] {
  std::array<std::array<std::uint32_t, kFive + 1>, kRedCount + 1> choose{};
  for (auto& row : choose) row[0] = 1;
  for (int n = 1; n <= kRedCount; ++n)
    for (int k = 1; k <= kFive; ++k) choose[n][k] = choose[n - 1][k - 1] + choose[n - 1][k];
  return choose;
}();

// The place of five ascending reds among all fives.
std::uint32_t rankOf(const std::array<int, kFive>& five) {
  std::uint32_t rank = 0;
  for (int i = 0; i < kFive; ++i) rank += kChoose[five[i] - 1][i + 1];
  return rank;
}

// Calls `visit` with each five of ascending reds and the place of the one left out, of a six.
template <class Visit>
void visitFives(const Reds& six, Visit&& visit) {
  for (int out = 0; out < kRedsPerTicket; ++out) {
    std::array<int, kFive> five{};
    std::copy(six.begin(), six.begin() + out, five.begin());
    std::copy(six.begin() + out + 1, six.end(), five.begin() + out);
    visit(rankOf(five), six[out]);
  }
}

// The lowest places of a choice of `count` out of a row, then the next choice; false behind the last one.
bool nextChoice(std::vector<int>& places, int size) {
  const int count = static_cast<int>(places.size());
  int moved = count - 1;
  while (moved >= 0 && places[moved] == size - count + moved) --moved;
  if (moved < 0) return false;
  ++places[moved];
  for (int i = moved + 1; i < count; ++i) places[i] = places[i - 1] + 1;
  return true;
}

}  // namespace

RedJoiner::RedJoiner() : sixths_(kChoose[kRedCount][kFive]) {}

bool RedJoiner::holds(const Reds& six) const {
  bool held = false;
  visitFives(six, [&](std::uint32_t rank, int red) { held = (sixths_[rank] >> red & 1) != 0; });
  return held;
}

void RedJoiner::flip(const Reds& six) {
  visitFives(six, [&](std::uint32_t rank, int red) { sixths_[rank] ^= Mask{1} << red; });
}

// The reds that make up seven with a six, all sixes of which stand there.
RedJoiner::Mask RedJoiner::partners(const std::vector<int>& reds) const {
  Reds six{};
  std::copy_n(reds.begin(), kRedsPerTicket, six.begin());
  Mask all = ~Mask{0};
  visitFives(six, [&](std::uint32_t rank, int /*red*/) { all &= sixths_[rank]; });
  return all;
}

// What is left of the partners of a set when `red`, one of them, joins it: those that stand with each five
// that holds it.
RedJoiner::Mask RedJoiner::partnersWith(const std::vector<int>& reds, int red, Mask partners) const {
  constexpr int four = kFive - 1;
  partners &= ~(Mask{1} << red);
  const int below = static_cast<int>(std::ranges::lower_bound(reds, red) - reds.begin());
  // The ranks add up from the parts of each red, which depend on whether it stands below the new one.
  std::array<std::array<std::uint32_t, four>, kRedCount> part{};
  const int size = static_cast<int>(reds.size());
  for (int place = 0; place < size; ++place)
    for (int i = 0; i < four; ++i) part[place][i] = kChoose[reds[place] - 1][i + (place < below ? 1 : 2)];
  std::array<std::uint32_t, kFive> own{};
  for (int i = 0; i < kFive; ++i) own[i] = kChoose[red - 1][i + 1];
  for (int a = 0; a < size - 3; ++a)
    for (int b = a + 1; b < size - 2; ++b)
      for (int c = b + 1; c < size - 1; ++c) {
        const std::uint32_t three = part[a][0] + part[b][1] + part[c][2];
        const int lower = (a < below ? 1 : 0) + (b < below ? 1 : 0) + (c < below ? 1 : 0);
        for (int d = c + 1; d < size; ++d)
          partners &= sixths_[three + part[d][3] + own[lower + (d < below ? 1 : 0)]];
        if (partners == 0) return 0;
      }
  return partners;
}

// Adds the red that leaves most partners, again and again.
std::vector<int> RedJoiner::grow(const Reds& six, int most) const {
  std::vector<int> reds(six.begin(), six.end());
  Mask open = partners(reds);
  while (open != 0 && static_cast<int>(reds.size()) < most) {
    int best = 0;
    Mask best_left = 0;
    for (Mask rest = open; rest != 0; rest &= rest - 1) {
      const int red = std::countr_zero(rest);
      const Mask left = partnersWith(reds, red, open);
      if (best != 0 && std::popcount(left) <= std::popcount(best_left)) continue;
      best = red;
      best_left = left;
    }
    reds.insert(std::ranges::lower_bound(reds, best), best);
    open = best_left;
  }
  return reds;
}

void RedJoiner::takeSet(const std::vector<int>& reds) {
  std::vector<int> places{0, 1, 2, 3, 4, 5};
  do {
    Reds six{};
    for (int i = 0; i < kRedsPerTicket; ++i) six[i] = reds[places[i]];
    LOTMERE_ASSERT(holds(six));
    flip(six);
  } while (nextChoice(places, static_cast<int>(reds.size())));
}

RedJoiner::RedSets RedJoiner::takeApart(const std::vector<Reds>& sixes, int most,
                                        const std::function<bool()>& ended) {
  for (const Reds& six : sixes) flip(six);
  // Sets that can't be larger are taken at once. The others wait, and are looked at again when their size is
  // the largest: what was taken meanwhile may have made them smaller.
  RedSets sets;
  std::vector<std::vector<std::size_t>> waiting(most + 1);
  bool is_over = false;
  const auto look = [&](std::size_t place, int size) {
    if (is_over || !holds(sixes[place])) return;
    std::vector<int> reds = grow(sixes[place], most);
    const int found = static_cast<int>(reds.size());
    if (found < size) return waiting[found].push_back(place);
    takeSet(reds);
    sets.push_back(std::move(reds));
    is_over = ended();
  };
  for (std::size_t place = 0; place < sixes.size(); ++place) look(place, most);
  for (int size = most - 1; size >= kRedsPerTicket; --size) {
    std::ranges::sort(waiting[size]);
    for (const std::size_t place : waiting[size]) look(place, size);
  }
  if (is_over)
    for (const Reds& six : sixes)
      if (holds(six)) flip(six);
  return sets;
}

}  // namespace lotmere

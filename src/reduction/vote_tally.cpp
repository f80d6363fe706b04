#include "reduction/vote_tally.hpp"

#include <algorithm>
#include <cmath>

namespace lotmere {
namespace {

constexpr std::int64_t kRedSeeds = 1988;
constexpr std::int64_t kBlueSeeds = 518;  // the first of them vote against blues too

// A whole number of 1 to `count`; halves go to the even number.
int guess(std::int64_t seed, std::int64_t period, int factor, int count) {
  return static_cast<int>(std::lrint(rndFixed(-(seed + period)) * factor + 1) % count + 1);
}

int guessRed(std::int64_t seed, std::int64_t period) { return guess(seed, period, 12345, kRedCount); }
int guessBlue(std::int64_t seed, std::int64_t period) { return guess(seed, period, 45678, kBlueCount); }

template <std::size_t N>
int voteAt(const std::array<std::int32_t, N>& votes, int n) {
  return n >= 1 && n <= static_cast<int>(N) ? votes[n - 1] : -1;
}

}  // namespace

double rndFixed(std::int64_t x) {
  auto bits = static_cast<std::uint64_t>(x) + 0x9E3779B97F4A7C15U;
  bits = (bits ^ bits >> 30) * 0xBF58476D1CE4E5B9U;
  bits = (bits ^ bits >> 27) * 0x94D049BB133111EBU;
  bits ^= bits >> 31;
  return static_cast<double>(bits >> 32) * 0x1p-32;
}

void VoteTally::setDraws(const RecentDraws& history) {
  history_ = history;
  ready = false;
}

int VoteTally::redVotes(int n) {
  if (!ready) countVotes();
  return voteAt(red_votes_, n);
}

int VoteTally::blueVotes(int n) {
  if (!ready) countVotes();
  return voteAt(blue_votes_, n);
}

void VoteTally::countVotes() {
  if (!history_ || target_period < 1) return;
  red_votes_.fill(0);
  blue_votes_.fill(0);
  // The newest draw takes no part: the guesses for the two periods before stand against the two draws before
  // it. Periods go into the seeds as plain numbers, whatever the calendar says.
  const DrawNumbers& second = (*history_)[1];
  const DrawNumbers& third = (*history_)[2];
  const std::int64_t period = target_period;
  const std::int64_t first = std::int64_t{seed_base} + 1;
  for (std::int64_t seed = first; seed < first + kRedSeeds; ++seed) {
    const int red = guessRed(seed, period - 1);
    if (std::find(second.reds.begin(), second.reds.end(), red) != second.reds.end())
      ++red_votes_[guessRed(seed, period) - 1];
    if (seed < first + kBlueSeeds &&
        (guessBlue(seed, period - 1) == second.blue || guessBlue(seed, period - 2) == third.blue))
      ++blue_votes_[guessBlue(seed, period) - 1];
  }
  ready = true;
}

}  // namespace lotmere

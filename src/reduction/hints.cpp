#include "reduction/hints.hpp"

#include <algorithm>
#include <span>

#include "reduction/vote_tally.hpp"
#include "store/periods.hpp"

namespace lotmere {
namespace {

constexpr int kMarked = -1;
constexpr int kLeastDraws = 5;  // with fewer there are no votes

// A figure of every number, by number - 1: votes, or `概率`.
struct NumberFigures {
  std::array<int, kRedCount> red{};
  std::array<int, kBlueCount> blue{};
};

struct Turn {
  int seed_base;
  int red_top;
  int blue_top;
};
constexpr Turn kTurns[] = {{0, 2, 2}, {6000, 2, 2}, {12000, 2, 1}};

struct LoadedHistory {
  RecentDraws rows{};
  int count = 0;
};

// Every run starts from an array of its own. Draws that an earlier run left behind newer ones would make no
// difference: votes take five draws, and then the rows that they read are filled.
LoadedHistory hintLoad(Store& store, PeriodNo period) {
  LoadedHistory history;
  for (const StoredDraw& draw : drawsBefore(store, period, static_cast<int>(history.rows.size())))
    history.rows[history.count++] = draw.numbers;
  return history;
}

NumberFigures readVotes(VoteTally& tally) {
  NumberFigures votes;
  for (int n = 1; n <= kRedCount; ++n) votes.red[n - 1] = tally.redVotes(n);
  for (int n = 1; n <= kBlueCount; ++n) votes.blue[n - 1] = tally.blueVotes(n);
  return votes;
}

// Marks the `top` numbers with the most votes, the lowest among equals; marks that stand keep standing.
void markTop(std::span<int> chances, std::span<const int> votes, int top) {
  for (std::size_t i = 0; i < chances.size(); ++i)
    if (chances[i] != kMarked) chances[i] = votes[i];
  for (; top > 0; --top) *std::max_element(chances.begin(), chances.end()) = kMarked;
  for (int& chance : chances) chance = std::min(chance, 0);
}

// Nothing is marked when the reds or the blues of enough draws got no vote at all.
void hintTurn(const LoadedHistory& history, PeriodNo period, const Turn& turn, VoteTally& tally,
              NumberFigures& chances) {
  NumberFigures votes;
  if (history.count >= kLeastDraws) {
    tally.setDraws(history.rows);
    tally.target_period = period;
    tally.seed_base = turn.seed_base;
    votes = readVotes(tally);
    const auto none = [](int count) { return count == 0; };
    if (std::all_of(votes.red.begin(), votes.red.end(), none) ||
        std::all_of(votes.blue.begin(), votes.blue.end(), none))
      return;
  }
  markTop(chances.red, votes.red, turn.red_top);
  markTop(chances.blue, votes.blue, turn.blue_top);
}

// Rows that hold their value already aren't written, so that the same marks cost no write to the disk.
void storeChances(Store& store, const NumberFigures& chances) {
  StoreChange change(store);
  Query row = store.query(R"(UPDATE "概率表" SET "概率"=?1 WHERE "号码"=?2 AND "概率"<>?1)");
  const auto write = [&](std::span<const int> figures, int base) {
    for (int code = base; const int chance : figures) row.bind(chance, ++code).run();
  };
  write(chances.red, 0);
  write(chances.blue, kBlueCodeBase);
  change.commit();
}

}  // namespace

void hintGaiLv(Store& store, PeriodNo period) {
  const LoadedHistory history = hintLoad(store, period);
  VoteTally tally;
  NumberFigures chances;
  for (const Turn& turn : kTurns) hintTurn(history, period, turn, tally, chances);
  storeChances(store, chances);
}

}  // namespace lotmere

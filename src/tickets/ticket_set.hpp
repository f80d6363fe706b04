// The tickets of one period in memory: read once, worked on by passes and reduction, written back once.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "game/game.hpp"
#include "game/metrics.hpp"
#include "store/store.hpp"

namespace lotmere {

// A ticket's numbers in one word: byte 0 to 5 the reds as they stand, byte 6 the blue. A number outside its
// range is held as 0. Byte 7 is 0 but where one word stands for several tickets that fare alike in every
// step: then it holds how many others there are.
using Balls = std::uint64_t;

inline constexpr Balls kRedBytes = 0x0000'FFFF'FFFF'FFFF;

[[nodiscard]] constexpr Balls packBalls(const Reds& reds, int blue) {
  Balls balls = 0;
  for (int i = 0; i < kRedsPerTicket; ++i)
    balls |= static_cast<Balls>(reds[i] > 0 && reds[i] <= kRedCount ? reds[i] : 0) << (8 * i);
  return balls | static_cast<Balls>(blue > 0 && blue <= kBlueCount ? blue : 0) << 48;
}
[[nodiscard]] constexpr Reds redsOf(Balls balls) {
  Reds reds{};
  for (int i = 0; i < kRedsPerTicket; ++i) reds[i] = static_cast<int>(balls >> (8 * i) & 0xFF);
  return reds;
}
[[nodiscard]] constexpr int blueOf(Balls balls) { return static_cast<int>(balls >> 48 & 0xFF); }
// How many tickets the word stands for.
[[nodiscard]] constexpr std::int64_t ticketsOf(Balls balls) {
  return 1 + static_cast<std::int64_t>(balls >> 56);
}
// Bit n for each red n.
[[nodiscard]] constexpr std::uint64_t redMask(Balls balls) {
  std::uint64_t mask = 0;
  for (const int red : redsOf(balls)) mask |= std::uint64_t{1} << red;
  return mask & ~std::uint64_t{1};
}

// The arrays run side by side, one entry a ticket, in the order of creation. Removing a ticket never changes
// that order.
struct TicketSet {
  PeriodNo period = 0;
  std::vector<Balls> balls;
  std::vector<std::uint32_t> origin;  // place of the ticket among the stored rows that were read
  std::vector<std::int32_t> seq;      // `序号`
  std::vector<std::int8_t> mark;      // `过滤标记`
  std::vector<std::int8_t> shrink;    // `缩水标记`
  std::vector<std::int32_t> score;    // `临时数据`

  // The rows as the store holds them, by `origin`.
  struct Stored {
    std::vector<std::int32_t> id;
    std::vector<std::int32_t> seq;
    std::vector<std::int8_t> mark;
    std::vector<std::int8_t> shrink;
    std::vector<std::int32_t> score;
    std::vector<std::int8_t> chosen;     // `精选标记`
    std::vector<std::int8_t> red_hits;   // `红球中`
    std::vector<std::int8_t> blue_hits;  // `蓝球中`
    bool scored = false;                 // whether any score isn't 0
  } stored;

  [[nodiscard]] std::size_t size() const { return balls.size(); }
  void reserve(std::size_t rows);
  // Adds a ticket that no stored row stands for, behind those that were read; marks 0, the next running
  // number.
  void add(Balls numbers);
  // Moves a ticket's entries to an earlier place.
  void moveRow(std::size_t from, std::size_t to) {
    balls[to] = balls[from];
    origin[to] = origin[from];
    seq[to] = seq[from];
    mark[to] = mark[from];
    shrink[to] = shrink[from];
    score[to] = score[from];
  }
  // Keeps the first `rows` tickets.
  void truncate(std::size_t rows);
  // Numbers the tickets from 1 on, in the order of the numbers that they have.
  void renumber();
  // Sets the scores to those of the stored rows again, for a caller that moved tickets without them.
  void recallScores();
};

// How many rows a period has in `日志表`.
[[nodiscard]] std::size_t countTickets(Store& store, PeriodNo period);

// Called between blocks of rows with the number of rows done; true stops the work where stopping is possible.
using RowsDone = std::function<bool(std::size_t)>;

// Reads the tickets of a period, the three marks set to 0 in memory, scores and running numbers as they
// stand. Nothing when `done` asked to stop.
[[nodiscard]] std::optional<TicketSet> loadTickets(Store& store, PeriodNo period, const RowsDone& done);

// Writes back what differs from the stored rows, in one change: removed tickets are deleted, marks, running
// numbers and scores updated. A crash leaves the table before or after. `done` is served but can't stop it.
void saveTickets(Store& store, const TicketSet& tickets, const RowsDone& done);

// Writes the tickets from a place on as new rows with the IDs behind `last_id`, for use inside a change.
// `done` is served but can't stop it.
void insertTickets(Store& store, const TicketSet& tickets, std::size_t from, std::int64_t last_id,
                   const RowsDone& done);

}  // namespace lotmere

// Rows of `日志表` packed into bytes: column by column, each as runs of equal steps from one row to the next.
// Tickets in the order of their making take two or three bytes a row.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "game/game.hpp"

namespace lotmere {

// A row with all its columns. Numbers from 0 to 255 are kept, any other as 0.
struct TicketFields {
  std::int64_t id = 0;
  std::int64_t seq = 0;
  std::int64_t period = 0;
  DrawNumbers numbers;
  std::int64_t mark = 0;
  std::int64_t shrink = 0;
  std::int64_t chosen = 0;
  std::int64_t score = 0;
  std::int64_t red_hits = 0;
  std::int64_t blue_hits = 0;

  friend bool operator==(const TicketFields&, const TicketFields&) = default;
};

// A column of whole numbers at the end of `bytes`; `value` is asked for the rows 0 to `rows` - 1 in turn.
class ColumnPacker {
 public:
  explicit ColumnPacker(std::string& bytes) : bytes_(bytes) {}
  void add(std::int64_t value);
  // Behind the last value.
  void finish();

 private:
  std::string& bytes_;
  std::uint64_t last_ = 0;
  std::uint64_t step_ = 0;
  std::uint64_t count_ = 0;
};

template <class Value>
void packColumn(std::string& bytes, std::size_t rows, Value&& value) {
  ColumnPacker column(bytes);
  for (std::size_t row = 0; row < rows; ++row) column.add(value(row));
  column.finish();
}

// Takes a column of so many rows from the front of the bytes; nothing where they hold none.
[[nodiscard]] std::optional<std::vector<std::int64_t>> unpackColumn(std::string_view& bytes,
                                                                    std::size_t rows);

// The number of rows in front of their columns.
void packCount(std::string& bytes, std::size_t rows);

// The numbers of a ticket in one word whose steps are small between neighbours.
[[nodiscard]] std::int64_t packNumbers(const DrawNumbers& numbers);

// Rows that were packed column by column, in the order of the fields above. Nothing where the bytes are none
// of these.
[[nodiscard]] std::string packRows(std::span<const TicketFields> rows);
[[nodiscard]] std::optional<std::vector<TicketFields>> unpackRows(std::string_view bytes);

}  // namespace lotmere

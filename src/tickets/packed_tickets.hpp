// Rows of `日志表` packed into bytes: column by column, each as runs of equal steps from one row to the next.
// Tickets in the order of their making take two or three bytes a row.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
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

// A column of whole numbers, packed value by value.
class ColumnPacker {
 public:
  void add(std::int64_t value) {
    const std::uint64_t step = static_cast<std::uint64_t>(value) - last_;
    last_ = static_cast<std::uint64_t>(value);
    if (count_ > 0 && step == step_)
      ++count_;
    else
      beginRun(step);
  }
  // The bytes of all values so far; nothing is added behind it.
  [[nodiscard]] const std::string& finish();

 private:
  void beginRun(std::uint64_t step);

  std::string bytes_;
  std::uint64_t last_ = 0;
  std::uint64_t step_ = 0;
  std::uint64_t count_ = 0;
};

// Takes a column of so many rows from the front of the bytes; nothing where they hold none.
[[nodiscard]] std::optional<std::vector<std::int64_t>> unpackColumn(std::string_view& bytes,
                                                                    std::size_t rows);

// Rows packed one by one.
class RowPacker {
 public:
  void add(const TicketFields& row);
  [[nodiscard]] std::string finish();

 private:
  static constexpr std::size_t kColumns = 10;  // in the order of the fields, the numbers in one word

  std::array<ColumnPacker, kColumns> columns_;
  std::uint64_t rows_ = 0;
};

// The rows again; nothing where the bytes are none of these.
[[nodiscard]] std::optional<std::vector<TicketFields>> unpackRows(std::string_view bytes);

}  // namespace lotmere

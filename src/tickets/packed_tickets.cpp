#include "tickets/packed_tickets.hpp"

#include <array>

namespace lotmere {
namespace {

constexpr int kByteBits = 8;
constexpr int kMostShift = 63;

void addVarint(std::string& bytes, std::uint64_t value) {
  constexpr std::uint64_t more = 0x80;
  for (; value >= more; value >>= 7) bytes += static_cast<char>(value | more);
  bytes += static_cast<char>(value);
}

std::optional<std::uint64_t> takeVarint(std::string_view& bytes) {
  constexpr unsigned more = 0x80;
  std::uint64_t value = 0;
  for (int shift = 0; shift <= kMostShift && !bytes.empty(); shift += 7) {
    const auto byte = static_cast<unsigned char>(bytes.front());
    bytes.remove_prefix(1);
    value |= static_cast<std::uint64_t>(byte & ~more) << shift;
    if ((byte & more) == 0) return value;
  }
  return std::nullopt;
}

// Small steps in either direction become small numbers.
constexpr std::uint64_t zigzag(std::uint64_t step) { return step << 1 ^ (0 - (step >> kMostShift)); }
constexpr std::uint64_t unzigzag(std::uint64_t value) { return value >> 1 ^ (0 - (value & 1)); }

std::uint64_t byteOf(int number) {
  constexpr int last = 255;
  return number >= 0 && number <= last ? static_cast<std::uint64_t>(number) : 0;
}

// The numbers of a ticket in one word whose steps are small between neighbours.
std::int64_t packNumbers(const DrawNumbers& numbers) {
  std::uint64_t word = 0;
  for (const int red : numbers.reds) word = word << kByteBits | byteOf(red);
  return static_cast<std::int64_t>(word << kByteBits | byteOf(numbers.blue));
}

DrawNumbers unpackNumbers(std::int64_t word) {
  constexpr std::uint64_t byte = 0xFF;
  auto rest = static_cast<std::uint64_t>(word);
  DrawNumbers numbers;
  numbers.blue = static_cast<int>(rest & byte);
  for (int i = kRedsPerTicket - 1; i >= 0; --i) {
    rest >>= kByteBits;
    numbers.reds[i] = static_cast<int>(rest & byte);
  }
  return numbers;
}

// The columns beside the numbers, in front of and behind them.
constexpr std::array kInFront{&TicketFields::id, &TicketFields::seq, &TicketFields::period};
constexpr std::array kBehind{&TicketFields::mark,  &TicketFields::shrink,   &TicketFields::chosen,
                             &TicketFields::score, &TicketFields::red_hits, &TicketFields::blue_hits};

template <class Columns>
bool takeColumns(std::string_view& bytes, std::vector<TicketFields>& rows, const Columns& columns) {
  for (const auto field : columns) {
    const auto values = unpackColumn(bytes, rows.size());
    if (!values) return false;
    for (std::size_t row = 0; row < rows.size(); ++row) rows[row].*field = (*values)[row];
  }
  return true;
}

bool takeNumbers(std::string_view& bytes, std::vector<TicketFields>& rows) {
  const auto values = unpackColumn(bytes, rows.size());
  if (!values) return false;
  for (std::size_t row = 0; row < rows.size(); ++row) rows[row].numbers = unpackNumbers((*values)[row]);
  return true;
}

}  // namespace

void ColumnPacker::beginRun(std::uint64_t step) {
  static_cast<void>(finish());
  step_ = step;
  count_ = 1;
}

const std::string& ColumnPacker::finish() {
  if (count_ > 0) {
    addVarint(bytes_, zigzag(step_));
    addVarint(bytes_, count_);
    count_ = 0;
  }
  return bytes_;
}

std::optional<std::vector<std::int64_t>> unpackColumn(std::string_view& bytes, std::size_t rows) {
  std::vector<std::int64_t> values;
  values.reserve(rows);
  std::uint64_t last = 0;
  while (values.size() < rows) {
    const auto step = takeVarint(bytes);
    const auto count = takeVarint(bytes);
    if (!step || !count || *count == 0 || *count > rows - values.size()) return std::nullopt;
    for (std::uint64_t i = 0; i < *count; ++i)
      values.push_back(static_cast<std::int64_t>(last += unzigzag(*step)));
  }
  return values;
}

void RowPacker::add(const TicketFields& row) {
  ++rows_;
  std::size_t column = 0;
  for (const auto field : kInFront) columns_[column++].add(row.*field);
  columns_[column++].add(packNumbers(row.numbers));
  for (const auto field : kBehind) columns_[column++].add(row.*field);
}

std::string RowPacker::finish() {
  std::string bytes;
  addVarint(bytes, rows_);
  for (ColumnPacker& column : columns_) bytes += column.finish();
  return bytes;
}

std::optional<std::vector<TicketFields>> unpackRows(std::string_view bytes) {
  constexpr std::uint64_t most = 100'000'000;  // far above any table, so that broken bytes ask for no memory
  const auto count = takeVarint(bytes);
  if (!count || *count > most) return std::nullopt;
  std::vector<TicketFields> rows(*count);
  if (!takeColumns(bytes, rows, kInFront) || !takeNumbers(bytes, rows) || !takeColumns(bytes, rows, kBehind))
    return std::nullopt;
  return rows;
}

}  // namespace lotmere

// The numbers, codes and record kinds of the game: six different reds of 33 and one blue of 16.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace lotmere {

inline constexpr int kRedCount = 33;       // reds run from 1 to 33
inline constexpr int kBlueCount = 16;      // blues run from 1 to 16
inline constexpr int kRedsPerTicket = 6;   // reds of one ticket or draw
inline constexpr int kBlueCodeBase = 100;  // a blue n has the code 100 + n, a red n the code n
inline constexpr int kCodeCount = kRedCount + kBlueCount;
inline constexpr std::int64_t kAllRedSixes = 1'107'568;  // ways to choose six of 33
inline constexpr std::int64_t kAllTickets = kAllRedSixes * kBlueCount;

// A seven-digit period: year * 1000 + running number of the draw in that year.
using PeriodNo = std::int32_t;
// What every period lookup answers when the history holds no fitting row.
inline constexpr PeriodNo kDefaultPeriod = 2003001;

// True for a period that a draw can have: a year of 2003 to 2099 and a running number of 1 to 366.
[[nodiscard]] bool isPeriod(PeriodNo period);

// The row of one allowed value or setting in `过滤条件`.
using ConditionId = std::int32_t;
// The row of one switch in `过滤条件使用情况`.
using UsageId = std::int32_t;

// Six reds, ascending in every row that this program makes itself; imported tickets keep the order they came
// in.
using Reds = std::array<int, kRedsPerTicket>;

struct DrawNumbers {
  Reds reds{};
  int blue = 0;

  friend bool operator==(const DrawNumbers&, const DrawNumbers&) = default;
};

// True when the six reds are different numbers of 1 to 33 in ascending order and the blue lies in 1 to 16:
// what the lottery draws.
[[nodiscard]] bool isDraw(const DrawNumbers& numbers);

// The state of a number in the selection; the value is also what stands in its row of `过滤条件`.
enum class PickState : int { none = 0, tuo = 1, dan = 2 };

// A ball: two digits with a leading zero, "05".
[[nodiscard]] std::string formatBall(int number);

// The numbers of a draw or a ticket: "01 04 16 22 26 31+04".
[[nodiscard]] std::string numbersText(const DrawNumbers& numbers);

// The period that a typed text names: seven digits, ASCII or full-width, with or without blanks around them,
// that make a period (isPeriod). Nothing for any other text: cutting or completing it would name another
// draw.
[[nodiscard]] std::optional<PeriodNo> parsePeriod(std::string_view text);

}  // namespace lotmere

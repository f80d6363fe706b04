#include "reduction/smart.hpp"

#include <algorithm>
#include <numeric>

#include "conditions/catalogue.hpp"
#include "conditions/condition_store.hpp"
#include "core/periods.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kBlock = 4096;

DrawMatrix load_Draws(Store& store, PeriodNo period) {
  DrawMatrix matrix{};
  const auto draws = drawsBefore(store, period, static_cast<int>(matrix.size()));
  // The draws end at the last row, whatever their number.
  std::size_t row = matrix.size() - draws.size();
  for (const StoredDraw& draw : draws) {
    std::copy(draw.numbers.reds.begin(), draw.numbers.reds.end(), matrix[row].begin());
    matrix[row].back() = draw.numbers.blue;
    ++row;
  }
  return matrix;
}

void clear_LowerScores(TicketSet& tickets) {
  std::vector<std::uint32_t> order(tickets.size());
  std::iota(order.begin(), order.end(), 0U);
  const std::size_t cleared = (tickets.size() * 3 + 4) / 5;
  const auto lower = [&](std::uint32_t a, std::uint32_t b) {
    if (tickets.score[a] != tickets.score[b]) return tickets.score[a] < tickets.score[b];
    return tickets.seq[a] != tickets.seq[b] ? tickets.seq[a] < tickets.seq[b] : a < b;
  };
  std::nth_element(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(cleared), order.end(), lower);
  for (std::size_t i = 0; i < cleared; ++i) tickets.score[order[i]] = 0;
}

}  // namespace

SmartScore::SmartScore(const DrawMatrix& draws) : newest_(draws.front()) {
  for (int place = 0; place < kPlaces; ++place) {
    for (std::size_t a = 0; a + 1 < draws.size(); ++a) {
      for (int b = 0; b < kPlaces; ++b) {
        const int number = draws[a][b] - draws[a + 1][b] + newest_[place];
        if (number >= 0 && number <= kRedCount) ++agreeing_[place][number];
      }
    }
  }
}

int SmartScore::score(Balls ticket) const {
  std::array<int, kPlaces> numbers{};
  for (int place = 0; place < kPlaces; ++place)
    numbers[place] = static_cast<int>(ticket >> (8 * place) & 0xFF);
  int score = 1;  // the comparison has one slot more than there are differences, and it always agrees
  for (int place = 0; place < kPlaces; ++place) score += agreeing_[place][numbers[place]];
  for (int b = 0; b < kPlaces; ++b)
    for (int c = b + 1; c < kPlaces; ++c) score += numbers[b] - numbers[c] == newest_[b] - newest_[c];
  return score;
}

void optimise_Smart(Store& store, Desk& desk, TicketSet& tickets, int type) {
  const std::string base = desk.running_Text().text();
  if (!is_Used(store, kSmartOptimisation) || type >= kLargestShrink) {
    desk.running_Text().set_Line(base, "[ 智能优化 ] <未使用这个条件>");
    return;
  }
  if (tickets.size() == 0) return;
  Job job(desk, static_cast<std::int64_t>(tickets.size()), Job::Stop::possible);
  desk.running_Text().set_Line(base, "[ 智能优化 ]优化正在进行中．．．");
  const SmartScore smart(load_Draws(store, tickets.period));
  for (std::size_t row = 0; row < tickets.size(); ++row) {
    if (row % kBlock == 0 && job.advance(static_cast<std::int64_t>(row))) break;
    tickets.score[row] = smart.score(tickets.balls[row]);
  }
  clear_LowerScores(tickets);
  if (!desk.stop_Requested()) desk.running_Text().set_Line(base, "[ 智能优化 ] 完 成 ");
}

}  // namespace lotmere

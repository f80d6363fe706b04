#include "advice/guarantee.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <future>
#include <utility>
#include <vector>

#include "reduction/cover_tickets.hpp"
#include "tickets/prize_check.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kBlock = 64;                             // sixes that a thread takes at once
using DrawsByBlue = std::array<std::int64_t, kBlueCount + 1>;  // [0]: without a blue

// How many tickets share so many reds with a draw; fewer than three make no difference.
struct RedCounts {
  std::array<std::int64_t, kRedsPerTicket + 1> by_reds{};  // from 3 on
};

// The held tickets by blue, as bit planes of their reds. Those of a blue begin at a word of their own.
class Held {
 public:
  explicit Held(std::span<const Balls> tickets) : planes_(order(tickets)) {}

  // Checks all against draws of the same six different reds, so many of each blue.
  void check(std::uint64_t reds, const DrawsByBlue& draws, Guarantee& guarantee) const {
    Bits least_four, three, six, five;
    planes_.share(reds, 4, least_four, three);
    planes_.share(reds, 6, six, five);
    std::array<RedCounts, kBlueCount + 1> of_blue{};
    RedCounts all;
    for (int blue = 0; blue <= kBlueCount; ++blue) {
      auto& counts = of_blue.at(static_cast<std::size_t>(blue)).by_reds;
      for (std::size_t word = first_word_[blue]; word < first_word_[blue + 1]; ++word) {
        if ((least_four[word] | three[word]) == 0) continue;
        counts[6] += std::popcount(six[word]);
        counts[5] += std::popcount(five[word]);
        counts[4] += std::popcount(least_four[word] & ~five[word] & ~six[word]);
        counts[3] += std::popcount(three[word]);
      }
      for (int shared = 3; shared <= kRedsPerTicket; ++shared) all.by_reds[shared] += counts[shared];
    }
    for (int blue = 0; blue <= kBlueCount; ++blue)
      if (draws[blue] > 0) {
        PrizeTally tally = tallyOf(all, of_blue[blue], blue);
        addOdd(drawOf(reds, blue), tally);
        note(tally, draws[blue], guarantee);
      }
  }
  // The same for any draw, ticket by ticket.
  void checkLiterally(Balls draw, Guarantee& guarantee) const {
    PrizeTally tally{};
    for (const Balls ticket : regular_) count(countHits(ticket, draw), 1, tally);
    addOdd(draw, tally);
    note(tally, 1, guarantee);
  }

 private:
  // Fills in everything but the planes, and gives the reds that these are made of.
  std::vector<std::uint64_t> order(std::span<const Balls> tickets) {
    std::array<std::vector<std::uint64_t>, kBlueCount + 1> masks;
    for (const Balls ticket : tickets) {
      if (std::popcount(redMask(ticket)) != kRedsPerTicket) {
        odd_.push_back(ticket);
        continue;
      }
      regular_.push_back(ticket);
      masks.at(static_cast<std::size_t>(blueOf(ticket))).push_back(redMask(ticket));
    }
    std::vector<std::uint64_t> all;
    for (int blue = 0; blue <= kBlueCount; ++blue) {
      of_blue_[blue] = static_cast<std::int64_t>(masks[blue].size());
      all.insert(all.end(), masks[blue].begin(), masks[blue].end());
      all.resize((all.size() + 63) / 64 * 64);
      first_word_[blue + 1] = all.size() / 64;
    }
    return all;
  }

  static Balls drawOf(std::uint64_t reds, int blue) {
    Balls draw = static_cast<Balls>(blue) << 48;
    for (int place = 0; reds != 0; reds &= reds - 1, ++place)
      draw |= static_cast<Balls>(std::countr_zero(reds)) << 8 * place;
    return draw;
  }

  // Of the tickets in the planes.
  [[nodiscard]] PrizeTally tallyOf(const RedCounts& all, const RedCounts& of_blue, int blue) const {
    PrizeTally tally{};
    std::int64_t few = blue > 0 ? of_blue_[blue] : 0;  // with the blue, and fewer than three reds
    for (int shared = 3; shared <= kRedsPerTicket; ++shared) {
      const std::int64_t with_blue = blue > 0 ? of_blue.by_reds[shared] : 0;
      count({shared, 1}, with_blue, tally);
      count({shared, 0}, all.by_reds[shared] - with_blue, tally);
      few -= with_blue;
    }
    count({2, 1}, few, tally);
    return tally;
  }

  void addOdd(Balls draw, PrizeTally& tally) const {
    for (const Balls ticket : odd_) count(countHits(ticket, draw), 1, tally);
  }

  static void count(const Hits& hits, std::int64_t tickets, PrizeTally& tally) {
    if (const int tier = prizeTier(hits); tier > 0) tally.at(static_cast<std::size_t>(tier) - 1) += tickets;
  }
  static void note(const PrizeTally& tally, std::int64_t draws, Guarantee& guarantee) {
    std::size_t best = 0;
    for (std::size_t tier = kPrizeTiers; tier >= 1; --tier) {
      guarantee.won.at(tier - 1) += tally.at(tier - 1) * draws;
      if (tally.at(tier - 1) > 0) best = tier;
    }
    guarantee.best.at(best) += draws;
  }

  std::vector<Balls> regular_;
  std::vector<Balls> odd_;  // that repeat a red or miss one
  std::array<std::int64_t, kBlueCount + 1> of_blue_{};
  std::array<std::size_t, kBlueCount + 2> first_word_{};
  RedPlanes planes_;
};

// Draws of six different reds, those with the same six together.
struct SixDraws {
  std::uint64_t reds = 0;
  DrawsByBlue draws{};
};

std::vector<SixDraws> groupDraws(std::vector<std::pair<std::uint64_t, int>> draws) {
  std::ranges::sort(draws);
  std::vector<SixDraws> groups;
  for (const auto& [reds, blue] : draws) {
    if (groups.empty() || groups.back().reds != reds) groups.push_back({reds, {}});
    ++groups.back().draws.at(static_cast<std::size_t>(blue));
  }
  return groups;
}

void addUp(const Guarantee& part, Guarantee& sum) {
  for (std::size_t i = 0; i < part.best.size(); ++i) sum.best.at(i) += part.best.at(i);
  for (std::size_t i = 0; i < part.won.size(); ++i) sum.won.at(i) += part.won.at(i);
}

}  // namespace

std::optional<Guarantee> checkGuarantee(std::span<const Balls> draws, std::span<const Balls> held,
                                        Course& course, int threads) {
  const Held tickets(held);
  std::vector<std::pair<std::uint64_t, int>> regular;
  std::vector<Balls> odd;
  for (const Balls draw : draws) {
    if (std::popcount(redMask(draw)) == kRedsPerTicket)
      regular.emplace_back(redMask(draw), blueOf(draw));
    else
      odd.push_back(draw);
  }
  const std::vector<SixDraws> sixes = groupDraws(std::move(regular));
  CourseLeg leg(course, static_cast<std::int64_t>(sixes.size() + odd.size()), Course::Stop::possible);
  std::atomic<std::size_t> next{0};
  std::atomic<bool> stopped{false};
  // Takes block after block; the thread that owns the course tells it.
  const auto work = [&](bool tells) {
    Guarantee part;
    for (std::size_t first = next.fetch_add(kBlock); first < sixes.size() && !stopped;
         first = next.fetch_add(kBlock)) {
      for (std::size_t six = first; six < std::min(first + kBlock, sixes.size()); ++six)
        tickets.check(sixes[six].reds, sixes[six].draws, part);
      if (tells && leg.advance(static_cast<std::int64_t>(first))) stopped = true;
    }
    return part;
  };
  Guarantee guarantee{
      static_cast<std::int64_t>(draws.size()), static_cast<std::int64_t>(held.size()), {}, {}};
  std::vector<std::future<Guarantee>> others;
  for (int k = 1; k < threads; ++k) others.push_back(std::async(std::launch::async, work, false));
  addUp(work(true), guarantee);
  for (auto& other : others) addUp(other.get(), guarantee);
  for (std::size_t k = 0; k < odd.size() && !stopped; ++k) {
    tickets.checkLiterally(odd[k], guarantee);
    if (leg.advance(static_cast<std::int64_t>(sixes.size() + k))) stopped = true;
  }
  if (stopped) return std::nullopt;
  return guarantee;
}

std::string guaranteeText(const Guarantee& guarantee, std::string_view taken) {
  constexpr const char* names[] = {"没有中奖", "一等奖", "二等奖", "三等奖", "四等奖", "五等奖", "六等奖"};
  const auto draws = static_cast<double>(std::max<std::int64_t>(guarantee.draws, 1));
  std::string text = fmt::format("把{}的 {} 注逐一当作开奖号码，核对余下的 {} 注：\n", taken, guarantee.draws,
                                 guarantee.held);
  text += "最高奖级\t期数\t占％\t平均中奖注数\n";
  for (std::size_t tier = 1; tier <= kPrizeTiers; ++tier)
    text += fmt::format("{}\t{}\t{:.2f}\t{:.4f}\n", names[tier], guarantee.best.at(tier),
                        100 * static_cast<double>(guarantee.best.at(tier)) / draws,
                        static_cast<double>(guarantee.won.at(tier - 1)) / draws);
  text += fmt::format("{}\t{}\t{:.2f}\t—\n", names[0], guarantee.best[0],
                      100 * static_cast<double>(guarantee.best[0]) / draws);
  text +=
      fmt::format("成本 {} 元；三等奖至六等奖平均每期 {:.2f} 元，一、二等奖的奖金浮动，没有计算在内。\n",
                  guarantee.held * kTicketPrice, static_cast<double>(fixedWinnings(guarantee.won)) / draws);
  text += "前提是开奖号码就在这些号码之中；这有多大可能，这里不作判断。\n";
  return text;
}

}  // namespace lotmere

#include "tickets/compound_bets.hpp"

#include <algorithm>
#include <bit>
#include <map>
#include <tuple>
#include <utility>

#include "tickets/red_joiner.hpp"

namespace lotmere {
namespace {

using BlueMask = std::uint32_t;  // bit n for blue n

bool isInGame(const DrawNumbers& numbers) {
  return std::ranges::all_of(numbers.reds, [](int red) { return red >= 1 && red <= kRedCount; }) &&
         numbers.blue >= 1 && numbers.blue <= kBlueCount;
}

bool isAscending(const Reds& reds) {
  return std::ranges::adjacent_find(reds, std::greater_equal<>{}) == reds.end();
}

std::vector<int> bluesOf(BlueMask mask) {
  std::vector<int> blues;
  for (int blue = 1; blue <= kBlueCount; ++blue)
    if ((mask >> blue & 1) != 0) blues.push_back(blue);
  return blues;
}

std::int64_t countSixes(std::int64_t reds) {
  std::int64_t count = 1;
  for (std::int64_t i = 0; i < kRedsPerTicket; ++i) count = count * (reds - i) / (i + 1);
  return count;
}

struct PlacedTicket {
  DrawNumbers numbers;
  std::size_t place = 0;
};

// A six with the blues that it has at least so many times.
struct Six {
  Reds reds{};
  BlueMask blues = 0;
  int times = 0;
  std::size_t place = 0;  // of its first ticket
};

struct PlacedBet {
  CompoundBet bet;
  std::size_t place = 0;
};

// Ends with the six of the first tickets, which must not be empty, taken off.
void takeSix(std::span<const PlacedTicket>& tickets, std::vector<Six>& sixes) {
  const Reds reds = tickets.front().numbers.reds;
  std::vector<Six> layers;  // the n-th of them holds the blues that stand more than n times
  int blue = 0;
  std::size_t times = 0;
  for (; !tickets.empty() && tickets.front().numbers.reds == reds; tickets = tickets.subspan(1)) {
    const auto& [numbers, place] = tickets.front();
    times = numbers.blue == blue ? times + 1 : 1;
    blue = numbers.blue;
    if (layers.size() < times) layers.push_back({reds, 0, static_cast<int>(times), place});
    layers[times - 1].blues |= BlueMask{1} << blue;
    layers[times - 1].place = std::min(layers[times - 1].place, place);
  }
  sixes.insert(sixes.end(), layers.begin(), layers.end());
}

std::vector<Six> joinBlues(std::vector<PlacedTicket> tickets) {
  std::ranges::sort(tickets, {}, [](const PlacedTicket& ticket) {
    return std::tie(ticket.numbers.reds, ticket.numbers.blue, ticket.place);
  });
  std::vector<Six> sixes;
  for (std::span<const PlacedTicket> rest = tickets; !rest.empty();) takeSix(rest, sixes);
  return sixes;
}

// The first tickets of the sixes that make up a bet.
std::size_t firstPlace(const CompoundBet& bet, const std::map<Reds, std::size_t>& places) {
  std::size_t first = places.rbegin()->second;
  expandBet({bet.reds, {bet.blues.front()}},
            [&](const DrawNumbers& numbers) { first = std::min(first, places.at(numbers.reds)); });
  return first;
}

// The fewest sets that the search finds: with smaller ones as the largest it may find fewer in all.
RedJoiner::RedSets fewestSets(RedJoiner& joiner, const std::vector<Reds>& sixes,
                              const std::function<bool()>& ended) {
  RedJoiner::RedSets fewest = joiner.takeApart(sixes, kMostJoinedReds, ended);
  for (int most = kMostJoinedReds - 1; most > kRedsPerTicket && fewest.size() > 1 && !ended(); --most) {
    RedJoiner::RedSets sets = joiner.takeApart(sixes, most, ended);
    if (sets.size() < fewest.size() && !ended()) fewest = std::move(sets);
  }
  return fewest;
}

// Joins the reds of sixes with the same blues.
void joinReds(RedJoiner& joiner, std::span<const Six> sixes, std::vector<PlacedBet>& bets,
              const std::function<bool()>& ended) {
  std::vector<Reds> reds;
  std::map<Reds, std::size_t> places;
  for (const Six& six : sixes) {
    reds.push_back(six.reds);
    places.emplace_hint(places.end(), six.reds, six.place);
  }
  const std::vector<int> blues = bluesOf(sixes.front().blues);
  for (std::vector<int>& joined : fewestSets(joiner, reds, ended)) {
    PlacedBet& placed = bets.emplace_back(PlacedBet{{std::move(joined), blues}, 0});
    placed.place = firstPlace(placed.bet, places);
  }
}

}  // namespace

std::int64_t countTickets(const CompoundBet& bet) {
  return countSixes(static_cast<std::int64_t>(bet.reds.size())) * static_cast<std::int64_t>(bet.blues.size());
}

void expandBet(const CompoundBet& bet, const std::function<void(const DrawNumbers&)>& use) {
  const std::vector<int>& r = bet.reds;
  const std::size_t size = r.size();
  for (std::size_t a = 0; a + 5 < size; ++a)
    for (std::size_t b = a + 1; b + 4 < size; ++b)
      for (std::size_t c = b + 1; c + 3 < size; ++c)
        for (std::size_t d = c + 1; d + 2 < size; ++d)
          for (std::size_t e = d + 1; e + 1 < size; ++e)
            for (std::size_t f = e + 1; f < size; ++f)
              for (const int blue : bet.blues) use({{r[a], r[b], r[c], r[d], r[e], r[f]}, blue});
}

std::vector<CompoundBet> joinTickets(std::span<const DrawNumbers> tickets, const TicketsSettled& settled) {
  std::vector<PlacedBet> bets;
  std::vector<PlacedTicket> in_game;
  for (std::size_t place = 0; place < tickets.size(); ++place) {
    const DrawNumbers& numbers = tickets[place];
    if (isInGame(numbers))
      in_game.push_back({numbers, place});
    else
      bets.push_back({{{numbers.reds.begin(), numbers.reds.end()}, {numbers.blue}}, place});
  }
  std::vector<Six> sixes = joinBlues(std::move(in_game));
  const auto odd =
      std::partition(sixes.begin(), sixes.end(), [](const Six& six) { return isAscending(six.reds); });
  for (auto six = odd; six != sixes.end(); ++six)
    bets.push_back({{{six->reds.begin(), six->reds.end()}, bluesOf(six->blues)}, six->place});
  sixes.erase(odd, sixes.end());

  const auto group = [](const Six& six) { return std::tie(six.blues, six.times); };
  std::ranges::sort(sixes, {}, [](const Six& six) { return std::tie(six.blues, six.times, six.reds); });
  RedJoiner joiner;
  std::int64_t done = 0;
  const auto ended = [&] { return settled && settled(done); };
  for (auto first = sixes.begin(); first != sixes.end();) {
    const auto last =
        std::find_if(first, sixes.end(), [&](const Six& six) { return group(six) != group(*first); });
    joinReds(joiner, {first, last}, bets, ended);
    for (; first != last; ++first) done += std::popcount(first->blues);
    if (ended()) break;
  }
  std::ranges::sort(bets, {},
                    [](const PlacedBet& bet) { return std::tie(bet.place, bet.bet.reds, bet.bet.blues); });
  std::vector<CompoundBet> joined;
  joined.reserve(bets.size());
  for (PlacedBet& bet : bets) joined.push_back(std::move(bet.bet));
  return joined;
}

}  // namespace lotmere

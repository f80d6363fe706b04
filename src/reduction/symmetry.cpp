#include "reduction/symmetry.hpp"

#include <algorithm>
#include <bit>
#include <initializer_list>
#include <numeric>
#include <span>
#include <utility>

namespace lotmere {
namespace {

std::uint64_t mapped(std::uint64_t mask, const NumberMap& map) {
  std::uint64_t image = 0;
  for (; mask != 0; mask &= mask - 1) image |= std::uint64_t{1} << map.red[std::countr_zero(mask)];
  return image;
}

// Whether each ticket is mapped to one of the set.
bool keepsTickets(const CoverTickets& tickets, const NumberMap& map) {
  for (std::uint32_t six = 0; six < tickets.sixCount(); ++six) {
    const std::uint32_t image = tickets.findSix(mapped(tickets.masks()[six], map));
    if (image == CoverTickets::kNone) return false;
    for (int blue = 0; blue < tickets.blueCount(); ++blue)
      if ((tickets.at(six, blue) == CoverTickets::kNone) !=
          (tickets.at(image, map.blue[blue]) == CoverTickets::kNone))
        return false;
  }
  return true;
}

using Numbers = std::vector<std::uint8_t>;
using Cycles = std::vector<std::size_t>;

// Lengths of cycles that led to small covers of one size of set or another.
const std::initializer_list<Cycles> kOtherCycles = {{8, 2, 2},    {8, 8, 2}, {6, 6, 6, 2}, {4, 4}, {4, 4, 4},
                                                    {4, 4, 4, 4}, {5, 5},    {6, 6, 3},    {6, 6}};

// The largest class of numbers any two of which can change places.
template <class Swaps>
Numbers largestClass(const Numbers& numbers, Swaps&& swaps) {
  std::vector<Numbers> classes;
  for (const std::uint8_t number : numbers) {
    const auto fitting =
        std::ranges::find_if(classes, [&](const Numbers& members) { return swaps(members.front(), number); });
    if (fitting == classes.end())
      classes.push_back({number});
    else
      fitting->push_back(number);
  }
  return *std::ranges::max_element(classes, {}, &Numbers::size);
}

Numbers interchangeableReds(const CoverTickets& tickets) {
  Numbers reds;
  std::uint64_t present = 0;
  for (const std::uint64_t mask : tickets.masks()) present |= mask;
  for (; present != 0; present &= present - 1)
    reds.push_back(static_cast<std::uint8_t>(std::countr_zero(present)));
  return largestClass(reds, [&](std::uint8_t one, std::uint8_t other) {
    NumberMap map = NumberMap::identity();
    std::swap(map.red[one], map.red[other]);
    return keepsTickets(tickets, map);
  });
}

Numbers interchangeableBlues(const CoverTickets& tickets) {
  Numbers blues(static_cast<std::size_t>(tickets.blueCount()));
  std::iota(blues.begin(), blues.end(), std::uint8_t{0});
  return largestClass(blues, [&](std::uint8_t one, std::uint8_t other) {
    NumberMap map = NumberMap::identity();
    std::swap(map.blue[one], map.blue[other]);
    return keepsTickets(tickets, map);
  });
}

// Numbers in cycles of the given lengths, one behind the other.
void turn(std::span<std::uint8_t> map, std::span<const std::uint8_t> numbers, const Cycles& lengths) {
  for (const std::size_t length : lengths) {
    for (std::size_t i = 0; i < length; ++i) map[numbers[i]] = numbers[(i + 1) % length];
    numbers = numbers.subspan(length);
  }
}

}  // namespace

NumberMap NumberMap::identity() {
  NumberMap map;
  std::iota(map.red.begin(), map.red.end(), std::uint8_t{0});
  std::iota(map.blue.begin(), map.blue.end(), std::uint8_t{0});
  return map;
}

std::vector<Symmetry> findSymmetries(const CoverTickets& tickets) {
  const Numbers reds = interchangeableReds(tickets), blues = interchangeableBlues(tickets);
  std::vector<Symmetry> list;
  const auto add = [&](const Cycles& red_cycles, const Cycles& blue_cycles = {}) {
    if (std::accumulate(red_cycles.begin(), red_cycles.end(), std::size_t{0}) > reds.size()) return;
    if (std::accumulate(blue_cycles.begin(), blue_cycles.end(), std::size_t{0}) > blues.size()) return;
    NumberMap map = NumberMap::identity();
    turn(map.red, reds, red_cycles);
    turn(map.blue, blues, blue_cycles);
    list.push_back({map});
  };
  add({2, 2});
  // One or two blocks of four reds, in each of which the ways to swap two pairs make a group with the
  // identity; of two blocks the second may take part in all of them or in one.
  const auto add_blocks = [&](std::size_t first_blocks, std::size_t second_blocks) {
    if (reds.size() < 4 * first_blocks) return;
    NumberMap first = NumberMap::identity(), second = first;
    for (std::size_t block = 0; block < first_blocks; ++block) {
      const std::uint8_t* const red = reds.data() + 4 * block;
      turn(first.red, Numbers{red[0], red[1], red[2], red[3]}, {2, 2});
      if (block < second_blocks) turn(second.red, Numbers{red[0], red[2], red[1], red[3]}, {2, 2});
    }
    list.push_back({first, second});
  };
  add_blocks(1, 1);
  add_blocks(2, 1);
  add_blocks(2, 2);
  if (reds.size() > 5) add(Cycles(reds.size() / 2, 2));
  for (std::size_t count = 1; count <= reds.size() / 3; ++count) add(Cycles(count, 3));
  for (const Cycles& cycles : kOtherCycles) add(cycles);
  for (std::size_t count = 2; count <= reds.size() / 2 && blues.size() >= 2; ++count) {
    add(Cycles(count, 2), {2});
    if (blues.size() >= 4) add(Cycles(count, 2), Cycles(blues.size() / 2, 2));
  }
  for (std::size_t count = 1; count <= reds.size() / 4; ++count) add(Cycles(count, 4), {4});
  list.emplace_back();
  return list;
}

Orbits findOrbits(const CoverTickets& tickets, const Symmetry& symmetry) {
  constexpr std::uint32_t none = CoverTickets::kNone;
  Orbits orbits;
  orbits.of.assign(tickets.size(), none);
  std::vector<std::uint32_t> members;
  for (std::uint32_t start = 0; start < tickets.size(); ++start) {
    if (orbits.of[start] != none) continue;
    const std::uint32_t orbit = orbits.tickets.count();
    members = {start};
    orbits.of[start] = orbit;
    for (std::size_t next = 0; next < members.size(); ++next) {
      const std::uint32_t ticket = members[next];
      for (const NumberMap& map : symmetry) {
        const std::uint32_t six = tickets.findSix(mapped(tickets.masks()[tickets.six(ticket)], map));
        const std::uint32_t image = tickets.at(six, map.blue[tickets.blue(ticket)]);
        if (orbits.of[image] != none) continue;
        orbits.of[image] = orbit;
        members.push_back(image);
      }
    }
    for (const std::uint32_t ticket : members) orbits.tickets.add(ticket);
    orbits.tickets.endList();
  }
  return orbits;
}

std::optional<CoverMatrix> makeMatrix(const CoverTickets& tickets, int shared, const Orbits& orbits,
                                      std::size_t expected, std::size_t most, SearchRun& run) {
  CoverMatrix matrix;
  const RedPlanes planes(tickets.masks());
  Bits enough, one_less;
  std::vector<std::uint32_t> seen(orbits.tickets.count(), CoverMatrix::kNone);
  matrix.near.reserve(orbits.tickets.count(), std::min(expected, most));
  for (std::uint32_t orbit = 0; orbit < orbits.tickets.count(); ++orbit) {
    const std::uint32_t ticket = orbits.tickets[orbit].front();
    const auto add = [&](std::uint32_t other) {
      const std::uint32_t near = orbits.of[other];
      if (seen[near] == orbit) return;
      seen[near] = orbit;
      matrix.near.add(near);
    };
    planes.share(tickets.masks()[tickets.six(ticket)], shared, enough, one_less);
    forEachBit(enough, [&](std::uint32_t six) {
      for (std::uint32_t other = tickets.firstOf(six); other < tickets.firstOf(six + 1); ++other) add(other);
    });
    forEachBit(one_less, [&](std::uint32_t six) {
      const std::uint32_t other = tickets.at(six, tickets.blue(ticket));
      if (other != CoverTickets::kNone) add(other);
    });
    matrix.near.endList();
    matrix.cost.push_back(static_cast<std::uint32_t>(orbits.tickets[orbit].size()));
    const std::size_t looked_at = matrix.near[orbit].size() + 6 * planes.words();
    if (run.spend(static_cast<std::int64_t>(looked_at)) || matrix.near.entries() > most) return std::nullopt;
  }
  if (tickets.blueCount() == 1) return matrix;

  // Blues that a set of tickets holds together are one row, first named by the least of them.
  std::vector<std::uint32_t> row_of(static_cast<std::size_t>(tickets.blueCount()));
  for (std::uint32_t orbit = 0; orbit < orbits.tickets.count(); ++orbit) {
    int least = kBlueCount;
    for (const std::uint32_t ticket : orbits.tickets[orbit]) least = std::min(least, tickets.blue(ticket));
    for (const std::uint32_t ticket : orbits.tickets[orbit])
      row_of[tickets.blue(ticket)] = static_cast<std::uint32_t>(least);
  }
  std::uint32_t rows = 0;
  for (std::uint32_t blue = 0; blue < row_of.size(); ++blue)
    row_of[blue] = row_of[blue] == blue ? rows++ : row_of[row_of[blue]];
  std::vector<std::vector<std::uint32_t>> columns(rows);
  for (std::uint32_t orbit = 0; orbit < orbits.tickets.count(); ++orbit) {
    matrix.extra_of.push_back(row_of[tickets.blue(orbits.tickets[orbit].front())]);
    columns[matrix.extra_of.back()].push_back(orbit);
  }
  for (const auto& list : columns) {
    for (const std::uint32_t column : list) matrix.extra.add(column);
    matrix.extra.endList();
  }
  return matrix;
}

}  // namespace lotmere

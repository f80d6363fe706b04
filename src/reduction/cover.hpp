// The cover: which tickets share too many numbers with those kept so far.
#pragma once

#include <bit>

#include "reduction/subsets.hpp"
#include "tickets/ticket_set.hpp"

namespace lotmere {

// How many of a ticket's seven numbers stand in a centre. A red that the ticket holds twice counts twice.
[[nodiscard]] int countShared(Balls centre, Balls ticket);

// The different reds of a ticket as codes 0 to 32, and with its blue as a code 33 to 48. A number outside its
// range has no code.
[[nodiscard]] CodeList redCodes(Balls ticket);
[[nodiscard]] CodeList allCodes(Balls ticket);

// How often a ticket holds each number of such a list.
[[nodiscard]] OverlapMarks::Times timesInTicket(const CodeList& list, Balls ticket);

// Whether a ticket holds seven different numbers, each inside its range.
[[nodiscard]] inline bool isRegular(Balls ticket) {
  return std::popcount(redMask(ticket)) == kRedsPerTicket && blueOf(ticket) != 0;
}

// Keeps the tickets that share fewer than N numbers with every ticket kept before, in the order in which they
// are asked for. The answers equal those of comparing each ticket with each centre, in time that doesn't grow
// with the number of centres: a bitmap holds every N-subset of the 49 numbers that a centre has, and a ticket
// is covered when one of its own at most 35 subsets is marked.
class Cover {
 public:
  // `shared` is N, 1 to 6. With Repeats::no every ticket is a regular one.
  Cover(int shared, OverlapMarks::Repeats repeats) : marks_(kCodeCount, shared, repeats) {}

  // True when the ticket becomes a centre, false when an earlier centre covers it.
  bool take(Balls ticket);
  // Makes the ticket a centre, covered or not.
  void keep(Balls ticket) { marks_.mark(allCodes(ticket)); }

 private:
  OverlapMarks marks_;
};

// The same for regular tickets that come with all blues of a six together: at most one of them becomes a
// centre, as that one shares its six reds with the others.
class SixCover {
 public:
  // `shared` is N, 2 to 6.
  explicit SixCover(int shared) : reds_(kRedCount, shared), blues_(shared - 1) {}

  // Takes the tickets of six reds with each of these blues (bit n for blue n), ascending. Gives the blue of
  // the one that becomes a centre; 0 where earlier centres cover all.
  int take(Balls reds, std::uint32_t blues);
  // Makes a ticket of any kind a centre, covered or not.
  void keep(Balls ticket);

 private:
  SubsetMarks reds_;  // subsets of N reds of a centre
  BlueMarks blues_;   // of one red less, with the blues of their centres
};

}  // namespace lotmere

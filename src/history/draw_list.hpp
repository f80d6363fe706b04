// The draw list as a web address serves it: reduced to digits, slashes and single "#", then read entry by
// entry.
//
// A list starts with "#336#". Anywhere behind stand entries in any order, each
//   PPPPPPP#YYYY/MM/DD#RR#RR#RR#RR#RR#RR#BB
// the period, the date, six reds in ascending order and the blue. So any text whose fields are separated by
// characters other than digits and slashes will do, such as "2007001 2007/01/02 01 02 03 04 05 06 07". Where
// less than half of the draws stand in that form, the list is one of another form, and read as
// readAnyDrawList() reads it.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/dates.hpp"
#include "game/game.hpp"
#include "history/listed_draw.hpp"

namespace lotmere {

// Keeps digits and slashes; every run of other characters, of any length and wherever it stands, becomes one
// "#".
[[nodiscard]] std::string compactDrawText(std::string_view raw);

// A reply, compacted, with the places of its entries found once.
class DrawList {
 public:
  // No draw is dated after `today`.
  DrawList(std::string_view reply, Date today);

  // Whether the text claims to be a draw list. Any other start means that the reply is something else.
  [[nodiscard]] bool isDrawList() const { return text_.starts_with("#336#"); }

  // Whether the entries are those of another form.
  [[nodiscard]] bool isOfAnotherForm() const { return !rows_.empty(); }

  // Whether an entry for the period stands in the text, readable or not.
  [[nodiscard]] bool names(PeriodNo period) const {
    return isOfAnotherForm() ? rows_.contains(period) : place_.contains(period);
  }

  // The first entry of a period that the list names. It isn't a draw where it isn't whole: cut short, a field
  // of another length, a period or a day that is none, a day after today, a number outside its range, reds
  // out of order or repeated.
  [[nodiscard]] ListedEntry parseDraw(PeriodNo period) const;

  // The highest period whose entry is a draw; 0 with none.
  [[nodiscard]] PeriodNo newest() const;

  // The period whose entry stands in front of all others; 0 in a list without entries.
  [[nodiscard]] PeriodNo first() const;

 private:
  [[nodiscard]] int lineOf(std::size_t place) const;
  [[nodiscard]] std::size_t countDraws() const;
  void takeOtherForm(std::string_view reply);

  Date today_;
  std::string text_;
  std::vector<std::size_t> line_ends_;               // the length of the text where a line of the reply ended
  std::unordered_map<PeriodNo, std::size_t> place_;  // of the first character of an entry
  std::unordered_map<PeriodNo, ListedEntry> rows_;   // of a list of another form, else empty
};

}  // namespace lotmere

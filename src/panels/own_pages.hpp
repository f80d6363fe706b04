// The pages of what a person makes: the custom groups, the numbers allowed at the places, the match with past
// draws, and how the reds are divided into intervals.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "base/desk.hpp"
#include "conditions/own_sets.hpp"
#include "game/metrics.hpp"
#include "panels/panel.hpp"
#include "store/store.hpp"

namespace lotmere {

struct GroupPage {
  RedTable members{};    // 1 for each number whose button is green
  ConditionPanel panel;  // the allowed counts; the box is enabled when the group has members
};
// Fills the page of a group (1 to 10). A group without members has no list, and its box is clear; that
// writes nothing.
[[nodiscard]] GroupPage groupPage(Store& store, int group);

// A click on a number button: the number joins the group or leaves it. With the last one gone no count is
// allowed any longer, and the group is switched off.
void clickGroupNumber(Store& store, int group, int number);

// Empties every group in one change; one group alone is emptied by `setGroup`.
void emptyGroups(Store& store);

// The seven places. A place without a number is disabled unless it is in use all the same, so that it can be
// switched off. The options of the tolerance, 0 to 7, have full-width digits.
struct PlacePage {
  std::array<ConditionPanel, kPlaceCount> places;
  std::vector<PanelItem> tolerances;
};
[[nodiscard]] PlacePage loadPlacePage(Store& store);

// 历史数据过滤. The page reads as a sentence: lead, first period, dash, last period, middle, match value,
// end.
struct MatchPage {
  HistoryMatch settings;
  std::vector<PeriodNo>
      periods;  // to choose from, newest first: the last fifty, and the ends of the range as it is
  std::vector<PanelItem> matches;
};
struct MatchTexts {
  std::string_view box = "使用这个条件(如果要使用这个条件来过滤掉历史数据相关的号码，请在前面打上勾)";
  std::string_view lead = "过滤掉：";
  std::string_view dash = "～";
  std::string_view middle = "最大匹配值为";
  std::string_view end = "及以上的号码";
  std::string_view latest = "期号范围是最近50期，打开这一页时跟着新的开奖记录更新。";
  std::string_view chosen = "期号范围是自己选的，不会改变；按“最近50期”改为跟着新的开奖记录更新。";
  std::string_view button = "最近50期";
};
inline constexpr MatchTexts kMatchTexts;
// Called when the page is really shown: a range that wasn't chosen by hand moves on to the last fifty draws,
// which is stored. With an empty history it stays as it is.
[[nodiscard]] MatchPage loadMatchPage(Store& store);
// An end of the range chosen by hand; from then on the range stays. `end` is HistoryMatch::first or last.
void chooseMatchEnd(Store& store, PeriodNo HistoryMatch::*end, PeriodNo period);
// The latest draws again, and those to come. The page is loaded anew behind it.
void followLatestDraws(Store& store);
// Switches the match on or off away from its page, in one change. A range that wasn't chosen by hand moves on
// when it is switched on, as when the page is shown.
void switchHistoryMatch(Store& store, bool on);

// The draws keep the number counts of the four intervals, so a change of them marks the counts as due
// (core/interval_mark.hpp). A number button there is `toggleAttribute`.

// What each of the four intervals holds: " 区间1：　０１  ０２  ", or a hint how numbers get there.
[[nodiscard]] std::array<std::string, kIntervalCount> intervalPreviews(Store& store);

// Takes all numbers out of the four intervals and switches their conditions off, then tells that they are to
// be set anew.
void clearIntervals(Store& store, Desk& desk);

inline constexpr int kSmallestDivision = 6;
inline constexpr int kLargestDivision = 12;
// "六区间" to "十二区间", the options of the divisions.
[[nodiscard]] std::string divisionCaption(int division);

struct DivisionPanel {
  ConditionPanel panel;  // the caption is the name of the interval, also its column of `号码特性3`
  Condition condition;   // what a click is passed on with
  std::string numbers;   // its members, or a hint
};
// The intervals of a division, 6 to 12. Those of the other divisions stay as they are, in use or not.
[[nodiscard]] std::vector<DivisionPanel> divisionPanels(Store& store, int division);

}  // namespace lotmere

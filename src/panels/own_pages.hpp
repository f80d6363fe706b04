// The pages of what a user makes: the custom groups, the numbers allowed at the places, the match with past
// draws, and how the reds are divided into intervals.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "conditions/own_sets.hpp"
#include "game/metrics.hpp"
#include "panels/panel.hpp"

namespace lotmere {

struct GroupPage {
  RedTable members{};    // 1 for each number whose button is green
  ConditionPanel panel;  // the allowed counts; the box is enabled when the group has members
};
// The page of a group (1 to 10). A group without members has no list, and its box is clear; its switch stays.
[[nodiscard]] GroupPage groupPage(const ConditionSet& set, int group);

// A click on a number button: the number joins the group or leaves it. With the last one gone no count is
// allowed any longer, and the group is switched off.
void clickGroupNumber(ConditionSet& set, int group, int number);

// Empties every group; one group alone is emptied by `setGroup`.
void emptyGroups(ConditionSet& set);

// The seven places. A place without a number is disabled unless it is in use all the same, so that it can be
// switched off. The options of the tolerance, 0 to 7, have full-width digits.
struct PlacePage {
  std::array<ConditionPanel, kPlaceCount> places;
  std::vector<PanelItem> tolerances;
};
[[nodiscard]] PlacePage placePage(const ConditionSet& set);

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
// `latest` here and below: the periods of the last fifty draws (kMatchPeriods), newest first.
[[nodiscard]] MatchPage matchPage(const ConditionSet& set, std::vector<PeriodNo> latest);
// A range that wasn't chosen by hand moves on to the latest draws; for when the page is really shown. With an
// empty history it stays as it is.
void followDraws(ConditionSet& set, std::span<const PeriodNo> latest);
// An end of the range chosen by hand; from then on the range stays. `end` is HistoryMatch::first or last.
void chooseMatchEnd(ConditionSet& set, PeriodNo HistoryMatch::*end, PeriodNo period);
// Switches the match on or off away from its page. A range that wasn't chosen by hand moves on when it is
// switched on, as when the page is shown.
void switchHistoryMatch(ConditionSet& set, bool on, std::span<const PeriodNo> latest);

// A click on a number button of one of the four intervals (1 to 4): the number joins it or leaves it. The
// draws keep the number counts of these intervals, so a change of them, once it is saved, marks the counts as
// due (store/interval_mark.hpp).
void clickIntervalNumber(ConditionSet& set, int interval, int number);

// What each of the four intervals holds: " 区间1：　０１  ０２  ", or a hint how numbers get there.
[[nodiscard]] std::array<std::string, kIntervalCount> intervalPreviews(const ConditionSet& set);

// Takes all numbers out of the four intervals and switches their conditions off; what the user is told then.
void clearIntervals(ConditionSet& set);
inline constexpr std::string_view kIntervalsCleared =
    "请注意，重新划分区间后需要重新设置“区间过滤”的过滤条件。";

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
[[nodiscard]] std::vector<DivisionPanel> divisionPanels(const ConditionSet& set, int division);

}  // namespace lotmere

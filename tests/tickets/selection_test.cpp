#include "tickets/selection.hpp"

#include <gtest/gtest.h>

#include <bit>

#include "core/desk_script.hpp"
#include "core/number_list.hpp"
#include "support/test_store.hpp"

namespace lotmere {
namespace {

using test::TempHome;
using enum PickState;

// Subsets of size k of the first n numbers that hold the first d.
std::int64_t count_Ways(int n, int k, int d) {
  std::int64_t ways = 0;
  const unsigned fixed = (1U << d) - 1;
  for (unsigned set = 0; set < 1U << n; ++set) ways += std::popcount(set) == k && (set & fixed) == fixed;
  return ways;
}

TEST(Selection, WaysEqualThoseCountedOneByOne) {
  for (const int k : {1, 6})
    for (int n = 0; n <= 16; ++n)
      for (int d = 0; d <= std::min(n, k); ++d)
        EXPECT_EQ(calc_Combi(n, k, d), count_Ways(n, k, d)) << n << " " << d;
  EXPECT_EQ(calc_Combi(33, 6, 0), 1107568);
  EXPECT_EQ(calc_Combi(5, 6, 5), 0);
  EXPECT_EQ(calc_Combi(7, 6, 6), 1) << "every place fixed";
}

NumberSelection make_Selection(const char* red_tuo, const char* red_dan, const char* blue_tuo,
                               const char* blue_dan) {
  NumberSelection selection;
  const auto set = [](auto& states, const char* list, PickState state) {
    for (const int n :
         parse_NumberList(list, 1, static_cast<int>(states.size()) - 1).value_or(std::vector<int>{}))
      states[n] = state;
  };
  set(selection.red, red_tuo, tuo);
  set(selection.red, red_dan, dan);
  set(selection.blue, blue_tuo, tuo);
  set(selection.blue, blue_dan, dan);
  return selection;
}

void put_Selection(Store& store, const NumberSelection& selection) {
  StoreChange change(store);
  for (int n = 1; n <= kRedCount; ++n) test::put_Pick(store, n, selection.red[n]);
  for (int n = 1; n <= kBlueCount; ++n) test::put_Pick(store, kBlueCodeBase + n, selection.blue[n]);
  change.commit();
}

TEST(Selection, CountsTicketsAndSaysWhenThereAreNone) {
  const struct {
    const char* what;
    NumberSelection selection;
    std::int64_t tickets;
  } cases[] = {{"five reds make none", make_Selection("1-5", "", "1", ""), 0},
               {"six reds without a blue make none", make_Selection("1-6", "", "", ""), 0},
               {"six reds and a blue make one", make_Selection("1-6", "", "9", ""), 1},
               {"seven reds, two of them Dan, three blues", make_Selection("3-7", "1,2", "1-3", ""), 15},
               {"five Dan and ten Tuo", make_Selection("6-15", "1-5", "", "16"), 10},
               {"a blue Dan alone", make_Selection("1-8", "", "", "4"), 28}};
  TempHome home;
  for (const auto& row : cases) {
    put_Selection(home.store(), row.selection);
    EXPECT_EQ(load_Selection(home.store()), row.selection) << row.what;
    EXPECT_EQ(count_Combos(row.selection).tickets, row.tickets) << row.what;
    ScriptedDesk desk;
    EXPECT_EQ(check_Selection(home.store(), desk, Tell::no), row.tickets > 0) << row.what;
    EXPECT_TRUE(desk.told.empty());
    EXPECT_EQ(check_Selection(home.store(), desk, Tell::yes), row.tickets > 0) << row.what;
    ASSERT_EQ(desk.told.size(), row.tickets > 0 ? 0U : 1U) << row.what;
    if (row.tickets == 0) {
      EXPECT_EQ(desk.told[0].text, "号码还没有选取,或者已选的号码个数太少!请先选取号码！");
    }
  }
  EXPECT_EQ(combos_Text(count_Combos(make_Selection("6-15", "1-5", "", "16"))),
            "\r\n\r\n\r\n已选红球“拖码”个数： １０\r\n\r\n已选红球“胆码”个数： "
            "５\r\n\r\n已选蓝球“拖码”个数： ０\r\n\r\n"
            "已选蓝球“胆码”个数： １\r\n\r\n过滤缩水前全部号码组合： １０  注");
}

struct Click {
  const char* what;
  NumberSelection before;
  int code;
  PadTab tab;
  std::optional<bool> answer;  // to the question, where one comes
  PickState after;             // of the clicked number
  const char* said;            // question or message, empty for none
};

TEST(Selection, AClickOnThePad) {
  const auto none_yet = make_Selection("", "", "", "");
  const auto five_dan = make_Selection("6-9", "1-5", "1", "");
  const auto lone_dan = make_Selection("1-6", "", "", "7");
  const auto at_limit =
      make_Selection("1-23", "", "1", "");                 // 100,947 with 23 reds, so this one stands beyond
  const auto below = make_Selection("1-22", "", "1", "");  // 74,613
  const char* red_limit = "无法处理更多号码,请将注数控制在 １０００００ 注以内.";
  const char* blue_limit = "无法处理更多号码,请将注数控制在 １０００００ 注以内.请先减少几个红球的拖码个数！";
  const Click clicks[] = {
      {"a free red becomes Tuo", none_yet, 33, PadTab::tuo, {}, tuo, ""},
      {"a free red becomes Dan", none_yet, 1, PadTab::dan, {}, dan, ""},
      {"a Dan comes off without a question", five_dan, 5, PadTab::dan, {}, none, ""},
      {"a Tuo comes off without a question", five_dan, 6, PadTab::tuo, {}, none, ""},
      {"a Dan becomes Tuo on yes", five_dan, 5, PadTab::tuo, true, tuo,
       "号码：５之前已经被设为胆码，现在要把它改为拖码吗？"},
      {"a Dan stays Dan on no", five_dan, 5, PadTab::tuo, false, dan,
       "号码：５之前已经被设为胆码，现在要把它改为拖码吗？"},
      {"a Tuo becomes Dan on yes", none_yet, 12, PadTab::dan, {}, dan, ""},
      {"a sixth Dan is refused", five_dan, 20, PadTab::dan, {}, none, "红球“胆码”最多只设 ５ 个."},
      {"a sixth Dan out of a Tuo is asked, refused and stays Tuo", five_dan, 6, PadTab::dan, true, tuo,
       "红球“胆码”最多只设 ５ 个."},
      {"a red beyond the limit is refused", below, 23, PadTab::tuo, {}, none, red_limit},
      {"a blue beyond the limit is refused in words of its own",
       below,
       102,
       PadTab::tuo,
       {},
       none,
       blue_limit},
      {"a Dan taken off can cross the limit too",
       make_Selection("1-24", "25", "1-2", ""),
       25,
       PadTab::dan,
       {},
       dan,
       red_limit},
      {"beyond the limit a red may be taken off", at_limit, 23, PadTab::tuo, {}, none, ""},
      {"a blue Dan is asked before it becomes Tuo", lone_dan, 107, PadTab::tuo, true, tuo,
       "号码：７之前已经被设为胆码，现在要把它改为拖码吗？"},
      {"a lone blue Dan locks the other blues", lone_dan, 108, PadTab::tuo, {}, none, ""},
      {"a lone blue Dan locks them on the Dan tab too", lone_dan, 108, PadTab::dan, {}, none, ""},
      {"a blue Dan comes off", lone_dan, 107, PadTab::dan, {}, none, ""},
  };
  TempHome home;
  for (const Click& click : clicks) {
    SCOPED_TRACE(click.what);
    put_Selection(home.store(), click.before);
    ScriptedDesk desk;
    if (click.answer) desk.answers = {*click.answer};
    const bool changed = click_Number(home.store(), desk, click.code, click.tab);
    NumberSelection expected = click.before;
    (click.code > 100 ? expected.blue[click.code - 100] : expected.red[click.code]) = click.after;
    EXPECT_EQ(load_Selection(home.store()), expected);
    EXPECT_EQ(changed, !(expected == click.before));
    EXPECT_TRUE(desk.answers.empty());
    const std::string said = !desk.told.empty()    ? desk.told[0].text
                             : !desk.asked.empty() ? desk.asked[0]
                                                   : "";
    EXPECT_EQ(said, click.said);
  }
}

TEST(Selection, ABlueDanStandsAloneHoweverItCame) {
  for (const int code : {105, 109}) {  // a Tuo, a free number
    TempHome home;
    put_Selection(home.store(), make_Selection("1-6", "", "4-6", ""));
    ScriptedDesk desk;
    desk.answers = {true};
    EXPECT_TRUE(click_Number(home.store(), desk, code, PadTab::dan));
    const NumberSelection now = load_Selection(home.store());
    EXPECT_EQ(picked_Blues(now, dan), std::vector<int>{code - 100});
    EXPECT_TRUE(picked_Blues(now, tuo).empty());
    EXPECT_EQ(picked_Reds(now, tuo).size(), 6U);
    for (int blue = 101; blue <= 116; ++blue) EXPECT_EQ(is_Enabled(now, blue), blue == code);
    EXPECT_TRUE(is_Enabled(now, 33));
    // Taking it off frees the others.
    EXPECT_TRUE(click_Number(home.store(), desk, code, PadTab::dan));
    EXPECT_TRUE(click_Number(home.store(), desk, 101, PadTab::tuo));
  }
}

TEST(Selection, ReplacingRefusesWhatBreaksALimitAndThenChangesNothing) {
  const struct {
    const char* what;
    NumberSelection selection;
    bool accepted;
  } cases[] = {{"six red Dan", make_Selection("9-12", "1-6", "1", ""), false},
               {"two blue Dan", make_Selection("1-6", "", "", "1,2"), false},
               {"a blue Dan beside Tuo", make_Selection("1-6", "", "2", "1"), false},
               {"100,947 tickets", make_Selection("1-23", "", "1", ""), false},
               {"C(20, 5) = 15,504 for six blues", make_Selection("2-21", "1", "1-6", ""), true},
               {"15,504 for seven blues", make_Selection("2-21", "1", "1-7", ""), false},
               {"an empty selection", make_Selection("", "", "", ""), true}};
  TempHome home;
  for (const auto& row : cases) {
    const auto before = make_Selection("7-13", "1", "16", "");
    put_Selection(home.store(), before);
    ScriptedDesk desk;
    const bool accepted = count_Combos(row.selection).tickets <= kMaxTickets && row.accepted;
    EXPECT_EQ(replace_Selection(home.store(), desk, row.selection), accepted) << row.what;
    EXPECT_EQ(load_Selection(home.store()), accepted ? row.selection : before) << row.what;
    EXPECT_EQ(desk.told.size(), accepted ? 0U : 1U) << row.what;
  }
}

}  // namespace
}  // namespace lotmere

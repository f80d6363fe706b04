#include "tickets/selection.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "conditions/condition_store.hpp"
#include "core/text.hpp"
#include "tickets/low_chance.hpp"

namespace lotmere {
namespace {

constexpr bool is_Blue(int code) { return code > kBlueCodeBase; }
constexpr int number_Of(int code) { return is_Blue(code) ? code - kBlueCodeBase : code; }

PickState& state_Of(NumberSelection& selection, int code) {
  return is_Blue(code) ? selection.blue[number_Of(code)] : selection.red[number_Of(code)];
}

template <std::size_t N>
int count_State(const std::array<PickState, N>& states, PickState wanted) {
  return static_cast<int>(std::count(states.begin(), states.end(), wanted));
}

template <std::size_t N>
std::vector<int> numbers_In(const std::array<PickState, N>& states, PickState wanted) {
  std::vector<int> numbers;
  for (int n = 1; n < static_cast<int>(N); ++n)
    if (states[n] == wanted) numbers.push_back(n);
  return numbers;
}

void store_Selection(Store& store, const NumberSelection& selection) {
  StoreChange change(store);
  for (int n = 1; n <= kRedCount; ++n) set_ConditionValue(store, n, int(selection.red[n]));
  for (int n = 1; n <= kBlueCount; ++n) set_ConditionValue(store, kBlueCodeBase + n, int(selection.blue[n]));
  change.commit();
}

// What a limit says against a selection, nothing when it keeps all of them.
std::optional<std::string> broken_Limit(const ComboCounts& counts, bool blue_added) {
  if (counts.red_dan > kMaxRedDan) return fmt::format("红球“胆码”最多只设 {} 个.", to_QuanJiao(kMaxRedDan));
  if (counts.blue_dan > kMaxBlueDan)
    return fmt::format("蓝球“胆码”最多只设 {} 个.", to_QuanJiao(kMaxBlueDan));
  if (counts.tickets > kMaxTickets)
    return fmt::format("无法处理更多号码,请将注数控制在 {} 注以内.{}", to_QuanJiao(kMaxTickets),
                       blue_added ? "请先减少几个红球的拖码个数！" : "");
  return std::nullopt;
}

std::string move_Question(int number, PadTab tab) {
  const std::string wide = to_QuanJiao(number);
  return tab == PadTab::tuo ? fmt::format("号码：{}之前已经被设为胆码，现在要把它改为拖码吗？", wide)
                            : fmt::format("号码：{}之前已经被设为拖码，现在要把它改为胆码吗？", wide);
}

NumberSelection selection_Of(const ValueArray& reds, const ValueArray& blues) {
  const auto state = [](int value) {
    return value == 2 ? PickState::dan : value >= 1 ? PickState::tuo : PickState::none;
  };
  NumberSelection selection;
  for (int n = 1; n <= kRedCount; ++n) selection.red[n] = state(reds[n]);
  for (int n = 1; n <= kBlueCount; ++n) selection.blue[n] = state(blues[n]);
  return selection;
}

}  // namespace

NumberSelection load_Selection(Store& store) {
  return selection_Of(load_ConditionRange(store, 1, kRedCount),
                      load_ConditionRange(store, kBlueCodeBase + 1, kBlueCodeBase + kBlueCount));
}

NumberSelection selectionOf(const ConditionSet& set) {
  return selection_Of(set.cellRange(1, kRedCount),
                      set.cellRange(kBlueCodeBase + 1, kBlueCodeBase + kBlueCount));
}

std::int64_t calc_Combi(int n, int k, int d) {
  if (n < k) return 0;
  if (n == k || d >= k) return 1;
  std::int64_t ways = 1;
  for (int i = 1; i <= k - d; ++i) ways = ways * (n - d - i + 1) / i;
  return ways;
}

ComboCounts count_Combos(const NumberSelection& selection) {
  ComboCounts counts;
  counts.red_tuo = count_State(selection.red, PickState::tuo);
  counts.red_dan = count_State(selection.red, PickState::dan);
  counts.blue_tuo = count_State(selection.blue, PickState::tuo);
  counts.blue_dan = count_State(selection.blue, PickState::dan);
  counts.tickets = calc_Combi(counts.red_tuo + counts.red_dan, kRedsPerTicket, counts.red_dan) *
                   calc_Combi(counts.blue_tuo + counts.blue_dan, 1, counts.blue_dan);
  return counts;
}

std::string combos_Text(const ComboCounts& counts) {
  const std::string gap = std::string(kLineBreak) + std::string(kLineBreak);
  return fmt::format(
      "{0}{1}已选红球“拖码”个数： {2}{1}已选红球“胆码”个数： {3}{1}已选蓝球“拖码”个数： "
      "{4}{1}已选蓝球“胆码”个数： "
      "{5}{1}过滤缩水前全部号码组合： {6}  注",
      kLineBreak, gap, to_QuanJiao(counts.red_tuo), to_QuanJiao(counts.red_dan), to_QuanJiao(counts.blue_tuo),
      to_QuanJiao(counts.blue_dan), to_QuanJiao(counts.tickets));
}

bool check_Selection(Store& store, Desk& desk, Tell tell) {
  if (count_Combos(load_Selection(store)).tickets > 0) return true;
  if (tell == Tell::yes) desk.tell("号码还没有选取,或者已选的号码个数太少!请先选取号码！", Tone::warning);
  return false;
}

std::string pad_TabText(PadTab tab, bool blue) {
  return fmt::format("现在点击数字按钮可以把相应的数设为{}的“{}”。", blue ? "蓝球" : "红球",
                     tab == PadTab::tuo ? "拖码" : "胆码");
}

bool is_Enabled(const NumberSelection& selection, int code) {
  if (!is_Blue(code)) return true;
  const auto lone = std::find(selection.blue.begin(), selection.blue.end(), PickState::dan);
  return lone == selection.blue.end() || lone - selection.blue.begin() == number_Of(code);
}

bool click_Number(Store& store, Desk& desk, int code, PadTab tab, std::optional<PeriodNo> hint_period) {
  NumberSelection selection = load_Selection(store);
  if (!is_Enabled(selection, code)) return false;
  if (hint_period && is_LowChance(store, code)) desk.tell(low_ChanceWarning(code, *hint_period));
  const NumberSelection before = selection;
  const auto target = static_cast<PickState>(tab);
  PickState& state = state_Of(selection, code);
  if (state == target) {
    state = PickState::none;
  } else {
    if (state != PickState::none && !desk.ask(move_Question(number_Of(code), tab))) return false;
    if (is_Blue(code) && target == PickState::dan) selection.blue.fill(PickState::none);
    state = target;
  }
  if (const auto limit = broken_Limit(count_Combos(selection), is_Blue(code))) {
    desk.tell(*limit, Tone::warning);
    return false;
  }
  store_Selection(store, selection);
  return selection != before;
}

bool replace_Selection(Store& store, Desk& desk, const NumberSelection& selection) {
  const ComboCounts counts = count_Combos(selection);
  if (const auto limit = broken_Limit(counts, false)) {
    desk.tell(*limit, Tone::warning);
    return false;
  }
  if (counts.blue_dan > 0 && counts.blue_tuo > 0) {
    desk.tell("蓝球设了“胆码”之后不能再选其它蓝球。", Tone::warning);
    return false;
  }
  store_Selection(store, selection);
  return true;
}

void clear_Reds(Store& store) {
  NumberSelection selection = load_Selection(store);
  selection.red.fill(PickState::none);
  store_Selection(store, selection);
}

void clear_Blues(Store& store) {
  NumberSelection selection = load_Selection(store);
  selection.blue.fill(PickState::none);
  store_Selection(store, selection);
}

std::vector<int> picked_Reds(const NumberSelection& selection, PickState state) {
  return numbers_In(selection.red, state);
}

std::vector<int> picked_Blues(const NumberSelection& selection, PickState state) {
  return numbers_In(selection.blue, state);
}

}  // namespace lotmere

#include "tickets/selection.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "base/text.hpp"

namespace lotmere {
namespace {

constexpr bool isBlue(int code) { return code > kBlueCodeBase; }
constexpr int numberOf(int code) { return isBlue(code) ? code - kBlueCodeBase : code; }

PickState& stateOf(NumberSelection& selection, int code) {
  return isBlue(code) ? selection.blue[numberOf(code)] : selection.red[numberOf(code)];
}

template <std::size_t N>
int countState(const std::array<PickState, N>& states, PickState wanted) {
  return static_cast<int>(std::count(states.begin(), states.end(), wanted));
}

template <std::size_t N>
std::vector<int> numbersIn(const std::array<PickState, N>& states, PickState wanted) {
  std::vector<int> numbers;
  for (int n = 1; n < static_cast<int>(N); ++n)
    if (states[n] == wanted) numbers.push_back(n);
  return numbers;
}

// What a limit says against a selection, nothing when it keeps all of them.
std::optional<std::string> brokenLimit(const ComboCounts& counts, bool blue_added) {
  if (counts.red_dan > kMaxRedDan) return fmt::format("红球“胆码”最多只设 {} 个.", toFullWidth(kMaxRedDan));
  if (counts.blue_dan > kMaxBlueDan)
    return fmt::format("蓝球“胆码”最多只设 {} 个.", toFullWidth(kMaxBlueDan));
  if (counts.tickets > kMaxTickets)
    return fmt::format("无法处理更多号码,请将注数控制在 {} 注以内.{}", toFullWidth(kMaxTickets),
                       blue_added ? "请先减少几个红球的拖码个数！" : "");
  return std::nullopt;
}

std::string moveQuestion(int number, PadTab tab) {
  const std::string wide = toFullWidth(number);
  return tab == PadTab::tuo ? fmt::format("号码：{}之前已经被设为胆码，现在要把它改为拖码吗？", wide)
                            : fmt::format("号码：{}之前已经被设为拖码，现在要把它改为胆码吗？", wide);
}

PickState stateOfCell(int value) {
  if (value == static_cast<int>(PickState::dan)) return PickState::dan;
  return value >= 1 ? PickState::tuo : PickState::none;
}

}  // namespace

NumberSelection selectionOf(const ConditionSet& set) {
  NumberSelection selection;
  for (int n = 1; n <= kRedCount; ++n) selection.red[n] = stateOfCell(set.cells.value(n));
  for (int n = 1; n <= kBlueCount; ++n) selection.blue[n] = stateOfCell(set.cells.value(kBlueCodeBase + n));
  return selection;
}

std::int64_t waysToFill(int n, int k, int d) {
  if (n < k) return 0;
  if (n == k || d >= k) return 1;
  std::int64_t ways = 1;
  for (int i = 1; i <= k - d; ++i) ways = ways * (n - d - i + 1) / i;
  return ways;
}

ComboCounts countCombos(const NumberSelection& selection) {
  ComboCounts counts;
  counts.red_tuo = countState(selection.red, PickState::tuo);
  counts.red_dan = countState(selection.red, PickState::dan);
  counts.blue_tuo = countState(selection.blue, PickState::tuo);
  counts.blue_dan = countState(selection.blue, PickState::dan);
  counts.tickets = waysToFill(counts.red_tuo + counts.red_dan, kRedsPerTicket, counts.red_dan) *
                   waysToFill(counts.blue_tuo + counts.blue_dan, 1, counts.blue_dan);
  return counts;
}

std::string combosText(const ComboCounts& counts) {
  const std::string gap = std::string(kLineBreak) + std::string(kLineBreak);
  return fmt::format(
      "{0}{1}已选红球“拖码”个数： {2}{1}已选红球“胆码”个数： {3}{1}已选蓝球“拖码”个数： "
      "{4}{1}已选蓝球“胆码”个数： "
      "{5}{1}过滤缩水前全部号码组合： {6}  注",
      kLineBreak, gap, toFullWidth(counts.red_tuo), toFullWidth(counts.red_dan), toFullWidth(counts.blue_tuo),
      toFullWidth(counts.blue_dan), toFullWidth(counts.tickets));
}

bool checkSelection(const NumberSelection& selection, Desk& desk, Tell tell) {
  if (countCombos(selection).tickets > 0) return true;
  if (tell == Tell::yes) desk.tell("号码还没有选取,或者已选的号码个数太少!请先选取号码！", Tone::warning);
  return false;
}

std::string padTabText(PadTab tab, bool blue) {
  return fmt::format("现在点击数字按钮可以把相应的数设为{}的“{}”。", blue ? "蓝球" : "红球",
                     tab == PadTab::tuo ? "拖码" : "胆码");
}

bool isEnabled(const NumberSelection& selection, int code) {
  if (!isBlue(code)) return true;
  const auto lone = std::find(selection.blue.begin(), selection.blue.end(), PickState::dan);
  return lone == selection.blue.end() || lone - selection.blue.begin() == numberOf(code);
}

bool clickNumber(NumberSelection& selection, Desk& desk, int code, PadTab tab, const LowChanceNumbers& marked,
                 PeriodNo hint_period) {
  if (!isEnabled(selection, code)) return false;
  if (marked.holds(code)) desk.tell(lowChanceWarning(code, hint_period));
  NumberSelection clicked = selection;
  const auto target = static_cast<PickState>(tab);
  PickState& state = stateOf(clicked, code);
  if (state == target) {
    state = PickState::none;
  } else {
    if (state != PickState::none && !desk.ask(moveQuestion(numberOf(code), tab))) return false;
    if (isBlue(code) && target == PickState::dan) clicked.blue.fill(PickState::none);
    state = target;
  }
  if (const auto limit = brokenLimit(countCombos(clicked), isBlue(code))) {
    desk.tell(*limit, Tone::warning);
    return false;
  }
  selection = clicked;
  return true;
}

void putSelection(ConditionSet& set, const NumberSelection& selection) {
  for (int n = 1; n <= kRedCount; ++n) set.cells.set(n, static_cast<int>(selection.red[n]));
  for (int n = 1; n <= kBlueCount; ++n) set.cells.set(kBlueCodeBase + n, static_cast<int>(selection.blue[n]));
}

bool replaceSelection(ConditionSet& set, Desk& desk, const NumberSelection& selection) {
  const ComboCounts counts = countCombos(selection);
  if (const auto limit = brokenLimit(counts, false)) {
    desk.tell(*limit, Tone::warning);
    return false;
  }
  if (counts.blue_dan > 0 && counts.blue_tuo > 0) {
    desk.tell("蓝球设了“胆码”之后不能再选其它蓝球。", Tone::warning);
    return false;
  }
  putSelection(set, selection);
  return true;
}

void clearReds(ConditionSet& set) {
  for (int n = 1; n <= kRedCount; ++n) set.cells.set(n, 0);
}

void clearBlues(ConditionSet& set) {
  for (int n = 1; n <= kBlueCount; ++n) set.cells.set(kBlueCodeBase + n, 0);
}

std::vector<int> pickedReds(const NumberSelection& selection, PickState state) {
  return numbersIn(selection.red, state);
}

std::vector<int> pickedBlues(const NumberSelection& selection, PickState state) {
  return numbersIn(selection.blue, state);
}

}  // namespace lotmere

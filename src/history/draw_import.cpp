#include "history/draw_import.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <unordered_map>

#include "base/text.hpp"
#include "base/text_file.hpp"
#include "history/any_draw_list.hpp"
#include "history/draw_stats.hpp"
#include "history/upkeep.hpp"
#include "store/periods.hpp"

namespace lotmere {
namespace {

constexpr std::size_t kConflictsShown = 5;
constexpr int kRowsBetweenLooks = 64;
constexpr std::string_view kComputing = " >>>>>>>>  正在统计各项值，请稍等！  <<<<<<<<  ";

struct Conflict {
  PeriodNo period = 0;
  std::string stored, listed;
};

// What the draws of a list mean for the history.
struct MergePlan {
  std::vector<std::pair<PeriodNo, ListedDraw>> added, changed;
  std::vector<Conflict> conflicts;  // one for each of `changed`
};

// Gives the bytes of a list, served for by the leg.
using Bytes = std::function<std::string(CourseLeg& reading)>;

std::optional<AnyDrawList> readList(Desk& desk, const Bytes& bytes, Date today, bool& is_stopped) {
  CourseLeg reading(desk.course(), 0, Course::Stop::possible);
  auto text = decodeBytes(bytes(reading), reading);
  std::optional<AnyDrawList> list;
  if (text) list = readAnyDrawList(*text, today, [&](std::size_t done) { return reading.advance(done); });
  is_stopped = desk.course().stopRequested();
  return list;
}

// Why a list holds nothing to merge; empty where it does.
std::string listFault(const AnyDrawList& list) {
  const auto is_draw = [](const ListedRow& row) { return row.entry.draw.has_value(); };
  if (std::ranges::any_of(list.rows, is_draw)) return {};
  const std::string none = "没有读到一条有效的开奖记录";
  if (list.rows.empty()) return none + "，每一行要有期号、开奖日期和七个号码";
  if (!list.dated) return "这份数据没有开奖日期，每一行要有期号、开奖日期和七个号码";
  return fmt::format("{}，{}", none, faultText(list.rows.front()));
}

std::unordered_map<PeriodNo, std::string> storedDraws(Store& store) {
  std::unordered_map<PeriodNo, std::string> draws;
  Query rows = store.query(
      R"(SELECT "期号","开奖日期","红球1","红球2","红球3","红球4","红球5","红球6","蓝球" FROM "历史记录")");
  while (rows.next()) draws.emplace(rows.number(0), drawInWords(rows.text(1), readNumbers(rows, 2)));
  return draws;
}

MergePlan planMerge(Store& store, const AnyDrawList& list) {
  const auto stored = storedDraws(store);
  MergePlan plan;
  for (const auto& [period, entry] : list.rows) {
    if (!entry.draw) continue;
    const std::string listed = drawInWords(formatDate(entry.draw->date), entry.draw->numbers);
    const auto known = stored.find(period);
    if (known == stored.end()) {
      plan.added.emplace_back(period, *entry.draw);
    } else if (known->second != listed) {
      plan.changed.emplace_back(period, *entry.draw);
      plan.conflicts.push_back({period, known->second, listed});
    }
  }
  return plan;
}

// Whether stored draws are replaced; nothing when the user cancels.
std::optional<Conflicts> settleConflicts(Desk& desk, const std::vector<Conflict>& conflicts,
                                         Conflicts wanted) {
  if (conflicts.empty() || wanted != Conflicts::ask) return wanted;
  std::string question = fmt::format("有 {} 期和历史记录里的不同：", toFullWidth(conflicts.size()));
  for (std::size_t i = 0; i < std::min(kConflictsShown, conflicts.size()); ++i)
    question += fmt::format("{0}{1} 期{0}　原有：{2}{0}　新的：{3}", kLineBreak, conflicts[i].period,
                            conflicts[i].stored, conflicts[i].listed);
  if (conflicts.size() > kConflictsShown) question += fmt::format("{}……", kLineBreak);
  question += fmt::format("{0}{0}要用新的替换原有的吗？", kLineBreak);
  constexpr std::string_view buttons[] = {"替换", "保留原有的", "取消"};
  constexpr std::optional<Conflicts> meanings[] = {Conflicts::replace, Conflicts::keep, std::nullopt};
  return meanings[desk.choose(question, buttons, 2, "导入开奖数据")];
}

// False when the user asked to stop.
bool storeDraws(Store& store, Desk& desk, const std::vector<std::pair<PeriodNo, ListedDraw>>& draws) {
  CourseLeg job(desk.course(), static_cast<std::int64_t>(draws.size()), Course::Stop::possible);
  int done = 0;
  for (const auto& [period, draw] : draws) {
    saveDraw(store, desk, period, draw.date, draw.numbers, Recalc::no);
    if (++done % kRowsBetweenLooks == 0 && job.advance(done)) return false;
  }
  return true;
}

// As far back as a draw changed, all figures; the earliest draw of all has nothing to be compared with.
void computeFrom(Store& store, Desk& desk, PeriodNo earliest) {
  const StatusScope status(desk);
  desk.showStatus(kComputing);
  const PeriodNo first = firstPeriod(store);
  if (earliest <= first) computeDrawStatistics(store, desk, first, first);
  computeDrawStatistics(store, desk, earliest, latestPeriod(store));
}

// False when the user asked to stop; nothing has changed then.
bool merge(Store& store, Desk& desk, const std::vector<std::pair<PeriodNo, ListedDraw>>& draws) {
  if (draws.empty()) return true;
  StoreChange change(store);
  if (!storeDraws(store, desk, draws)) return false;
  computeFrom(store, desk,
              std::ranges::min_element(draws, {}, [](const auto& draw) { return draw.first; })->first);
  change.commit();
  return true;
}

void countList(const AnyDrawList& list, DrawImport& result) {
  for (const ListedRow& row : list.rows) {
    if (row.entry.draw)
      ++result.read;
    else if (++result.skipped <= kFaultsTold)
      result.faults.push_back(faultText(row));
  }
}

DrawImport importList(Store& store, Desk& desk, const Bytes& bytes, Date today, Conflicts conflicts) {
  const StopScope stop(desk.course());
  bool is_stopped = false;
  const auto list = readList(desk, bytes, today, is_stopped);
  if (is_stopped) return {.outcome = Outcome::stopped};
  if (!list) return {.cause = "这不是文本文件"};
  if (std::string fault = listFault(*list); !fault.empty()) return {.cause = std::move(fault)};

  MergePlan plan = planMerge(store, *list);
  const auto settled = settleConflicts(desk, plan.conflicts, conflicts);
  if (!settled) return {};
  DrawImport result{.outcome = Outcome::done, .added = static_cast<int>(plan.added.size())};
  const int differing = static_cast<int>(plan.changed.size());
  if (*settled == Conflicts::keep) {
    result.kept = differing;
  } else {
    result.changed = differing;
    plan.added.insert(plan.added.end(), plan.changed.begin(), plan.changed.end());
  }
  if (!merge(store, desk, plan.added)) return {.outcome = Outcome::stopped};
  countList(*list, result);
  result.newest = latestPeriod(store);
  return result;
}

}  // namespace

DrawImport importDraws(Store& store, Desk& desk, const std::filesystem::path& file, Date today,
                       Conflicts conflicts) {
  return importList(
      store, desk, [&](CourseLeg& reading) { return readBytes(file, reading); }, today, conflicts);
}

DrawImport importDrawText(Store& store, Desk& desk, std::string_view text, Date today, Conflicts conflicts) {
  return importList(
      store, desk, [text](CourseLeg&) { return std::string(text); }, today, conflicts);
}

std::vector<std::string> importReport(const DrawImport& result) {
  std::vector<std::string> lines{fmt::format("读到 {} 期：新增 {} 期，更改 {} 期，跳过 {} 行，最新一期 {}",
                                             result.read, result.added, result.changed, result.skipped,
                                             result.newest)};
  if (result.kept > 0) lines.push_back(fmt::format("有 {} 期和原有记录不同，保留了原有的。", result.kept));
  lines.insert(lines.end(), result.faults.begin(), result.faults.end());
  if (result.skipped > static_cast<int>(result.faults.size())) lines.emplace_back("……");
  return lines;
}

void tellNoImport(Desk& desk, const DrawImport& result) {
  if (result.outcome == Outcome::stopped)
    desk.tell("导入已中止，历史记录没有改变。", Tone::warning);
  else if (!result.cause.empty())
    desk.tell(fmt::format("没有导入开奖数据：{}。", result.cause), Tone::warning);
}

}  // namespace lotmere

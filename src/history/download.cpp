#include "history/download.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <utility>

#include "base/text.hpp"
#include "history/addresses.hpp"
#include "history/draw_list.hpp"
#include "history/draw_stats.hpp"
#include "history/fetch_job.hpp"
#include "history/upkeep.hpp"
#include "store/periods.hpp"

namespace lotmere {
namespace {

constexpr PeriodNo kLookBack = 10;
constexpr PeriodNo kLookAhead = 5000;
constexpr PeriodNo kPeriodsBetweenLooks = 50;

constexpr std::string_view kDownloading = " ■■■■■  正在下载开奖数据。。。。。。  ";
constexpr std::string_view kComputing = " >>>>>>>>  正在统计各项值，请稍等！  <<<<<<<<  ";

constexpr std::string_view kFailure =
    "服务器忙或网络链接断开,无法完成更新!\r\n\r\n"
    "要正常更新需要电脑与互联网联接正常.\r\n\r\n"
    "若无法更新可能是由于你的防火墙设为禁止程序访问网络,\r\n\r\n"
    "你可以重新设置防火墙或关闭防火墙后再试.)";

// The runs over one reply. Runs overlap; an entry counts in the first one that sees it.
class Merge {
 public:
  Merge(Store& store, Desk& desk, const DrawList& list) : store_(store), desk_(desk), list_(list) {}

  // One run around `latest`.
  void run(PeriodNo latest) {
    StoreChange change(store_);
    desk_.showStatus(kDownloading);
    storeEntries(latest);
    desk_.showStatus(kComputing);
    const PeriodNo first = firstPeriod(store_);
    computeDrawStatistics(store_, desk_, first, first);
    computeDrawStatistics(store_, desk_, latest - kLookBack, latest + kLookAhead);
    change.commit();
  }

  [[nodiscard]] DownloadResult& result() { return result_; }

 private:
  void storeEntries(PeriodNo latest) {
    CourseLeg job(desk_.course(), kLookAhead, Course::Stop::impossible);
    for (PeriodNo p = latest - kLookBack; p <= latest + kLookAhead; ++p) {
      if (list_.names(p)) storeEntry(p);
      if (p > latest && (p - latest) % kPeriodsBetweenLooks == 0) job.advance(p - latest);
    }
    looked_up_to_ = latest + kLookAhead;
  }

  void storeEntry(PeriodNo period) {
    const bool counts = period > looked_up_to_;
    const ListedEntry entry = list_.parseDraw(period);
    if (!entry.draw) {
      if (counts) skip(period, entry);
      return;
    }
    const auto& [date, numbers] = *entry.draw;
    const auto before = findDraw(store_, period);
    if (counts && !before) ++result_.added;
    if (counts && before && (before->numbers != numbers || storedDate(period) != formatDate(date)))
      ++result_.overwritten;
    saveDraw(store_, desk_, period, date, numbers, Recalc::no);
  }

  void skip(PeriodNo period, const ListedEntry& entry) {
    if (++result_.skipped <= kFaultsTold) result_.faults.push_back(faultText({period, entry}));
  }

  std::string storedDate(PeriodNo period) {
    Query row = store_.query(R"(SELECT "开奖日期" FROM "历史记录" WHERE "期号"=?)");
    row.bind(period);
    return row.next() ? row.text(0) : std::string();
  }

  Store& store_;
  Desk& desk_;
  const DrawList& list_;
  DownloadResult result_;
  PeriodNo looked_up_to_ = 0;
};

// Runs around the newest stored draw, once or as long as the list holds a newer one.
void mergeAll(Store& store, Merge& merge, PeriodNo newest) {
  PeriodNo latest = latestPeriod(store);
  for (;;) {
    const int added = merge.result().added;
    merge.run(latest);
    if (latestPeriod(store) >= newest) break;
    // A run that reached nothing stands in front of a gap.
    latest = merge.result().added > added ? latestPeriod(store) : latest + kLookAhead;
  }
}

enum class Runs { one, all };

// Why a reply holds nothing to merge; empty where it does.
std::string replyFault(const DrawList& list) {
  if (!list.isDrawList()) return "这不是开奖数据，开头没有 336 标记";
  if (list.newest() != 0) return {};
  const PeriodNo first = list.first();
  const std::string none = "开奖数据里没有一条有效的记录";
  return first == 0 ? none : fmt::format("{}，{}", none, faultText({first, list.parseDraw(first)}));
}

DownloadResult download(Store& store, Desk& desk, Fetcher& fetcher, const std::string& address, Date today,
                        Runs runs) {
  const StatusScope status(desk);
  desk.showStatus(kDownloading);
  Fetched fetched = fetchAsJob(desk, fetcher, address);
  if (!fetched.reply)
    return {.outcome = fetched.stopped ? Outcome::stopped : Outcome::refused,
            .cause = std::move(fetched.cause)};
  const DrawList list(*fetched.reply, today);
  if (std::string fault = replyFault(list); !fault.empty()) return {.cause = std::move(fault)};
  Merge merge(store, desk, list);
  StoreChange change(store);
  if (runs == Runs::one)
    merge.run(latestPeriod(store));
  else
    mergeAll(store, merge, list.newest());
  rememberAddress(store, AddressUse::draw_list, address);
  if (store.value(R"(SELECT EXISTS (SELECT 1 FROM "历史记录"))") == 0)
    return {.cause = "历史记录还是空的，这些数据不在一次下载的范围里", .more = true};
  DownloadResult result = std::move(merge.result());
  result.outcome = Outcome::done;
  result.newest = latestPeriod(store);
  result.more = list.newest() > result.newest;
  change.commit();
  return result;
}

}  // namespace

DownloadResult downloadDraws(Store& store, Desk& desk, Fetcher& fetcher, const std::string& address,
                             Date today) {
  return download(store, desk, fetcher, address, today, Runs::one);
}

DownloadResult downloadAll(Store& store, Desk& desk, Fetcher& fetcher, const std::string& address,
                           Date today) {
  return download(store, desk, fetcher, address, today, Runs::all);
}

std::vector<std::string> reportLines(const DownloadResult& result) {
  std::vector<std::string> lines{"已成功更新!"};
  lines.push_back(fmt::format("新增 {} 期，更新 {} 期，跳过 {} 条无效数据，最新一期 {}", result.added,
                              result.overwritten, result.skipped, result.newest));
  if (result.added == 0 && !result.more) lines.emplace_back("没有比现有记录更新的开奖数据。");
  lines.insert(lines.end(), result.faults.begin(), result.faults.end());
  if (result.skipped > static_cast<int>(result.faults.size())) lines.emplace_back("……");
  return lines;
}

void tellFailure(Desk& desk, const DownloadResult& result) {
  if (result.outcome == Outcome::stopped) return;
  desk.tell(fmt::format("{0}{1}{1}原因：{2}。", kFailure, kLineBreak, result.cause), Tone::error);
}

DownloadResult downloadCommand(Store& store, Desk& desk, Fetcher& fetcher, Date today,
                               std::string& address_typed) {
  const auto address = knownAddress(store, desk, AddressUse::draw_list, address_typed);
  if (!address) return {};
  DownloadResult result = downloadAll(store, desk, fetcher, *address, today);
  if (result.outcome == Outcome::done)
    desk.tell(fmt::format("{}", fmt::join(reportLines(result), kLineBreak)));
  else
    tellFailure(desk, result);
  return result;
}

}  // namespace lotmere

#include "history/download.hpp"

#include <utility>

#include "core/periods.hpp"
#include "history/addresses.hpp"
#include "history/draw_list.hpp"
#include "history/draw_stats.hpp"
#include "history/fetch_job.hpp"
#include "history/upkeep.hpp"

namespace lotmere {
namespace {

constexpr PeriodNo kLookBack = 10;
constexpr PeriodNo kLookAhead = 5000;
constexpr PeriodNo kPeriodsBetweenServes = 50;

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
  Merge(Store& store, Desk& desk, const DrawList& list) : store_(store), desk_(desk), list_(list) {
    result_.ok = true;
  }

  // One run around `latest`.
  void run(PeriodNo latest) {
    StoreChange change(store_);
    desk_.show_Status(kDownloading);
    store_Entries(latest);
    desk_.show_Status(kComputing);
    const PeriodNo first = firstPeriod(store_);
    calc_DrawStats(store_, desk_, first, first);
    calc_DrawStats(store_, desk_, latest - kLookBack, latest + kLookAhead);
    change.commit();
  }

  [[nodiscard]] const DownloadResult& result() const { return result_; }

 private:
  void store_Entries(PeriodNo latest) {
    Job job(desk_, kLookAhead, Job::Stop::impossible);
    for (PeriodNo p = latest - kLookBack; p <= latest + kLookAhead; ++p) {
      if (list_.names(p)) store_Entry(p);
      if (p > latest && (p - latest) % kPeriodsBetweenServes == 0) job.advance(p - latest);
    }
    looked_up_to_ = latest + kLookAhead;
  }

  void store_Entry(PeriodNo period) {
    const bool counts = period > looked_up_to_;
    const auto draw = list_.parseDraw(period);
    if (!draw) {
      if (counts) ++result_.skipped;
      return;
    }
    if (counts) ++(findDraw(store_, period) ? result_.overwritten : result_.added);
    saveDraw(store_, desk_, period, draw->date, draw->numbers, Recalc::no);
  }

  Store& store_;
  Desk& desk_;
  const DrawList& list_;
  DownloadResult result_;
  PeriodNo looked_up_to_ = 0;
};

// Runs around the newest stored draw, once or as long as the list holds a newer one.
void merge_All(Store& store, Merge& merge, const DrawList& list) {
  const PeriodNo newest = list.newest();
  StoreChange change(store);
  PeriodNo latest = latestPeriod(store);
  for (;;) {
    const int added = merge.result().added;
    merge.run(latest);
    if (latestPeriod(store) >= newest) break;
    // A run that reached nothing stands in front of a gap.
    latest = merge.result().added > added ? latestPeriod(store) : latest + kLookAhead;
  }
  change.commit();
}

enum class Runs { one, all };

// What a download comes to, without telling it.
DownloadResult fetch_AndMerge(Store& store, Desk& desk, Fetcher& fetcher, const std::string& address,
                              Runs runs) {
  const StatusScope status(desk);
  desk.show_Status(kDownloading);
  auto text = fetchDrawText(desk, fetcher, address);
  if (!text) return {.stopped = true};
  const DrawList list(std::move(*text));
  if (!list.is_DrawList()) return {};
  Merge merge(store, desk, list);
  StoreChange change(store);
  if (runs == Runs::one)
    merge.run(latestPeriod(store));
  else
    merge_All(store, merge, list);
  remember_Address(store, AddressUse::draw_list, address);
  change.commit();
  return merge.result();
}

DownloadResult download(Store& store, Desk& desk, Fetcher& fetcher, const std::string& address, Runs runs) {
  const DownloadResult result = fetch_AndMerge(store, desk, fetcher, address, runs);
  if (result.ok)
    desk.tell("已成功更新!");
  else if (!result.stopped)
    desk.tell(kFailure, Tone::error);
  return result;
}

}  // namespace

std::optional<std::string> fetchDrawText(Desk& desk, Fetcher& fetcher, const std::string& address) {
  const Fetched fetched = fetch_AsJob(desk, fetcher, address);
  if (fetched.stopped) return std::nullopt;
  return compactDrawText(fetched.reply.value_or(std::string()));
}

DownloadResult downloadDraws(Store& store, Desk& desk, Fetcher& fetcher, const std::string& address) {
  return download(store, desk, fetcher, address, Runs::one);
}

DownloadResult downloadAll(Store& store, Desk& desk, Fetcher& fetcher, const std::string& address) {
  return download(store, desk, fetcher, address, Runs::all);
}

DownloadResult download_Command(Store& store, Desk& desk, Fetcher& fetcher) {
  const auto address = known_Address(store, desk, AddressUse::draw_list);
  return address ? downloadDraws(store, desk, fetcher, *address) : DownloadResult{};
}

}  // namespace lotmere

#include "history/status.hpp"

#include <fmt/format.h>

#include "core/periods.hpp"

namespace lotmere {

HistoryStatus updateHistoryStatus(Store& store, Date today, Date entry_date) {
  const Date next = upcomingDrawDate(store, today);
  HistoryStatus status;
  status.incomplete = next < today || latestDrawDate(store) == kNoDrawDate;
  status.history = status.incomplete ? " ◆◇◆→  历史记录： 不完整，请下载或手工添加开奖记录  ←◆◇◆  "
                                     : "  ☆☆☆  历史记录： 已更新！  ☆☆☆  ";
  status.next_draw = fmt::format("     ※※※  {} 期 于 {} 开奖     今天是： {}  ※※※     ",
                                 nextPeriod(store, entry_date), format_Date(next), format_Date(today));
  return status;
}

}  // namespace lotmere

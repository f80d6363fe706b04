#include "tickets/upkeep.hpp"

#include "store/ticket_table.hpp"
#include "tickets/ticket_steps.hpp"

namespace lotmere {

PeriodNo firstTicketPeriod(Store& store) {
  return static_cast<PeriodNo>(
      store.value(R"(SELECT "期号" FROM "日志表" ORDER BY "期号" ASC,"序号" ASC LIMIT 1)"));
}

void clearTickets(Store& store, Desk& desk) {
  deleteAllTickets(store);
  desk.runningText().appendLine("表格中号码全部删除已完成．");
}

Outcome clearAllTickets(Store& store, Desk& desk) {
  constexpr std::string_view buttons[] = {"删除", "取消"};
  if (desk.choose("确认要删除全部记录吗？", buttons, 1) != 0) return Outcome::refused;
  StoreChange change(store);
  keepTickets(store, TicketAction::removal);
  clearTickets(store, desk);
  change.commit();
  desk.tell("删除记录完成！");
  return Outcome::done;
}

}  // namespace lotmere

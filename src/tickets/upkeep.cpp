#include "tickets/upkeep.hpp"

namespace lotmere {

PeriodNo first_TicketPeriod(Store& store) {
  return static_cast<PeriodNo>(
      store.value(R"(SELECT "期号" FROM "日志表" ORDER BY "期号" ASC,"序号" ASC LIMIT 1)"));
}

void clear_Tickets(Store& store, Desk& desk) {
  store.query(R"(DELETE FROM "日志表")").run();
  desk.running_Text().append_Line("表格中号码全部删除已完成．");
}

bool clear_AllTickets(Store& store, Desk& desk) {
  constexpr std::string_view buttons[] = {"删除", "取消"};
  if (desk.choose("确认要删除全部记录吗？", buttons, 1) != 0) return false;
  clear_Tickets(store, desk);
  desk.tell("删除记录完成！");
  return true;
}

}  // namespace lotmere

#include "store/ticket_table.hpp"

namespace lotmere {

std::int64_t countAllTickets(Store& store) { return store.value(R"(SELECT count(*) FROM "日志表")"); }

void deleteAllTickets(Store& store) { store.query(R"(DELETE FROM "日志表")").run(); }

}  // namespace lotmere

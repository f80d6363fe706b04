#include "store/steps_table.hpp"

namespace lotmere {

void forgetTicketSteps(Store& store) {
  store.query(R"(DELETE FROM "号码步骤")").run();
  store.query(R"(DELETE FROM "运行条件")").run();
}

void keepSettingStepsOf(Store& store, const std::string& user) {
  store.query(R"(DELETE FROM "设置步骤" WHERE "用户"<>?)").bind(user).run();
}

void forgetNamedSets(Store& store) { store.query(R"(DELETE FROM "命名方案")").run(); }

}  // namespace lotmere

#include <fmt/format.h>

#include <ostream>

#include "cli/command.hpp"
#include "core/schema.hpp"

namespace lotmere {
namespace {

std::string state_Text(const std::filesystem::path& path) {
  if (!std::filesystem::exists(path)) return "没有";
  switch (check_Store(path)) {
    case StoreState::sound:
      return "正常";
    case StoreState::damaged:
      return "已损坏";
    case StoreState::newer:
      return "由更新版本的程序建立";
  }
  return {};
}

std::string mended_Text(Mended mended) {
  switch (mended) {
    case Mended::nothing:
      return "不需要";
    case Mended::made_new:
      return "新建了数据文件";
    case Mended::was_missing:
      return "数据文件丢失，已从备份恢复";
    case Mended::was_damaged:
      return "数据文件已损坏，已从备份恢复";
  }
  return {};
}

class CheckCommand final : public Command {
 public:
  CheckCommand() : Command("store", "check", "检查数据文件；损坏或丢失时从备份恢复") {}

  [[nodiscard]] bool needs_User() const override { return false; }

  int run(Session& session) override {
    const Home& home = session.start.home();
    session.out << fmt::format("数据文件\t{}\n备份\t{}\n恢复\t{}\n结构版本\t{}\n", state_Text(home.main_Db()),
                               state_Text(home.backup_Db()), mended_Text(session.start.mended()),
                               session.store.value("PRAGMA user_version"));
    Query names = session.store.query("SELECT name FROM sqlite_master WHERE type='table' ORDER BY name");
    while (names.next())
      session.out << fmt::format("{}\t{}\n", names.text(0),
                                 session.store.value("SELECT count(*) FROM " + sql_Name(names.text(0))));
    return kExitDone;
  }
};

class CompactCommand final : public Command {
 public:
  CompactCommand() : Command("store", "compact", "更新备份并压缩数据文件") {}

  [[nodiscard]] bool needs_User() const override { return false; }
  [[nodiscard]] bool compacts() const override { return true; }

  // The start has done it already; here it is reported.
  int run(Session& session) override {
    const CompactResult& result = session.start.compaction_Result().value();
    if (!result.failure.empty()) return refuse(session.desk, "没有完成。" + result.failure);
    session.out << fmt::format("备份已更新，数据文件 {} → {} 字节\n", result.size_before, result.size_after);
    return kExitDone;
  }
};

}  // namespace

void add_StoreCommands(CommandList& list) {
  list.push_back(std::make_unique<CheckCommand>());
  list.push_back(std::make_unique<CompactCommand>());
}

}  // namespace lotmere

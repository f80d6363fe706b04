#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <ostream>

#include "cli/command.hpp"
#include "core/schema.hpp"
#include "core/store_files.hpp"
#include "core/transfer.hpp"

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
    case Mended::made_anew:
      return "数据文件和备份都丢失，新建了数据文件";
    case Mended::was_missing:
      return "数据文件丢失，已从备份恢复";
    case Mended::was_damaged:
      return "数据文件已损坏，已从备份恢复";
  }
  return {};
}

// The state of the backup beside a sound store: a damaged one is made anew from it.
std::string mend_Backup(const Home& home) {
  if (check_Store(home.backup_Db()) != StoreState::damaged) return state_Text(home.backup_Db());
  return copy_Database(home.main_Db(), home.backup_Db(), real_Files()) ? "已损坏，已重新建立" : "已损坏";
}

class CheckCommand final : public Command {
 public:
  CheckCommand() : Command("store", "check", "检查数据文件和备份；损坏或丢失时用另一个恢复") {}

  [[nodiscard]] bool needs_User() const override { return false; }

  int run(Session& session) override {
    const Home& home = session.start.home();
    const std::string backup = mend_Backup(home);
    session.out << fmt::format("数据文件\t{}\n备份\t{}\n恢复\t{}\n结构版本\t{}\n", state_Text(home.main_Db()),
                               backup, mended_Text(session.start.mended()),
                               session.store.value("PRAGMA user_version"));
    Query names = session.store.query("SELECT name FROM sqlite_master WHERE type='table' ORDER BY name");
    while (names.next())
      session.out << fmt::format("{}\t{}\n", names.text(0),
                                 session.store.value("SELECT count(*) FROM " + sql_Name(names.text(0))));
    if (is_SoundStore(home.backup_Db())) return kExitDone;
    return refuse(session.desk, fmt::format("备份不能用：{}。", backup));
  }
};

class CompactCommand final : public Command {
 public:
  CompactCommand() : Command("store", "compact", "更新备份并压缩数据文件") {}

  [[nodiscard]] bool needs_User() const override { return false; }
  [[nodiscard]] bool compacts() const override { return true; }

  // The start has done it already, and told what it couldn't do.
  int run(Session& session) override {
    const CompactResult& result = session.start.compaction_Result().value();
    if (!undone_Text(result).empty()) return kExitRefused;
    session.out << fmt::format("备份已更新，数据文件 {} → {} 字节\n", result.size_before, result.size_after);
    return kExitDone;
  }
};

int status_Of(Transfer transfer) { return transfer == Transfer::done ? kExitDone : kExitRefused; }

class SaveCommand final : public Command {
 public:
  SaveCommand() : Command("store", "save", "把全部数据（开奖记录、号码、设置、用户）保存到一个文件") {}

  [[nodiscard]] bool needs_User() const override { return false; }
  void add_Options(CLI::App& app) override { app.add_option("FILE", file_, "文件名")->required(); }

  int run(Session& session) override {
    const Transfer saved = save_Everything(session.store, session.start.home(), session.desk, file_);
    if (saved == Transfer::done) session.out << fmt::format("已保存到 {}\n", file_);
    return status_Of(saved);
  }

 private:
  std::string file_;
};

class RestoreCommand final : public Command {
 public:
  RestoreCommand() : Command("store", "restore", "用 store save 保存的文件替换全部数据") {}

  [[nodiscard]] bool needs_User() const override { return false; }
  void add_Options(CLI::App& app) override { app.add_option("FILE", file_, "文件名")->required(); }

  // The start behind it puts everything in place and opens it.
  [[nodiscard]] int prepare(const Home& home, Desk& desk) override {
    return status_Of(prepare_Restore(home, desk, file_));
  }
  int run(Session& session) override {
    session.out << fmt::format("已从 {} 读入全部数据\n", file_);
    return kExitDone;
  }

 private:
  std::string file_;
};

}  // namespace

void add_StoreCommands(CommandList& list) {
  list.push_back(std::make_unique<CheckCommand>());
  list.push_back(std::make_unique<CompactCommand>());
  list.push_back(std::make_unique<SaveCommand>());
  list.push_back(std::make_unique<RestoreCommand>());
}

}  // namespace lotmere

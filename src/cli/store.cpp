#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <ostream>

#include "cli/command.hpp"
#include "start/transfer.hpp"
#include "store/schema.hpp"
#include "store/store_files.hpp"

namespace lotmere {
namespace {

std::string stateText(const std::filesystem::path& path) {
  if (!std::filesystem::exists(path)) return "没有";
  switch (checkStore(path)) {
    case StoreState::sound:
      return "正常";
    case StoreState::damaged:
      return "已损坏";
    case StoreState::newer:
      return "由更新版本的程序建立";
  }
  return {};
}

std::string mendedText(Mended mended) {
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
std::string mendBackup(const Home& home) {
  if (checkStore(home.backupDb()) != StoreState::damaged) return stateText(home.backupDb());
  return copyDatabase(home.mainDb(), home.backupDb(), realFiles()) ? "已损坏，已重新建立" : "已损坏";
}

class CheckCommand final : public Command {
 public:
  CheckCommand() : Command("store", "check", "检查数据文件和备份；损坏或丢失时用另一个恢复") {}

  [[nodiscard]] bool needsUser() const override { return false; }

  Outcome run(Session& session) override {
    const Home& home = session.start.home();
    const std::string backup = mendBackup(home);
    session.out << fmt::format("数据文件\t{}\n备份\t{}\n恢复\t{}\n结构版本\t{}\n", stateText(home.mainDb()),
                               backup, mendedText(session.start.mended()), storedVersion(session.store.db()));
    for (const auto& [table, rows] : tableSizes(session.store))
      session.out << fmt::format("{}\t{}\n", table, rows);
    if (isSoundStore(home.backupDb())) return Outcome::done;
    return refuse(session.desk, fmt::format("备份不能用：{}。", backup));
  }
};

class CompactCommand final : public Command {
 public:
  CompactCommand() : Command("store", "compact", "更新备份并压缩数据文件") {}

  [[nodiscard]] bool needsUser() const override { return false; }
  [[nodiscard]] bool compacts() const override { return true; }

  // The start has done it already, and told what it couldn't do.
  Outcome run(Session& session) override {
    const CompactResult& result = session.start.compactionResult().value();
    if (!undoneText(result).empty()) return Outcome::refused;
    session.out << fmt::format("备份已更新，数据文件 {} → {} 字节\n", result.size_before, result.size_after);
    return Outcome::done;
  }
};

class SaveCommand final : public Command {
 public:
  SaveCommand() : Command("store", "save", "把全部数据（开奖记录、号码、设置、用户）保存到一个文件") {}

  [[nodiscard]] bool needsUser() const override { return false; }
  void addOptions(CLI::App& app) override { app.add_option("FILE", file_, "文件名")->required(); }

  Outcome run(Session& session) override {
    if (file_.empty()) return refuse(session.desk, kNoFileName);
    const Outcome saved = saveEverything(session.store, session.start.home(), session.desk, file_);
    if (saved == Outcome::done) session.out << fmt::format("已保存到 {}\n", file_);
    return saved;
  }

 private:
  std::string file_;
};

class RestoreCommand final : public Command {
 public:
  RestoreCommand() : Command("store", "restore", "用 store save 保存的文件替换全部数据") {}

  [[nodiscard]] bool needsUser() const override { return false; }
  void addOptions(CLI::App& app) override { app.add_option("FILE", file_, "文件名")->required(); }

  // The start behind it puts everything in place and opens it.
  [[nodiscard]] Outcome prepare(const Home& home, Desk& desk) override {
    if (file_.empty()) return refuse(desk, kNoFileName);
    return prepareRestore(home, desk, file_);
  }
  Outcome run(Session& session) override {
    session.out << fmt::format("已从 {} 读入全部数据\n", file_);
    return Outcome::done;
  }

 private:
  std::string file_;
};

}  // namespace

void addStoreCommands(CommandList& list) {
  list.push_back(std::make_unique<CheckCommand>());
  list.push_back(std::make_unique<CompactCommand>());
  list.push_back(std::make_unique<SaveCommand>());
  list.push_back(std::make_unique<RestoreCommand>());
}

}  // namespace lotmere

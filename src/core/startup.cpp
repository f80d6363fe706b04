#include "core/startup.hpp"

#include <utility>

#include "core/failure.hpp"
#include "core/text.hpp"

namespace lotmere {
namespace {

constexpr std::string_view kAdministrator =
    "请以管理员身份来运行程序！(通过点击鼠标右键，选择‘以管理员身份运行’，不要直接双击打开。)";
constexpr std::string_view kSecurity =
    "vista系统下必须禁用“UAC”功能程序才可以正常使用,请手工关闭“UAC”功能，然后重新启动计算机。。。";
constexpr std::string_view kSecurityHow =
    "[关闭“UAC”： 控制面板-> 用户帐户-> 打开或关闭帐户控制-> 界面中的钩去掉-> 确定  重启计算机]";
constexpr std::string_view kReinstall = "(文件丢失,需要重新安装!)";

std::vector<std::string> failure_Messages(const std::exception& failure, StartAdvice advice) {
  const std::string text = failure_Text(failure);
  const std::string paragraph = std::string(kLineBreak) + std::string(kLineBreak);
  switch (advice) {
    case StartAdvice::security:
      return {text + paragraph + std::string(kSecurity) + paragraph + std::string(kSecurityHow)};
    case StartAdvice::reinstall:
      return {text + std::string(kReinstall)};
    case StartAdvice::administrator:
      break;
  }
  return {text, std::string(kAdministrator)};
}

}  // namespace

StartOutcome run_Steps(std::span<const StartStep> steps) {
  for (const StartStep& step : steps) {
    try {
      if (!step.run()) return {false, step.name, {}};
    } catch (const std::exception& failure) {
      return {false, step.name, failure_Messages(failure, step.advice)};
    }
  }
  return {true, {}, {}};
}

ProgramStart::ProgramStart(Home home, Desk& desk, FileSystem& files)
    : home_(std::move(home)), desk_(desk), files_(files) {}

StartStep ProgramStart::single_Instance() {
  return {"single instance", [this] {
            lock_ = HomeLock::take(home_);
            if (!lock_) desk_.tell("程序正在运行,不允许同时打开多个!!!", Tone::warning);
            return lock_ != nullptr;
          }};
}

StartStep ProgramStart::database_Presence() {
  return {"database presence", [this] {
            const auto mended = secure_Store(home_, desk_, files_);
            mended_ = mended.value_or(Mended::nothing);
            return mended.has_value();
          }};
}

StartStep ProgramStart::compaction() {
  return {"compaction", [this] {
            compaction_ = compact_MainDb(home_.main_Db(), home_.backup_Db(), true, files_);
            if (const std::string undone = undone_Text(*compaction_); !undone.empty())
              desk_.tell(undone, Tone::warning, "备份");
            return true;
          }};
}

StartStep ProgramStart::size_Guard() {
  return {"size guard", [this] {
            // An older backup would lose what came after it, and a refused copy is no reason to end the start: the
            // store stands as it was.
            if (!compaction_ || !compaction_->backup_refreshed ||
                std::filesystem::file_size(home_.main_Db()) <= kLargestMainDb)
              return true;
            try {
              if (restore_FromBackup(home_.main_Db(), home_.backup_Db(), files_))
                compaction_->size_after = std::filesystem::file_size(home_.main_Db());
            } catch (const std::exception& failure) {
              desk_.tell(failure_Text(failure), Tone::warning, "备份");
            }
            return true;
          }};
}

StartStep ProgramStart::home_Files() {
  return {"home files", [this] {
            complete_Home(home_, files_);
            return true;
          }};
}

StartStep ProgramStart::main_Connection() {
  return {"main connection",
          [this] {
            store_ = std::make_unique<Store>(home_.main_Db());
            return true;
          },
          StartAdvice::reinstall};
}

}  // namespace lotmere

#include "start/startup.hpp"

#include <utility>

#include "base/failure.hpp"
#include "base/text.hpp"

namespace lotmere {
namespace {

constexpr std::string_view kAdministrator =
    "请以管理员身份来运行程序！(通过点击鼠标右键，选择‘以管理员身份运行’，不要直接双击打开。)";
constexpr std::string_view kSecurity =
    "vista系统下必须禁用“UAC”功能程序才可以正常使用,请手工关闭“UAC”功能，然后重新启动计算机。。。";
constexpr std::string_view kSecurityHow =
    "[关闭“UAC”： 控制面板-> 用户帐户-> 打开或关闭帐户控制-> 界面中的钩去掉-> 确定  重启计算机]";
constexpr std::string_view kReinstall = "(文件丢失,需要重新安装!)";

std::vector<std::string> failureMessages(const std::exception& failure, StartAdvice advice) {
  const std::string text = failureText(failure);
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

StartOutcome runSteps(std::span<const StartStep> steps) {
  for (const StartStep& step : steps) {
    try {
      if (!step.run()) return {false, step.name, {}};
    } catch (const std::exception& failure) {
      return {false, step.name, failureMessages(failure, step.advice)};
    }
  }
  return {true, {}, {}};
}

ProgramStart::ProgramStart(Home home, Desk& desk, FileSystem& files)
    : home_(std::move(home)), desk_(desk), files_(files) {}

StartStep ProgramStart::singleInstance() {
  return {"single instance", [this] {
            lock_ = lockHome(home_);
            if (!lock_) desk_.tell("程序正在运行,不允许同时打开多个!!!", Tone::warning);
            return lock_ != nullptr;
          }};
}

StartStep ProgramStart::databasePresence() {
  return {"database presence", [this] {
            const auto mended = secureStore(home_, desk_, files_);
            mended_ = mended.value_or(Mended::nothing);
            return mended.has_value();
          }};
}

StartStep ProgramStart::compaction() {
  return {"compaction", [this] {
            compaction_ = compactMainDb(home_.mainDb(), home_.backupDb(), true, files_);
            if (const std::string undone = undoneText(*compaction_); !undone.empty())
              desk_.tell(undone, Tone::warning, "备份");
            return true;
          }};
}

StartStep ProgramStart::sizeGuard() {
  return {"size guard", [this] {
            // An older backup would lose what came after it, and a refused copy is no reason to end the
            // start: the store stands as it was.
            if (!compaction_ || !compaction_->backup_refreshed ||
                std::filesystem::file_size(home_.mainDb()) <= kLargestMainDb)
              return true;
            try {
              if (restoreFromBackup(home_.mainDb(), home_.backupDb(), files_))
                compaction_->size_after = std::filesystem::file_size(home_.mainDb());
            } catch (const std::exception& failure) {
              desk_.tell(failureText(failure), Tone::warning, "备份");
            }
            return true;
          }};
}

StartStep ProgramStart::homeFiles() {
  return {"home files", [this] {
            completeHome(home_, files_);
            return true;
          }};
}

StartStep ProgramStart::mainConnection() {
  return {"main connection",
          [this] {
            store_ = std::make_unique<Store>(home_.mainDb());
            return true;
          },
          StartAdvice::reinstall};
}

}  // namespace lotmere

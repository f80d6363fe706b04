#include "start/home.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <system_error>

#include "start/transfer.hpp"
#include "store/schema.hpp"
#include "store/store_files.hpp"

namespace lotmere {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kLost = "(文件丢失,需要重新安装!)";

// A pipe would be waited for, a folder or device can't be replaced: better refused here by name than in the
// middle of the work.
void requirePlainFiles(const Home& home) {
  for (const fs::path& file : {home.mainDb(), home.backupDb(), home.templateFile()})
    for (const char* suffix : {"", "-journal", "-wal"}) requirePlainFile(fs::path(file) += suffix);
}

// A new store beside old profiles: what was in the lost one must not look as if it had never been.
void tellLoss(Desk& desk, std::size_t profiles) {
  desk.tell(
      fmt::format("数据文件和备份都不见了，但还有 {} 个用户文件。已建立新的数据文件：开奖记录和用户都没有了；"
                  "用户文件原样保留，用原来的用户名重新建立用户，可以取回他的设置。",
                  profiles),
      Tone::warning, "数据恢复");
}

// Brings a store into being where none stands.
std::optional<Mended> makeStore(const Home& home, Desk& desk, FileSystem& files) {
  if (!files.exists(home.backupDb())) {
    const std::size_t profiles = home.profiles().size();
    Store::create(home.mainDb(), files);
    if (profiles == 0) return Mended::made_new;
    tellLoss(desk, profiles);
    return Mended::made_anew;
  }
  if (!restoreFromBackup(home.mainDb(), home.backupDb(), files)) {
    desk.tell("数据文件丢失，备份文件也已损坏，无法打开。" + std::string(kLost), Tone::error);
    return std::nullopt;
  }
  desk.showTip("数据文件丢失，已从备份恢复。", "数据恢复");
  return Mended::was_missing;
}

std::optional<Mended> mendStore(const Home& home, Desk& desk, FileSystem& files) {
  if (!files.exists(home.backupDb()) || !isSoundStore(home.backupDb())) {
    desk.tell("数据文件已损坏，也没有可用的备份，无法打开。" + std::string(kLost), Tone::error);
    return std::nullopt;
  }
  const fs::path aside = keepDamaged(home.mainDb(), files);
  if (!restoreFromBackup(home.mainDb(), home.backupDb(), files))
    throw fs::filesystem_error("copy", home.backupDb(), std::make_error_code(std::errc::io_error));
  desk.showTip("数据文件已损坏，已从备份恢复；损坏的文件保存为 " + aside.filename().string() + "。",
               "数据恢复");
  return Mended::was_damaged;
}

// Names that begin with these, as "Lotmere.db-journal" does, and those of profiles with whatever stands
// behind them.
bool isOwnName(const Home& home, std::string_view name) {
  for (const fs::path& own :
       {home.mainDb(), home.backupDb(), home.templateFile(), home.lockFile(), home.windowFile()})
    if (name.starts_with(own.filename().string())) return true;
  return name.find(kProfileExtension) != std::string_view::npos;
}

}  // namespace

std::vector<fs::path> Home::profiles() const {
  std::vector<fs::path> found;
  if (!fs::exists(folder)) return found;
  for (const auto& entry : fs::directory_iterator(folder))
    if (entry.path().extension() == kProfileExtension) found.push_back(entry.path());
  std::ranges::sort(found);
  return found;
}

Home findHome(const fs::path& program_folder, const std::string& data_home, const std::string& user_home) {
  Home beside{program_folder};
  std::error_code unreadable;
  if (fs::exists(beside.mainDb(), unreadable) || fs::exists(program_folder / "portable", unreadable))
    return beside;
  const fs::path data =
      fs::path(data_home).is_relative() ? fs::path(user_home) / ".local" / "share" : fs::path(data_home);
  return Home{data / "Lotmere"};
}

bool isOwnFile(const Home& home, const fs::path& file) {
  // A pipe that a link of the system leads to has no path; nobody writes a file in its place.
  if (const fs::file_status status = fs::status(file); fs::exists(status) && !fs::is_regular_file(status))
    return false;
  const fs::path folder = home.folder.empty() ? fs::path(".") : home.folder;
  const fs::path end = followLinks(file);
  std::error_code missing;
  const bool stands_here =
      fs::equivalent(end.has_parent_path() ? end.parent_path() : fs::path("."), folder, missing);
  if (stands_here && isOwnName(home, end.filename().string())) return true;
  if (!fs::exists(end)) return false;
  // A second name of the same file.
  return std::any_of(fs::directory_iterator(folder), fs::directory_iterator(), [&](const auto& entry) {
    return isOwnName(home, entry.path().filename().string()) && fs::equivalent(entry.path(), end, missing);
  });
}

std::unique_ptr<FileLock> lockHome(const Home& home) {
  fs::create_directories(home.folder);
  requirePlainFile(home.lockFile());
  return FileLock::take(home.lockFile());
}

std::optional<Mended> secureStore(const Home& home, Desk& desk, FileSystem& files) {
  requirePlainFiles(home);
  finishRestore(home, files);
  if (!files.exists(home.mainDb())) return makeStore(home, desk, files);
  const StoreState state = checkStore(home.mainDb());
  if (state == StoreState::damaged) return mendStore(home, desk, files);
  if (state == StoreState::sound) return Mended::nothing;
  desk.tell("数据文件由更新版本的程序建立，本版本无法打开。", Tone::error);
  return std::nullopt;
}

void completeHome(const Home& home, FileSystem& files) {
  if (!files.exists(home.backupDb()) && !copyDatabase(home.mainDb(), home.backupDb(), files))
    throw fs::filesystem_error("copy", home.backupDb(), std::make_error_code(std::errc::io_error));
  if (!files.exists(home.templateFile())) writeDatabase(home.templateFile(), files, createProfile);
}

std::unique_ptr<Store> openHome(const Home& home, Desk& desk, FileSystem& files) {
  if (!secureStore(home, desk, files)) return nullptr;
  completeHome(home, files);
  return std::make_unique<Store>(home.mainDb());
}

}  // namespace lotmere

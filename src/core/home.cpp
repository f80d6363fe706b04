#include "core/home.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "core/store_files.hpp"

namespace lotmere {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kLost = "(文件丢失,需要重新安装!)";

// Brings a store into being where none stands.
bool make_Store(const Home& home, Desk& desk, FileSystem& files) {
  if (!files.exists(home.backup_Db())) {
    Store::create(home.main_Db(), files);
    return true;
  }
  if (!restore_FromBackup(home.main_Db(), home.backup_Db(), files)) {
    desk.tell("数据文件丢失，备份文件也已损坏，无法打开。" + std::string(kLost), Tone::error);
    return false;
  }
  desk.show_Tip("数据文件丢失，已从备份恢复。", "数据恢复");
  return true;
}

// The first name of "Lotmere.db.damaged", "Lotmere.db.damaged2", ... that is free.
fs::path free_Name(const fs::path& path) {
  fs::path name = path;
  name += ".damaged";
  for (int i = 2; fs::exists(name); ++i) {
    name = path;
    name += ".damaged" + std::to_string(i);
  }
  return name;
}

bool mend_Store(const Home& home, Desk& desk, FileSystem& files) {
  if (!files.exists(home.backup_Db()) || !is_SoundStore(home.backup_Db())) {
    desk.tell("数据文件已损坏，也没有可用的备份，无法打开。" + std::string(kLost), Tone::error);
    return false;
  }
  // The damaged file is kept under another name: what it still holds may matter to somebody who can read it.
  const fs::path aside = free_Name(home.main_Db());
  fs::copy_file(home.main_Db(), aside);
  files.sync(aside);
  if (!restore_FromBackup(home.main_Db(), home.backup_Db(), files)) return false;
  desk.show_Tip("数据文件已损坏，已从备份恢复；损坏的文件保存为 " + aside.filename().string() + "。",
                "数据恢复");
  return true;
}

}  // namespace

Home find_Home(const fs::path& program_folder, const std::string& data_home, const std::string& user_home) {
  Home beside{program_folder};
  std::error_code unreadable;
  if (fs::exists(beside.main_Db(), unreadable) || fs::exists(program_folder / "portable", unreadable))
    return beside;
  const fs::path data =
      fs::path(data_home).is_relative() ? fs::path(user_home) / ".local" / "share" : fs::path(data_home);
  return Home{data / "Lotmere"};
}

std::unique_ptr<HomeLock> HomeLock::take(const Home& home) {
  fs::create_directories(home.folder);
  const int fd = ::open(home.lock_File().c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (fd < 0)
    throw fs::filesystem_error("open", home.lock_File(), std::error_code(errno, std::generic_category()));
  if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
    ::close(fd);
    return nullptr;
  }
  return std::unique_ptr<HomeLock>(new HomeLock(fd));
}

HomeLock::~HomeLock() { ::close(fd_); }

std::unique_ptr<Store> open_Home(const Home& home, Desk& desk, FileSystem& files) {
  if (!files.exists(home.main_Db())) {
    if (!make_Store(home, desk, files)) return nullptr;
  } else if (const StoreState state = check_Store(home.main_Db()); state == StoreState::newer) {
    desk.tell("数据文件由更新版本的程序建立，本版本无法打开。", Tone::error);
    return nullptr;
  } else if (state == StoreState::damaged) {
    if (!mend_Store(home, desk, files)) return nullptr;
  }
  auto store = std::make_unique<Store>(home.main_Db());
  if (!files.exists(home.backup_Db()) && !copy_Database(home.main_Db(), home.backup_Db(), files))
    return nullptr;
  return store;
}

}  // namespace lotmere

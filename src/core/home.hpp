// The program folder: where the store, its backup and the files of the program stand, and the lock that keeps
// a second process out.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "core/desk.hpp"
#include "core/platform.hpp"
#include "core/store.hpp"

namespace lotmere {

struct Home {
  std::filesystem::path folder;

  [[nodiscard]] std::filesystem::path main_Db() const { return folder / "Lotmere.db"; }
  [[nodiscard]] std::filesystem::path backup_Db() const { return folder / "Lotmere.backup.db"; }
  [[nodiscard]] std::filesystem::path lock_File() const { return folder / "Lotmere.lock"; }
};

// The folder beside the program where a store or a file named `portable` stands there already, else `Lotmere`
// in the user's data folder (`data_home`, what XDG_DATA_HOME says, or .local/share below `user_home`).
[[nodiscard]] Home find_Home(const std::filesystem::path& program_folder, const std::string& data_home,
                             const std::string& user_home);

// Holds the folder for this process as long as it lives; the system lets go of it when the process ends,
// however it ends.
class HomeLock {
 public:
  // Nothing when another process holds it. Throws std::filesystem::filesystem_error when the folder can't be
  // written.
  [[nodiscard]] static std::unique_ptr<HomeLock> take(const Home& home);
  HomeLock(const HomeLock&) = delete;
  HomeLock& operator=(const HomeLock&) = delete;
  ~HomeLock();

 private:
  explicit HomeLock(int fd) : fd_(fd) {}
  int fd_;
};

// Opens the store of a folder that this process has locked. A missing or damaged store comes back from the
// backup, and the desk says so; a folder with neither gets a new store with factory rows; a backup that is
// missing is made. Nothing when store and backup are both damaged: the desk has told it, and nothing was
// touched.
[[nodiscard]] std::unique_ptr<Store> open_Home(const Home& home, Desk& desk,
                                               FileSystem& files = real_Files());

}  // namespace lotmere

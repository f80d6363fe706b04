// The program folder: where the store, its backup and the files of the program stand, and the lock that keeps
// a second process out.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/desk.hpp"
#include "base/platform.hpp"
#include "store/store.hpp"

namespace lotmere {

// The ending of the file that keeps a user's settings.
inline constexpr std::string_view kProfileExtension = ".uLotmere";

struct Home {
  std::filesystem::path folder;

  [[nodiscard]] std::filesystem::path mainDb() const { return folder / "Lotmere.db"; }
  [[nodiscard]] std::filesystem::path backupDb() const { return folder / "Lotmere.backup.db"; }
  [[nodiscard]] std::filesystem::path templateFile() const { return folder / "TJmode.tjmod"; }
  [[nodiscard]] std::filesystem::path lockFile() const { return folder / "Lotmere.lock"; }
  // The habits of the window: its size, its place, what was used last.
  [[nodiscard]] std::filesystem::path windowFile() const { return folder / "Lotmere.window.ini"; }
  // The profiles of all users, by name; empty without the folder.
  [[nodiscard]] std::vector<std::filesystem::path> profiles() const;
};

// The folder beside the program where a store or a file named `portable` stands there already, else `Lotmere`
// in the user's data folder (`data_home`, what XDG_DATA_HOME says, or .local/share below `user_home`).
[[nodiscard]] Home findHome(const std::filesystem::path& program_folder, const std::string& data_home,
                            const std::string& user_home);

// Whether a file that somebody names is one of the program's own, which no export may take the place of: the
// store, its backup, the profiles with their template, the lock, the habits of the window, and whatever
// stands beside one of them under its name (a journal, a copy of a damaged one). What counts is where the
// path leads, by whatever links, symbolic or hard; a name in the folder that no file has yet counts too.
// Throws std::filesystem::filesystem_error when the machine refuses.
inline constexpr std::string_view kOwnFile = "这是程序自己的数据文件，请换一个文件名！";
[[nodiscard]] bool isOwnFile(const Home& home, const std::filesystem::path& file);

// Makes the folder where it is missing, and holds it for this process as long as the lock lives. Nothing when
// another process holds it. Throws std::filesystem::filesystem_error when the folder can't be written, or
// what stands in the place of the lock is no file.
[[nodiscard]] std::unique_ptr<FileLock> lockHome(const Home& home);

// What had to be mended before the store could be opened.
enum class Mended {
  nothing,
  made_new,     // a first start
  made_anew,    // store and backup were gone while profiles stand
  was_missing,  // came back from the backup
  was_damaged   // the same
};

// Makes sure that a sound store stands in a folder that this process has locked. A missing or damaged one
// comes back from the backup, and the desk says so; a folder with neither gets a new store with factory rows,
// and where profiles show that there was one, the desk tells what is lost. Nothing when that can't be done,
// or when the store is a newer program's: the desk has told it, and nothing was touched. Throws
// std::filesystem::filesystem_error when something that is no file stands in the place of store, backup or
// template, and StoreFailure.
[[nodiscard]] std::optional<Mended> secureStore(const Home& home, Desk& desk,
                                                FileSystem& files = realFiles());

// Makes the files that stand beside the store where they are missing: the backup, the profile template.
void completeHome(const Home& home, FileSystem& files = realFiles());

// The three steps of opening a folder that this process has locked: a sound store, the files beside it, the
// connection. Nothing when there is no sound store; the desk has told it.
[[nodiscard]] std::unique_ptr<Store> openHome(const Home& home, Desk& desk, FileSystem& files = realFiles());

}  // namespace lotmere

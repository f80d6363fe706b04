#include "start/transfer.hpp"

#include <fmt/format.h>
#include <sqlite3.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>

#include "base/failure.hpp"
#include "base/text.hpp"
#include "store/archive.hpp"
#include "store/store_files.hpp"

namespace lotmere {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kStopped = "已停止，数据没有改变。";

fs::path stagingFolder(const Home& home) { return home.folder / "Lotmere.restore.new"; }
fs::path waitingFolder(const Home& home) { return home.folder / "Lotmere.restore"; }

Outcome refuse(Desk& desk, std::string_view text) {
  desk.tell(text, Tone::warning);
  return Outcome::refused;
}

// The open database as the bytes of a file, as the connection sees it.
std::string imageOf(Store& store) {
  sqlite3_int64 size = 0;
  unsigned char* bytes = sqlite3_serialize(store.db().getHandle(), "main", &size, 0);
  if (bytes == nullptr) throw StoreFailure(store.path(), SQLite::Exception("out of memory", SQLITE_NOMEM));
  std::string image(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
  sqlite3_free(bytes);
  return image;
}

std::string bytesOf(const fs::path& path) {
  requirePlainFile(path);
  std::ifstream file(path, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(file), {}};
  if (!file) throw fs::filesystem_error("read", path, std::make_error_code(std::errc::io_error));
  return bytes;
}

std::vector<ArchivedFile> allFiles(Store& store, const Home& home) {
  std::vector<ArchivedFile> archived{{home.mainDb().filename().string(), imageOf(store)}};
  for (const fs::path& profile : home.profiles())
    archived.push_back({profile.filename().string(), bytesOf(profile)});
  return archived;
}

// Whether a file would stand in the place of one that belongs to the home.
bool isHomeFile(const Home& home, const fs::path& file) {
  std::error_code missing;
  const fs::path folder = file.has_parent_path() ? file.parent_path() : ".";
  if (!fs::equivalent(folder, home.folder, missing)) return false;
  const std::string name = file.filename().string();
  return file.extension() == kProfileExtension ||
         std::ranges::any_of(
             std::initializer_list<fs::path>{home.mainDb(), home.backupDb(), home.templateFile(),
                                             home.lockFile(), waitingFolder(home)},
             [&](const fs::path& own) { return name.starts_with(own.filename().string()); });
}

// A name that leads nowhere else, of a file that the archive may hold.
bool isArchivedName(const Home& home, const std::string& name) {
  const fs::path path(name);
  return path == path.filename() && name.find('\0') == std::string::npos &&
         (path == home.mainDb().filename() || (path.extension() == kProfileExtension && path.has_stem()));
}

bool holdsHome(const Home& home, const std::vector<ArchivedFile>& archived) {
  return std::ranges::all_of(archived, [&](const auto& file) { return isArchivedName(home, file.name); }) &&
         std::ranges::any_of(archived,
                             [&](const auto& file) { return home.mainDb().filename() == file.name; });
}

// The files of a restore before it counts: gone again unless it came to that.
class Staging {
 public:
  explicit Staging(const Home& home) : folder_(stagingFolder(home)) {
    fs::remove_all(folder_);
    fs::create_directory(folder_);
    fs::permissions(folder_, fs::perms::owner_all);
  }
  Staging(const Staging&) = delete;
  Staging& operator=(const Staging&) = delete;
  ~Staging() {
    std::error_code ignored;  // a left-over means nothing, and the next restore removes it
    fs::remove_all(folder_, ignored);
  }
  [[nodiscard]] const fs::path& folder() const { return folder_; }

 private:
  fs::path folder_;
};

// What the question says about the store in the file.
std::string contentText(const fs::path& path) {
  Store store(path);
  const auto draws = store.value(R"(SELECT count(*) FROM "历史记录")");
  const auto newest = store.value(R"(SELECT ifnull(max("期号"),0) FROM "历史记录")");
  const auto users = store.value(R"(SELECT count(*) FROM "用户表" WHERE "用户名"<>'临时用户')");
  return fmt::format("{} 期开奖记录{}，{} 个用户", draws,
                     draws == 0 ? "" : fmt::format("（到 {} 期）", newest), users);
}

// False, told, when the file is none that can be restored.
bool admits(Desk& desk, ArchiveState state, const fs::path& file) {
  const char* fault = nullptr;
  switch (state) {
    case ArchiveState::sound:
      return true;
    case ArchiveState::stopped:
      desk.tell(kStopped, Tone::warning);
      return false;
    case ArchiveState::foreign:
      fault = "不是本程序保存的全部数据";
      break;
    case ArchiveState::damaged:
      fault = "已损坏";
      break;
    case ArchiveState::newer:
      fault = "由更新版本的程序保存，本版本不能读入";
      break;
  }
  refuse(desk, fmt::format("文件{}{}，数据没有改变。", quoteTyped(file.string()), fault));
  return false;
}

ArchiveState stateOf(StoreState store) {
  if (store == StoreState::newer) return ArchiveState::newer;
  return store == StoreState::sound ? ArchiveState::sound : ArchiveState::damaged;
}

// Whether a store stands that can't be opened any more: no reason against a restore. Nothing, told, for the
// store of a newer program.
std::optional<bool> findDamaged(const Home& home, Desk& desk, FileSystem& files) {
  if (!files.exists(home.mainDb())) return false;
  const StoreState standing = checkStore(home.mainDb());
  if (standing != StoreState::newer) return standing == StoreState::damaged;
  desk.tell("现在的数据文件由更新版本的程序建立，不能替换。", Tone::error);
  return std::nullopt;
}

void removeWithJournal(const fs::path& path, FileSystem& files) {
  files.remove(fs::path(path) += "-journal");
  files.remove(path);
}

}  // namespace

Outcome saveEverything(Store& store, const Home& home, Desk& desk, const fs::path& file, FileSystem& files) {
  // What a link names is replaced, not the link.
  const fs::path target = fs::is_symlink(file) ? fs::weakly_canonical(file) : file;
  if (isHomeFile(home, target)) return refuse(desk, "这是程序自己的数据文件，请换一个文件名！");
  requirePlainFile(target);
  constexpr std::string_view buttons[] = {"替换", "取消"};
  if (files.exists(target) &&
      desk.choose(fmt::format("文件{}已经有了，要替换吗？", quoteTyped(file.string())), buttons, 1) != 0)
    return Outcome::refused;
  if (writeArchive(target, allFiles(store, home), desk, files)) return Outcome::done;
  desk.tell(kStopped, Tone::warning);
  return Outcome::stopped;
}

Outcome prepareRestore(const Home& home, Desk& desk, const fs::path& file, FileSystem& files) {
  finishRestore(home, files);
  const Archive archive = readArchive(file, desk);
  if (!admits(desk, archive.state, file))
    return archive.state == ArchiveState::stopped ? Outcome::stopped : Outcome::refused;
  if (!holdsHome(home, archive.files) && !admits(desk, ArchiveState::damaged, file)) return Outcome::refused;
  const auto damaged = findDamaged(home, desk, files);
  if (!damaged) return Outcome::refused;
  const Staging staging(home);
  for (const ArchivedFile& one : archive.files) files.writeNew(staging.folder() / one.name, one.bytes);
  const fs::path store = staging.folder() / home.mainDb().filename();
  if (!admits(desk, stateOf(checkStore(store)), file)) return Outcome::refused;
  constexpr std::string_view buttons[] = {"替换", "取消"};
  const std::string question = fmt::format(
      "要用文件{}中的数据（{}）替换现在的全部数据吗？现在的开奖记录、用户、设置和号码都会被替换。",
      quoteTyped(file.string()), contentText(store));
  if (desk.choose(question, buttons, 1) != 0) return Outcome::refused;
  if (*damaged) keepDamaged(home.mainDb(), files);  // for whoever can read it
  files.sync(store);
  files.sync(staging.folder());
  files.replace(staging.folder(), waitingFolder(home));
  return Outcome::done;
}

bool restoreWaits(const Home& home) { return fs::exists(waitingFolder(home)); }

void finishRestore(const Home& home, FileSystem& files) {
  const fs::path waiting = waitingFolder(home);
  if (!files.exists(waiting)) return;
  const fs::path store = waiting / home.mainDb().filename();
  // The store goes first, and only behind everything old: where it has gone, the profiles in the home are
  // new.
  if (files.exists(store)) {
    for (const fs::path& profile : home.profiles()) removeWithJournal(profile, files);
    files.remove(fs::path(home.mainDb()) += "-journal");
    files.sync(home.folder);
    files.replace(store, home.mainDb());
  }
  std::vector<fs::path> profiles = Home{waiting}.profiles();
  for (const fs::path& profile : profiles) files.move(profile, home.folder / profile.filename());
  if (!profiles.empty()) files.sync(home.folder);
  // An old backup would one day bring the old draws back.
  if (!copyDatabase(home.mainDb(), home.backupDb(), files))
    throw fs::filesystem_error("copy", home.backupDb(), std::make_error_code(std::errc::io_error));
  fs::remove_all(waiting);
  files.sync(home.folder);
}

}  // namespace lotmere

#include "users/profile.hpp"

#include <fmt/format.h>

#include "base/failure.hpp"
#include "store/row_copy.hpp"
#include "store/schema.hpp"
#include "store/store_files.hpp"

namespace lotmere {
namespace {

namespace fs = std::filesystem;

constexpr int kBusyTimeoutMs = 2000;

bool isControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }

std::string encodeFileName(std::string_view name) {
  constexpr std::string_view unsafe = "/\\:*?\"<>|%";
  constexpr std::string_view unsafe_at_ends = ". ";
  std::string text;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char c = name[i];
    const bool leads = name.find_first_not_of(unsafe_at_ends) >= i;
    const bool trails = name.find_first_not_of(unsafe_at_ends, i) == std::string_view::npos;
    const bool at_end = unsafe_at_ends.find(c) != std::string_view::npos && (leads || trails);
    if (isControl(c) || unsafe.find(c) != std::string_view::npos || at_end)
      text += fmt::format("%{:02X}", static_cast<unsigned char>(c));
    else
      text += c;
  }
  return text;
}

// The template holds nothing that isn't in the store: each filling makes it anew, so that one that is broken
// or falls short is mended too.
void refillTemplate(Store& store, const fs::path& path, FileSystem& files) {
  std::vector<TableRows> tables;
  for (const KeyedTable& table : profileTables())
    tables.push_back(readRows(store.db(), table.name, table.key));
  writeDatabase(path, files, [&](SQLite::Database& form) {
    createProfile(form);
    for (std::size_t i = 0; i < tables.size(); ++i) writeRows(form, profileTables()[i], tables[i]);
    copyNamedSets(store.db(), form);
  });
}

// Copies the tables of a profile one by one, each whole or not at all. What the file lacks, as that of an
// older version does, takes its factory value. False when the file breaks off.
bool copyProfile(Store& store, const fs::path& path) {
  try {
    const bool sound = checkStore(path, StoreKind::profile) != StoreState::damaged;
    SQLite::Database profile(path.string(), SQLite::OPEN_READWRITE, kBusyTimeoutMs);
    for (const KeyedTable& table : profileTables()) {
      StoreChange change(store);
      writeRows(store.db(), table, readRows(profile, table.name, table.key),
                readRows(store.db(), factoryTwin(table), table.key));
      change.commit();
    }
    StoreChange change(store);
    copyNamedSets(profile, store.db());
    change.commit();
    return sound;
  } catch (const SQLite::Exception& failure) {
    if (isDamage(failure)) return false;
    throw StoreFailure(path, failure);
  }
}

}  // namespace

fs::path profileFile(const Home& home, std::string_view name) {
  return home.folder / (encodeFileName(name) + std::string(kProfileExtension));
}

bool saveProfile(Store& store, const Home& home, Desk& desk, std::string_view name, FileSystem& files) {
  const fs::path form = home.templateFile();
  if (!files.exists(form)) {
    desk.tell("数据模板文件丢失无法导出，请重新安装！", Tone::error);
    return false;
  }
  refillTemplate(store, form, files);
  if (copyDatabase(form, profileFile(home, name), files, StoreKind::profile)) return true;
  throw fs::filesystem_error("copy", form, std::make_error_code(std::errc::io_error));
}

void restoreProfile(Store& store, const Home& home, Desk& desk, std::string_view name, FileSystem& files) {
  const fs::path path = profileFile(home, name);
  if (!files.exists(path)) return;
  if (copyProfile(store, path)) return;
  desk.tell("用户文件丢失或损坏,无法打开！", Tone::error);
  keepDamaged(path, files);
}

}  // namespace lotmere
